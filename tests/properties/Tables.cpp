// Both key tables under operations, against the plain maps that define them. Input: an operation each up to a '|': a
// letter, a token, a key.
#include <limits>
#include <utility>
#include <vector>

#include "Tarn/DataStructures/KeyTable.h"
#include "Tarn/DataStructures/UuidKeyTable.h"
#include "tests/Plain.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn;
using namespace Tarn::DataStructures;

constexpr std::uint64_t kAllOnes = std::numeric_limits<std::uint64_t>::max();

void toKey(const std::string& text, std::string& key) { key = text; }
void toKey(const std::string& text, uuids::uuid& key) {
  std::array<unsigned char, 16> bytes{};
  std::copy_n(text.begin(), std::min(text.size(), bytes.size()), bytes.begin());
  key = uuids::uuid(bytes);
}

std::size_t sizeOf(const KeyTable&, const PlainTable<std::string>& plain) { return plain.byToken.size(); }
std::size_t sizeOf(const UuidKeyTable&, const PlainTable<uuids::uuid>& plain) { return plain.byKey.size(); }

void requirePositions(const KeyTable&, const PlainTable<std::string>&) {}
void requirePositions(const UuidKeyTable& table, const PlainTable<uuids::uuid>& plain) {
  const std::vector<std::pair<std::uint64_t, uuids::uuid>> pairs(plain.byToken.begin(), plain.byToken.end());
  const std::size_t count = pairs.size();
  for (std::size_t i = 0; i < 2 * count; ++i) {  // All in turn, from the midst on, and others in between.
    const std::size_t position = (i % 2 == 0 ? count / 2 + i / 2 : i * 37) % count;
    const auto& [token, key] = pairs[position];
    require(table.getToken(position) == token && table.getKey(position) == key, "tokens have their positions");
  }
  for (const std::uint64_t outside : {std::uint64_t{count}, std::uint64_t{1} << 32, kAllOnes}) {
    require(table.getToken(outside) == kAllOnes && !table.getKey(outside), "nothing is behind the last");
  }
}

template <class Table, class Key>
struct Compared {
  Table table;
  PlainTable<Key> plain;

  void requireSame(std::uint64_t token, const Key& key) const {
    require(table.getNumElements() == sizeOf(table, plain), "the sizes agree");
    require(table.keyToToken(key) == (plain.byKey.contains(key) ? plain.byKey.at(key) : kAllOnes), "the key's token");
    require(table.tokenToKey(token) ==
                (plain.byToken.contains(token) ? std::optional(plain.byToken.at(token)) : std::nullopt),
            "the token's key");
  }

  void requireAllSame() const {
    for (const auto& [token, key] : plain.byToken) requireSame(token, key);
    for (const auto& [key, token] : plain.byKey) requireSame(token, key);
    requirePositions(table, plain);
  }

  void add(std::uint64_t token, const Key& key) {
    require(table.addEntry(token, key) == plain.addEntry(token, key), "an insertion tells whether the token was new");
    requireSame(token, key);
  }

  void remove(std::uint64_t token, const Key& key) {
    require(table.rmEntry(token, key) == plain.rmEntry(token, key), "a removal tells whether both were there");
    requireSame(token, key);
  }

  void removePair(std::uint64_t token) {
    if (plain.byToken.contains(token)) remove(token, Key(plain.byToken.at(token)));
  }

  void clear() {
    const bool holds = sizeOf(table, plain) > 0;
    reached("tokens that no key leads to outlive clearing", !holds && !plain.byToken.empty());
    require(table.rmAll() == holds, "clearing tells whether there was something");
    if (holds) plain = {};
  }

  // What was moved from is an empty table, and what was moved or assigned to itself is a table.
  void move(std::uint64_t token, const Key& key) {
    Table moved = std::move(table);
    require(table.getNumElements() == 0 && !table.tokenToKey(token) && table.addEntry(token, key) &&
                table.keyToToken(key) == token,
            "what was moved from is an empty table");
    Table& same = table;
    table = std::move(same);
    table.addEntry(token, key);
    require(table.tokenToKey(token) == key, "what was moved to itself is a table");
    table = std::move(moved);
    table = same;
  }

  // Adds and removes many in each order, so that what holds them grows and shrinks.
  void addAndRemoveMany(std::uint64_t first, const std::string& ways) {
    for (const char c : ways.substr(0, 3)) {
      const unsigned way = static_cast<unsigned char>(c);
      const std::size_t count = 32 * (1 + way / 8);
      for (std::size_t i = 0; i < count; ++i) {
        const std::size_t order[] = {i, count - 1 - i, i * 37 % count, i * i % count};
        const std::uint64_t token = first + order[way / 2 % 4];
        if (way % 2 == 0 && (way < 128 || i % 8 != 0)) {
          removePair(token);
        } else {
          Key key;
          toKey(std::to_string(token / 2) + std::string(token / 2 % 40, 'x'), key);  // Of two tokens.
          add(token, key);
        }
      }
      requireAllSame();
      reached("tokens in blocks", plain.byToken.size() > 512);
    }
  }

  void operate(char operation, std::uint64_t token, const std::string& text) {
    Key key;
    toKey(text, key);
    if (operation == 'M') return addAndRemoveMany(token >> 32, text);
    switch (operation & 31) {
      case 'r' & 31:
        return remove(token, key);
      case 'p' & 31:
        return removePair(token);
      case 'c' & 31:
        return clear();
      case 'm' & 31:
        return move(token, key);
      default:
        return add(token, key);
    }
  }
};

}  // namespace

void checkTables(Input input) {
  Compared<KeyTable, std::string> names;
  Compared<UuidKeyTable, uuids::uuid> ids;
  auto copiedNames = names;
  auto copiedIds = ids;
  std::vector<KeyTableEntry> entries;
  while (!input.isEmpty()) {
    std::string key = input.text();
    key.resize(std::max<std::size_t>(key.size(), 2));
    const std::uint64_t byte = static_cast<unsigned char>(key[1]);
    const std::uint64_t token = key[1] == '~' ? kAllOnes : byte << 32;  // Many tokens come in front of it.
    const char operation = key[0];
    key.erase(0, 2);
    names.operate(operation, token, key);
    ids.operate(operation, token, key);
    entries.push_back({token, key});
    if ((operation & 31) != ('s' & 31)) continue;
    copiedNames = names;
    copiedIds = ids;
  }
  // Once at the end, as every beginning of an input is an input, too. A copy stays, whatever came behind.
  for (const auto* compared : {&names, &copiedNames}) compared->requireAllSame();
  for (const auto* compared : {&ids, &copiedIds}) compared->requireAllSame();
  Compared<KeyTable, std::string> listed{KeyTable(entries), {}};
  for (const auto& [token, key] : entries) listed.plain.addEntry(token, key);
  listed.requireAllSame();
}
