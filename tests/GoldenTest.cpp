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

// One line a form: its name and its bytes, those outside printable ASCII and the backslash as hexadecimal numbers.
class Golden {
 public:
  void add(const std::string& name, const std::string& bytes) {
    text_ += name + ": ";
    for (const char byte : bytes) {
      const bool plain = byte >= ' ' && byte <= '~' && byte != '\\';
      text_ += plain ? std::string(1, byte) : std::string(PrintF("\\x%02X", static_cast<unsigned char>(byte)));
    }
    text_ += "|\n";
  }

  template <class T>
  void addValue(const std::string& name, const T& value) {
    std::string buffer;
    buffer << value;
    add(name, buffer);
  }

  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  std::string text_;
};

uuids::uuid countingUuid(unsigned step) {
  std::array<unsigned char, 16> bytes{};
  for (unsigned i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i * step);
  return uuids::uuid(bytes);
}

void addNumbers(Golden& golden) {
  golden.addValue("bool", true);
  golden.addValue("char", '\xE9');
  golden.addValue("signed char", static_cast<signed char>('s'));
  golden.addValue("short", std::numeric_limits<short>::min());
  golden.addValue("unsigned", std::numeric_limits<unsigned>::max());
  golden.addValue("long long", std::numeric_limits<long long>::min());
  golden.addValue("unsigned long long", std::numeric_limits<unsigned long long>::max());
  for (const double value : {0.0, -0.0, 1.0, 0.1, 1e6, 1234567.0, 1e-5, -2.5e300, 5e-324, 2015.25,
                             std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    golden.addValue("double", value);
  }
  golden.addValue("float", 0.1F);
  golden.addValue("long double", 1.0L / 3.0L);
}

void addTexts(Golden& golden) {
  golden.addValue("string", std::string("a\0b\n\"", 5));
  golden.addValue("json", JsonValue{R"({"a": [1, "b"]})"});
  golden.addValue("literal", "literal");
  golden.addValue("wide", L"A\u00E9\u20AC\uD7FF\uE000\uFFFF");
  golden.addValue("wide surrogate", std::wstring(1, static_cast<wchar_t>(0xD83D)));
  golden.addValue("map", StringMap{});
  golden.addValue("map", StringMap{{"", ""}, {"a", "1"}, {"b", "x\"y"}, {"\xC3\xA9", "\xE2\x82\xAC\r\n\t\\"}});
  for (const bool unicode : {true, false}) {
    std::string text = "\"\\\n\r\t\x7F\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xC3";
    controlsToEsc(text, unicode);
    golden.add("escaped", text);
    text = R"(\"\\\n\r\u0000\u00e9\u20AC\uD83D)";
    golden.add("malformed at", std::to_string(escToControls(text, unicode)));
    golden.add("plain", text);
  }
  golden.add("narrow", narrow(L"caf\u00E9 \u20AC", '?'));
  std::ostringstream stream;
  stream.width(8);
  stream << std::wstring(L"\u00E9\u20AC") << countingUuid(1);
  golden.add("stream", stream.str());
  golden.add("printf", PrintF("%5.2f|%-4d|%s|%llu", 2.125, 7, "x", 1ULL << 40U));
}

void addUuids(Golden& golden) {
  for (const unsigned step : {0U, 1U, 0x11U, 0xFBU}) {
    const uuids::uuid id = countingUuid(step);
    golden.addValue("uuid", id);
    golden.add("short uuid", id.toShortString());
    golden.addValue("uuid hash", static_cast<unsigned long long>(id.hash()));
  }
}

void addTimes(Golden& golden) {
  for (const char* zone : {"UTC0", "CET-1", "NST3:30", "IST-5:30", "LIN-14"}) {
    const TimeZone scope(zone);
    for (const double seconds :
         {0.0, 1709644029.042, 951782399.9996, 32503680000.0, 32535215999.0, 32535216000.0, -1.5}) {
      Time time;
      time.setTime(seconds);
      golden.addValue(zone, time);
      for (const auto layout : {&Time::getTimeStr2, &Time::getTimeStr4, &Time::getTimeStr5, &Time::getTimeStr6,
                                &Time::getTimeStr7, &Time::getTimeStr8, &Time::getTimeStr9, &Time::getIsoTimeStr}) {
        golden.add(zone, (time.*layout)());
      }
      golden.addValue("read back", Time::fromIsoTimeStrIgnoringTimeZone(time.getIsoTimeStr()).getLastTime() - seconds);
    }
  }
}

TEST(Golden, TextForms) {
  Golden golden;
  addNumbers(golden);
  addTexts(golden);
  addUuids(golden);
  addTimes(golden);
  const std::string path = TARN_TEST_DIRECTORY "/golden/TextForms.txt";
  if (std::getenv("TARN_UPDATE_GOLDEN") != nullptr) std::ofstream(path, std::ios::binary) << golden.text();
  std::ifstream file(path, std::ios::binary);
  ASSERT_TRUE(file) << path;
  EXPECT_EQ(golden.text(), std::string(std::istreambuf_iterator<char>(file), {}));
}

}  // namespace
