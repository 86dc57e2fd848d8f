// The four fields in which a platform's generator hands out an identifier.
#ifndef TARN_PLATFORM_GUIDFIELDS_H_
#define TARN_PLATFORM_GUIDFIELDS_H_

#include <algorithm>
#include <array>
#include <cstdint>

namespace Tarn::platform {

// The numbers are in the machine's own byte order.
struct GuidFields {
  std::uint32_t data1;
  std::uint16_t data2;
  std::uint16_t data3;
  std::array<unsigned char, 8> data4;
};

// The bytes in the order of the canonical text: each number from its most significant byte down, then the array.
constexpr std::array<unsigned char, 16> toBytes(const GuidFields& guid) {
  std::array<unsigned char, 16> bytes{};
  auto* out = bytes.data();
  const auto put = [&out](std::uint32_t number, int width) {
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) *out++ = static_cast<unsigned char>(number >> shift);
  };
  put(guid.data1, 4);
  put(guid.data2, 2);
  put(guid.data3, 2);
  std::copy(guid.data4.begin(), guid.data4.end(), out);
  return bytes;
}

}  // namespace Tarn::platform

#endif  // TARN_PLATFORM_GUIDFIELDS_H_
