#include "Tarn/text/Escapes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "Tarn/text/StringUtilities.h"
#include "Tarn/text/WideText.h"
#include "tests/Generate.h"
#include "tests/Plain.h"

namespace {

using namespace Tarn;
using namespace std::string_view_literals;

struct Unescape {
  int line;
  std::string_view name, text, plain;
  int result;
};
constexpr Unescape kUnescapes[] = {
    {__LINE__, "empty", "", "", -1},
    {__LINE__, "each short escape", R"(a\n\r\"\\z)", "a\n\r\"\\z", -1},
    {__LINE__, "last backslash is dropped", R"(abc\)", "abc", -1},
    {__LINE__, "either letter case", R"(\u00e9\u20Ac)", "\xC3\xA9\xE2\x82\xAC", -1},
    {__LINE__, "surrogates one by one", R"(\uD83D\uDE00)", "\xED\xA0\xBD\xED\xB8\x80", -1},
    {__LINE__, "NUL", R"(\u0000)", std::string_view("\0", 1), -1},
    {__LINE__, "no such escape", R"(ab\tc)", R"(ab\tc)", 2},
    {__LINE__, "too few digits", R"(ab\u12)", R"(ab\u12)", 2},
    {__LINE__, "a good one before a bad one", R"(\n\u12G4)", R"(\n\u12G4)", 2},
    {__LINE__, "an escaped backslash escapes nothing", R"(\\u12G4)", R"(\u12G4)", -1},
};

TEST(Escapes, Unescape) {
  for (const Unescape& row : kUnescapes) {
    testing::ScopedTrace at(__FILE__, row.line, row.name.data());
    std::string text(row.text);
    EXPECT_EQ(escToControls(text, true), row.result);
    EXPECT_EQ(text, row.plain);
  }
}

// What a result keeps is at most twice its size, whatever the beginning of the text makes one expect.
TEST(Escapes, ResultsKeepNoMoreThanTwiceTheirSize) {
  const std::string foreign = "\xE4\xB8\xAD\xE6\x96\x87";
  for (const std::size_t size : {100U, 10000U, 1000000U}) {
    std::string text;
    while (text.size() < 1000) text += foreign;
    text += std::string(size, 'a');
    std::string escaped = text;
    controlsToEsc(escaped, true);
    EXPECT_LE(escaped.capacity(), 2 * escaped.size());
    EXPECT_LE(wide(text).capacity(), 2 * wide(text).size());
    std::string own = text;
    replaceAll(own, own, std::string("b"));
    EXPECT_EQ(own, "b");
    std::wstring units = wide(std::string(size, 'a') + foreign);
    EXPECT_LE(units.capacity(), 2 * units.size());
  }
}

// A locale in which the letter x is the only space.
std::locale oddLocale() {
  static std::ctype_base::mask table[256];
  table[static_cast<unsigned char>('x')] = std::ctype_base::space;
  return {std::locale::classic(), new std::ctype<char>(table)};
}

TEST(Escapes, EatWsKeepsTheFirstLocaleOfEachThread) {
  const auto rest = [](const std::string& text, const std::locale& locale) {
    std::istringstream stream(text);
    stream.imbue(locale);
    stream >> eatWS;
    const std::ios::iostate state = stream.rdstate();
    std::string left(std::istreambuf_iterator<char>(stream), {});
    EXPECT_EQ(state, left.empty() ? std::ios::eofbit : std::ios::goodbit) << text;
    return left;
  };
  std::thread([&rest] {
    EXPECT_EQ(rest("  \t\v\n\f\r\x1F"
                   "abc ",
                   std::locale::classic()),
              "\x1F"
              "abc ");
    EXPECT_EQ(rest(" \x85 ", std::locale::classic()), "\x85 ");
    EXPECT_EQ(rest(" xa", oddLocale()), "xa");
  }).join();
  std::thread([&rest] {
    EXPECT_EQ(rest("xx a", oddLocale()), " a");
    EXPECT_EQ(rest("x a", std::locale::classic()), " a");
    EXPECT_EQ(rest("xx", std::locale::classic()), "");
    EXPECT_EQ(rest("", std::locale::classic()), "");
  }).join();
}

TEST(Escapes, EatwhiteKeepsATextOfNothingElse) {
  const std::pair<std::string, std::string> rows[] = {
      {"  abc ", "abc "}, {"abc", "abc"}, {"   ", "   "}, {"", ""}, {std::string("\0\x7F\x80", 3), "\x80"}};
  for (const auto& [text, expected] : rows) {
    std::string eaten = text;
    eatwhite(eaten);
    EXPECT_EQ(eaten, expected);
  }
  for (int byte = 0; byte < 256; ++byte) {
    std::string text = {static_cast<char>(byte), 'a'};
    const std::string expected = byte <= ' ' || byte == 0x7F ? "a" : text;
    eatwhite(text);
    EXPECT_EQ(text, expected) << byte;
  }
}

}  // namespace
