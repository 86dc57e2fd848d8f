#include "Tarn/text/Escapes.h"

#include <gtest/gtest.h>

#include <iterator>
#include <locale>
#include <sstream>
#include <thread>
#include <tuple>

#include "Tarn/text/StringUtilities.h"
#include "Tarn/text/WideText.h"

namespace {

using namespace Tarn;

// Decisions; the rules are compared with their plain definitions on generated texts (properties/Texts.cpp).
TEST(Escapes, Unescape) {
  const std::tuple<const char*, std::string, std::string, int> rows[] = {
      {"last backslash is dropped", R"(abc\)", "abc", -1},
      {"surrogates one by one", R"(\uD83D\uDE00)", "\xED\xA0\xBD\xED\xB8\x80", -1},
      {"NUL", R"(\u0000)", std::string(1, '\0'), -1},
      {"no such escape", R"(ab\tc)", R"(ab\tc)", 2},
      {"a good one before a bad one", R"(\n\u12G4)", R"(\n\u12G4)", 2},
      {"an escaped backslash escapes nothing", R"(\\u12G4)", R"(\u12G4)", -1},
  };
  for (const auto& [name, text, plain, position] : rows) {
    std::string unescaped = text;
    EXPECT_EQ(escToControls(unescaped, true), position) << name;
    EXPECT_EQ(unescaped, plain) << name;
  }
}

// What a result keeps is at most twice its size, whatever the beginning of the text makes one expect.
TEST(Escapes, ResultsKeepNoMoreThanTwiceTheirSize) {
  const auto expectSmall = [](const auto& result) { EXPECT_LE(result.capacity(), 2 * result.size()); };
  for (const std::size_t size : {100U, 10000U, 1000000U}) {
    std::string foreign;
    while (foreign.size() < 1000) foreign += "\xE4\xB8\xAD\xE6\x96\x87";
    std::string text = foreign + std::string(size, 'a');
    expectSmall(wide(text));
    expectSmall(wide(foreign));
    expectSmall(wide(std::string(size, 'a')));
    controlsToEsc(text, true);
    expectSmall(text);
    std::string replaced = "b" + text + "bb";
    replaceAll(replaced, text, "");
    replaceAll(replaced, "b", text);
    expectSmall(replaced);
    replaceAll(replaced, replaced, std::string(100, 'b'));
    expectSmall(replaced);
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
    EXPECT_EQ(rest("  \t\v\n\f\r\x1F abc ", std::locale::classic()), "\x1F abc ");
    EXPECT_EQ(rest(" \x85 ", std::locale::classic()), "\x85 ");
    EXPECT_EQ(rest(" xa", oddLocale()), "xa");
  }).join();
  std::thread([&rest] {
    EXPECT_EQ(rest("xx a", oddLocale()), " a");
    EXPECT_EQ(rest("x a", std::locale::classic()), " a");
    EXPECT_EQ(rest("xx", std::locale::classic()), "");
  }).join();
}

}  // namespace
