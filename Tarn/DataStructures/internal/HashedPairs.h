// What a `KeyTable` is made of: a store of its pairs, and indexes that find a pair by a hash. It is installed because
// the table has them as members, and is no part of the interface.
//
// Copying, moving and destroying are the vectors', and what was moved from is empty.
#ifndef TARN_DATASTRUCTURES_INTERNAL_HASHEDPAIRS_H_
#define TARN_DATASTRUCTURES_INTERNAL_HASHEDPAIRS_H_

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace Tarn::internal {

// Pairs of token and key, one behind the other in 64-bit words, so that a look-up reads one place of the memory:
//
//     unused words | token | size of the key | its characters ... | token | ...
//
// A pair's number is that of its first word, never 0. With 32 bits, numbers reach 32 GiB far.
template <std::size_t kMostWords = std::numeric_limits<std::uint32_t>::max()>
class PairStore {
 public:
  [[nodiscard]] std::uint64_t token(std::uint32_t pair) const noexcept { return words_[pair]; }
  [[nodiscard]] std::string_view key(std::uint32_t pair) const noexcept {
    return {reinterpret_cast<const char*>(words_.data() + pair + kHeader), keySize(pair)};
  }

  // The number of the new pair. If it throws, nothing has changed.
  std::uint32_t add(std::uint64_t token, std::string_view key) {
    const std::size_t pair = std::max<std::size_t>(words_.size(), 1);
    const std::size_t end = pair + wordsFor(key.size());
    if (end > kMostWords) throw std::length_error("KeyTable");
    words_.resize(end);
    words_[pair] = token;
    words_[pair + 1] = key.size();
    std::memcpy(words_.data() + pair + kHeader, key.data(), key.size());
    return static_cast<std::uint32_t>(pair);
  }

  // Counts a pair's words as unused.
  void drop(std::uint32_t pair) noexcept { words_.front() += wordsFor(keySize(pair)); }

  [[nodiscard]] bool isMostlyUnused() const noexcept { return words_.front() > words_.size() / 2; }

  // Moves the pairs together for which `renumber(number, new number)` is true.
  template <class Renumber>
  void compact(Renumber renumber) noexcept {
    std::size_t end = 1;
    for (std::size_t pair = 1, size = 0; pair < words_.size(); pair += size) {
      size = wordsFor(keySize(pair));
      if (!renumber(static_cast<std::uint32_t>(pair), static_cast<std::uint32_t>(end))) continue;
      std::memmove(words_.data() + end, words_.data() + pair, size * sizeof(std::uint64_t));
      end += size;
    }
    words_.resize(end);
    words_.front() = 0;
  }

 private:
  static constexpr std::size_t kHeader = 2;

  [[nodiscard]] std::size_t keySize(std::size_t pair) const noexcept {
    return static_cast<std::size_t>(words_[pair + 1]);
  }

  static std::size_t wordsFor(std::size_t keySize) noexcept {
    return kHeader + keySize / sizeof(std::uint64_t) + (keySize % sizeof(std::uint64_t) == 0 ? 0 : 1);
  }

  std::vector<std::uint64_t> words_;
};

// Finds the numbers of pairs by a hash. Slots stand in ascending order of the hashes, each at the place that the hash's
// upper bits name or, in a row of occupied ones, behind it:
//
//     place    0      1      2      3      4      5      6      7      behind the last
//     hash     07...  21...  empty  6a...  71...  7f...  c3...  e0...  f2...  empty
//     named    0      1             3      3      3      6      7      7
//
// A search goes up from the named place and ends, whether it finds something or not, at the first hash that is not
// smaller; an empty slot counts as the greatest. Erasing moves the rest of a row back. Growing is one pass. No row
// wraps around: behind the last place is room, and more is made when there is a row that long.
class HashIndex {
 public:
  struct Slot {
    std::uint32_t hash = std::numeric_limits<std::uint32_t>::max();
    std::uint32_t pair = 0;  // None.
  };

  [[nodiscard]] std::size_t size() const noexcept { return slots_.empty() ? 0 : size_; }

  // The slot with that hash whose pair matches, or null. Valid until the next change.
  template <class Matches>
  [[nodiscard]] const Slot* find(std::uint32_t hash, Matches matches) const noexcept {
    if (slots_.empty()) return nullptr;
    for (const Slot* slot = search(hash); slot->hash == hash && slot->pair != 0; ++slot) {
      if (matches(slot->pair)) return slot;
    }
    return nullptr;
  }

  // Makes room for one pair more than so many. If it throws, nothing has changed.
  void reserve(std::size_t size) {
    if (slots_.empty() || size >= places_ / 8 * 7) {
      grow(std::bit_ceil(std::max(size + size / 7 + 1, kFewest)));
    } else if (slots_[slots_.size() - 2].pair != 0) {
      slots_.emplace_back();
    }
  }

  // There must be room.
  void insert(std::uint32_t hash, std::uint32_t pair) noexcept {
    Slot* const at = &slots_[numberOf(search(hash))];
    Slot* end = at;
    while (end->pair != 0) ++end;
    std::move_backward(at, end, end + 1);
    *at = {hash, pair};
    ++size_;
  }

  void erase(const Slot* slot) noexcept {
    std::size_t at = numberOf(slot);
    for (; slots_[at + 1].pair != 0 && place(slots_[at + 1].hash, shift_) <= at; ++at) slots_[at] = slots_[at + 1];
    slots_[at] = Slot{};
    --size_;
  }

  void renumber(const Slot* slot, std::uint32_t pair) noexcept { slots_[numberOf(slot)].pair = pair; }

 private:
  static constexpr std::size_t kFewest = 8;
  static constexpr std::size_t kBehind = 64;  // Rows that are longer come about by ill-chosen hashes only.

  static std::size_t place(std::uint32_t hash, int shift) noexcept {
    return static_cast<std::size_t>((std::uint64_t{hash} << 32) >> shift);
  }

  [[nodiscard]] std::size_t numberOf(const Slot* slot) const noexcept {
    return static_cast<std::size_t>(slot - slots_.data());
  }

  // The first slot from the hash's place on whose hash is not smaller.
  [[nodiscard]] const Slot* search(std::uint32_t hash) const noexcept {
    const Slot* const named = slots_.data() + place(hash, shift_);
    std::ptrdiff_t smaller = 0;  // Of the first three, which are counted without a jump that nobody can predict.
    for (std::ptrdiff_t i = 0; i < 3; ++i) smaller += static_cast<std::ptrdiff_t>(named[i].hash < hash);
    const Slot* slot = named + smaller;
    while (slot->hash < hash) ++slot;
    return slot;
  }

  void grow(std::size_t places) {
    std::vector<Slot> slots(places + std::min(places, kBehind));
    const int shift = 64 - std::countr_zero(places);
    std::size_t size = 0;
    std::size_t next = 0;
    for (const Slot& slot : slots_) {
      if (slot.pair == 0) continue;
      next = std::max(next, place(slot.hash, shift));
      while (next + 3 > slots.size()) slots.emplace_back();
      slots[next++] = slot;
      ++size;
    }
    slots_.swap(slots);
    places_ = places;
    shift_ = shift;
    size_ = size;
  }

  std::vector<Slot> slots_;  // The last is empty.
  std::size_t places_ = 0;   // A power of two.
  std::size_t size_ = 0;
  int shift_ = 0;
};

}  // namespace Tarn::internal

#endif  // TARN_DATASTRUCTURES_INTERNAL_HASHEDPAIRS_H_
