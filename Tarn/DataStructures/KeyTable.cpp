#include "Tarn/DataStructures/KeyTable.h"

#include <limits>

namespace Tarn::DataStructures {

KeyTable::KeyTable(const std::vector<KeyTableEntry>& entries) { addTable(entries); }

bool KeyTable::addEntry(std::uint64_t token, const std::string& key) {
  if (!tokenToKeyMap.try_emplace(token, key).second) return false;
  keyToTokenMap.try_emplace(key, token);
  return true;
}

void KeyTable::addTable(const std::vector<KeyTableEntry>& entries) {
  // Room at once where the list is most of the table; a row of short lists grows it as single entries do.
  if (entries.size() > tokenToKeyMap.size()) {
    tokenToKeyMap.reserve(tokenToKeyMap.size() + entries.size());
    keyToTokenMap.reserve(keyToTokenMap.size() + entries.size());
  }
  for (const KeyTableEntry& entry : entries) addEntry(entry.token, entry.key);
}

std::uint64_t KeyTable::getNumElements() const { return tokenToKeyMap.size(); }

std::uint64_t KeyTable::keyToToken(const std::string& key) const {
  const auto found = keyToTokenMap.find(key);
  return found != keyToTokenMap.end() ? found->second : std::numeric_limits<std::uint64_t>::max();
}

std::optional<std::string> KeyTable::tokenToKey(std::uint64_t token) const {
  const auto found = tokenToKeyMap.find(token);
  if (found == tokenToKeyMap.end()) return std::nullopt;
  return found->second;
}

bool KeyTable::rmEntry(std::uint64_t token, const std::string& key) {
  const auto byToken = tokenToKeyMap.find(token);
  const auto byKey = keyToTokenMap.find(key);
  if (byToken == tokenToKeyMap.end() || byKey == keyToTokenMap.end()) return false;
  tokenToKeyMap.erase(byToken);
  keyToTokenMap.erase(byKey);
  return true;
}

bool KeyTable::rmAll() {
  if (tokenToKeyMap.empty()) return false;
  tokenToKeyMap.clear();
  keyToTokenMap.clear();
  return true;
}

}  // namespace Tarn::DataStructures
