#include "Tarn/text/WideText.h"

#include <algorithm>
#include <cstddef>
#include <locale>
#include <type_traits>

#include "Tarn/text/internal/Blocks.h"
#include "Tarn/text/internal/Utf8.h"

namespace Tarn {
namespace {

// The code point that a unit stands for on a narrow stream. Only a `wchar_t` of 32 bits can be out of range.
char32_t codePoint(wchar_t unit) {
  const char32_t value = static_cast<std::make_unsigned_t<wchar_t>>(unit);
  return value <= 0x10FFFF ? value : 0xFFFD;
}

std::string toUtf8(const std::wstring& text) {
  std::string bytes;
  bytes.reserve(text.size());
  char sequence[4];
  for (const wchar_t unit : text) bytes.append(sequence, internal::putUtf8(sequence, codePoint(unit)));
  return bytes;
}

}  // namespace

std::wstring wide(const std::string& text) {
  std::wstring result(text.size(), L'\0');  // One unit for each sequence: never more than bytes.
  wchar_t* out = result.data();
  const char* at = text.data();
  const char* const end = at + text.size();
  while (end - at >= 8) {
    const char* const next = at + 8;
    if (internal::findNonAscii(at, next) == next) {
      out = std::copy(at, next, out);
      at = next;
    } else {
      while (at < next) *out++ = internal::takeWideCharacter(at, end);
    }
  }
  while (at != end) *out++ = internal::takeWideCharacter(at, end);
  result.resize(static_cast<std::size_t>(out - result.data()));
  return result;
}

std::wstring wide(const unsigned char* text) { return wide(std::string(reinterpret_cast<const char*>(text))); }

std::wstring wide(const unsigned char* text, unsigned long long length) {
  return wide(std::string(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)));
}

std::string narrow(const std::wstring& text, char replacement) {
  std::string result(text.size(), '\0');
  const std::locale locale;
  if (locale == std::locale::classic()) {
    // The C library's own facet refuses U+0080 to U+00FF on some platforms.
    for (std::size_t i = 0; i < text.size(); ++i) {
      const char32_t unit = codePoint(text[i]);
      result[i] = unit <= 0xFF ? static_cast<char>(static_cast<unsigned char>(unit)) : replacement;
    }
  } else {
    const auto& facet = std::use_facet<std::ctype<wchar_t>>(locale);
    facet.narrow(text.data(), text.data() + text.size(), replacement, result.data());
  }
  return result;
}

template <>
char getStringEnd<char>() {
  return '\0';
}

template <>
wchar_t getStringEnd<wchar_t>() {
  return L'\0';
}

std::ostream& operator<<(std::ostream& stream, const std::wstring& text) { return stream << toUtf8(text); }

std::ostream& operator<<(std::ostream& stream, const wchar_t* text) { return stream << toUtf8(text); }

}  // namespace Tarn
