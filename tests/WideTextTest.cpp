#include "Tarn/text/WideText.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "tests/Plain.h"
#include "tests/properties/Input.h"

namespace {

using namespace Tarn;

TEST(WideText, DecodesEveryBeginning) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string whole = {static_cast<char>(first), static_cast<char>(second), '\xA2', 'x', '\xF1'};
      for (std::size_t size = 1; size <= whole.size(); ++size) {
        const std::string text = whole.substr(0, size);
        std::optional<std::wstring> found;
        wordsOf<std::invalid_argument>([&] { found = wide(text); });
        ASSERT_EQ(found, plainWide(text)) << testing::PrintToString(text);
      }
    }
  }
}

TEST(WideText, PointersCountToTheirEnd) {
  const unsigned char text[] = {'a', 0, 'b', 0};
  EXPECT_EQ(wide(text), L"a");
  EXPECT_EQ(wide(text, 3), std::wstring(L"a\0b", 3));
  EXPECT_EQ(wide(std::string_view("a\0bc", 3)) + wide(std::string_view()), std::wstring(L"a\0b", 3));
  EXPECT_EQ(wide("\xF0\x9F\x98\x80"), L"\uF600");
  // Longer than the pieces that are decoded at once, none of which ends with a block.
  EXPECT_EQ(wide("\xC3\xA9" + std::string(10000, 'b')), L"\u00E9" + std::wstring(10000, L'b'));
  EXPECT_EQ(getStringEnd<char>(), '\0');
  EXPECT_EQ(getStringEnd<wchar_t>(), L'\0');
}

TEST(WideText, NarrowsLatin1InTheClassicLocale) {
  std::wstring text;
  std::string bytes;
  const unsigned last = sizeof(wchar_t) > 2 ? 0x10FFFF : 0xFFFF;
  for (unsigned unit = 0; unit <= last; unit += unit < 0xFFFF ? 1 : 0x51) {  // Above: every low byte.
    text += static_cast<wchar_t>(unit);
    bytes += unit <= 0xFF ? static_cast<char>(unit) : '?';
  }
  EXPECT_EQ(narrow(text, '?'), bytes);
  EXPECT_EQ(narrow(std::wstring(2, std::numeric_limits<wchar_t>::max()) + L'a', '\xFE'),
            "\xFE\xFE"
            "a");
}

// Narrows one character only, to another.
struct OddFacet : std::ctype<wchar_t> {
  const wchar_t* do_narrow(const wchar_t* from, const wchar_t* to, char replacement, char* out) const override {
    for (; from != to; ++from) *out++ = *from == L'a' ? 'A' : replacement;
    return to;
  }
};

TEST(WideText, NarrowsByAnotherGlobalLocale) {
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new OddFacet));
  const std::string text = narrow(L"ab\u00E9", '-');
  std::locale::global(before);
  EXPECT_EQ(text, "A--");
}

TEST(WideText, StreamsAsUtf8) {
  const std::pair<unsigned, const char*> rows[] = {
      {0xD83D, "\xED\xA0\xBD"},       {0xFFFF, "\xEF\xBF\xBF"},   {0x10000, "\xF0\x90\x80\x80"},
      {0x10FFFF, "\xF4\x8F\xBF\xBF"}, {0x110000, "\xEF\xBF\xBD"}, {0xFFFFFFFF, "\xEF\xBF\xBD"},
  };
  for (const auto& [unit, bytes] : rows) {
    if (unit > std::numeric_limits<std::make_unsigned_t<wchar_t>>::max()) continue;  // Needs 32 bits.
    std::ostringstream stream;
    stream << std::wstring(1, static_cast<wchar_t>(unit));
    EXPECT_EQ(stream.str(), bytes) << unit;
  }
  std::ostringstream stream;
  stream << std::setw(8) << std::setfill('.') << std::wstring(L"\u00E9\u20AC") << L"x" << std::left << std::setw(3)
         << L"y" << std::setw(4) << std::wstring(L"a\0b", 3) << L'|' * 1;
  EXPECT_EQ(stream.str(), std::string("...\xC3\xA9\xE2\x82\xACxy..a\0b.124", 19));
  EXPECT_EQ(stream.width(), 0);
}

}  // namespace
