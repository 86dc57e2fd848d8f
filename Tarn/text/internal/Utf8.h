// The one decoder and the one encoder of UTF-8.
#ifndef TARN_TEXT_INTERNAL_UTF8_H_
#define TARN_TEXT_INTERNAL_UTF8_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>

namespace Tarn::internal {

struct WideCharacter {
  char16_t value;
  std::ptrdiff_t size;  // in bytes
};

// Decodes the sequence at the front of four bytes to the low 16 bits of its code point. Continuation bytes are not
// validated.
inline WideCharacter decodeUtf8(const char* bytes) {
  const auto lowBits = [bytes](int at) { return static_cast<unsigned char>(bytes[at]) & 0x3FU; };
  const unsigned lead = static_cast<unsigned char>(bytes[0]);
  const unsigned two = lead << 6U | lowBits(1);
  const unsigned three = two << 6U | lowBits(2);
  if (0xE0 <= lead && lead < 0xF0) return {static_cast<char16_t>(three), 3};
  if (0xC0 <= lead && lead < 0xE0) return {static_cast<char16_t>(two & 0x7FFU), 2};
  if (lead < 0x80) return {static_cast<char16_t>(lead), 1};
  if (lead < 0xF0 || lead > 0xF7) throw std::invalid_argument("Invalid UTF-8 byte encountered.");
  return {static_cast<char16_t>(three << 6U | lowBits(3)), 4};
}

// Decodes the sequence that begins a text, which is not empty. Bytes missing at its end count as zero.
inline WideCharacter decodeUtf8(const char* at, const char* end) {
  if (end - at >= 4) return decodeUtf8(at);
  std::array<char, 4> bytes{};
  std::copy(at, end, bytes.begin());
  const WideCharacter character = decodeUtf8(bytes.data());
  return {character.value, std::min(character.size, end - at)};
}

// Writes the UTF-8 of a value up to 0x10FFFF, surrogates like any other, to `out`, which has room for four bytes.
// Returns the end of what was written.
inline char* putUtf8(char* out, char32_t value) {
  const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(static_cast<unsigned char>(byte)); };
  if (value < 0x80) {
    put(value);
    return out;
  }
  if (value < 0x800) {
    put(0xC0U | (value >> 6U));
  } else {
    if (value < 0x10000) {
      put(0xE0U | (value >> 12U));
    } else {
      put(0xF0U | (value >> 18U));
      put(0x80U | ((value >> 12U) & 0x3FU));
    }
    put(0x80U | ((value >> 6U) & 0x3FU));
  }
  put(0x80U | (value & 0x3FU));
  return out;
}

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_UTF8_H_
