// Hexadecimal digits of either case.
#ifndef TARN_UUIDS_INTERNAL_HEXDIGITS_H_
#define TARN_UUIDS_INTERNAL_HEXDIGITS_H_

#include <array>
#include <cstddef>
#include <cstdint>

namespace Tarn::internal {

inline constexpr std::uint32_t kNoHexDigit = 0x10000;

// The value of each digit, `kNoHexDigit` for other bytes: a number of up to four digits is larger if one is among them.
inline constexpr std::array<std::uint32_t, 256> kHexDigitValues = [] {
  std::array<std::uint32_t, 256> values{};
  values.fill(kNoHexDigit);
  for (unsigned i = 0; i < 10; ++i) values[std::size_t{'0'} + i] = i;
  for (unsigned i = 0; i < 6; ++i) values[std::size_t{'a'} + i] = values[std::size_t{'A'} + i] = 10 + i;
  return values;
}();

constexpr std::uint32_t hexDigitValue(char digit) noexcept {
  return kHexDigitValues[static_cast<unsigned char>(digit)];
}

// Four bytes as one number, the first most significant.
constexpr std::uint32_t bigEndian(const char* bytes) noexcept {
  std::uint32_t number = 0;
  for (int i = 0; i < 4; ++i) number = number << 8U | static_cast<unsigned char>(bytes[i]);
  return number;
}

// The value of eight digits, four here and four there; clears `areDigits` if one of them is another character. SWAR:
// the difference from '0' to 0x80, added to every byte, sets the top bits of those that are not smaller than '0'.
constexpr std::uint32_t valueOfEight(const char* here, const char* there, bool& areDigits) noexcept {
  constexpr std::uint64_t kEach = 0x0101010101010101;
  const std::uint64_t text = std::uint64_t{bigEndian(here)} << 32U | bigEndian(there);
  const std::uint64_t ascii = text & (0x7F * kEach);
  const std::uint64_t lower = ascii | (0x20 * kEach);
  const std::uint64_t digits = (ascii + (0x80 - '0') * kEach) & ~(ascii + (0x80 - '9' - 1) * kEach);
  const std::uint64_t letters = (lower + (0x80 - 'a') * kEach) & ~(lower + (0x80 - 'f' - 1) * kEach);
  areDigits &= ((digits | letters) & ~text & (0x80 * kEach)) == 0x80 * kEach;
  std::uint64_t value = (text & (0x0F * kEach)) + 9 * (letters >> 7U & kEach);
  value = (value | value >> 4U) & 0x00FF00FF00FF00FF;
  value = (value | value >> 8U) & 0x0000FFFF0000FFFF;
  return static_cast<std::uint32_t>(value | value >> 16U);
}

}  // namespace Tarn::internal

#endif  // TARN_UUIDS_INTERNAL_HEXDIGITS_H_
