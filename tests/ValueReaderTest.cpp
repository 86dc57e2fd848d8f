// Every reading rule, by the reader and by the buffer operators at once.
#include "Tarn/text/ValueReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <limits>
#include <sstream>

#include "Tarn/text/ValueText.h"
#include "tests/Generate.h"
#include "tests/Plain.h"

namespace geometry {

// A type with a stream operator of its own, which reads two numbers.
struct Point {
  int x, y;
  bool operator==(const Point&) const = default;
};
std::istream& operator>>(std::istream& stream, Point& point) {
  char comma = '\0';
  return stream >> point.x >> comma >> point.y;
}

}  // namespace geometry

namespace {

using namespace Tarn;
using geometry::Point;

static_assert(!std::is_constructible_v<ValueReader, std::string>);
static_assert(std::is_constructible_v<ValueReader, std::string&> && std::is_constructible_v<ValueReader, const char*>);

// What a read leaves: the value, the text, and an exception's words or none.
template <class T>
struct Outcome {
  T value;
  std::string rest, error;
  bool operator==(const Outcome&) const = default;
};

template <class Source, class T>
std::string errorOf(Source& source, T& value) {
  try {
    source >> value;
    return "";
  } catch (const std::out_of_range& error) {
    return error.what();
  }
}

// Reads both ways, which must agree.
template <class T>
Outcome<T> read(const std::string& text, T value = T()) {
  ValueReader reader(text);
  Outcome<T> byReader{value, "", ""};
  byReader.error = errorOf(reader, byReader.value);
  byReader.rest = reader.rest();
  Outcome<T> byBuffer{value, text, ""};
  byBuffer.error = errorOf(byBuffer.rest, byBuffer.value);
  EXPECT_EQ(byReader.rest, byBuffer.rest) << testing::PrintToString(text);
  EXPECT_EQ(byReader.error, byBuffer.error) << testing::PrintToString(text);
  EXPECT_TRUE(byReader.value == byBuffer.value) << testing::PrintToString(text);
  return byBuffer;
}

template <class T>
Outcome<T> plainRead(std::string text, T value) {
  const std::string error = plainTake(text, value);
  return {value, text, error};
}

template <class T>
void compareWithStream(unsigned seed, std::string_view alphabet) {
  Generate generate(seed);
  for (int i = 0; i < 20000 && !testing::Test::HasFailure(); ++i) {
    std::string text = generate.text(alphabet, i % 2 == 0 ? 8 : 26);
    const Outcome<T> expected = plainRead<T>(text, T{77});
    const Outcome<T> found = read<T>(text, T{77});
    EXPECT_EQ(found.value, expected.value) << testing::PrintToString(text);
    EXPECT_EQ(found.rest, expected.rest) << testing::PrintToString(text);
    EXPECT_EQ(found.error, expected.error) << testing::PrintToString(text);
  }
}

TEST(ValueReader, ReadsNumbersAsStreamsDo) {
  constexpr std::string_view kDigits("0123456789999+- ", 16);
  constexpr std::string_view kMixed("019+-.,exX \n\0", 13);
  compareWithStream<short>(10, kDigits);
  compareWithStream<unsigned short>(11, kDigits);
  compareWithStream<int>(12, kMixed);
  compareWithStream<unsigned>(13, kDigits);
  compareWithStream<long>(14, kDigits);
  compareWithStream<unsigned long>(15, kMixed);
  compareWithStream<long long>(16, kDigits);
  compareWithStream<unsigned long long>(17, kDigits);
  compareWithStream<double>(18, kMixed);
  compareWithStream<float>(19, kMixed);
  for (const char* text :
       {"9223372036854775807", "9223372036854775808", "-9223372036854775808", "-9223372036854775809",
        "18446744073709551615", "18446744073709551616", "-18446744073709551615", "-18446744073709551616"}) {
    for (const char* rest : {"", " x"}) {
      EXPECT_EQ(read<long long>(text + std::string(rest)), plainRead<long long>(text + std::string(rest), 0)) << text;
      EXPECT_EQ(read<unsigned long long>(text + std::string(rest)),
                plainRead<unsigned long long>(text + std::string(rest), 0))
          << text;
    }
  }
  for (const long long limit : {32767LL, 65535LL, 2147483647LL, 4294967295LL}) {
    for (const long long number : {limit, limit + 1, limit + 2, -limit, -limit - 1, -limit - 2}) {
      const std::string text = std::to_string(number);
      for (const char* rest : {"", " x"}) {
        EXPECT_EQ(read<short>(text + rest), plainRead<short>(text + rest, 0)) << text;
        EXPECT_EQ(read<unsigned short>(text + rest), plainRead<unsigned short>(text + rest, 0)) << text;
        EXPECT_EQ(read<int>(text + rest), plainRead<int>(text + rest, 0)) << text;
        EXPECT_EQ(read<unsigned>(text + rest), plainRead<unsigned>(text + rest, 0)) << text;
      }
    }
  }
}

template <class T>
struct Reading {
  int line;
  std::string text;
  T value;
  std::string rest, error;
};

template <class T, std::size_t kRows>
void expectReadings(const Reading<T> (&rows)[kRows], const T& before) {
  for (const Reading<T>& row : rows) {
    testing::ScopedTrace at(__FILE__, row.line, row.text);
    const Outcome<T> found = read<T>(row.text, before);
    EXPECT_EQ(found.value, row.value);
    EXPECT_EQ(found.rest, row.rest);
    EXPECT_EQ(found.error, row.error);
  }
}

TEST(ValueReader, Characters) {
  const Reading<char> chars[] = {
      {__LINE__, "  x y", 'x', " y", ""},
      {__LINE__, "   ", '\0', "", ""},
      {__LINE__, "", '\0', "", ""},
      {__LINE__, "\xC3\xA9", '\xC3', "\xA9", ""},
      {__LINE__, std::string("\0\x7F\x1F{", 4), '{', "", ""},
  };
  expectReadings(chars, 'b');
  const Reading<signed char> bytes[] = {
      {__LINE__, "300,", 44, ",", ""},
      {__LINE__, ", -1", -1, "", ""},
      {__LINE__, " ,", 7, " ,", ""},
      {__LINE__, " x5", 7, "x5", kNoValue},
      {__LINE__, "-", 0, "", ""},
      {__LINE__, "99999999999", -1, "", ""},
      {__LINE__, "99999999999 ", 7, "99999999999 ", kNoValue},
  };
  expectReadings<signed char>(bytes, 7);
  EXPECT_EQ(read<unsigned char>("-1 ").value, 0xFF);
}

TEST(ValueReader, Booleans) {
  const Reading<bool> rows[] = {
      {__LINE__, "TRUE", true, "", ""},
      {__LINE__, " False,", false, ",", ""},
      {__LINE__, " maybe", false, " maybe", ""},
      {__LINE__, "0", false, "", ""},
      {__LINE__, "", false, "", ""},
      {__LINE__, " ,", false, "", ""},
      {__LINE__, "trueish", true, "ish", ""},
      {__LINE__, "tru", false, "tru", ""},
      {__LINE__, "1", true, "", ""},
      {__LINE__, ";10", true, "0", ""},
      {__LINE__, "-5", true, "5", ""},
      {__LINE__, "+0009x", true, "0009x", ""},
      {__LINE__, "-0x1", false, "0x1", ""},
      {__LINE__, "+-1", false, "-1", ""},
      {__LINE__, ".5", false, "5", ""},
      {__LINE__, "4294967296", true, "294967296", ""},
      {__LINE__, "18446744073709551616", true, "8446744073709551616", ""},
  };
  expectReadings(rows, true);
}

TEST(ValueReader, Strings) {
  const Reading<std::string> rows[] = {
      {__LINE__, R"("abc" tail)", "abc", " tail", ""},
      {__LINE__, R"("a\"b"x)", R"(a\"b)", "x", ""},
      {__LINE__, R"("a\\"x)", R"(a\\)", "x", ""},
      {__LINE__, R"("a\\\"x)", R"(a\\\)", "x", ""},
      {__LINE__, R"("\"x"y)", R"(\"x)", "y", ""},
      {__LINE__, R"(""x)", "", "x", ""},
      {__LINE__, R"("open\")", R"(open\")", "", ""},
      {__LINE__, "\"", "", "", ""},
      {__LINE__, "\"a\nb\"c", "a\nb", "c", ""},
      {__LINE__, std::string("\"a\" b\0c", 7), "a", " b", ""},
      {__LINE__, std::string("\"a\0\" b", 6), "a", "", ""},
      {__LINE__, "line1\nline2", "line1", "line2", ""},
      {__LINE__, "\n\n", "", "\n", ""},
      {__LINE__, " \"abc\"", " \"abc\"", "", ""},
      {__LINE__, std::string("a\0b\nc\0", 6), std::string("a\0b", 3), std::string("c\0", 2), ""},
      {__LINE__, "", "", "", ""},
  };
  expectReadings(rows, std::string("before"));
  JsonValue json;
  std::string buffer = "\"[1]\"{}";
  ValueReader reader(buffer);
  reader >> json;
  EXPECT_EQ(json.text + '|' + std::string(reader.rest()), "[1]|{}");
  buffer >> json >> json;
  EXPECT_EQ(json.text + '|' + buffer, "{}|");
}

TEST(ValueReader, Maps) {
  const Reading<StringMap> rows[] = {
      {__LINE__, "", {}, "", ""},
      {__LINE__, "{ } ", {}, " ", ""},
      {__LINE__, R"(  { "a"=>"1" "b"=>"x\"y" } rest)", {{"a", "1"}, {"b", "x\"y"}}, " rest", ""},
      {__LINE__, R"([ "a"=>"1"})", {{"a", "1"}}, "", ""},
      {__LINE__, R"({ "k"=>"1" "k"=>"2" } )", {{"k", "1"}}, " ", ""},
      {__LINE__, R"({ "a"=>"1" junk)", {{"a", "1"}}, "junk", ""},
      {__LINE__, R"({ "a"=>"1"  )", {{"a", "1"}}, "  ", ""},
      {__LINE__, R"({=>"1" })", {{"", "1"}}, "", ""},
      {__LINE__, "{=>a\n=>b\n}x", {{"", "a"}}, "x", ""},
      {__LINE__, R"({ key"=>value})", {}, R"(key"=>value})", ""},
      {__LINE__, R"({ key"=>"value"})", {{"key\"", "value"}}, "", ""},
      {__LINE__, R"({ "a\u00e9"=>"\t" "b"=>"\n"})", {{"a\xC3\xA9", "\\t"}, {"b", "\n"}}, "", ""},
      {__LINE__, R"({ "a"=>"1\\\" } )", {{"a", "1\\"}}, " ", ""},
      {__LINE__, std::string("{ \"a\0b\"=>\"1\"\0 }", 16), {{"a", "1"}}, "", ""},
      {__LINE__, R"({ }"a"=>"1"})", {}, R"("a"=>"1"})", ""},
  };
  expectReadings(rows, StringMap{{"old", "entry"}});
}

