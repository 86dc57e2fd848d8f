// Six significant digits of a number, as "%g" writes them, in less than half of the time of `std::to_chars`.
#ifndef TARN_TEXT_INTERNAL_SIXDIGITS_H_
#define TARN_TEXT_INTERNAL_SIXDIGITS_H_

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Tarn::internal {

// Powers of ten that a `double` holds exactly.
inline constexpr std::array<double, 23> kExactPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Writes at most 12 characters and returns their end. Null for what one exact power of ten does not decide: zero and
// what is not finite, very small and very large numbers, and the middle between two numbers of six digits.
//
// The scaled number is rounded once, correctly: that takes no number across a middle, at most onto it.
inline char* writeSixDigits(char* to, double number) noexcept {
  const double magnitude = std::fabs(number);
  if (!(magnitude >= 1e-16 && magnitude < 1e26)) return nullptr;
  // The decimal exponent, or one less: next to powers of ten, which rounding reaches.
  const auto binary = static_cast<int>(std::bit_cast<std::uint64_t>(magnitude) >> 52U) - 1023;
  int exponent = (binary * 1233) >> 12;  // By 1233 / 4096, which is nearly log10(2).
  const auto scaledBy = [magnitude](int power) {
    return power >= 0 ? magnitude * kExactPowers[static_cast<std::size_t>(power)]
                      : magnitude / kExactPowers[static_cast<std::size_t>(-power)];
  };
  double scaled = scaledBy(5 - exponent);
  if (scaled >= 1e6) scaled = scaledBy(5 - ++exponent);
  auto digits = static_cast<std::uint32_t>(scaled);
  const double half = scaled - digits - 0.5;
  if (half == 0) return nullptr;
  digits += half > 0 ? 1 : 0;
  if (digits == 1000000) {
    digits = 100000;
    ++exponent;
  }
  std::array<char, 6> text;
  std::size_t count = 6;  // Of the digits up to the last that is not zero.
  for (std::size_t i = 6; i-- > 0; digits /= 10) text[i] = static_cast<char>('0' + digits % 10);
  while (text[count - 1] == '0') --count;

  if (number < 0) *to++ = '-';
  const auto put = [&to](const char* from, std::size_t size) {
    std::memcpy(to, from, size);
    to += size;
  };
  const bool isScientific = exponent < -4 || exponent >= 6;
  if (!isScientific && exponent < 0) {
    put("0.0000", static_cast<std::size_t>(1 - exponent));
    put(text.data(), count);
    return to;
  }
  const std::size_t whole = isScientific ? 1 : static_cast<std::size_t>(exponent) + 1;
  put(text.data(), whole);
  if (count > whole) {
    *to++ = '.';
    put(text.data() + whole, count - whole);
  }
  if (isScientific) {
    *to++ = 'e';
    *to++ = exponent < 0 ? '-' : '+';
    *to++ = static_cast<char>('0' + std::abs(exponent) / 10);
    *to++ = static_cast<char>('0' + std::abs(exponent) % 10);
  }
  return to;
}

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_SIXDIGITS_H_
