#include "Tarn/text/StringUtilities.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/Growth.h"

namespace {

using namespace Tarn;

bool isIn(std::string_view set, char character) { return set.find(character) != std::string_view::npos; }

constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

TEST(StringUtilities, ClassesOfEveryByte) {
  for (int byte = 0; byte < 256; ++byte) {
    testing::ScopedTrace at(__FILE__, __LINE__, std::to_string(byte));
    const char character = static_cast<char>(byte);
    const bool number = isIn("0123456789+-.", character);
    for (const std::size_t size : {1U, 40U}) {  // Byte by byte, and in blocks.
      const std::string text(size, character);
      EXPECT_EQ(findAlphaNum(text, 0), isAlphaNum(character) ? 0 : -1);
      EXPECT_EQ(findValidNumberChar(text, 0), isValidNumberChar(character) ? 0 : -1);
      EXPECT_EQ(findNonWS(text, 0), (byte > 0x20 && byte < 0x7F) || byte >= 0x80 ? 0 : -1);
      EXPECT_EQ(isAscii(text), byte < 0x80);
      EXPECT_EQ(trim_copy(text).empty(), byte == ' ' || (byte >= 9 && byte <= 13));
    }
    EXPECT_EQ(isAlphaNum(character), number || isIn(kLetters, character));
    EXPECT_EQ(isValidNumberChar(character), number || isIn("eE", character));
    for (int other = 0; other < 256; ++other) {
      const auto fold = [](int code) { return code >= 'A' && code <= 'Z' ? code + 32 : code; };
      const int order = fold(byte) - fold(other);
      for (const std::size_t before : {0U, 15U, 16U, 38U}) {
        const std::string same(before, 'x');
        const std::string text = same + character + 'y';
        const int result = compareIgnoreCase(text, same + static_cast<char>(other) + (byte == 0 ? 'z' : 'Y'));
        EXPECT_TRUE(order < 0 ? result < 0 : order > 0 ? result > 0 : result == 0) << other << ' ' << before;
      }
    }
  }
}

TEST(StringUtilities, SearchesFromAStart) {
  const std::string text("\0 a\0,b", 6);
  constexpr int kFound[] = {2, 2, 2, 5, 5, 5};
  for (int start = 0; start < 6; ++start) EXPECT_EQ(findAlphaNum(text, start), kFound[start]) << start;
  for (const int start : {-1, 6, 7, -2147483647 - 1, 2147483647}) {
    EXPECT_EQ(findAlphaNum(text, start), -1);
    EXPECT_EQ(findNonWS(text, start), -1);
    EXPECT_EQ(findValidNumberChar(text, start), -1);
    EXPECT_EQ(findLastOf(text, 'a', start), -1);
  }
  EXPECT_EQ(findAlphaNum("", 0), -1);
}

TEST(StringUtilities, ReplacesTheTextByItself) {
  std::string text = "abab";
  replaceAll(text, "a", text);
  EXPECT_EQ(text, "ababbababb");
  replaceAll(text, text, "x");
  EXPECT_EQ(text, "x");
  replaceAll(text, text, text);
  EXPECT_EQ(text, "x");
  std::string many(300000, 'a');
  replaceAll(many, "a", "bc");
  EXPECT_EQ(many.size(), 600000U);
}

// In texts that repeat themselves, too.
TEST(StringUtilities, SearchesAreLinear) {
  expectLinear("searches", 5000, [](std::size_t size) {
    const std::string text(size, 'a');
    const std::string run(size / 3, 'a');
    const std::string needle = run + 'b' + run;
    EXPECT_EQ(findLastOf(text, needle), -1);
    EXPECT_EQ(findLastOf(needle + text, needle), 0);
    std::string replaced = text + needle + needle + text;
    replaceAll(replaced, needle, "c");
    EXPECT_EQ(replaced, text + "cc" + text);
    EXPECT_EQ(findLastOf(text, 'b', 0), -1);
    EXPECT_EQ(compareIgnoreCase(text, std::string(size, 'A')), 0);
  });
}

struct Trim {
  int line;
  std::string_view text, left, right, both;
};
constexpr Trim kTrims[] = {
    {__LINE__, "", "", "", ""},
    {__LINE__, "  a b  ", "a b  ", "  a b", "a b"},
    {__LINE__, "\t\n\v\f\r ", "", "", ""},
    {__LINE__, "\xA0 a\xC2\xA0", "\xA0 a\xC2\xA0", "\xA0 a\xC2\xA0", "\xA0 a\xC2\xA0"},
    {__LINE__, std::string_view(" \0 ", 3), std::string_view("\0 ", 2), std::string_view(" \0", 2),
     std::string_view("\0", 1)},
};

TEST(StringUtilities, Trims) {
  for (const Trim& row : kTrims) {
    testing::ScopedTrace at(__FILE__, row.line, "");
    EXPECT_EQ(ltrim_copy(std::string(row.text)), row.left);
    EXPECT_EQ(rtrim_copy(std::string(row.text)), row.right);
    EXPECT_EQ(trim_copy(std::string(row.text)), row.both);
  }
}

// Each call that compiled before there were views has the meaning that it had.
TEST(StringUtilities, TakesTextsInEveryForm) {
  const char* const pointer = "ab";
  const std::string text = "ab";
  const std::string_view view = "ab";
  EXPECT_TRUE(startsWith("ab", "a") && startsWith(pointer, text) && startsWith(text, {}) && startsWith(view, "a") &&
              startsWith("ab", view) && startsWith(text, view) && startsWith(pointer, view) && startsWith({'a'}, "a"));
  EXPECT_TRUE(findLastOf("ab", "b") == 1 && findLastOf(text, view) == 0 && findLastOf({'a'}, 'a', 0) == 0);
  EXPECT_TRUE(compareIgnoreCase("AB", text) == 0 && compareIgnoreCase(view, "AB") == 0 &&
              compareIgnoreCase("a", L"A") == 0);
  EXPECT_TRUE(isAscii("a") && isAscii(view) && isAscii({}) && findAlphaNum("-", 0) == 0 && trim_copy(" a") == "a" &&
              trim_copy({' ', 'a'}) == "a" && trim_copy(view) == text);
}

TEST(StringUtilities, Joins) {
  EXPECT_EQ(implode({}, ", "), "");
  EXPECT_EQ(implode({"a"}, ", "), "a");
  EXPECT_EQ(implode({"", "a", "", "b", ""}, ", "), ", a, , b, ");
}

TEST(StringUtilities, ComparesWidths) {
  const std::string cut("ab\0x", 4);
  EXPECT_EQ(compareIgnoreCase(cut, "AB"), 0);
  EXPECT_GT(compareIgnoreCase("abc", cut), 0);
  EXPECT_EQ(compareIgnoreCase("\xC3\xA9X", L"\u00E9x"), 0);
  EXPECT_LT(compareIgnoreCase("\xC3\xA9", L"\u20AC"), 0);
  EXPECT_GT(compareIgnoreCase(L"\u20AC", "z"), 0);
  EXPECT_NE(compareIgnoreCase(L"\u00C9", L"\u00E9"), 0);
  EXPECT_LT(compareIgnoreCase(L"_", L"A"), 0);
  EXPECT_LT(compareIgnoreCase(L"a", L"ab"), 0);
  const auto isBadByte = testing::ThrowsMessage<std::invalid_argument>("Invalid UTF-8 byte encountered.");
  EXPECT_THAT([] { return compareIgnoreCase("b\xFF", L"a"); }, isBadByte);
  EXPECT_THAT([] { return compareIgnoreCase(L"a", std::string("b\0\x80", 3)); }, isBadByte);
}

}  // namespace