// Texts of the pieces that strings and maps are made of.
std::string pieces(Generate& generate) {
  constexpr std::string_view kPieces[] = {"\"=>\"", "=>",   "\"",   "\" \"",   "\\",     "a", "b",
                                          "12",     " ",    "00",   "\n",      "{",      "}", "[",
                                          "-",      "\x7F", "tRue", "\\u00e9", {"\0", 1}};
  std::string text;
  for (std::uint64_t n = generate.below(20); n > 0; --n) text += kPieces[generate.below(std::size(kPieces))];
  return text;
}

TEST(ValueReader, ReadsAnyStringAndMapByTheirRules) {
  Generate generate(20);
  for (int i = 0; i < 30000 && !HasFailure(); ++i) {
    const std::string text = pieces(generate);
    std::string rest = text;
    const std::string value = plainString(rest);
    EXPECT_EQ(read<std::string>(text), (Outcome<std::string>{value, rest, ""})) << testing::PrintToString(text);
    rest = text;
    const StringMap map = plainMap(rest);
    EXPECT_EQ(read<StringMap>(text, {{"old", "entry"}}), (Outcome<StringMap>{map, rest, ""}))
        << testing::PrintToString(text);
  }
}

template <class T>
void readFromBoth(ValueReader& reader, std::string& buffer) {
  T byReader{};
  T byBuffer{};
  T expected{};
  std::string rest = buffer;
  const std::string error = plainTake(rest, expected);
  EXPECT_EQ(errorOf(reader, byReader), error);
  EXPECT_EQ(errorOf(buffer, byBuffer), error);
  EXPECT_EQ(byReader, expected);
  EXPECT_EQ(byBuffer, expected);
  EXPECT_EQ(reader.rest(), rest);
  EXPECT_EQ(buffer, rest);
}

