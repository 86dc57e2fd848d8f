// Escapes, wide text and comparisons. Input: two texts.
#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "Tarn/text/Escapes.h"
#include "Tarn/text/StringUtilities.h"
#include "Tarn/text/WideText.h"
#include "tests/Plain.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn;

constexpr const char* kNoUtf8 = "Invalid UTF-8 byte encountered.";

void requireEscapes(const std::string& text, bool unicode) {
  const bool isText = plainWide(text).has_value();
  std::string escaped = text;
  const std::string error = wordsOf<std::invalid_argument>([&] { controlsToEsc(escaped, unicode); });
  require(error == (isText ? "" : kNoUtf8), "only bad text is not escaped");
  require(escaped == (isText ? plainEscape(text, unicode) : text), "a text is escaped by its rule, or stays");
  std::string plain = text;
  std::string expected = text;
  const int position = plainUnescape(expected, unicode);
  require(escToControls(plain, unicode) == position, "a malformed escape is found where the rule finds it");
  require(plain == expected, "a text is unescaped by its rule, or stays");
  const bool hasEscapes = text.find('\\') != std::string::npos;
  reached("a long text without an escape", text.size() > 8192 && !hasEscapes);
  reached("a long text unescaped", text.size() > 8192 && hasEscapes && position == -1);
  reached("a long text with a malformed escape", text.size() > 8192 && position > 0);
  reached("a long text escaped", text.size() > 2100 && isText && escaped != text);
  reached("a bad byte far behind", text.size() > 1100 && !isText && plainWide(text.substr(0, 1100)));
  if (!isText || !unicode) return;
  const std::wstring units = plainWide(text).value();
  std::string utf8;
  for (const wchar_t unit : units) utf8 += plainUtf8(static_cast<unsigned>(unit));
  require(escToControls(escaped, true) == -1 && escaped == utf8, "what was escaped comes back in shortest form");
  std::ostringstream stream;
  stream << units;
  require(stream.str() == utf8, "a stream shows wide text as UTF-8");
}

template <class Character>
std::basic_string<Character> folded(const std::basic_string<Character>& text) {
  std::basic_string<Character> result = text.c_str();
  for (Character& c : result) c = c >= 'A' && c <= 'Z' ? static_cast<Character>(c + 32) : c;
  return result;
}

int sign(int number) { return (number > 0) - (number < 0); }

// -2 for an exception.
template <class A, class B>
int comparison(const A& a, const B& b) {
  int result = -2;
  const std::string error = wordsOf<std::invalid_argument>([&] { result = sign(compareIgnoreCase(a, b)); });
  require(error.empty() || error == kNoUtf8, "only bad text is not compared");
  return result;
}

void requireComparisons(const std::string& a, const std::string& b) {
  // char_traits<char> compares unsigned codes, char_traits<wchar_t> those of wchar_t, which hold no sign here.
  require(comparison(a, b) == sign(folded(a).compare(folded(b))), "texts compare by their folded bytes");
  const auto wideA = plainWide(a);
  const auto wideB = plainWide(b);
  const int expected = wideA && wideB ? sign(folded(*wideA).compare(folded(*wideB))) : -2;
  if (wideB) require(comparison(a, *wideB) == expected, "text and wide text compare as wide texts");
  if (wideA) require(comparison(*wideA, b) == expected, "wide text and text compare as wide texts");
  if (wideA && wideB) require(comparison(*wideA, *wideB) == expected, "wide texts compare by their folded characters");
}

void requireWide(const std::string& text) {
  const auto expected = plainWide(text);
  std::wstring found;
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  require(wordsOf<std::invalid_argument>([&] { found = wide(bytes, text.size()); }) == (expected ? "" : kNoUtf8) &&
              found == expected.value_or(L""),
          "a text is decoded by its rule");
  require(!expected || wide(text) == found, "a string is decoded as its bytes are");
  reached("a long text decoded", expected && text.size() > 4200 && found.size() < text.size());
  std::string bytesBack = text;
  for (char& c : bytesBack) c = static_cast<unsigned char>(c) < 0x80 ? c : '?';
  const std::string narrowed = narrow(found, '?');
  require(narrowed.size() == found.size(), "each character is one byte");
  for (std::size_t i = 0; i < found.size(); ++i) {
    require(narrowed[i] == static_cast<char>(found[i] <= 0xFF ? found[i] : L'?'), "Latin-1 is its own byte");
  }
}

}  // namespace

void checkTexts(Input input) {
  const std::string a = input.text();
  const std::string b = input.rest();
  for (const bool unicode : {true, false}) {
    requireEscapes(a, unicode);
    requireEscapes(b, unicode);
  }
  requireComparisons(a, b);
  requireComparisons(b + a, folded(b) + b);
  reached("a difference far behind", b.size() > 200 && b.find('\0') == std::string::npos && folded(a) != folded(b));
  requireWide(a);
  requireWide(b);
}
