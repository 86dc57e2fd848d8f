// The one decoder and the one encoder of UTF-8.
#ifndef TARN_TEXT_INTERNAL_UTF8_H_
#define TARN_TEXT_INTERNAL_UTF8_H_

#include <stdexcept>
#include <string>

namespace Tarn::internal {

// Takes one sequence from the front of a range that is not empty and gives its low 16 bits. Continuation bytes are not
// checked, and missing ones count as zero.
inline char16_t takeWideCharacter(const char*& at, const char* end) {
  const auto lead = static_cast<unsigned char>(*at++);
  if (lead < 0x80) return lead;
  if (lead < 0xC0 || lead > 0xF7) throw std::invalid_argument("Invalid UTF-8 byte encountered.");
  const unsigned following = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
  unsigned value = lead & (0x3FU >> following);
  for (unsigned i = 0; i < following; ++i) {
    value <<= 6U;
    if (at != end) value |= static_cast<unsigned char>(*at++) & 0x3FU;
  }
  return static_cast<char16_t>(value);
}

// Writes the UTF-8 of a value up to 0x10FFFF, surrogates like any other, to `out`, which has room for four bytes.
// Gives the end of what was written.
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
