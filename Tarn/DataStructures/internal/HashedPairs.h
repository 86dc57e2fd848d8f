// What both key tables are made of: a store of their pairs, and two indexes that find a pair by a hash, of its token or
// of its key. It is installed because the tables have one as a member, and is no part of the interface: what it does
// stands in HashedPairsInline.h, which only the library's sources see.
#ifndef TARN_DATASTRUCTURES_INTERNAL_HASHEDPAIRS_H_
#define TARN_DATASTRUCTURES_INTERNAL_HASHEDPAIRS_H_

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

namespace Tarn::internal {

// An open-addressing table of pair numbers with Robin Hood hashing. Slots stand in ascending order of their hashes,
// each in its home slot, which the upper bits of the hash give, or behind it where slots in a row are taken:
//
//     slot     0      1      2      3      4      5      6      7      tail
//     hash     07...  21...  empty  6a...  71...  7f...  c3...  e0...  f2...  empty
//     home     0      1             3      3      3      6      7      7
//
// A search ends, whether it finds something or not, at the first hash that is not smaller; an empty slot counts as the
// greatest. Erasing moves the rest of a run back. Growing and shrinking are one pass. Runs do not wrap around: a tail
// takes what the last home slots cannot hold.
class HashIndex {
 public:
  struct Slot {
    std::uint32_t hash = std::numeric_limits<std::uint32_t>::max();
    std::uint32_t pair = 0;  // None.
  };

  [[nodiscard]] std::size_t size() const noexcept;

  // The slot with that hash whose pair matches, or null. Valid until the next change.
  template <class Matches>
  [[nodiscard]] const Slot* find(std::uint32_t hash, Matches matches) const noexcept;

  // Makes room for one pair more. If it throws, nothing has changed.
  void reserveOne();

  // There must be room.
  void insert(std::uint32_t hash, std::uint32_t pair) noexcept;

  void erase(const Slot* slot) noexcept;

  // Halves the home slots where the pairs need a quarter of them at most, unless there is no memory for it.
  void shrink() noexcept;

  // Changes each number to what `renumbered` gives for it.
  template <class Renumber>
  void renumber(Renumber renumbered) noexcept;

 private:
  [[nodiscard]] const Slot* search(std::uint32_t hash) const noexcept;
  void rehash(std::size_t homes, std::size_t tail);

  std::vector<Slot> slots_;  // The last is empty.
  std::size_t homes_ = 0;    // A power of two.
  std::size_t size_ = 0;
  int shift_ = 0;
};

// Pairs of a token and a key's bytes, found by either. The two directions are separate: a pair is there as long as one
// of them leads to it.
//
// Pairs stand one behind the other in 64-bit words, so that reading one is one cache miss:
//
//     unused words | last removed | token | key's size, directions | its bytes ... | token | ...
//
// A pair's number is that of its first word, never 0. With 32 bits, numbers reach 32 GiB far. Removed pairs form a list
// by their first words; the last of them is used again by a pair that takes as many.
//
// Memory: words and slots are at most twice what the pairs need, whatever came before, but for a kilobyte. A
// store that is full grows by half. One of which less than half is used is compacted, and an index of which less than a
// quarter is used is halved; both are done again at the next removal if there is no memory for it.
class HashedPairs {
 public:
  using Number = std::uint32_t;

  [[nodiscard]] std::size_t tokens() const noexcept;
  [[nodiscard]] std::size_t keys() const noexcept;

  // The pair of a token or of a key, or 0. A key is a `std::string_view`, or a uuid.
  [[nodiscard]] Number find(std::uint64_t token) const noexcept;
  template <class Key>
  [[nodiscard]] Number find(const Key& key) const noexcept;

  [[nodiscard]] std::uint64_t token(Number pair) const noexcept;
  [[nodiscard]] std::string_view key(Number pair) const noexcept;

  // Adds a pair; its key leads to it unless it leads to another one already. False, and nothing changes, if the token
  // is there. `prepare` is called before anything changes and may throw; if anything throws, nothing has changed.
  template <class Key, class Prepare>
  bool add(std::uint64_t token, const Key& key, Prepare prepare);

  // Takes the token out of one direction and the key out of the other. False, and nothing changes, unless both are
  // there.
  template <class Key>
  bool remove(std::uint64_t token, const Key& key) noexcept;

 private:
  [[nodiscard]] Number lastRemoved(std::size_t size) const noexcept;
  void reserveWords(std::size_t count);
  void compact(std::size_t capacity);
  void release(Number pair, std::uint64_t direction) noexcept;
  void shrink() noexcept;

  std::vector<std::uint64_t> words_;
  HashIndex byToken_;
  HashIndex byKey_;
};

}  // namespace Tarn::internal

#endif  // TARN_DATASTRUCTURES_INTERNAL_HASHEDPAIRS_H_
