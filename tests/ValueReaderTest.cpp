// Decisions of the reading rules, by the reader and by the buffer operators. The rules themselves are compared with
// their plain definitions on generated texts (properties/Readers.cpp).
#include "Tarn/text/ValueReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>

#include "Tarn/text/ValueText.h"
#include "Tarn/time/Time.h"
#include "tests/Growth.h"
#include "tests/Plain.h"
#include "tests/properties/Input.h"

namespace geometry {

// A type whose operator looks around and goes back, as streams allow: a number, and how much stands behind it.
struct Length {
  int number = 0;
  std::streamoff left = 0;
  bool isBounded = false;
};
std::istream& operator>>(std::istream& stream, Length& length) {
  stream >> length.number;
  const auto behind = stream.tellg();
  length.left = stream.seekg(0, std::ios::end).tellg() - behind;
  length.isBounded = !stream.seekg(1, std::ios::cur);
  stream.clear();
  return stream.seekg(behind);
}

}  // namespace geometry

namespace {

using namespace Tarn;

static_assert(!std::is_constructible_v<ValueReader, std::string>);
static_assert(std::is_constructible_v<ValueReader, std::string&> && std::is_constructible_v<ValueReader, const char*>);

std::string shown(signed char value) { return std::to_string(value); }
template <class T>
std::string shown(const T& value) {
  return written(value);
}

// What a read leaves: the value, '|', the rest, and '!' where it throws.
template <class T>
std::string read(const std::string& text, const T& before) {
  const auto readFrom = [&before](auto& source) {
    T value = before;
    const std::string error = wordsOf<std::out_of_range>([&] { source >> value; });
    EXPECT_TRUE(error.empty() || error == kNoValue) << error;
    return std::pair(shown(value) + '|', error.empty() ? "" : "!");
  };
  ValueReader reader(text);
  const auto [byReader, readerThrows] = readFrom(reader);
  std::string buffer = text;
  const auto [byBuffer, bufferThrows] = readFrom(buffer);
  EXPECT_EQ(byReader + std::string(reader.rest()) + readerThrows, byBuffer + buffer + bufferThrows);
  return byBuffer + buffer + bufferThrows;
}

constexpr const char* kId = "00010203-0405-0607-0809-0a0b0c0d0e0f";

std::string readChar(const std::string& text) { return read(text, 'b'); }
std::string readByte(const std::string& text) { return read(text, static_cast<signed char>(7)); }
std::string readBool(const std::string& text) { return read(text, true); }
std::string readString(const std::string& text) { return read<std::string>(text, "before"); }
std::string readMap(const std::string& text) { return read(text, StringMap{{"old", ""}}); }
std::string readUuid(const std::string& text) { return read(text, uuids::uuid()); }

struct Reading {
  int line;
  const char* name;
  std::string (*read)(const std::string& text);
  std::string text, left;
};

TEST(ValueReader, ReadsByItsRules) {
  const Reading rows[] = {
      {__LINE__, "UTF-8 is never skipped", readChar, " \xC3\xA9", "\xC3|\xA9"},
      {__LINE__, "no character is NUL", readChar, " \t", std::string("\0|", 2)},
      {__LINE__, "no number leaves a byte", readByte, " ,", "7| ,"},
      {__LINE__, "the low eight bits", readByte, "300,", "44|,"},
      {__LINE__, "no int leaves a byte", readByte, "99999999999 ", "7|99999999999 !"},
      {__LINE__, "no int at the end is the largest", readByte, "99999999999", "-1|"},
      {__LINE__, "a word in any letter case", readBool, " fAlSe,", "false|,"},
      {__LINE__, "the beginning of a word", readBool, "trueish", "true|ish"},
      {__LINE__, "another word stays", readBool, " maybe", "false| maybe"},
      {__LINE__, "one character of a number", readBool, ";-5", "true|5"},
      {__LINE__, "a number of any size", readBool, "18446744073709551616", "true|8446744073709551616"},
      {__LINE__, "nothing takes all", readBool, " ,", "false|"},
      {__LINE__, "one backslash escapes", readString, R"("a\"b"x)", R"(a\"b|x)"},
      {__LINE__, "two do not", readString, R"("a\\"x)", R"(a\\|x)"},
      {__LINE__, "nor do three", readString, R"("a\\\"x)", R"(a\\\|x)"},
      {__LINE__, "no closing quote takes all", readString, R"("open\")", R"(open\"|)"},
      {__LINE__, "a quote makes the first NUL an end", readString, std::string("\"a\" b\0c", 7), "a| b"},
      {__LINE__, "a line does not", readString, std::string("a\0b\nc", 5), std::string("a\0b|c", 5)},
      {__LINE__, "a line keeps its spaces", readString, " \"abc\"\n", " \"abc\"|"},
      {__LINE__, "any character opens", readMap, R"([ "a"=>"1"} x)", R"({ "a"=>"1" } | x)"},
      {__LINE__, "the first value wins", readMap, R"({ "k"=>"\\\\n" "k"=>"2" })", R"({ "k"=>"\\\\n" } |)"},
      {__LINE__, "what is malformed stays", readMap, R"({ "a"=>"1" junk)", R"({ "a"=>"1" } |junk)"},
      {__LINE__, "an arrow alone", readMap, "{=>a\n=>b\n}x", R"({ ""=>"a" } |x)"},
      {__LINE__, "an empty key", readMap, R"({ "=>"1" "a"=>"2" })", R"({ ""=>"1" "a"=>"2" } |)"},
      {__LINE__, "bad escapes stay", readMap, R"({ "\u00e9"=>"\t" })", R"({ "\u00E9"=>"\\t" } |)"},
      {__LINE__, "braces in quotes", readUuid, "\"{000102030405060708090A0B0C0D0E0F}\"5", kId + std::string("|5")},
      {__LINE__, "another text is taken, too", readUuid, " no\n5", shown(uuids::uuid()) + "|5"},
  };
  for (const Reading& row : rows) {
    testing::ScopedTrace at(__FILE__, row.line, row.name);
    EXPECT_EQ(row.read(row.text), row.left);
  }
}

