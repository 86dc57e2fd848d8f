// Searches that look at eight bytes at once: most text is ASCII that stays as it is.
#ifndef TARN_TEXT_INTERNAL_BLOCKS_H_
#define TARN_TEXT_INTERNAL_BLOCKS_H_

#include <cstdint>
#include <cstring>

namespace Tarn::internal {

inline constexpr std::uint64_t kEachByte = 0x0101010101010101;
inline constexpr std::uint64_t kEachHighBit = 0x80 * kEachByte;

// Whether any of the eight bytes is 0x80 or more.
constexpr bool holdsNonAscii(std::uint64_t block) { return (block & kEachHighBit) != 0; }

// Whether any of the eight bytes is this one.
constexpr bool holds(std::uint64_t block, char byte) {
  const std::uint64_t difference = block ^ (kEachByte * static_cast<unsigned char>(byte));
  return ((difference - kEachByte) & ~difference & kEachHighBit) != 0;
}

// The first byte that `isSought`, or the end. `holdsSought` says whether a block holds one.
template <class IsSought, class HoldsSought>
const char* findByte(const char* at, const char* end, IsSought isSought, HoldsSought holdsSought) {
  for (std::uint64_t block = 0; end - at >= 8; at += 8) {
    std::memcpy(&block, at, 8);
    if (holdsSought(block)) break;
  }
  while (at != end && !isSought(*at)) ++at;
  return at;
}

// The first byte of 0x80 or more, or the end.
inline const char* findNonAscii(const char* at, const char* end) {
  return findByte(
      at, end, [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; }, holdsNonAscii);
}

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_BLOCKS_H_
