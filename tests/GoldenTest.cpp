// Every text form is the same bytes on every platform: those of golden/TextForms.txt.
//
// With TARN_UPDATE_GOLDEN set in the environment the file is written anew; a look at its difference is the review.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>

#include "Tarn/Tarn.h"
#include "tests/TimeZones.h"

namespace {

using namespace Tarn;

// A name and the bytes of each value, those outside printable ASCII and the backslash as hexadecimal numbers.
template <class... Values>
std::string line(const std::string& name, const Values&... values) {
  std::string bytes;
  ((bytes << values << '|'), ...);
  std::string text = name + ": ";
  for (const char byte : bytes) {
    const bool plain = byte >= ' ' && byte <= '~' && byte != '\\';
    text += plain ? std::string(1, byte) : std::string(PrintF("\\x%02X", static_cast<unsigned char>(byte)));
  }
  return text + '\n';
}

template <class T>
using Limits = std::numeric_limits<T>;

std::string numbers() {
  return line("bytes", true, '\xE9', static_cast<signed char>('s')) +
         line("integers", Limits<short>::min(), Limits<unsigned>::max(), Limits<long long>::min(),
              Limits<unsigned long long>::max()) +
         line("doubles", 0.0, -0.0, 1.0, 0.1, 1e6, 1234567.0, 1e-5, -2.5e300, 5e-324, 2015.25,
              Limits<double>::infinity(), Limits<double>::quiet_NaN()) +
         line("other floats", 0.1F, 1.0L / 3.0L);
}

uuids::uuid countingUuid(unsigned step) {
  std::array<unsigned char, 16> bytes{};
  for (unsigned i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i * step);
  return uuids::uuid(bytes);
}

std::string texts() {
  std::string text =
      line("strings", std::string("a\0b\n\"", 5), JsonValue{R"({"a": [1, "b"]})"}, "literal") +
      line("wide", L"A\u00E9\u20AC\uD7FF\uE000\uFFFF", std::wstring(1, static_cast<wchar_t>(0xD83D))) +
      line("maps", StringMap{}, StringMap{{"", ""}, {"a", "1"}, {"b", "x\"y"}, {"\xC3\xA9", "\xE2\x82\xAC\r\n\t\\"}});
  for (const bool unicode : {true, false}) {
    std::string escaped = "\"\\\n\r\t\x7F\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xC3";
    controlsToEsc(escaped, unicode);
    std::string plain = R"(\"\\\n\r\u0000\u00e9\u20AC\uD83D)";
    const int malformed = escToControls(plain, unicode);
    text += line("escapes", escaped, malformed, plain);
  }
  std::ostringstream stream;
  stream.width(8);
  stream << std::wstring(L"\u00E9\u20AC") << countingUuid(1);
  return text + line("other texts", narrow(L"caf\u00E9 \u20AC", '?'), stream.str(),
                     PrintF("%5.2f|%-4d|%s|%llu", 2.125, 7, "x", 1ULL << 40U));
}

std::string ids() {
  std::string text;
  for (const unsigned step : {0U, 1U, 0x11U, 0xFBU}) {
    const uuids::uuid id = countingUuid(step);
    text += line("uuid", id, id.toShortString(), static_cast<unsigned long long>(id.hash()));
  }
  return text;
}

std::string times() {
  std::string text;
  for (const char* zone : {"UTC0", "CET-1", "NST3:30", "IST-5:30", "LIN-14"}) {
    const TimeZone scope(zone);
    for (const double seconds :
         {0.0, 1709644029.042, 951782399.9996, 32503680000.0, 32535215999.0, 32535216000.0, -1.5}) {
      Time time;
      time.setTime(seconds);
      text += line(zone, time, time.getTimeStr2(), time.getTimeStr4(), time.getTimeStr5(), time.getTimeStr6(),
                   time.getTimeStr7(), time.getTimeStr8(), time.getTimeStr9(), time.getIsoTimeStr(),
                   Time::fromIsoTimeStrIgnoringTimeZone(time.getIsoTimeStr()).getLastTime() - seconds);
    }
  }
  return text;
}

TEST(Golden, TextForms) {
  const std::string text = numbers() + texts() + ids() + times();
  const std::string path = TARN_TEST_DIRECTORY "/golden/TextForms.txt";
  if (std::getenv("TARN_UPDATE_GOLDEN") != nullptr) std::ofstream(path, std::ios::binary) << text;
  std::ifstream file(path, std::ios::binary);
  ASSERT_TRUE(file) << path;
  EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(file), {}));
}

}  // namespace
