// Both key tables under operations, against plain maps. Input: an operation each up to a '|': a letter, a token, a key.
#include <limits>

#include "Tarn/DataStructures/KeyTable.h"
#include "Tarn/DataStructures/UuidKeyTable.h"
#include "tests/Plain.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn;
using namespace Tarn::DataStructures;

constexpr std::uint64_t kAllOnes = std::numeric_limits<std::uint64_t>::max();

std::uint64_t sizeOf(const KeyTable&, const PlainTable<std::string>& plain) { return plain.byToken.size(); }
std::uint64_t sizeOf(const UuidKeyTable&, const PlainTable<uuids::uuid>& plain) { return plain.byKey.size(); }

template <class Table, class Key>
void requireSame(const Table& table, const PlainTable<Key>& plain, std::uint64_t token, const Key& key) {
  require(table.getNumElements() == sizeOf(table, plain), "the sizes agree");
  require(table.keyToToken(key) == (plain.byKey.contains(key) ? plain.byKey.at(key) : kAllOnes), "the key's token");
  require(table.tokenToKey(token) ==
              (plain.byToken.contains(token) ? std::optional(plain.byToken.at(token)) : std::nullopt),
          "the token's key");
}

template <class Table, class Key>
void operate(Table& table, PlainTable<Key>& plain, char operation, std::uint64_t token, const Key& key) {
  switch (operation) {
    case 'r':
      require(table.rmEntry(token, key) == plain.rmEntry(token, key), "a removal tells whether both were there");
      break;
    case 'c': {
      const bool holds = sizeOf(table, plain) > 0;
      require(table.rmAll() == holds, "clearing tells whether there was something");
      if (holds) plain = {};
      break;
    }
    default:
      require(table.addEntry(token, key) == plain.addEntry(token, key), "an insertion tells whether the token was new");
  }
  requireSame(table, plain, token, key);
}

template <class Table, class Key>
void requireAllSame(const Table& table, const PlainTable<Key>& plain) {
  for (const auto& [token, key] : plain.byToken) requireSame(table, plain, token, key);
  for (const auto& [key, token] : plain.byKey) requireSame(table, plain, token, key);
}

void requirePositions(const UuidKeyTable& table, const PlainTable<uuids::uuid>& plain) {
  std::uint64_t position = 0;
  for (const auto& [token, key] : plain.byToken) {
    require(table.getToken(position) == token && table.getKey(position) == key, "tokens have their positions");
    ++position;
  }
  for (const std::uint64_t outside : {position, position + 1, kAllOnes}) {
    require(table.getToken(outside) == kAllOnes && !table.getKey(outside), "nothing is behind the last");
  }
}

uuids::uuid toUuid(const std::string& text) {
  std::array<unsigned char, 16> bytes{};
  std::copy_n(text.begin(), std::min(text.size(), bytes.size()), bytes.begin());
  return uuids::uuid(bytes);
}

}  // namespace

void checkTables(Input input) {
  KeyTable names;
  PlainTable<std::string> plainNames;
  UuidKeyTable ids;
  PlainTable<uuids::uuid> plainIds;
  std::vector<KeyTableEntry> entries;
  while (!input.isEmpty()) {
    std::string key = input.text();
    key.resize(std::max<std::size_t>(key.size(), 2));
    const std::uint64_t token = key[1] == '~' ? kAllOnes : static_cast<unsigned char>(key[1]);
    const char operation = key[0];
    key.erase(0, 2);
    operate(names, plainNames, operation, token, key);
    operate(ids, plainIds, operation, token, toUuid(key));
    entries.push_back({token, key});
  }
  // Once at the end, as every beginning of an input is an input, too.
  requirePositions(ids, plainIds);
  requireAllSame(names, plainNames);
  requireAllSame(ids, plainIds);
  const KeyTable listed(entries);
  PlainTable<std::string> plainListed;
  for (const auto& [token, key] : entries) plainListed.addEntry(token, key);
  requireAllSame(listed, plainListed);
}
