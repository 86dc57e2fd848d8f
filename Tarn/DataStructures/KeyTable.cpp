#include "Tarn/DataStructures/KeyTable.h"

#include <functional>
#include <limits>

namespace Tarn::DataStructures {

namespace {

using Pairs = internal::PairStore<>;

// Spreads numbers that differ in any bits, tokens in steps of any size among them, as if they were random.
std::uint32_t mixed(std::uint64_t number) {
  number = (number ^ (number >> 32)) * 0x9E3779B97F4A7C15;
  number = (number ^ (number >> 29)) * 0xBF58476D1CE4E5B9;
  return static_cast<std::uint32_t>(number >> 32);
}

std::uint32_t hashOf(std::uint64_t token) { return mixed(token); }
std::uint32_t hashOf(std::string_view key) { return mixed(std::hash<std::string_view>()(key)); }

// What a pair is recognised by.
auto has(const Pairs& pairs, std::uint64_t token) {
  return [&pairs, token](std::uint32_t pair) { return pairs.token(pair) == token; };
}
auto has(const Pairs& pairs, std::string_view key) {
  return [&pairs, key](std::uint32_t pair) { return pairs.key(pair) == key; };
}
auto is(std::uint32_t number) {
  return [number](std::uint32_t pair) { return pair == number; };
}

}  // namespace

KeyTable::KeyTable(const std::vector<KeyTableEntry>& entries) { addTable(entries); }

bool KeyTable::addEntry(std::uint64_t token, const std::string& key) {
  const std::uint32_t tokenHash = hashOf(token);
  if (tokenToKeyMap.find(tokenHash, has(pairs, token)) != nullptr) return false;
  const std::uint32_t keyHash = hashOf(key);
  const bool isNewKey = keyToTokenMap.find(keyHash, has(pairs, key)) == nullptr;
  tokenToKeyMap.reserve(tokenToKeyMap.size());
  keyToTokenMap.reserve(keyToTokenMap.size());
  const std::uint32_t pair = pairs.add(token, key);
  tokenToKeyMap.insert(tokenHash, pair);
  if (isNewKey) keyToTokenMap.insert(keyHash, pair);
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
  const auto* const found = keyToTokenMap.find(hashOf(key), has(pairs, key));
  return found != nullptr ? pairs.token(found->pair) : std::numeric_limits<std::uint64_t>::max();
}

std::optional<std::string> KeyTable::tokenToKey(std::uint64_t token) const {
  const auto* const found = tokenToKeyMap.find(hashOf(token), has(pairs, token));
  if (found == nullptr) return std::nullopt;
  return std::optional<std::string>(std::in_place, pairs.key(found->pair));
}

bool KeyTable::rmEntry(std::uint64_t token, const std::string& key) {
  const auto* const byToken = tokenToKeyMap.find(hashOf(token), has(pairs, token));
  const auto* const byKey = keyToTokenMap.find(hashOf(key), has(pairs, key));
  if (byToken == nullptr || byKey == nullptr) return false;
  const std::uint32_t pairOfToken = byToken->pair;
  const std::uint32_t pairOfKey = byKey->pair;
  tokenToKeyMap.erase(byToken);
  keyToTokenMap.erase(byKey);
  dropUnused(pairOfToken);
  if (pairOfKey != pairOfToken) dropUnused(pairOfKey);
  if (pairs.isMostlyUnused()) compact();
  return true;
}

bool KeyTable::rmAll() {
  if (tokenToKeyMap.size() == 0) return false;
  *this = KeyTable();
  return true;
}

KeyTable::Slots KeyTable::slotsOf(std::uint32_t pair) const noexcept {
  return {tokenToKeyMap.find(hashOf(pairs.token(pair)), is(pair)),
          keyToTokenMap.find(hashOf(pairs.key(pair)), is(pair))};
}

void KeyTable::dropUnused(std::uint32_t pair) noexcept {
  const auto [byToken, byKey] = slotsOf(pair);
  if (byToken == nullptr && byKey == nullptr) pairs.drop(pair);
}

void KeyTable::compact() noexcept {
  pairs.compact([this](std::uint32_t pair, std::uint32_t number) {
    const auto [byToken, byKey] = slotsOf(pair);
    if (byToken != nullptr) tokenToKeyMap.renumber(byToken, number);
    if (byKey != nullptr) keyToTokenMap.renumber(byKey, number);
    return byToken != nullptr || byKey != nullptr;
  });
}

}  // namespace Tarn::DataStructures
