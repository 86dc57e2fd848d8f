#include "Tarn/text/ValueText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <locale>
#include <stdexcept>

#include "Tarn/time/Time.h"
#include "tests/Generate.h"
#include "tests/Plain.h"

namespace foreign {

struct Opaque {
  int number;
};
std::ostream& operator<<(std::ostream& stream, const Opaque& opaque) { return stream << '#' << opaque.number; }

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

template <class T>
void expectAsStreamed(T value) {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream << value;
  EXPECT_EQ(written(value), stream.str());
}

TEST(ValueText, WritesNumbersAsStreamsDo) {
  Generate generate(20);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t bits = generate.below(std::numeric_limits<std::uint64_t>::max()) >> generate.below(64);
    expectAsStreamed(static_cast<short>(bits));
    expectAsStreamed(static_cast<unsigned>(bits));
    expectAsStreamed(static_cast<long>(bits));
    expectAsStreamed(static_cast<unsigned long long>(bits));
    const auto number = std::bit_cast<double>(generate.below(std::numeric_limits<std::uint64_t>::max()));
    if (number == number) expectAsStreamed(number);  // Runtimes differ in the names of what is no number.
    expectAsStreamed(static_cast<double>(bits) / 1000);
    expectAsStreamed(static_cast<float>(bits));
  }
  expectAsStreamed(std::numeric_limits<long long>::min());
  expectAsStreamed(-0.0);
}

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
  time.setTime(2024, 3, 5, 14, 7, 9, 42);
  buffer << 1234567 << ' ' << 1234.5 << ' ' << time << ' ' << foreign::Opaque{12345};
  const std::string text = buffer;
  int number = 0;
  double fraction = 0;
  Time read;
  buffer >> number >> fraction >> read;
  std::locale::global(before);
  EXPECT_EQ(text, "1234567 1234.5 5.3.2024 14:7:9:42 #12345");
  EXPECT_EQ(number, 1234567);
  EXPECT_EQ(fraction, 1234.5);
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
  EXPECT_EQ(buffer,
            "ababababababab"
            "ab");
}

TEST(ValueText, WritesWhatAStreamHoldsThatFailed) {
  std::string buffer = "before ";
  buffer << foreign::Failing{};
  EXPECT_EQ(buffer, "before half");
}

template <class T>
void expectExact(T value, const std::string& text) {
  std::string buffer;
  buffer << exact(value) << " rest";
  EXPECT_TRUE(text.empty() || buffer == text + " rest") << buffer;
  T back{};
  buffer >> back;
  EXPECT_EQ(back, value);
  EXPECT_EQ(buffer, " rest");
}

TEST(ValueText, ExactNumbersComeBack) {
  expectExact(0.1, "0.1");
  expectExact(0.1F, "0.1");
  expectExact(0.1L, "");
  expectExact(1.0 / 3, "0.3333333333333333");
  expectExact(-1234567.0, "-1234567");
  expectExact(std::numeric_limits<double>::max(), "1.7976931348623157e+308");
  expectExact(std::numeric_limits<double>::denorm_min(), "5e-324");
  expectExact(std::numeric_limits<float>::max(), "");
  Generate generate(5);
  for (int i = 0; i < 2000; ++i) {
    const auto number = std::bit_cast<double>(generate.below(std::numeric_limits<std::uint64_t>::max()));
    if (std::isfinite(number)) expectExact(number, "");
  }
}

TEST(ValueText, WritesMaps) {
  EXPECT_EQ(written(StringMap{}), "{ } ");
  EXPECT_EQ(written(StringMap{{"b", "x\"y"}, {"a", "1"}}), R"({ "a"=>"1" "b"=>"x\"y" } )");
  EXPECT_EQ(written(StringMap{{"", "\xC3\xA9\n\t"}}), "{ \"\"=>\"\\u00E9\\n\t\" } ");
}

TEST(ValueText, AMapWithBadTextKeepsTheEntriesBefore) {
  std::string buffer = "before";
  for (const StringMap& map :
       {StringMap{{"a", "1"}, {"b", "\x80"}, {"c", "2"}}, StringMap{{"a", "1"}, {"b\xFF", "2"}}}) {
    buffer = "before";
    EXPECT_THAT([&] { buffer << map; },
                testing::ThrowsMessage<std::invalid_argument>("Invalid UTF-8 byte encountered."));
    EXPECT_EQ(buffer, "before{ \"a\"=>\"1\"");
  }
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
