// The inside of `HashedPairs`.
#ifndef TARN_DATASTRUCTURES_INTERNAL_HASHEDPAIRSINLINE_H_
#define TARN_DATASTRUCTURES_INTERNAL_HASHEDPAIRSINLINE_H_

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>
#include <stdexcept>

#include "Tarn/DataStructures/internal/HashedPairs.h"
#include "Tarn/uuids/internal/SeededHash.h"
#include "Tarn/uuids/uuid.h"

namespace Tarn::internal {

inline constexpr std::size_t kFewestHomes = 8;
inline constexpr std::size_t kTail = 64;  // With hashes as good as random, longer ones do not come about.

inline std::size_t homeOf(std::uint32_t hash, int shift) noexcept {
  return static_cast<std::size_t>((std::uint64_t{hash} << 32U) >> shift);
}

// The most pairs for a number of home slots: a load factor of 7/8, above which runs grow long.
inline constexpr std::size_t roomOf(std::size_t homes) noexcept { return homes / 8 * 7; }

inline std::size_t HashIndex::size() const noexcept { return slots_.empty() ? 0 : size_; }

// The first slot from the hash's home on whose hash is not smaller. Branchless over the first three slots, where most
// searches end.
inline const HashIndex::Slot* HashIndex::search(std::uint32_t hash) const noexcept {
  const Slot* const home = slots_.data() + homeOf(hash, shift_);
  std::ptrdiff_t smaller = 0;
  for (std::ptrdiff_t i = 0; i < 3; ++i) smaller += static_cast<std::ptrdiff_t>(home[i].hash < hash);
  const Slot* slot = home + smaller;
  while (slot->hash < hash) ++slot;
  return slot;
}

// The keyword makes compilers more willing to expand it where it is called, which a look-up of a few ns feels.
template <class Matches>
inline const HashIndex::Slot* HashIndex::find(std::uint32_t hash, Matches matches) const noexcept {
  if (slots_.empty()) return nullptr;
  for (const Slot* slot = search(hash); slot->hash == hash && slot->pair != 0; ++slot) {
    if (matches(slot->pair)) return slot;
  }
  return nullptr;
}

inline void HashIndex::reserveOne() {
  if (slots_.empty()) {
    rehash(kFewestHomes, kFewestHomes);
  } else if (size_ == roomOf(homes_)) {
    rehash(homes_ * 2, std::min(homes_ * 2, kTail));
  } else if (slots_[slots_.size() - 2].pair != 0) {
    rehash(homes_, slots_.size() - homes_ + kTail);
  }
}

inline void HashIndex::insert(std::uint32_t hash, std::uint32_t pair) noexcept {
  Slot* const at = slots_.data() + (search(hash) - slots_.data());
  Slot* end = at;
  while (end->pair != 0) ++end;
  std::move_backward(at, end, end + 1);
  *at = {hash, pair};
  ++size_;
}

inline void HashIndex::erase(const Slot* slot) noexcept {
  auto at = static_cast<std::size_t>(slot - slots_.data());
  for (; slots_[at + 1].pair != 0 && homeOf(slots_[at + 1].hash, shift_) <= at; ++at) slots_[at] = slots_[at + 1];
  slots_[at] = Slot{};
  --size_;
}

inline void HashIndex::shrink() noexcept {
  if (homes_ == kFewestHomes || slots_.empty() || size_ > roomOf(homes_ / 4)) return;
  try {
    rehash(homes_ / 2, std::min(homes_ / 2, kTail));
  } catch (const std::bad_alloc&) {
    return;  // It stays as large as it is.
  }
}

template <class Renumber>
void HashIndex::renumber(Renumber renumbered) noexcept {
  for (Slot& slot : slots_) {
    if (slot.pair != 0) slot.pair = renumbered(slot.pair);
  }
}

inline void HashIndex::rehash(std::size_t homes, std::size_t tail) {
  const int shift = 64 - std::countr_zero(homes);
  std::vector<Slot> slots(homes + std::max<std::size_t>(tail, 3));
  std::size_t next = 0;
  for (const Slot& slot : slots_) {
    if (slot.pair == 0) continue;
    next = std::max(next, homeOf(slot.hash, shift));
    if (next + 3 > slots.size()) slots.resize(slots.size() + kTail);
    slots[next++] = slot;
  }
  size_ = size();
  slots_.swap(slots);
  homes_ = homes;
  shift_ = shift;
}

// What stands in front of all pairs, and where they begin: the debuggers' views of the tables know it, too.
inline constexpr std::size_t kUnused = 0;
inline constexpr std::size_t kRemoved = 1;
inline constexpr std::size_t kFirst = 2;

// Where in a pair's words the parts stand.
inline constexpr std::size_t kHeader = 2;
inline constexpr std::uint64_t kLedByToken = 1;
inline constexpr std::uint64_t kLedByKey = 2;
inline constexpr std::size_t kFewestWords = 64;  // Not worth moving.

inline std::size_t wordsFor(std::size_t keySize) noexcept { return kHeader + keySize / 8 + (keySize % 8 == 0 ? 0 : 1); }

inline std::uint32_t hashOf(std::uint64_t token) noexcept {
  return static_cast<std::uint32_t>(seededHash(token) >> 32U);
}
inline std::uint32_t hashOf(std::string_view key) noexcept {
  return static_cast<std::uint32_t>(seededHash(key) >> 32U);
}
inline std::uint32_t hashOf(const uuids::uuid& key) noexcept {
  return static_cast<std::uint32_t>(seededHash16(key.as_bytes().data()) >> 32U);
}

inline std::string_view bytesOf(std::string_view key) noexcept { return key; }
inline std::string_view bytesOf(const uuids::uuid& key) noexcept {
  return {reinterpret_cast<const char*>(key.as_bytes().data()), key.as_bytes().size()};
}

inline std::size_t HashedPairs::tokens() const noexcept { return byToken_.size(); }
inline std::size_t HashedPairs::keys() const noexcept { return byKey_.size(); }

inline std::uint64_t HashedPairs::token(Number pair) const noexcept { return words_[pair]; }

inline std::string_view HashedPairs::key(Number pair) const noexcept {
  return {reinterpret_cast<const char*>(words_.data() + pair + kHeader),
          static_cast<std::size_t>(words_[pair + 1] >> 2U)};
}

inline auto isToken(const HashedPairs& pairs, std::uint64_t token) noexcept {
  return [&pairs, token](HashedPairs::Number pair) { return pairs.token(pair) == token; };
}

// By reference: a function object of two words is passed in registers, a larger one through memory.
inline auto isKey(const HashedPairs& pairs, const std::string_view& key) noexcept {
  return [&pairs, &key](HashedPairs::Number pair) { return areEqual(pairs.key(pair), key); };
}

inline auto isKey(const HashedPairs& pairs, const uuids::uuid& key) noexcept {
  return [&pairs, &key](HashedPairs::Number pair) {  // All keys are uuids then: 16 bytes, compared in place.
    return std::memcmp(pairs.key(pair).data(), key.as_bytes().data(), 16) == 0;
  };
}

inline HashedPairs::Number HashedPairs::find(std::uint64_t token) const noexcept {
  const auto* const slot = byToken_.find(hashOf(token), isToken(*this, token));
  return slot != nullptr ? slot->pair : 0;
}

template <class Key>
inline HashedPairs::Number HashedPairs::find(const Key& key) const noexcept {
  const auto* const slot = byKey_.find(hashOf(key), isKey(*this, key));
  return slot != nullptr ? slot->pair : 0;
}

template <class Key, class Prepare>
bool HashedPairs::add(std::uint64_t token, const Key& key, Prepare prepare) {
  const std::uint32_t tokenHash = hashOf(token);
  if (byToken_.find(tokenHash, isToken(*this, token)) != nullptr) return false;
  const std::uint32_t keyHash = hashOf(key);
  const bool isNewKey = byKey_.find(keyHash, isKey(*this, key)) == nullptr;
  const std::string_view bytes = bytesOf(key);
  const std::size_t size = wordsFor(bytes.size());
  byToken_.reserveOne();
  if (isNewKey) byKey_.reserveOne();
  const Number removed = lastRemoved(size);
  if (removed == 0) reserveWords(size);
  prepare();
  const Number pair = removed != 0 ? removed : static_cast<Number>(words_.size());
  if (removed != 0) {
    words_[kRemoved] = words_[removed];
    words_[kUnused] -= size;
  } else {
    words_.resize(words_.size() + size);
  }
  words_[pair] = token;
  words_[pair + 1] = bytes.size() << 2U | kLedByToken | (isNewKey ? kLedByKey : 0);
  if (!bytes.empty()) std::memcpy(words_.data() + pair + kHeader, bytes.data(), bytes.size());
  byToken_.insert(tokenHash, pair);
  if (isNewKey) byKey_.insert(keyHash, pair);
  return true;
}

template <class Key>
bool HashedPairs::remove(std::uint64_t token, const Key& key) noexcept {
  const auto* const byToken = byToken_.find(hashOf(token), isToken(*this, token));
  const auto* const byKey = byKey_.find(hashOf(key), isKey(*this, key));
  if (byToken == nullptr || byKey == nullptr) return false;
  release(byToken->pair, kLedByToken);
  release(byKey->pair, kLedByKey);
  byToken_.erase(byToken);
  byKey_.erase(byKey);
  shrink();
  return true;
}

}  // namespace Tarn::internal

#endif  // TARN_DATASTRUCTURES_INTERNAL_HASHEDPAIRSINLINE_H_
