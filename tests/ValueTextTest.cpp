#include "Tarn/text/ValueText.h"

#include <gtest/gtest.h>

#include <limits>
#include <locale>

#include "Tarn/time/Time.h"
#include "tests/Plain.h"

namespace foreign {

struct Opaque {
  int number;
};
std::ostream& operator<<(std::ostream& stream, const Opaque& opaque) { return stream.put('#') << opaque.number; }

// What its stream thinks of it does not matter.
struct Failing {};
std::ostream& operator<<(std::ostream& stream, Failing) {
  stream << "half";
  stream.setstate(std::ios::badbit);
  return stream << "lost";
}

}  // namespace foreign

namespace {

using namespace Tarn;

// Writes 1.234.567,5.
struct Grouping : std::numpunct<char> {
  char do_thousands_sep() const override { return '.'; }
  char do_decimal_point() const override { return ','; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(ValueText, NoLocaleChangesIt) {
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
  std::string buffer;
  Time time;
  time.setTime(2024, 3, 5, 14, 7, 9);
  EXPECT_EQ(time.getTimeStr4(), "14:07:09:000");
  time.setTime(2024, 3, 5, 14, 7, 9, 42);
  buffer << 1234567 << ' ' << 1234.5 << ' ' << 0.5L << ' ' << time << ' ' << foreign::Opaque{12345};
  const std::string text = buffer;
  int number = 0;
  double fraction = 0;
  long double half = 0;
  Time read;
  buffer >> number >> fraction >> half >> read;
  std::locale::global(before);
  EXPECT_EQ(text, "1234567 1234.5 0.5 5.3.2024 14:7:9:42 #12345");
  EXPECT_EQ(number, 1234567);
  EXPECT_EQ(fraction + half, 1235);
  EXPECT_EQ(read.getLastTime(), time.getLastTime());
  EXPECT_EQ(buffer, " #12345");
}

TEST(ValueText, WritesNothingBetweenValues) {
  std::string buffer = "0";
  char array[] = "array";
  const char* literal = "lit\0eral";
  buffer << 'x' << true << false << std::string("a\0b", 3) << literal << array << JsonValue{"{}"} << L"\u00E9"
         << std::wstring(L"\u20AC") << std::string_view("view") << foreign::Opaque{7} << static_cast<signed char>('s');
  EXPECT_EQ(buffer, std::string("0xtruefalsea\0blitarray{}\xC3\xA9\xE2\x82\xACview#7s", 36));
  EXPECT_EQ(written(uuids::uuid()), "00000000-0000-0000-0000-000000000000");
  buffer = "ab";
  buffer << buffer << JsonValue{buffer} << buffer.c_str();
  EXPECT_EQ(buffer, "abababababababab");
}

TEST(ValueText, WritesWhatAStreamHoldsThatFailed) {
  std::string buffer = "before ";
  buffer << foreign::Failing{};
  EXPECT_EQ(buffer, "before half");
}

TEST(ValueText, ExactNumbersAreShort) {
  std::string buffer;
  buffer << exact(0.1) << ' ' << exact(0.1F) << ' ' << exact(1.0 / 3) << ' ' << exact(-1234567.0) << ' '
         << exact(std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(buffer, "0.1 0.1 0.3333333333333333 -1234567 5e-324");
}

TEST(ValueText, AMapMayHoldTheBuffer) {
  StringMap map = {{"a", std::string(50, 'x')}, {"b", "y"}};
  map["a"] << map;
  EXPECT_EQ(map["a"], std::string(50, 'x') + "{ \"a\"=>\"" + std::string(50, 'x') + "{\" \"b\"=>\"y\" } ");
}

TEST(ValueText, AMapMayOwnTheBufferThatItIsReadFrom) {
  StringMap map = {{"a", "{ \"" + std::string(50, 'k') + "\"=>\"v\" } rest"}};
  map["a"] >> map;
  EXPECT_EQ(map, (StringMap{{std::string(50, 'k'), "v"}}));
}

}  // namespace
