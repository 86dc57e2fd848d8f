// What the comparison with plain maps (properties/Tables.cpp) cannot ask: forms of calls, times and hashes.
#include "Tarn/DataStructures/KeyTable.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <iostream>

#include "Tarn/DataStructures/UuidKeyTable.h"
#include "tests/Growth.h"

namespace {

using namespace Tarn;
using namespace Tarn::DataStructures;

TEST(KeyTable, TakesLists) {
  KeyTable table = {{7, "a"}, {7, "b"}, {8, "a"}, {0, ""}};
  EXPECT_TRUE(KeyTable({{7, "a"}}).keyToToken("a") == 7 && KeyTable{}.getNumElements() == 0);
  table.addTable({{7, "c"}, {9, "A"}});
  EXPECT_EQ(table.getNumElements(), 4U);
  EXPECT_TRUE(table.keyToToken("a") == 7 && table.tokenToKey(8) == "a" && table.keyToToken("A") == 9);
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

// Numbers in one place of a key, or in one half of a uuid: what a hash leaves out makes all of them collide.
template <std::size_t kSize, std::size_t kPlace>
std::string textWith(std::uint64_t number) {
  return std::string(kSize, 'x').replace(kPlace, 5, std::to_string(10000 + number));
}
template <std::size_t kPlace>
uuids::uuid uuidWith(std::uint64_t number) {
  std::array<unsigned char, 16> bytes{};
  for (std::size_t i = 0; i < 3; ++i) bytes[kPlace + i] = static_cast<unsigned char>(number >> (8 * i));
  return uuids::uuid(bytes);
}

TEST(KeyTable, TakesConstantTimeWhateverTheKeys) {
  expectConstantTime<KeyTable>("the first characters", textWith<100, 0>, 0);
  expectConstantTime<KeyTable>("middle ones", textWith<100, 50>, 32);
  expectConstantTime<KeyTable>("the last ones", textWith<100, 94>, 40);
  expectConstantTime<KeyTable>("the first ones of few", textWith<14, 0>, 16);
  expectConstantTime<KeyTable>("the last ones of few", textWith<14, 9>, 16);
  expectConstantTime<UuidKeyTable>("the first bytes", uuidWith<0>, 46);
  expectConstantTime<UuidKeyTable>("the last bytes", uuidWith<13>, 20);
}

// So nobody can choose keys that collide.
TEST(HashDeathTest, IsAnotherInEveryProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  static_assert(noexcept(std::hash<uuids::uuid>()(uuids::uuid())));
  const auto shown = [] { return "hash " + std::to_string(std::hash<uuids::uuid>()(uuidWith<0>(1))) + '.'; };
  EXPECT_EQ(shown(), shown());
  EXPECT_EXIT(std::exit((std::cerr << shown(), 0)), testing::ExitedWithCode(0),
              testing::Not(testing::HasSubstr(shown())));
}

}  // namespace