TEST(ValueReader, StreamsSeek) {
  for (const std::string rest : {"-", " ", "m-"}) {
    const std::string text = '9' + rest;
    ValueReader reader(text);
    geometry::Length length;
    reader >> length;
    EXPECT_EQ(length.number, 9);
    EXPECT_EQ(length.left, static_cast<std::streamoff>(rest.size()));
    EXPECT_TRUE(length.isBounded);
    EXPECT_EQ(reader.rest(), rest);
  }
}

TEST(ValueReader, AFailureKeepsWhatCameBefore) {
  std::string buffer = "7 true, x rest";
  int number = 0;
  bool flag = false;
  int unread = 5;
  EXPECT_THAT([&] { buffer >> number >> flag >> unread; }, testing::ThrowsMessage<std::out_of_range>(kNoValue));
  EXPECT_TRUE(number == 7 && flag && unread == 0);
  EXPECT_EQ(buffer, "x rest");
}

TEST(ValueReader, ABufferMayBeItsOwnValue) {
  std::string buffer = "\"a long text that does not fit a small string\" rest";
  buffer >> buffer;
  EXPECT_EQ(buffer, "a long text that does not fit a small string");
}

// As a program does that looks for the next good value: whatever fails, a character is skipped.
template <class T>
void readAll(const std::string& text) {
  ValueReader reader(text);
  while (!reader.rest().empty()) {
    const std::size_t left = reader.rest().size();
    T value{};
    wordsOf<std::out_of_range>([&] { reader >> value; });
    if (reader.rest().size() == left) reader.skip(1);
  }
}

// As often as the text has characters, though nothing is there.
template <class T>
void readInVain(const std::string& text) {
  ValueReader reader(text);
  T value{};
  for (std::size_t i = 0; i < text.size(); ++i) reader >> value;
  EXPECT_EQ(reader.rest(), text);
}

std::string times(std::string_view piece, std::size_t count) {
  std::string text;
  while (count-- > 0) text += piece;
  return text;
}

TEST(ValueReader, ManyReadsAreLinear) {
  using Text = std::string (*)(std::size_t);
  constexpr Text kOfNumbers[] = {
      [](std::size_t n) { return std::string(n, '9') + ' '; },
      [](std::size_t n) { return std::string(n, '0') + "9999999999 "; },
      [](std::size_t n) { return '9' + std::string(n, '0') + "99999999999999999999 "; },
      [](std::size_t n) { return std::string(n, '9') + "e "; },
      [](std::size_t n) { return std::string(n, '9') + "e-9 "; },
      [](std::size_t n) { return std::string(n, '0') + "9e400 "; },
      [](std::size_t n) { return std::string(n, '9') + '.' + std::string(n, '9') + "e "; },
      [](std::size_t n) { return times("9,", n / 2); },
  };
  const auto expectLinearOf = [](Text text, auto... reads) {
    testing::ScopedTrace at(__FILE__, __LINE__, text(8));
    (expectLinear("reads", 1000, [&](std::size_t n) { reads(text(n)); }), ...);
  };
  for (const Text text : kOfNumbers) {
    expectLinearOf(text, readAll<int>, readAll<unsigned char>, readAll<double>, readAll<bool>);
  }
  expectLinearOf([](std::size_t n) { return std::string(n, ' ') + "maybe"; }, readInVain<bool>);
  expectLinearOf([](std::size_t n) { return std::string(n, ','); }, readInVain<int>);
  expectLinearOf([](std::size_t n) { return times("\"a\"", 4 * n) + std::string(n, 'x'); }, readAll<std::string>);
  expectLinearOf([](std::size_t n) { return '{' + times("=>a\n", 4 * n) + std::string(n, 'x'); }, readAll<StringMap>);
  expectLinearOf([](std::size_t n) { return std::string(n, '-') + '\n' + times("\"\"", n); }, readAll<uuids::uuid>);
}

// Records a line, as the header shows them: whatever stands between good ones, none of these is lost.
TEST(ValueReader, NoGarbageReachesTheNextRecord) {
  const std::string id = '"' + std::string(kId) + '"';
  const std::string kGarbage[] = {"\"a quote that nobody closes",
                                  std::string("\"a\0b\"", 5),
                                  id + " { \"a\"=>\"1\" } 5.3.2024 14:",
                                  id + " [ \"a\"=>\"1\" } 5.3.2024 14:7:9:42",
                                  "\xFF\xFE\x80",
                                  std::string(3000, '"'),
                                  std::string(3000, '9') + "e",
                                  "\\\"=>\""};
  std::string text;
  for (const std::string& garbage : kGarbage) {
    text << id << StringMap{{"a", "1\n\"2\""}} << Time() << '\n' << garbage << '\n';
  }
  ValueReader reader(text);
  std::size_t records = 0;
  while (const auto line = reader.takeLine()) {
    ValueReader record(*line);
    const bool isRecord = record.tryRead<uuids::uuid>() && record.tryRead<StringMap>() && record.tryRead<Time>();
    records += isRecord ? 1 : 0;
  }
  EXPECT_EQ(records, std::size(kGarbage));
}

}  // namespace
