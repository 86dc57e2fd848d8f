#include "Tarn/DataStructures/UuidKeyTable.h"

#include <iterator>
#include <limits>

namespace Tarn::DataStructures {
namespace {

constexpr std::uint64_t kNoToken = std::numeric_limits<std::uint64_t>::max();

// The entry at a position of a sorted map, from whichever end is nearer.
template <class Map>
auto entryAt(const Map& map, std::uint64_t position) {
  const std::uint64_t size = map.size();
  if (position >= size) return map.end();
  const auto forward = static_cast<std::ptrdiff_t>(position);
  const auto backward = static_cast<std::ptrdiff_t>(size - position);
  return forward <= backward ? std::next(map.begin(), forward) : std::prev(map.end(), backward);
}

}  // namespace

bool UuidKeyTable::addEntry(std::uint64_t token, const uuids::uuid& key) {
  if (!tokenToUuidMap.try_emplace(token, key).second) return false;
  uuidToTokenMap.try_emplace(key, token);
  return true;
}

std::uint64_t UuidKeyTable::keyToToken(const uuids::uuid& key) const {
  const auto found = uuidToTokenMap.find(key);
  return found != uuidToTokenMap.end() ? found->second : kNoToken;
}

std::optional<uuids::uuid> UuidKeyTable::tokenToKey(std::uint64_t token) const {
  const auto found = tokenToUuidMap.find(token);
  if (found == tokenToUuidMap.end()) return std::nullopt;
  return found->second;
}

std::uint64_t UuidKeyTable::getToken(std::uint64_t position) const {
  const auto entry = entryAt(tokenToUuidMap, position);
  return entry != tokenToUuidMap.end() ? entry->first : kNoToken;
}

std::optional<uuids::uuid> UuidKeyTable::getKey(std::uint64_t position) const {
  const auto entry = entryAt(tokenToUuidMap, position);
  if (entry == tokenToUuidMap.end()) return std::nullopt;
  return entry->second;
}

std::uint64_t UuidKeyTable::getNumElements() const { return uuidToTokenMap.size(); }

bool UuidKeyTable::rmEntry(std::uint64_t token, const uuids::uuid& key) {
  const auto byToken = tokenToUuidMap.find(token);
  const auto byUuid = uuidToTokenMap.find(key);
  if (byToken == tokenToUuidMap.end() || byUuid == uuidToTokenMap.end()) return false;
  tokenToUuidMap.erase(byToken);
  uuidToTokenMap.erase(byUuid);
  return true;
}

bool UuidKeyTable::rmAll() {
  if (uuidToTokenMap.empty()) return false;
  tokenToUuidMap.clear();
  uuidToTokenMap.clear();
  return true;
}

}  // namespace Tarn::DataStructures
