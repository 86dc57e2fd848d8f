// Sixteen bytes at once: by the SIMD instructions that every processor of its kind has, SSE2 on x86-64 and NEON on
// 64-bit ARM, or by loops, as with a compiler whose vectors of bytes have no operators.
//
// A comparison gives a mask, with 0xFF for each byte where it holds and 0 elsewhere. The three classes have the same
// members, and `PlainBlock` defines what they do.
#ifndef TARN_TEXT_INTERNAL_BLOCKS_H_
#define TARN_TEXT_INTERNAL_BLOCKS_H_

#include <array>
#include <bit>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__aarch64__) || defined(_M_ARM64)
#include <arm_neon.h>
#endif

namespace Tarn::internal {

struct ByteRange {
  unsigned char first;
  unsigned char last;
};

inline constexpr std::ptrdiff_t kBlockSize = 16;

class PlainBlock {
 public:
  static PlainBlock load(const char* from) {
    PlainBlock block;
    std::memcpy(block.bytes_.data(), from, kBlockSize);
    return block;
  }
  void store(char* to) const { std::memcpy(to, bytes_.data(), kBlockSize); }
  // The same byte sixteen times.
  static PlainBlock of(char byte) {
    PlainBlock block;
    block.bytes_.fill(static_cast<unsigned char>(byte));
    return block;
  }

  // Which bytes are the same in both.
  friend PlainBlock operator==(const PlainBlock& a, const PlainBlock& b) {
    return combine(a, b, [](unsigned x, unsigned y) { return x == y ? 0xFFU : 0U; });
  }
  friend PlainBlock operator&(const PlainBlock& a, const PlainBlock& b) {
    return combine(a, b, [](unsigned x, unsigned y) { return x & y; });
  }
  friend PlainBlock operator|(const PlainBlock& a, const PlainBlock& b) {
    return combine(a, b, [](unsigned x, unsigned y) { return x | y; });
  }
  // The lesser of each two bytes.
  friend PlainBlock lesser(const PlainBlock& a, const PlainBlock& b) {
    return combine(a, b, [](unsigned x, unsigned y) { return x < y ? x : y; });
  }

  // Which bytes are in the range.
  template <ByteRange kRange>
  [[nodiscard]] PlainBlock in() const {
    return combine(*this, *this,
                   [](unsigned x, unsigned) { return kRange.first <= x && x <= kRange.last ? 0xFFU : 0U; });
  }
  // Not zero, though no mask, where bytes differ in more than letter case.
  friend PlainBlock differentLetters(const PlainBlock& a, const PlainBlock& b) {
    const auto lower = [](unsigned x) { return 'A' <= x && x <= 'Z' ? x + ('a' - 'A') : x; };
    return combine(a, b, [lower](unsigned x, unsigned y) { return lower(x) ^ lower(y); });
  }

  // Of a mask: whether a byte is set in it, the position of the first one, or 16, and that behind the last one, or 0.
  [[nodiscard]] bool any() const { return behindLast() != 0; }
  // A bit for each byte of a mask, the lowest for the first.
  [[nodiscard]] unsigned bits() const {
    unsigned bits = 0;
    for (std::size_t i = 0; i < bytes_.size(); ++i) bits |= (bytes_[i] & 1U) << i;
    return bits;
  }
  [[nodiscard]] std::size_t first() const {
    std::size_t at = 0;
    while (at < kBlockSize && bytes_[at] == 0) ++at;
    return at;
  }
  [[nodiscard]] std::size_t behindLast() const {
    std::size_t at = kBlockSize;
    while (at > 0 && bytes_[at - 1] == 0) --at;
    return at;
  }

 private:
  template <class Operation>
  static PlainBlock combine(const PlainBlock& a, const PlainBlock& b, Operation operation) {
    PlainBlock result;
    for (std::size_t i = 0; i < result.bytes_.size(); ++i) {
      result.bytes_[i] = static_cast<unsigned char>(operation(a.bytes_[i], b.bytes_[i]));
    }
    return result;
  }

