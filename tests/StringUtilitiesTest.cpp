#include "Tarn/text/StringUtilities.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "Tarn/text/internal/Search.h"
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
      for (const std::size_t before : {0U, 15U, 16U, 38U, 63U}) {  // What stands behind a NUL does not count.
        const std::string same(before, 'x');
        const std::string text = same + character + same + 'y';
        const int result = compareIgnoreCase(text, same + static_cast<char>(other) + same + (byte == 0 ? 'z' : 'Y'));
        EXPECT_EQ((result > 0) - (result < 0), (order > 0) - (order < 0)) << other << ' ' << before;
      }
    }
  }
}

// Of a text whose beginning is never looked at, so that the system need not find the memory.
TEST(StringUtilities, NoPositionIsBeyondAnInt) {
  constexpr int kLast = std::numeric_limits<int>::max();
  constexpr std::size_t kSize = std::size_t{kLast} + 3;
  const std::unique_ptr<char[]> memory(new char[kSize]);
  const std::string_view text(memory.get(), kSize);
  for (const std::size_t hit : {0U, 1U}) {
    const std::string_view end = hit == 0 ? "5\t\n" : "\t5\n";
    end.copy(memory.get() + kLast, 3);
    for (const int found : {findAlphaNum(text, kLast), findNonWS(text, kLast), findValidNumberChar(text, kLast),
                            findLastOf(text, '5', kLast)}) {
      EXPECT_EQ(found, hit == 0 ? kLast : -1);
    }
  }
}

TEST(StringUtilities, ReplacesTheTextByItself) {
  std::string text = "abab";
  replaceAll(text, text, "x");
  EXPECT_EQ(text, "x");
  replaceAll(text, text, text);
  EXPECT_EQ(text, "x");
}

// What takes over in texts that repeat themselves: every needle of two letters in texts made of them.
TEST(StringUtilities, SearchesByBorders) {
  const auto word = [](unsigned bits, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) text += (bits >> i & 1U) != 0 ? 'b' : 'a';
    return text;
  };
  for (unsigned bits = 0; bits < 1U << 16U; ++bits) {
    const std::string needle = word(bits, 8);
    const std::string text = needle + word(bits >> 3U, 13) + word(bits ^ bits >> 5U, 9);
    internal::Finder<internal::Backwards> finder(internal::Backwards(needle), 0);  // Takes over at once.
    const std::size_t found = finder.find(internal::Backwards(text), 0);
    ASSERT_EQ(text.size() - found - needle.size(), text.rfind(needle)) << text;
  }
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

TEST(StringUtilities, ComparesWidths) {
  EXPECT_EQ(compareIgnoreCase("\xC3\xA9X", L"\u00E9x"), 0);
  EXPECT_NE(compareIgnoreCase(L"\u00C9", L"\u00E9"), 0);  // Only A to Z have another case.
  EXPECT_LT(compareIgnoreCase(L"_", L"A"), 0);            // It is the lower case that counts.
}

}  // namespace
