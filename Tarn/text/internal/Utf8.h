// The one decoder and the one encoder of UTF-8.
#ifndef TARN_TEXT_INTERNAL_UTF8_H_
#define TARN_TEXT_INTERNAL_UTF8_H_

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace Tarn::internal {

struct WideCharacter {
  char16_t value;
  std::ptrdiff_t size;  // in bytes
};

// Decodes a sequence, of which `byteAt` gives each byte, to the low 16 bits of its code point. Continuation bytes are
// not validated.
template <class ByteAt>
inline WideCharacter decodeUtf8By(ByteAt byteAt) {
  const auto valueAt = [byteAt](std::ptrdiff_t at) { return unsigned{static_cast<unsigned char>(byteAt(at))}; };
  const auto lowBits = [valueAt](std::ptrdiff_t at) { return valueAt(at) & 0x3FU; };
  const unsigned lead = valueAt(0);
  const auto two = [&] { return lead << 6U | lowBits(1); };
  const auto three = [&] { return two() << 6U | lowBits(2); };
  if (0xE0 <= lead && lead < 0xF0) return {static_cast<char16_t>(three()), 3};
  if (0xC0 <= lead && lead < 0xE0) return {static_cast<char16_t>(two() & 0x7FFU), 2};
  if (lead < 0x80) return {static_cast<char16_t>(lead), 1};
  if (lead < 0xF0 || lead > 0xF7) throw std::invalid_argument("Invalid UTF-8 byte encountered.");
  return {static_cast<char16_t>(three() << 6U | lowBits(3)), 4};
}

// Decodes the sequence at the front of four bytes.
inline WideCharacter decodeUtf8(const char* bytes) {
  return decodeUtf8By([bytes](std::ptrdiff_t at) { return bytes[at]; });
}

// Decodes the sequence that begins a text, which is not empty. Bytes missing at its end count as zero.
inline WideCharacter decodeUtf8(const char* at, const char* end) {
  const std::ptrdiff_t size = end - at;
  if (size >= 4) return decodeUtf8(at);
  const WideCharacter character = decodeUtf8By([at, size](std::ptrdiff_t i) { return i < size ? at[i] : '\0'; });
  return {character.value, std::min(character.size, size)};
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
