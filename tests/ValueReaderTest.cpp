// Every reading rule, by the reader and by the buffer operators at once.
#include "Tarn/text/ValueReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <sstream>

#include "Tarn/text/ValueText.h"
#include "Tarn/time/Time.h"
#include "tests/Growth.h"
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

// A type whose operator looks ahead and goes back, as streams allow: a number with an optional unit.
struct Length {
  int number;
  char unit;
};
std::istream& operator>>(std::istream& stream, Length& length) {
  stream >> length.number;
  const auto behind = stream.tellg();
  if (char unit = 0; stream >> unit && unit == 'm') {
    length.unit = unit;
  } else {
    stream.clear();
    stream.seekg(behind);
  }
  return stream;
}

}  // namespace geometry

namespace {

using namespace Tarn;
using geometry::Length;
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

TEST(ValueReader, StreamsSeek) {
  for (const auto& [text, rest] : std::map<std::string, std::string>{{"9-", "-"}, {"9m-", "-"}, {"9 ", " "}}) {
    ValueReader reader(text);
    Length length{};
    reader >> length;
    EXPECT_EQ(length.number, 9);
    EXPECT_EQ(reader.rest(), rest);
  }
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

// As a program does that looks for the next good value: whatever fails, a character is skipped.
template <class T>
void readAll(const std::string& text) {
  ValueReader reader(text);
  while (!reader.rest().empty()) {
    const std::size_t left = reader.rest().size();
    T value{};
    errorOf(reader, value);
    if (reader.rest().size() == left) reader.skip(1);
  }
}

std::string times(std::string_view piece, std::size_t count) {
  std::string text;
  while (count-- > 0) text += piece;
  return text;
}

TEST(ValueReader, ManyReadsAreLinear) {
  using Texts = std::string (*)(std::size_t);
  constexpr Texts kOfNumbers[] = {
      [](std::size_t n) { return std::string(n, '9') + ' '; },
      [](std::size_t n) { return std::string(n, '0') + "9999999999 "; },
      [](std::size_t n) { return '9' + std::string(n, '0') + "99999999999999999999 "; },
      [](std::size_t n) { return std::string(n, '9') + "e "; },
      [](std::size_t n) { return std::string(n, '9') + "e-9 "; },
      [](std::size_t n) { return std::string(n, '0') + "9e400 "; },
      [](std::size_t n) { return std::string(n, '9') + '.' + std::string(n, '9') + "e "; },
      [](std::size_t n) { return times("9,", n / 2); },
  };
  for (const Texts& text : kOfNumbers) {
    testing::ScopedTrace at(__FILE__, __LINE__, text(8));
    expectLinear("int", 1000, [&](std::size_t n) { readAll<int>(text(n)); });
    expectLinear("unsigned char", 1000, [&](std::size_t n) { readAll<unsigned char>(text(n)); });
    expectLinear("double", 1000, [&](std::size_t n) { readAll<double>(text(n)); });
    expectLinear("bool", 1000, [&](std::size_t n) { readAll<bool>(text(n)); });
  }
  expectLinear("no bool", 1000, [](std::size_t n) {
    const std::string text = std::string(n, ' ') + "maybe";
    ValueReader reader(text);
    bool value = true;
    for (std::size_t i = 0; i < n; ++i) reader >> value;
    EXPECT_EQ(reader.rest(), text);
  });
  expectLinear("nothing to read", 1000, [](std::size_t n) {
    const std::string text(n, ',');
    ValueReader reader(text);
    int value = 7;
    for (std::size_t i = 0; i < n; ++i) reader >> value;
    EXPECT_EQ(value, 7);
  });
  expectLinear("string", 1000, [](std::size_t n) { readAll<std::string>(times("\"a\"", n) + std::string(n, 'x')); });
  expectLinear("map", 1000, [](std::size_t n) { readAll<StringMap>('{' + times("=>a\n", n) + std::string(n, 'x')); });
  expectLinear("uuid", 1000,
               [](std::size_t n) { readAll<uuids::uuid>(std::string(n, '-') + '\n' + times("\"\"", n)); });
}

// What tries in vain, for each type; the reader stays.
TEST(ValueReader, TriesOnlyWholeValues) {
  const auto expectNone = []<class T>(T, std::vector<std::string> texts) {
    for (const std::string& text : texts) {
      ValueReader reader(text);
      EXPECT_FALSE(reader.tryRead<T>()) << text;
      EXPECT_EQ(reader.rest(), text);
    }
  };
  expectNone(0, {"", " ,", "x", "-", "99999999999", "2147483648 ", ". 5", "+ 5"});
  expectNone(0.0, {"", " ,", "x", "1e", "1e400", ".", "1e400 "});
  expectNone(static_cast<signed char>(0), {"", "x", "99999999999"});
  expectNone(static_cast<unsigned char>(0), {"", "x", "99999999999 "});
  expectNone(' ', {"", " \t\x7F"});
  expectNone(false, {"", " ,", "maybe", "tru"});
  expectNone(std::string(), {"", "\"open", "\"a\\\""});
  expectNone(JsonValue(), {"", "\"open"});
  expectNone(StringMap(), {"", "  ", "{", "{ \"a\"=>\"1\"", "{ \"a\"=>\"1\" junk }", "[ \"a\"=>\"1\" }", "}"});
  expectNone(uuids::uuid(), {"", "no", "00010203-0405-0607-0809-0a0b0c0d0e0f 5"});
  expectNone(Time(), {"", "x", "5.3.2024", "5.3.2024 14:7:9", "5.3.2024 14:7:9:x", ",,,,,,"});
  expectNone(Point(), {"", " ,", "3,", "3;x", "x"});
  ValueReader reader(std::string_view("-7 1e2x\"a\"{ \"b\"=>\"c\" } 300,TRUE 3,4 5.3.2024 14:7:9:42 z\n\"[1]\""));
  EXPECT_EQ(reader.tryRead<int>(), -7);
  EXPECT_EQ(reader.tryRead<double>(), 100);
  EXPECT_EQ(reader.tryRead<char>(), 'x');
  EXPECT_EQ(reader.tryRead<std::string>(), "a");
  EXPECT_EQ(reader.tryRead<StringMap>(), (StringMap{{"b", "c"}}));
  EXPECT_EQ(reader.tryRead<unsigned char>(), 44);
  EXPECT_EQ(reader.tryRead<bool>(), true);
  EXPECT_EQ(reader.tryRead<Point>(), (Point{3, 4}));
  EXPECT_EQ(reader.tryRead<Time>().value_or(Time()).getMSec(), 42);
  EXPECT_EQ(reader.takeLine(), " z");
  EXPECT_EQ(reader.tryRead<JsonValue>().value_or(JsonValue()).text, "[1]");
  EXPECT_EQ(reader.takeLine(), std::nullopt);
}

// Records a line, as the header shows them: whatever stands between good ones, none of these is lost.
TEST(ValueReader, NoGarbageReachesTheNextRecord) {
  const std::string id = "\"00010203-0405-0607-0809-0a0b0c0d0e0f\"";
  const std::string kGarbage[] = {
      "",
      "\"",
      "\"a quote that nobody closes",
      std::string("\"a\0b\"", 5),
      std::string("\0\0\0", 3),
      id.substr(0, 20),
      id + " { \"a\"=>\"1\"",
      id + " { \"a\"=>\"1\" } 5.3.2024 14:",
      id + " [ \"a\"=>\"1\" } 5.3.2024 14:7:9:42",
      "{ \"a\"=>\"1\" } " + id,
      "99999999999999999999999",
      "\xFF\xFE\x80",
      std::string(3000, '"'),
      std::string(3000, '9') + "e",
      "\\\"=>\"",
  };
  std::string text;
  for (const std::string& garbage : kGarbage) {
    text << id << StringMap{{"a", "1\n\"2\""}} << Time() << '\n' << garbage << '\n';
  }
  ValueReader reader(text);
  std::size_t records = 0;
  while (const auto line = reader.takeLine()) {
    ValueReader record(*line);
    const auto read = record.tryRead<uuids::uuid>();
    const auto map = record.tryRead<StringMap>();
    const auto time = record.tryRead<Time>();
    if (read && map && time) ++records;
  }
  EXPECT_EQ(records, std::size(kGarbage));
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
