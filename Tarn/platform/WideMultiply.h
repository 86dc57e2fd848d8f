// The product of two words in full, which processors give and the language does not.
#ifndef TARN_PLATFORM_WIDEMULTIPLY_H_
#define TARN_PLATFORM_WIDEMULTIPLY_H_

#include <cstdint>

#if defined(_MSC_VER) && defined(_M_X64)
#include <intrin.h>
#endif

namespace Tarn::platform {

// The exclusive-or of the product's halves.
inline std::uint64_t foldedProduct(std::uint64_t a, std::uint64_t b) noexcept {
#if defined(__SIZEOF_INT128__)
  __extension__ using Product = unsigned __int128;
  const Product product = static_cast<Product>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
#elif defined(_MSC_VER) && defined(_M_X64)
  std::uint64_t high = 0;
  const std::uint64_t low = _umul128(a, b, &high);
  return low ^ high;
#else
  constexpr std::uint64_t kLow = 0xFFFFFFFF;
  const std::uint64_t low = (a & kLow) * (b & kLow);
  const std::uint64_t middle = (a >> 32U) * (b & kLow) + (low >> 32U);
  const std::uint64_t other = (a & kLow) * (b >> 32U) + (middle & kLow);
  const std::uint64_t high = (a >> 32U) * (b >> 32U) + (middle >> 32U) + (other >> 32U);
  return (other << 32U | (low & kLow)) ^ high;
#endif
}

}  // namespace Tarn::platform

#endif  // TARN_PLATFORM_WIDEMULTIPLY_H_