// A reader remembers what it knows of the text; a buffer and the plain rules look at it anew.
TEST(ValueReader, ReadsOnByTheRules) {
  constexpr void (*kReads[])(ValueReader&, std::string&) = {
      readFromBoth<char>,   readFromBoth<unsigned char>, readFromBoth<bool>,      readFromBoth<int>,
      readFromBoth<double>, readFromBoth<std::string>,   readFromBoth<StringMap>, readFromBoth<uuids::uuid>};
  Generate generate(21);
  for (int i = 0; i < 20000 && !HasFailure(); ++i) {
    const std::string text = pieces(generate) + pieces(generate);
    std::string buffer = text;
    ValueReader reader(text);
    for (int reads = 0; reads < 8; ++reads) kReads[generate.below(std::size(kReads))](reader, buffer);
    EXPECT_FALSE(HasFailure()) << testing::PrintToString(text);
  }
}

TEST(ValueReader, Uuids) {
  const uuids::uuid good = *parseUuid("00010203-0405-0607-0809-0a0b0c0d0e0f");
  const uuids::uuid before = *parseUuid("00112233-4455-6677-8899-aabbccddeeff");
  const Reading<uuids::uuid> rows[] = {
      {__LINE__, "00010203-0405-0607-0809-0a0b0c0d0e0f", good, "", ""},
      {__LINE__, "\"{000102030405060708090A0B0C0D0E0F}\"5", good, "5", ""},
      {__LINE__, "00010203-0405-0607-0809-0a0b0c0d0e0f\n5", good, "5", ""},
      {__LINE__, "00010203-0405-0607-0809-0a0b0c0d0e0f 5", before, "", ""},
      {__LINE__, " 00010203-0405-0607-0809-0a0b0c0d0e0f", before, "", ""},
  };
  expectReadings(rows, before);
}

