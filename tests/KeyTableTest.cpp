// Both tables against the two plain maps that define them.
#include "Tarn/DataStructures/KeyTable.h"

#include <gtest/gtest.h>

#include <map>

#include "Tarn/DataStructures/UuidKeyTable.h"
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

std::string stringKey(std::uint64_t number) { return std::string("key\0", 4) + std::string(number, 'x'); }

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

// Few tokens and keys, so that every kind of collision happens, and pairs that do not belong together.
template <class Table, class Key>
void runOperations(Key (*makeKey)(std::uint64_t)) {
  Generate generate(1);
  Table table;
  Model<Table, Key> model;
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t token = generate.below(12) == 0 ? kAllOnes : generate.below(12);
    const Key key = makeKey(generate.below(12));
    switch (generate.below(i % 1000 < 500 ? 3 : 5)) {
      case 0:
        EXPECT_EQ(table.rmEntry(token, key), model.rmEntry(token, key));
        break;
      case 1:
        if (generate.below(50) == 0) {
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
    if (i % 16 == 0) expectPositions(table, model);
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

TEST(KeyTable, BehavesAsItsMaps) { runOperations<KeyTable, std::string>(stringKey); }

TEST(UuidKeyTable, BehavesAsItsMaps) { runOperations<UuidKeyTable, uuids::uuid>(uuidKey); }

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

TEST(KeyTable, CopiesAndMovesAreTablesOfTheirOwn) {
  KeyTable table({{1, "a"}});
  KeyTable copy = table;
  table.rmAll();
  EXPECT_EQ(copy.keyToToken("a"), 1U);
  UuidKeyTable ids;
  ids.addEntry(1, uuidKey(1));
  const UuidKeyTable moved = std::move(ids);
  EXPECT_EQ(moved.getKey(0), uuidKey(1));
  ids.addEntry(2, uuidKey(2));  // The one that was moved from holds something valid.
  EXPECT_EQ(ids.tokenToKey(2), uuidKey(2));
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
