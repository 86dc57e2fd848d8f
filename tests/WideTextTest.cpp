#include "Tarn/text/WideText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iomanip>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "tests/Plain.h"

namespace {

using namespace Tarn;

void expectWide(const std::string& text) {
  const auto expected = plainWide(text);
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  if (expected) {
    EXPECT_EQ(wide(text), *expected) << testing::PrintToString(text);
    EXPECT_EQ(wide(bytes, text.size()), *expected);
  } else {
    EXPECT_THAT([&text] { return wide(text); },
                testing::ThrowsMessage<std::invalid_argument>("Invalid UTF-8 byte encountered."))
        << testing::PrintToString(text);
  }
}

TEST(WideText, DecodesEveryBeginning) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string text = {static_cast<char>(first), static_cast<char>(second), '\xA2', 'x', '\xF1'};
      for (std::size_t size = 1; size <= text.size(); ++size) expectWide(text.substr(0, size));
      if (HasFailure()) return;
    }
  }
}

TEST(WideText, PointersCountToTheirEnd) {
  const unsigned char text[] = {'a', 0, 'b', 0};
  EXPECT_EQ(wide(text), L"a");
  EXPECT_EQ(wide(text, 3), std::wstring(L"a\0b", 3));
  EXPECT_EQ(wide("\xF0\x9F\x98\x80"), L"\uF600");
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

struct Utf8 {
  int line;
  unsigned unit;
  std::string_view bytes;
};
constexpr Utf8 kUtf8[] = {
    {__LINE__, 0x7F, "\x7F"},
    {__LINE__, 0x80, "\xC2\x80"},
    {__LINE__, 0x7FF, "\xDF\xBF"},
    {__LINE__, 0x800, "\xE0\xA0\x80"},
    {__LINE__, 0xD83D, "\xED\xA0\xBD"},
    {__LINE__, 0xFFFF, "\xEF\xBF\xBF"},
    {__LINE__, 0x10000, "\xF0\x90\x80\x80"},
    {__LINE__, 0x10FFFF, "\xF4\x8F\xBF\xBF"},
    {__LINE__, 0x110000, "\xEF\xBF\xBD"},
    {__LINE__, 0xFFFFFFFF, "\xEF\xBF\xBD"},
};

TEST(WideText, StreamsAsUtf8) {
  for (const Utf8& row : kUtf8) {
    if (row.unit > std::numeric_limits<std::make_unsigned_t<wchar_t>>::max()) continue;  // Needs 32 bits.
    testing::ScopedTrace at(__FILE__, row.line, "");
    std::ostringstream stream;
    stream << std::wstring(1, static_cast<wchar_t>(row.unit));
    EXPECT_EQ(stream.str(), row.bytes);
  }
  std::ostringstream stream;
  stream << std::setw(8) << std::setfill('.') << std::wstring(L"\u00E9\u20AC") << L"x" << std::left << std::setw(3)
         << L"y" << std::setw(4) << std::wstring(L"a\0b", 3) << L'|' * 1;
  EXPECT_EQ(stream.str(), std::string("...\xC3\xA9\xE2\x82\xACxy..a\0b.124", 19));
  EXPECT_EQ(stream.width(), 0);
}

}  // namespace