TEST(ValueReader, OtherTypes) {
  EXPECT_EQ(read<Point>(" (3,4)", {}), (Outcome<Point>{{3, 4}, ")", ""}));
  EXPECT_EQ(read<Point>("3,4", {}), (Outcome<Point>{{3, 4}, "", ""}));
  EXPECT_EQ(read<Point>(" 3,x,", {1, 2}).error, kNoValue);
  EXPECT_EQ(read<Point>(" 3,x,", {1, 2}).rest, "3,x,");
}

TEST(ValueReader, AFailureKeepsWhatCameBefore) {
  std::string buffer = "7 true, x rest";
  int number = 0;
  bool flag = false;
  int unread = 5;
  EXPECT_THAT([&] { buffer >> number >> flag >> unread; }, testing::ThrowsMessage<std::out_of_range>(kNoValue));
  EXPECT_EQ(number, 7);
  EXPECT_TRUE(flag);
  EXPECT_EQ(unread, 0);
  EXPECT_EQ(buffer, "x rest");
}

TEST(ValueReader, ABufferMayBeItsOwnValue) {
  std::string buffer = "\"a long text that does not fit a small string\" rest";
  buffer >> buffer;
  EXPECT_EQ(buffer, "a long text that does not fit a small string");
}

TEST(ValueReader, SkipsWithinTheText) {
  ValueReader reader("ab, c");
  reader.skip(2);
  EXPECT_TRUE(reader.skipToValue());
  EXPECT_EQ(reader.rest(), "c");
  reader.skip(7);
  EXPECT_EQ(reader.rest(), "");
  EXPECT_FALSE(reader.skipToValue());
}

