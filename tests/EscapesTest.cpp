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

void expectUnescape(const std::string& text) {
  for (const bool unicode : {true, false}) {
    std::string plain = text;
    std::string expected = text;
    const int position = plainUnescape(expected, unicode);
    EXPECT_EQ(escToControls(plain, unicode), position) << text;
    EXPECT_EQ(plain, expected) << text;
  }
}

TEST(Escapes, Escape) {
  Generate generate(5);
  for (int i = 0; i < 20000 && !HasFailure(); ++i) {
    const auto alphabet = i % 2 == 0 ? "abcdefgh\n\r\"\\\t\0\x7F\xC3\xA9\xE2\x82\xAC\xC0\xF0"sv
                                     : "abcdefghijklmnopqrst\n\r\"\\\t\0\x7F\xC3\xE2\xF0"sv;  // Nothing that throws.
    const std::string text = generate.text(alphabet, i % 100 == 1 ? 2000 : 40);
    for (const bool unicode : {true, false}) {
      std::string escaped = text;
      try {
        controlsToEsc(escaped, unicode);
        EXPECT_EQ(escaped, plainEscape(text, unicode));
      } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(), "Invalid UTF-8 byte encountered.");
        EXPECT_THROW(plainEscape(text, unicode), std::invalid_argument);
        EXPECT_EQ(escaped, text);
      }
    }
  }
}

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
    for (std::size_t size = 0; size < row.text.size(); ++size) expectUnescape(std::string(row.text.substr(0, size)));
  }
  Generate generate(6);
  for (int i = 0; i < 50000 && !HasFailure(); ++i) {
    expectUnescape(generate.text("\\\\\\uunr\"0aFGx\0\x80"sv, 16));
  }
  for (int i = 0; i < 5000 && !HasFailure(); ++i) {
    constexpr std::string_view kEscapes[] = {"\\n", "\\\\", "\\\"", "\\u20AC", "\\u00e9", "\\u0041", "\\r", "\\\\n"};
    std::string text;
    for (std::uint64_t n = generate.below(12); n > 0; --n) {
      text += generate.text("abcdefgh", 50);
      text += kEscapes[generate.below(std::size(kEscapes))];
    }
    expectUnescape(text + generate.text("a\\x", 2));
  }
}

TEST(Escapes, GiveEveryTextBack) {
  Generate generate(7);
  for (int i = 0; i < 5000; ++i) {
    std::ostringstream utf8;
    for (std::uint64_t n = generate.below(20); n > 0; --n) {
      const std::uint64_t limit = generate.below(2) == 0 ? 0x80 : 0x10000;
      utf8 << std::wstring(1, static_cast<wchar_t>(generate.below(limit)));
    }
    std::string text = utf8.str();
    controlsToEsc(text, true);
    EXPECT_TRUE(isAscii(text) && text.find_first_of("\n\r") == std::string::npos) << text;
    EXPECT_EQ(escToControls(text, true), -1);
    EXPECT_EQ(text, utf8.str());
  }
}

// A locale in which the letter x is the only space.
std::locale oddLocale() {
  static std::ctype_base::mask table[256];
  table[static_cast<unsigned char>('x')] = std::ctype_base::space;
  return {std::locale::classic(), new std::ctype<char>(table)};
}

// Long texts are unescaped by another road than short ones, with the same result.
TEST(Escapes, LongTextsAreLikeShortOnes) {
  constexpr std::string_view kPieces[] = {R"(\n)", R"(\")", R"(\\)", R"(\u20aC)", "a", "a text without an escape",
                                          "\t"};
  Generate generate(41);
  for (int i = 0; i < 100; ++i) {
    std::string text;
    std::string plain;
    while (text.size() < 12000) {
      const std::string_view piece = kPieces[generate.below(5 + static_cast<unsigned>(i) % 3)];
      std::string plainPiece(piece);
      ASSERT_EQ(escToControls(plainPiece, true), -1);
      text += piece;
      plain += plainPiece;
    }
    const std::string malformed = text + "\\u12G4" + text;
    std::string unescaped = malformed;
    EXPECT_EQ(escToControls(unescaped, true), static_cast<int>(text.size()));
    EXPECT_EQ(unescaped, malformed);
    unescaped = text;
    EXPECT_EQ(escToControls(unescaped, true), -1);
    ASSERT_EQ(unescaped, plain);
    text[generate.below(text.size())] = "\\u0Gn"[generate.below(5)];
    expectUnescape(text);
  }
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
