#include "Tarn/text/WideText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <locale>
#include <ostream>
#include <type_traits>

#include "Tarn/text/internal/Characters.h"
#include "Tarn/text/internal/GiveBack.h"
#include "Tarn/text/internal/Transcode.h"
#include "Tarn/text/internal/Utf8.h"

namespace Tarn {
namespace {

// The code point that a unit stands for on a narrow stream. Only a `wchar_t` of 32 bits can be out of range.
char32_t codePoint(wchar_t unit) {
  const char32_t value = static_cast<std::make_unsigned_t<wchar_t>>(unit);
  return value <= 0x10FFFF ? value : 0xFFFD;
}

// Widens sixteen bytes. The copy cannot alias `out`, so that the compiler vectorizes the loop.
void widenBlock(const char* from, wchar_t* out) {
  std::array<unsigned char, internal::kBlockSize> bytes;
  std::memcpy(bytes.data(), from, bytes.size());
  std::copy(bytes.begin(), bytes.end(), out);
}

// Decodes a long text piece by piece, each into room that has just been made: the processor's cache still holds it.
std::wstring decoded(std::string_view text) {
  using Done = internal::Transcoded<wchar_t>;
  constexpr std::ptrdiff_t kPiece = 4096;
  const char* const end = text.data() + text.size();
  const char* const whole = end - std::min<std::size_t>(text.size(), 3);  // In front of it, no sequence is cut short.
  const auto putCharacter = [whole, end](Done from) {
    const internal::WideCharacter character =
        from.at < whole ? internal::decodeUtf8(from.at) : internal::decodeUtf8(from.at, end);
    *from.out = character.value;
    return Done{from.at + character.size, from.out + 1};
  };
  const bool isShort = text.size() <= kPiece;
  std::wstring result(isShort ? text.size() : 0, L'\0');  // No sequence is shorter than its character.
  std::size_t size = 0;
  for (const char* at = text.data(); at != end;) {
    const std::ptrdiff_t left = end - at;
    if (!isShort) {
      result.reserve(text.size());
      result.resize(size + static_cast<std::size_t>(std::min(left, kPiece + 2 * internal::kBlockSize)));
    }
    const char* const stop = at + std::min(left, kPiece);
    const Done done =
        transcode(Done{at, result.data() + size}, stop, end, internal::kNonAscii, widenBlock, putCharacter);
    at = done.at;
    size = static_cast<std::size_t>(done.out - result.data());
  }
  result.erase(size);
  internal::giveBack(result);
  return result;
}

std::string toUtf8(const std::wstring& text) {
  std::string bytes;
  bytes.reserve(text.size());
  char sequence[4];
  for (const wchar_t unit : text) bytes.append(sequence, internal::putUtf8(sequence, codePoint(unit)));
  return bytes;
}

}  // namespace

std::wstring wide(const std::string& text) { return decoded(text); }

std::wstring wide(const unsigned char* text) { return decoded(reinterpret_cast<const char*>(text)); }

std::wstring wide(const unsigned char* text, unsigned long long length) {
  return decoded({reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)});
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