// Each would take many minutes if every read looked at all the text again.
TEST(ValueReader, ManyReadsAreLinear) {
  constexpr int kMany = 300000;
  const std::string behind(60000000, 'x');
  std::string map = "{";
  std::string strings;
  for (int i = 0; i < kMany; ++i) {
    map += "=>a\n";
    strings += "\"a\"";
  }
  map += behind;
  strings += behind;
  StringMap entries;
  ValueReader mapReader(map);
  mapReader >> entries;
  EXPECT_EQ(entries, (StringMap{{"", "a"}}));
  EXPECT_EQ(mapReader.rest().size(), behind.size());
  ValueReader reader(strings);
  std::string value = "a";
  int count = -1;
  for (; value == "a"; ++count) reader >> value;
  EXPECT_EQ(count, kMany);
  EXPECT_EQ(value.size(), behind.size());
  const std::string zeros(6000000, '0');
  const std::string commas(20000000, ',');
  ValueReader zeroReader(zeros);
  ValueReader commaReader(commas);
  bool isSet = false;
  for (int i = 0; i < kMany; ++i) {
    zeroReader >> isSet;
    commaReader >> count;
    ASSERT_FALSE(isSet);
  }
  EXPECT_EQ(zeroReader.rest().size(), zeros.size() - kMany);
  EXPECT_EQ(count, kMany);
  EXPECT_EQ(commaReader.rest(), commas);
}

struct Word {
  int line;
  std::string text;
  std::optional<std::string> word;
  std::string rest;
  bool fails;
};

TEST(StreamForms, Words) {
  const std::optional<std::string> before = "before";
  const Word rows[] = {
      {__LINE__, "   abc def", "abc", " def", false},
      {__LINE__, R"("a\"b" c)", "a\"b", " c", false},
      {__LINE__, R"("a\nb"c)", "anb", "c", false},
      {__LINE__, "\"ab", "ab", "", true},
      {__LINE__, "\"ab\\", "ab", "", true},
      {__LINE__, "\"\"", "", "", false},
      {__LINE__, "abc", "abc", "", true},
      {__LINE__, "a\"b\xA0\x85 ", "a\"b\xA0\x85", " ", false},
      {__LINE__, " \t ", before, "", true},
      {__LINE__, "", before, "", true},
  };
  for (const Word& row : rows) {
    testing::ScopedTrace at(__FILE__, row.line, row.text);
    std::istringstream stream(row.text);
    std::optional<std::string> word = before;
    stream >> word;
    EXPECT_EQ(word, row.word);
    EXPECT_EQ(stream.fail(), row.fails);
    stream.clear();
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), row.rest);
  }
  std::optional<std::string> none;
  std::istringstream stream(" \"x\" ");
  stream >> none;
  EXPECT_EQ(none, "x");
}

TEST(StreamForms, Uuids) {
  std::istringstream stream("  00010203-0405-0607-0809-0a0b0c0d0e0f no \"{000102030405060708090A0B0C0D0E0F}\" ");
  uuids::uuid first;
  uuids::uuid second;
  uuids::uuid third;
  stream >> first >> second >> third;
  EXPECT_EQ(first.string(), "00010203-0405-0607-0809-0a0b0c0d0e0f");
  EXPECT_TRUE(second.is_nil());
  EXPECT_EQ(third, first);
  EXPECT_TRUE(stream.good());
  stream >> third;
  EXPECT_EQ(third, first);
  EXPECT_TRUE(stream.fail());
}

}  // namespace
