// Both kinds of blocks by the definition of each operation on a byte, and the searches made of them by a loop.
#include "Tarn/text/internal/Blocks.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "Tarn/text/internal/Characters.h"
#include "tests/Generate.h"

namespace {

using namespace Tarn::internal;

template <class B>
class Blocks : public testing::Test {};
using Kinds = testing::Types<Block, PlainBlock>;
TYPED_TEST_SUITE(Blocks, Kinds);

template <class B, class Definition>
void expectEach(const B& found, const std::string& a, const std::string& b, Definition definition) {
  char bytes[kBlockSize];
  found.store(bytes);
  for (std::size_t i = 0; i < kBlockSize; ++i) {
    const auto expected = definition(static_cast<unsigned char>(a[i]), static_cast<unsigned char>(b[i]));
    EXPECT_EQ(bytes[i], static_cast<char>(expected)) << testing::PrintToString(a) << testing::PrintToString(b);
  }
}

TYPED_TEST(Blocks, OperateOnEachByte) {
  Generate generate(30);
  const auto sixteen = [&generate] {
    std::string text = generate.text("\x40\x41\x5A\x5B\x60\x61\x7A\x7B\x7F\x80\xFF\x20\x21 @[`{az", kBlockSize);
    while (text.size() < kBlockSize) text += static_cast<char>(generate.below(256));
    return text;
  };
  const auto isTrue = [](bool value) { return value ? 0xFF : 0; };
  const auto lower = [](int x) { return x >= 'A' && x <= 'Z' ? x + 32 : x; };
  for (int i = 0; i < 5000 && !this->HasFailure(); ++i) {
    const std::string a = sixteen();
    std::string b = a;
    for (char& byte : b) {
      const std::uint64_t change = generate.below(4);
      byte = change == 0 ? static_cast<char>(generate.below(256)) : static_cast<char>(change == 1 ? byte ^ 0x20 : byte);
    }
    const auto blockA = TypeParam::load(a.data());
    const auto blockB = TypeParam::load(b.data());
    expectEach(blockA == blockB, a, b, [&](int x, int y) { return isTrue(x == y); });
    expectEach(blockA & blockB, a, b, [&](int x, int y) { return x & y; });
    expectEach(blockA | blockB, a, b, [&](int x, int y) { return x | y; });
    expectEach(lesser(blockA, blockB), a, b, [](int x, int y) { return std::min(x, y); });
    const auto sameLetters = differentLetters(blockA, blockB) == TypeParam::of(0);
    expectEach(sameLetters, a, b, [&](int x, int y) { return isTrue(lower(x) == lower(y)); });
    expectEach(TypeParam::of(a[0]), a, b, [&](int, int) { return a[0]; });
    for (std::size_t at = 0; at < kBlockSize; ++at) {
      EXPECT_EQ((decltype(kDigit)::in(blockA).bits() >> at & 1U) != 0, isOf(a[at], kDigit)) << at;
    }
    const auto expectIn = [&](auto... sought) {
      (expectEach(sought.in(blockA), a, b, [&](int x, int) { return isTrue(isOf(static_cast<char>(x), sought)); }),
       ...);
    };
    expectIn(ByteClass<ByteRange{0x00, 0x00}>(), ByteClass<ByteRange{0x61, 0x61}>(), ByteClass<ByteRange{0x41, 0x7F}>(),
             ByteClass<ByteRange{0x7F, 0x80}>(), ByteClass<ByteRange{0x80, 0xFF}>(), ByteClass<ByteRange{0x01, 0xFF}>(),
             ByteClass<ByteRange{0x20, 0x21}, ByteRange{0x5A, 0x60}, ByteRange{0xFF, 0xFF}>());
  }
}

TYPED_TEST(Blocks, FindAtEveryPlace) {
  constexpr std::size_t kLongest = 5 * kBlockSize + 1;
  for (std::size_t begin = 0; begin < kBlockSize; ++begin) {
    for (std::size_t size = 0; size <= kLongest; ++size) {
      for (std::size_t hit = 0; hit <= size; ++hit) {
        std::string text = std::string(begin, '7') + std::string(size, '/') + std::string(kBlockSize, '7');
        char* const from = text.data() + begin;
        char* const end = from + size;
        from[hit] = '7';  // As on both sides, which must not be seen.
        const auto position = [from](const char* found) { return static_cast<std::size_t>(found - from); };
        ASSERT_EQ(position(findFirst<TypeParam>(skipFourBlocks<TypeParam>(from, end, kDigit), end, kDigit)), hit);
        ASSERT_EQ(position(findBehindLast<TypeParam>(from, end, kDigit)), hit < size ? hit + 1 : 0);
        std::fill(from + hit, end, '0');
        ASSERT_EQ(position(findFirst<TypeParam>(from, end, kDigit)), hit);
      }
    }
  }
}

}  // namespace
