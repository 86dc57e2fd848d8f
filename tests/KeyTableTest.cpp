// Both tables against the two plain maps that define them.
#include "Tarn/DataStructures/KeyTable.h"

#include <gtest/gtest.h>

#include <map>

#include "Tarn/DataStructures/UuidKeyTable.h"
#include "Tarn/DataStructures/internal/HashedPairs.h"
#include "Tarn/DataStructures/internal/SortedBlocks.h"
#include "tests/Generate.h"
#include "tests/Plain.h"

namespace {

using namespace Tarn;
using namespace Tarn::DataStructures;

constexpr std::uint64_t kAllOnes = 0xFFFFFFFFFFFFFFFF;

template <class Table, class Key>
struct Model : PlainTable<Key> {
  using PlainTable<Key>::byToken, PlainTable<Key>::byKey;

  void expectSame(const Table& table, std::uint64_t token, const Key& key) const {
    EXPECT_EQ(table.keyToToken(key), byKey.contains(key) ? byKey.at(key) : kAllOnes);
    EXPECT_EQ(table.tokenToKey(token), byToken.contains(token) ? std::optional(byToken.at(token)) : std::nullopt);
  }
};

std::string stringKey(std::uint64_t number) {
  return number == 0 ? "" : std::string("key\0", 4) + std::string(number % 40, 'x') + std::to_string(number);
}

uuids::uuid uuidKey(std::uint64_t number) {
  std::array<unsigned char, 16> bytes{};
  bytes[number % 16] = static_cast<unsigned char>(number * 37);
  return uuids::uuid(bytes);
}

std::uint64_t expectedSize(const Model<KeyTable, std::string>& model) { return model.byToken.size(); }
std::uint64_t expectedSize(const Model<UuidKeyTable, uuids::uuid>& model) { return model.byKey.size(); }

void expectPositions(const KeyTable&, const Model<KeyTable, std::string>&) {}
void expectPositions(const UuidKeyTable& table, const Model<UuidKeyTable, uuids::uuid>& model) {
  std::uint64_t position = 0;
  for (const auto& [token, key] : model.byToken) {
    EXPECT_EQ(table.getToken(position), token);
    EXPECT_EQ(table.getKey(position), key);
    ++position;
  }
  for (const std::uint64_t outside : {position, position + 1, kAllOnes}) {
    EXPECT_EQ(table.getToken(outside), kAllOnes);
    EXPECT_EQ(table.getKey(outside), std::nullopt);
  }
}

template <class Table, class Key>
void expectAllSame(const Table& table, const Model<Table, Key>& model) {
  for (const auto& [token, key] : model.byToken) model.expectSame(table, token, key);
  for (const auto& [key, token] : model.byKey) model.expectSame(table, token, key);
  EXPECT_EQ(table.getNumElements(), expectedSize(model));
  expectPositions(table, model);
}

// What is moved or assigned to itself is a table afterwards, and what was moved from is an empty one.
template <class Table, class Key>
void move(Table& table, const Key& key) {
  Table moved = std::move(table);
  EXPECT_EQ(table.getNumElements(), 0U);
  EXPECT_EQ(table.tokenToKey(kAllOnes), std::nullopt);
  Table& same = table;
  for (int i = 0; i < 3; ++i) {
    table.addEntry(kAllOnes, key);
    EXPECT_EQ(table.tokenToKey(kAllOnes), key);
    EXPECT_EQ(table.keyToToken(key), kAllOnes);
    if (i == 0) table = std::move(same);
    if (i == 1) table = same;
  }
  table = std::move(moved);
}

// Tokens and keys below a range: where that is small, every kind of collision happens, and pairs that do not belong
// together; where it is large, tables grow and shrink. A copy is compared after the table has gone on.
template <class Table, class Key>
void runOperations(Key (*makeKey)(std::uint64_t), unsigned range) {
  Generate generate(range);
  Table table;
  Table copy;
  Model<Table, Key> model;
  Model<Table, Key> copiedModel;
  for (unsigned i = 0; i < 20000; ++i) {
    const std::uint64_t token = generate.below(12) == 0 ? kAllOnes : generate.below(range);
    const Key key = makeKey(generate.below(range));
    switch (generate.below(i % 1000 < 500 ? 3 : 5)) {
      case 0: {
        const bool isPair = generate.below(2) == 0 && model.byToken.contains(token);
        const Key removed = isPair ? model.byToken.at(token) : key;
        EXPECT_EQ(table.rmEntry(token, removed), model.rmEntry(token, removed));
        break;
      }
      case 1:
        if (generate.below(4ULL * range) == 0) {
          const bool holds = expectedSize(model) > 0;
          EXPECT_EQ(table.rmAll(), holds);
          if (holds) model = {};
        }
        break;
      default:
        EXPECT_EQ(table.addEntry(token, key), model.addEntry(token, key));
    }
    model.expectSame(table, token, key);
    EXPECT_EQ(table.getNumElements(), expectedSize(model));
    if (i % (range + 4) == 0) {
      expectAllSame(table, model);
      expectAllSame(copy, copiedModel);
      copy = table;
      copiedModel = model;
      move(table, key);
    }
    if (testing::Test::HasFailure()) FAIL() << "operation " << i;
  }
}

// A sorted map against `std::map`, in blocks so small that each operation meets the end of one. Phases of mostly adding
// and mostly removing, of keys in any order, upwards and downwards; positions are checked all over.
template <std::size_t kBlockSize>
void runSortedBlocks() {
  using Blocks = internal::SortedBlocks<std::uint64_t, int, kBlockSize>;
  Generate generate(kBlockSize);
  Blocks blocks;
  std::map<std::uint64_t, int> model;
  const auto expectSame = [&model](const Blocks& tested) {
    std::uint64_t position = 0;
    for (const auto& [key, value] : model) {
      const auto* entry = tested.at(position++);
      ASSERT_NE(entry, nullptr);
      EXPECT_EQ(std::pair(entry->key, entry->value), std::pair(key, value));
      EXPECT_EQ(tested.find(key), entry);
    }
    for (const std::uint64_t outside : {position, position + 1, kAllOnes}) EXPECT_EQ(tested.at(outside), nullptr);
    EXPECT_EQ(tested.size(), position);
    EXPECT_EQ(tested.empty(), position == 0);
  };
  for (int i = 0; i < 12000; ++i) {
    const int phase = i / 400 % 6;
    const std::uint64_t step = static_cast<std::uint64_t>(i % 400);
    const std::uint64_t key = phase < 2 ? generate.below(600) : phase < 4 ? step : 399 - step;
    const bool adds = generate.below(10) < (phase % 2 == 0 ? 9U : 1U);
    if (adds) {
      EXPECT_EQ(blocks.insert(key, i), model.emplace(key, i).second);
    } else {
      EXPECT_EQ(blocks.erase(key), model.erase(key) == 1);
    }
    EXPECT_EQ(blocks.find(key) != nullptr, model.contains(key));
    if (i % 64 == 0) expectSame(blocks);
    if (i % 1000 == 0) {
      Blocks copy = blocks;  // Without room to spare.
      blocks = std::move(copy);
      copy = Blocks();
      EXPECT_TRUE(copy.insert(key, i) && copy.size() == 1);
    }
    if (testing::Test::HasFailure()) FAIL() << "operation " << i;
  }
  blocks.clear();
  model.clear();
  expectSame(blocks);
}

TEST(SortedBlocks, BehaveAsAMap) {
  runSortedBlocks<2>();
  runSortedBlocks<3>();
  runSortedBlocks<8>();
  runSortedBlocks<64>();
}

// An index against a map from each pair to its hash, with hashes that make rows: in the midst of the places, at their
// end and far behind it.
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
      index.reserve(index.size());
      index.insert(hashOf(pair), pair);
    } else if (!adds && model.erase(pair) == 1) {
      index.erase(find(hashOf(pair), pair));
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

TEST(PairStore, IsFullAtItsLimitUntilPairsAreDropped) {
  internal::PairStore<9> pairs;  // A word for what is unused, and two pairs.
  const std::uint32_t first = pairs.add(1, "12345678");
  EXPECT_THROW(pairs.add(2, std::string(25, 'x')), std::length_error);
  const std::uint32_t second = pairs.add(kAllOnes, std::string(24, 'x'));
  EXPECT_THROW(pairs.add(3, ""), std::length_error);
  pairs.drop(first);
  EXPECT_FALSE(pairs.isMostlyUnused());
  pairs.drop(second);
  EXPECT_TRUE(pairs.isMostlyUnused());
  pairs.compact([&](std::uint32_t pair, std::uint32_t) { return pair == first; });
  EXPECT_FALSE(pairs.isMostlyUnused());
  EXPECT_EQ(pairs.add(kAllOnes, std::string(24, 'x')), second);
  EXPECT_EQ(pairs.token(first), 1U);
  EXPECT_EQ(pairs.key(first), "12345678");
  EXPECT_EQ(pairs.token(second), kAllOnes);
  EXPECT_EQ(pairs.key(second), std::string(24, 'x'));
}

TEST(KeyTable, BehavesAsItsMaps) {
  runOperations<KeyTable, std::string>(stringKey, 12);
  runOperations<KeyTable, std::string>(stringKey, 3000);
}

TEST(UuidKeyTable, BehavesAsItsMaps) { runOperations<UuidKeyTable, uuids::uuid>(uuidKey, 12); }

TEST(KeyTable, TakesLists) {
  const std::vector<KeyTableEntry> entries = {{7, "a"}, {7, "b"}, {8, "a"}, {0, ""}};
  KeyTable table(entries);
  table.addTable({{7, "c"}, {9, "A"}});
  EXPECT_EQ(table.getNumElements(), 4U);
  EXPECT_EQ(table.tokenToKey(7), "a");
  EXPECT_EQ(table.keyToToken("a"), 7U);
  EXPECT_EQ(table.keyToToken("b"), kAllOnes);
  EXPECT_EQ(table.keyToToken("A"), 9U);
  EXPECT_EQ(table.keyToToken(""), 0U);
}

TEST(UuidKeyTable, TokensWithoutUuidOutliveRmAll) {
  UuidKeyTable table;
  for (const std::uint64_t token : {5U, 9U}) table.addEntry(token, uuidKey(1));
  EXPECT_TRUE(table.rmEntry(5, uuidKey(1)));
  EXPECT_FALSE(table.rmAll());
  EXPECT_EQ(table.getToken(0), 9U);
  EXPECT_EQ(table.getNumElements(), 0U);
}

}  // namespace
