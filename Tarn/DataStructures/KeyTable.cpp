#include "Tarn/DataStructures/KeyTable.h"

#include <limits>

#include "Tarn/DataStructures/internal/HashedPairsInline.h"

namespace Tarn::DataStructures {

KeyTable::KeyTable(const std::vector<KeyTableEntry>& entries) { addTable(entries); }

bool KeyTable::add(std::uint64_t token, std::string_view key) {
  return pairs_.add(token, key, [] {});
}

bool KeyTable::addEntry(std::uint64_t token, const std::string& key) { return add(token, key); }

void KeyTable::addTable(const std::vector<KeyTableEntry>& entries) {
  for (const KeyTableEntry& entry : entries) add(entry.token, entry.key);
}

std::uint64_t KeyTable::getNumElements() const { return pairs_.tokens(); }

std::uint64_t KeyTable::find(std::string_view key) const {
  const auto pair = pairs_.find(key);
  return pair != 0 ? pairs_.token(pair) : std::numeric_limits<std::uint64_t>::max();
}

std::uint64_t KeyTable::keyToToken(const std::string& key) const { return find(key); }

std::optional<std::string> KeyTable::tokenToKey(std::uint64_t token) const {
  const auto pair = pairs_.find(token);
  if (pair == 0) return std::nullopt;
  return std::optional<std::string>(std::in_place, pairs_.key(pair));
}

bool KeyTable::remove(std::uint64_t token, std::string_view key) { return pairs_.remove(token, key); }

bool KeyTable::rmEntry(std::uint64_t token, const std::string& key) { return remove(token, key); }

bool KeyTable::rmAll() {
  if (pairs_.tokens() == 0) return false;
  pairs_ = {};
  return true;
}

}  // namespace Tarn::DataStructures
