// Both tables against the two plain maps that define them.
#include "Tarn/DataStructures/KeyTable.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <ctime>
#include <iostream>
#include <limits>
#include <map>

#include "Tarn/DataStructures/UuidKeyTable.h"
#include "tests/Generate.h"
#include "tests/Growth.h"
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
  bytes[(number + 1) % 16] = static_cast<unsigned char>(number >> 8);
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

TEST(KeyTable, BehavesAsItsMaps) {
  runOperations<KeyTable, std::string>(stringKey, 12);
  runOperations<KeyTable, std::string>(stringKey, 3000);
}

TEST(UuidKeyTable, BehavesAsItsMaps) {
  runOperations<UuidKeyTable, uuids::uuid>(uuidKey, 12);
  runOperations<UuidKeyTable, uuids::uuid>(uuidKey, 3000);
}

// Tokens that come and go in every order, so many that blocks of them split and join.
TEST(UuidKeyTable, CountsPositionsInEveryOrder) {
  Generate generate(1);
  UuidKeyTable table;
  Model<UuidKeyTable, uuids::uuid> model;
  for (unsigned phase = 0; phase < 12; ++phase) {
    const bool isAdding = phase % 2 == 0;
    for (unsigned i = 0; i < 3000; ++i) {
      const std::uint64_t token = phase < 4 ? generate.below(4000) : phase < 8 ? i : 2999 - i;
      const uuids::uuid key = uuidKey(token);
      if (isAdding || generate.below(10) == 0) {
        EXPECT_EQ(table.addEntry(token, key), model.addEntry(token, key));
      } else {
        EXPECT_EQ(table.rmEntry(token, key), model.rmEntry(token, key));
      }
      if (i % 500 == 0) expectAllSame(table, model);
    }
    if (testing::Test::HasFailure()) FAIL() << "phase " << phase;
  }
  EXPECT_EQ(table.getToken(std::uint64_t{1} << 32U), kAllOnes);  // No position is cut to fewer bits.
}

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

// A call with a view, and each that compiled without it, with the meaning that it had.
TEST(KeyTable, TakesKeysInEveryForm) {
  KeyTable table;
  const std::string_view view = std::string_view("north-east").substr(0, 5);
  const char* const pointer = "west";
  EXPECT_TRUE(table.addEntry(1, view) && table.addEntry(2, "south") && table.addEntry(3, std::string("east")) &&
              table.addEntry(4, pointer) && table.addEntry(5, {}) && table.addEntry(6, {'u', 'p'}));
  EXPECT_TRUE(table.keyToToken(view) == 1 && table.keyToToken("north") == 1 && table.keyToToken(pointer) == 4 &&
              table.keyToToken({}) == 5 && table.keyToToken({'u', 'p'}) == 6);
  EXPECT_TRUE(table.rmEntry(1, view) && table.rmEntry(2, "south") && table.rmEntry(4, pointer) && table.rmEntry(5, {}));
  EXPECT_EQ(table.getNumElements(), 2U);
}

template <class Table, class Key>
void expectConstantTime(const char* what, Key (*makeKey)(std::uint64_t), int tokenShift) {
  const auto make = [=](std::size_t count) {
    Table table;
    for (std::uint64_t i = 0; i < count; ++i) table.addEntry(i << tokenShift, makeKey(i));
    return std::pair(std::move(table), count);
  };
  expectLinear(what, 4000, make, [=](const auto& made) {
    const auto& [table, count] = made;
    for (std::uint64_t i = 0; i < count; ++i) {
      ASSERT_TRUE(table.keyToToken(makeKey(i)) == i << tokenShift && table.tokenToKey(i << tokenShift));
    }
  });
}

// Numbers in one place of a long key, or in one half of a uuid: what a hash leaves out makes all of them collide.
template <std::size_t kPlace>
std::string longKey(std::uint64_t number) {
  return std::string(100, 'x').replace(kPlace, 5, std::to_string(10000 + number));
}
template <std::size_t kPlace>
uuids::uuid uuidWith(std::uint64_t number) {
  std::array<unsigned char, 16> bytes{};
  for (std::size_t i = 0; i < 3; ++i) bytes[kPlace + i] = static_cast<unsigned char>(number >> (8 * i));
  return uuids::uuid(bytes);
}

TEST(KeyTable, TakesConstantTimeWhateverTheKeys) {
  expectConstantTime<KeyTable, std::string>("the first characters", longKey<0>, 0);
  expectConstantTime<KeyTable, std::string>("middle ones", longKey<50>, 32);
  expectConstantTime<KeyTable, std::string>("the last ones", longKey<94>, 40);
  expectConstantTime<UuidKeyTable, uuids::uuid>("the first bytes", uuidWith<0>, 46);
  expectConstantTime<UuidKeyTable, uuids::uuid>("the last bytes", uuidWith<13>, 20);
}

// So nobody can choose keys that collide.
TEST(HashDeathTest, IsAnotherInEveryProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  static_assert(noexcept(std::hash<uuids::uuid>()(uuids::uuid())));
  const auto shown = [] { return "hash " + std::to_string(std::hash<uuids::uuid>()(uuidKey(1))) + '.'; };
  EXPECT_EQ(shown(), shown());
  EXPECT_EXIT(std::exit((std::cerr << shown(), 0)), testing::ExitedWithCode(0),
              testing::Not(testing::HasSubstr(shown())));
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
