#include "Tarn/DataStructures/UuidKeyTable.h"

#include <limits>

namespace Tarn::DataStructures {
namespace {

constexpr std::uint64_t kNoToken = std::numeric_limits<std::uint64_t>::max();

// The uuid of an entry that was found, or nothing.
template <class Entry>
std::optional<uuids::uuid> uuidOf(const Entry* entry) {
  if (entry == nullptr) return std::nullopt;
  return entry->value;
}

}  // namespace

bool UuidKeyTable::addEntry(std::uint64_t token, const uuids::uuid& key) {
  if (!tokenToUuidMap.insert(token, key)) return false;
  uuidToTokenMap.insert(key, token);
  return true;
}

std::uint64_t UuidKeyTable::keyToToken(const uuids::uuid& key) const {
  const auto* entry = uuidToTokenMap.find(key);
  return entry != nullptr ? entry->value : kNoToken;
}

std::optional<uuids::uuid> UuidKeyTable::tokenToKey(std::uint64_t token) const {
  return uuidOf(tokenToUuidMap.find(token));
}

std::uint64_t UuidKeyTable::getToken(std::uint64_t position) const {
  const auto* entry = tokenToUuidMap.at(position);
  return entry != nullptr ? entry->key : kNoToken;
}

std::optional<uuids::uuid> UuidKeyTable::getKey(std::uint64_t position) const {
  return uuidOf(tokenToUuidMap.at(position));
}

std::uint64_t UuidKeyTable::getNumElements() const { return uuidToTokenMap.size(); }

bool UuidKeyTable::rmEntry(std::uint64_t token, const uuids::uuid& key) {
  if (tokenToUuidMap.find(token) == nullptr || !uuidToTokenMap.erase(key)) return false;
  tokenToUuidMap.erase(token);
  return true;
}

bool UuidKeyTable::rmAll() {
  if (uuidToTokenMap.empty()) return false;
  tokenToUuidMap.clear();
  uuidToTokenMap.clear();
  return true;
}

}  // namespace Tarn::DataStructures