  std::array<unsigned char, kBlockSize> bytes_;
};

#if defined(__SSE2__)

class Block {
 public:
  static Block load(const char* from) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)); }
  void store(char* to) const { _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes_); }
  static Block of(char byte) { return _mm_set1_epi8(byte); }

  friend Block operator==(Block a, Block b) { return _mm_cmpeq_epi8(a.bytes_, b.bytes_); }
  friend Block operator&(Block a, Block b) { return _mm_and_si128(a.bytes_, b.bytes_); }
  friend Block operator|(Block a, Block b) { return _mm_or_si128(a.bytes_, b.bytes_); }
  friend Block lesser(Block a, Block b) {
    const auto x = reinterpret_cast<Bytes>(a.bytes_);
    const auto y = reinterpret_cast<Bytes>(b.bytes_);
    return reinterpret_cast<__m128i>(x < y ? x : y);
  }

  template <ByteRange kRange>
  [[nodiscard]] Block in() const {
    if constexpr (kRange.first == kRange.last) {
      return *this == of(static_cast<char>(kRange.first));
    } else {
      // SSE2 compares signed bytes. One comparison will do when the range begins at the least of them, 0x80.
      constexpr auto kShift = static_cast<unsigned char>(0x80 - kRange.first);
      constexpr int kBehind = SCHAR_MIN + kRange.last - kRange.first + 1;
      static_assert(kBehind <= SCHAR_MAX, "a range of all bytes is none");
      const Bytes shifted = reinterpret_cast<Bytes>(bytes_) + kShift;
      return _mm_cmplt_epi8(reinterpret_cast<__m128i>(shifted), of(static_cast<char>(kBehind)).bytes_);
    }
  }
  friend Block differentLetters(Block a, Block b) {
    const Block caseBit = of(0x20);
    const Block letterCase = (a | caseBit).in<ByteRange{'a', 'z'}>() & caseBit;
    return _mm_andnot_si128(letterCase.bytes_, _mm_xor_si128(a.bytes_, b.bytes_));
  }

  [[nodiscard]] bool any() const { return bits() != 0; }
  [[nodiscard]] unsigned bits() const { return static_cast<unsigned>(_mm_movemask_epi8(bytes_)); }
  [[nodiscard]] std::size_t first() const { return static_cast<std::size_t>(std::countr_zero(bits() | 0x10000U)); }
  [[nodiscard]] std::size_t behindLast() const { return static_cast<std::size_t>(std::bit_width(bits())); }

 private:
  using Bytes = unsigned char __attribute__((vector_size(kBlockSize)));  // Unsigned, with operators.

  Block(__m128i bytes) : bytes_(bytes) {}

  __m128i bytes_;
};

#elif defined(__aarch64__) || defined(_M_ARM64)

class Block {
 public:
  static Block load(const char* from) { return vld1q_u8(reinterpret_cast<const unsigned char*>(from)); }
  void store(char* to) const { vst1q_u8(reinterpret_cast<unsigned char*>(to), bytes_); }
  static Block of(char byte) { return vdupq_n_u8(static_cast<unsigned char>(byte)); }

  friend Block operator==(Block a, Block b) { return vceqq_u8(a.bytes_, b.bytes_); }
  friend Block operator&(Block a, Block b) { return vandq_u8(a.bytes_, b.bytes_); }
  friend Block operator|(Block a, Block b) { return vorrq_u8(a.bytes_, b.bytes_); }
  friend Block lesser(Block a, Block b) { return vminq_u8(a.bytes_, b.bytes_); }

  template <ByteRange kRange>
  [[nodiscard]] Block in() const {
    return vcleq_u8(vsubq_u8(bytes_, vdupq_n_u8(kRange.first)), vdupq_n_u8(kRange.last - kRange.first));
  }
  friend Block differentLetters(Block a, Block b) {
    const Block caseBit = of(0x20);
    const Block letterCase = (a | caseBit).in<ByteRange{'a', 'z'}>() & caseBit;
    return vbicq_u8(veorq_u8(a.bytes_, b.bytes_), letterCase.bytes_);
  }

