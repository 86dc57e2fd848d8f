// The index of the key tables, with hashes so bad that seeded ones never are.
#include <gtest/gtest.h>

#include <map>

#include "Tarn/DataStructures/internal/HashedPairsInline.h"
#include "tests/Generate.h"

namespace {

using namespace Tarn;

// Against a map from each pair to its hash, with hashes that make runs: in the midst of the home slots, at their end
// and far into the tail.
void runHashIndex(std::uint32_t (*hashOf)(std::uint32_t pair)) {
  using internal::HashIndex;
  Generate generate(1);
  HashIndex index;
  std::map<std::uint32_t, std::uint32_t> model;
  const auto find = [&index](std::uint32_t hash, std::uint32_t pair) {
    return index.find(hash, [pair](std::uint32_t other) { return other == pair; });
  };
  for (int i = 0; i < 12000; ++i) {
    const auto pair = static_cast<std::uint32_t>(generate.below(400)) + 1;
    const bool adds = generate.below(10) < (i / 1000 % 2 == 0 ? 9U : 1U);
    if (adds && model.emplace(pair, hashOf(pair)).second) {
      index.reserveOne();
      index.insert(hashOf(pair), pair);
    } else if (!adds && model.erase(pair) == 1) {
      index.erase(find(hashOf(pair), pair));
      index.shrink();
    }
    EXPECT_EQ(find(hashOf(pair), pair) != nullptr, model.contains(pair));
    EXPECT_EQ(index.size(), model.size());
    for (std::uint32_t other = 1; i % 64 == 0 && other <= 400; ++other) {
      EXPECT_EQ(find(hashOf(other), other) != nullptr, model.contains(other));
    }
    if (testing::Test::HasFailure()) FAIL() << "operation " << i;
  }
}

TEST(HashIndex, BehavesAsAMap) {
  constexpr std::uint32_t kGreatest = 0xFFFFFFFF;
  runHashIndex([](std::uint32_t pair) { return pair * 0x9E3779B9; });
  runHashIndex([](std::uint32_t pair) { return pair % 5 * (kGreatest / 4); });
  runHashIndex([](std::uint32_t pair) { return kGreatest - pair; });
  runHashIndex([](std::uint32_t) { return kGreatest; });
  runHashIndex([](std::uint32_t) { return 0U; });
}

}  // namespace
