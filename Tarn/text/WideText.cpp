#include "Tarn/text/WideText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <locale>
#include <type_traits>

#include "Tarn/text/internal/Characters.h"
#include "Tarn/text/internal/Utf8.h"

namespace Tarn {
namespace {

// The code point that a unit stands for on a narrow stream. Only a `wchar_t` of 32 bits can be out of range.
char32_t codePoint(wchar_t unit) {
  const char32_t value = static_cast<std::make_unsigned_t<wchar_t>>(unit);
  return value <= 0x10FFFF ? value : 0xFFFD;
}

// Widens sixteen bytes. By way of a copy, so that the compiler sees that `out` is elsewhere and takes many at once.
void widenBlock(const char* from, wchar_t* out) {
  std::array<unsigned char, internal::kBlockSize> bytes;
  std::memcpy(bytes.data(), from, bytes.size());
  std::copy(bytes.begin(), bytes.end(), out);
}

// Decodes the sequences that begin before `stop`, one unit for each and so never more than bytes, to `out`. Moves `at`
// behind the last and gives the end of what was written.
wchar_t* decode(const char*& at, const char* stop, const char* end, wchar_t* out) {
  const char* const lastFour = at + std::max<std::ptrdiff_t>(std::min(stop - at, end - at - 3), 0);
  while (at < lastFour) {
    if (lastFour - at >= internal::kBlockSize) {
      const auto nonAscii = decltype(internal::kNonAscii)::in(internal::Block::load(at));
      widenBlock(at, out);
      // Not `first()` for both: the next block would wait for it.
      const std::size_t ascii = nonAscii.any() ? nonAscii.first() : internal::kBlockSize;
      at += ascii;
      out += ascii;
      if (ascii == internal::kBlockSize) continue;
    }
    do {
      const internal::WideCharacter character = internal::decodeUtf8(at);
      *out++ = character.value;
      at += character.size;
    } while (at < lastFour && internal::isOf(*at, internal::kNonAscii));
  }
  while (at < stop) *out++ = internal::takeWideCharacter(at, end);
  return out;
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
  std::wstring result;
  result.reserve(text.size());
  std::array<wchar_t, 512> units;  // Spares to fill the result twice, as it cannot grow by units yet to be written.
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != end) {
    const char* const stop = at + std::min<std::ptrdiff_t>(end - at, units.size());
    result.append(units.data(), decode(at, stop, end, units.data()));
  }
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