  [[nodiscard]] bool any() const { return vmaxvq_u8(bytes_) != 0; }
  [[nodiscard]] unsigned bits() const {
    constexpr std::array<std::uint8_t, kBlockSize> kBits = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
    const uint8x16_t bits = vandq_u8(bytes_, vld1q_u8(kBits.data()));
    return vaddv_u8(vget_low_u8(bits)) | static_cast<unsigned>(vaddv_u8(vget_high_u8(bits))) << 8U;
  }
  [[nodiscard]] std::size_t first() const { return static_cast<std::size_t>(std::countr_zero(mask())) / 4; }
  [[nodiscard]] std::size_t behindLast() const {
    return kBlockSize - static_cast<std::size_t>(std::countl_zero(mask())) / 4;
  }

 private:
  Block(uint8x16_t bytes) : bytes_(bytes) {}
  // Four bits of each byte.
  [[nodiscard]] std::uint64_t mask() const {
    return vget_lane_u64(vreinterpret_u64_u8(vshrn_n_u16(vreinterpretq_u16_u8(bytes_), 4)), 0);
  }

  uint8x16_t bytes_;
};

#else

using Block = PlainBlock;

#endif

// A class of bytes: those in any of the ranges.
template <ByteRange... kRanges>
struct ByteClass {
  static constexpr bool holds(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    if constexpr (sizeof...(kRanges) == 1) {
      return ((kRanges.first <= value && value <= kRanges.last) && ...);
    } else {
      return kHolds[value];
    }
  }

  template <class B>
  static B in(B block) {
    return (block.template in<kRanges>() | ...);
  }

 private:
  static constexpr std::array<bool, 256> kHolds = [] {
    std::array<bool, 256> holds{};
    for (std::size_t i = 0; i < holds.size(); ++i) holds[i] = ((kRanges.first <= i && i <= kRanges.last) || ...);
    return holds;
  }();
};

// A single byte, known at run time.
struct OneByte {
  char byte;

  [[nodiscard]] bool holds(char other) const { return other == byte; }

  template <class B>
  [[nodiscard]] B in(B block) const {
    return block == B::of(byte);
  }
};

// Skips four blocks at once while none of their bytes is of the class.
template <class B = Block, class Class>
const char* skipFourBlocks(const char* at, const char* end, Class sought) {
  const auto maskAt = [&](std::ptrdiff_t block) { return sought.in(B::load(at + block * kBlockSize)); };
  while (end - at >= 4 * kBlockSize && !(maskAt(0) | maskAt(1) | maskAt(2) | maskAt(3)).any()) at += 4 * kBlockSize;
  return at;
}

// The first byte of the class, or the end.
template <class B = Block, class Class>
const char* findFirst(const char* at, const char* end, Class sought) {
  if (end - at < kBlockSize) {
    while (at != end && !sought.holds(*at)) ++at;
    return at;
  }
  const char* const last = end - kBlockSize;
  for (; at < last; at += kBlockSize) {
    const B found = sought.in(B::load(at));
    if (found.any()) return at + found.first();
  }
  return last + sought.in(B::load(last)).first();  // This block overlaps the one before.
}

// The position behind the last byte of the class, or the beginning.
template <class B = Block, class Class>
const char* findBehindLast(const char* begin, const char* end, Class sought) {
  if (end - begin < kBlockSize) {
    while (end != begin && !sought.holds(end[-1])) --end;
    return end;
  }
  for (; end - begin > kBlockSize; end -= kBlockSize) {
    const B found = sought.in(B::load(end - kBlockSize));
    if (found.any()) return end - kBlockSize + found.behindLast();
  }
  return begin + sought.in(B::load(begin)).behindLast();
}

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_BLOCKS_H_
