// A sorted map that also finds its entries by position: either direction of a `UuidKeyTable`. It is installed because
// the table has two of them as members, and is no part of the interface.
//
// The entries stand one behind the other in blocks of bounded size, and the blocks in one list:
//
//     blocks_    [ first 2, 3 entries ]    [ first 9, 4 entries ]       ...
//     entries      2 a | 3 b | 7 c           9 d | 12 e | 15 f | 16 g
//
// A key is found by halving, among the blocks by their first keys and then in the block. A position is found by the
// blocks' partial counts, a Fenwick tree: that of block number n, counted from 1, is the number of entries in the
// n & -n blocks that end with it. So look-ups take logarithmic time. An insertion or a removal moves part of a block
// besides; one in half a block's worth of them splits or joins blocks, which moves the list behind them, less than a
// byte of it for each entry of the table.
//
// Copying, moving and destroying are the vectors'. An insertion that throws has changed nothing.
#ifndef TARN_DATASTRUCTURES_INTERNAL_SORTEDBLOCKS_H_
#define TARN_DATASTRUCTURES_INTERNAL_SORTEDBLOCKS_H_

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

namespace Tarn::internal {

template <class Key, class Value, std::size_t kBlockSize = 512>
class SortedBlocks {
 public:
  struct Entry {
    Key key;
    Value value;
  };

  [[nodiscard]] bool empty() const noexcept { return blocks_.empty(); }

  [[nodiscard]] std::uint64_t size() const noexcept {
    std::uint64_t sum = 0;
    for (std::size_t n = blocks_.size(); n > 0; n &= n - 1) sum += blocks_[n - 1].partialCount;
    return sum;
  }

  // The entry of a key, or null. Valid until the next change, as that of a position.
  [[nodiscard]] const Entry* find(const Key& key) const noexcept {
    if (empty()) return nullptr;
    const std::vector<Entry>& entries = blocks_[blockOf(key)].entries;
    const std::size_t at = placeOf(key, entries);
    return holds(entries, at, key) ? &entries[at] : nullptr;
  }

  // The entry that so many others stand before, or null.
  [[nodiscard]] const Entry* at(std::uint64_t position) const noexcept {
    std::size_t before = 0;  // Blocks that end before the position, which then counts from behind them.
    for (std::size_t step = std::bit_floor(blocks_.size()); step > 0; step /= 2) {
      if (before + step > blocks_.size() || blocks_[before + step - 1].partialCount > position) continue;
      before += step;
      position -= blocks_[before - 1].partialCount;
    }
    return before < blocks_.size() ? &blocks_[before].entries[static_cast<std::size_t>(position)] : nullptr;
  }

  // False, and nothing changes, if the key is present.
  bool insert(const Key& key, const Value& value) {
    if (empty()) {
      blocks_.push_back(Block{key, 1, {Entry{key, value}}});
      return true;
    }
    std::size_t block = blockOf(key);
    std::size_t at = placeOf(key, blocks_[block].entries);
    if (holds(blocks_[block].entries, at, key)) return false;
    if (blocks_[block].entries.size() == kBlockSize) {
      const std::size_t kept = split(block, at);
      if (at >= kept && kept > 0) {
        ++block;
        at -= kept;
      }
    }
    std::vector<Entry>& entries = blocks_[block].entries;
    entries.insert(position(entries, at), Entry{key, value});
    blocks_[block].first = entries.front().key;
    addToCount(block, 1);
    return true;
  }

  // False if the key is absent.
  bool erase(const Key& key) noexcept {
    if (empty()) return false;
    const std::size_t block = blockOf(key);
    std::vector<Entry>& entries = blocks_[block].entries;
    const std::size_t at = placeOf(key, entries);
    if (!holds(entries, at, key)) return false;
    entries.erase(position(entries, at));
    addToCount(block, -1);
    if (entries.empty()) {
      eraseBlock(block);
      recountFrom(block);
    } else {
      blocks_[block].first = entries.front().key;
      if (!joinNext(block) && block > 0) joinNext(block - 1);
    }
    return true;
  }

  void clear() noexcept { blocks_.clear(); }

 private:
  // Empty only while an insertion splits it.
  struct Block {
    Key first;
    std::uint64_t partialCount;
    std::vector<Entry> entries;
  };
  // With these, only allocation can throw, and it does before anything moves.
  static_assert(std::is_trivially_copyable_v<Entry> && std::is_nothrow_move_assignable_v<Block> && kBlockSize >= 2);

  template <class List>
  static auto position(List& list, std::size_t at) noexcept {
    return list.begin() + static_cast<std::ptrdiff_t>(at);
  }

  // The block that holds the key or would: the last one whose first key is not behind it, or the very first.
  [[nodiscard]] std::size_t blockOf(const Key& key) const noexcept {
    const auto behind = std::upper_bound(blocks_.begin(), blocks_.end(), key,
                                         [](const Key& a, const Block& block) { return a < block.first; });
    const auto number = static_cast<std::size_t>(behind - blocks_.begin());
    return number > 0 ? number - 1 : 0;
  }

  static std::size_t placeOf(const Key& key, const std::vector<Entry>& entries) noexcept {
    const auto place = std::lower_bound(entries.begin(), entries.end(), key,
                                        [](const Entry& entry, const Key& a) { return entry.key < a; });
    return static_cast<std::size_t>(place - entries.begin());
  }

  static bool holds(const std::vector<Entry>& entries, std::size_t at, const Key& key) noexcept {
    return at < entries.size() && entries[at].key == key;
  }

  // Makes room for an entry at a place of a full block: puts a block with room behind it and moves half of the entries
  // there, but none or all where the new entry extends the table at an end, so that numbers in turn fill their blocks.
  // Gives how many stay.
  std::size_t split(std::size_t block, std::size_t at) {
    const bool isFront = block == 0 && at == 0;
    const bool isBack = block + 1 == blocks_.size() && at == kBlockSize;
    const std::size_t kept = isFront ? 0 : isBack ? kBlockSize : kBlockSize / 2;
    std::vector<Entry> moved;
    moved.reserve(kBlockSize);
    moved.assign(position(blocks_[block].entries, kept), blocks_[block].entries.end());
    const Key first = moved.empty() ? Key{} : moved.front().key;
    blocks_.insert(position(blocks_, block + 1), Block{first, 0, std::move(moved)});
    blocks_[block].entries.resize(kept);
    recountFrom(block);
    return kept;
  }

  // Takes the next block's entries over where both are small and no memory is needed.
  bool joinNext(std::size_t block) noexcept {
    if (block + 1 == blocks_.size()) return false;
    std::vector<Entry>& entries = blocks_[block].entries;
    const std::vector<Entry>& next = blocks_[block + 1].entries;
    const std::size_t size = entries.size() + next.size();
    if (size > kBlockSize / 2 || size > entries.capacity()) return false;
    entries.insert(entries.end(), next.begin(), next.end());
    eraseBlock(block + 1);
    recountFrom(block);
    return true;
  }

  void eraseBlock(std::size_t block) noexcept { blocks_.erase(position(blocks_, block)); }

  void addToCount(std::size_t block, int change) noexcept {
    for (std::size_t n = block + 1; n <= blocks_.size(); n += n & (~n + 1)) {
      blocks_[n - 1].partialCount += static_cast<std::uint64_t>(change);
    }
  }

  void recountFrom(std::size_t block) noexcept {
    for (std::size_t n = block + 1; n <= blocks_.size(); ++n) {
      std::uint64_t sum = blocks_[n - 1].entries.size();
      for (std::size_t half = 1; (n & half) == 0; half *= 2) sum += blocks_[n - half - 1].partialCount;
      blocks_[n - 1].partialCount = sum;
    }
  }

  std::vector<Block> blocks_;
};

}  // namespace Tarn::internal

#endif  // TARN_DATASTRUCTURES_INTERNAL_SORTEDBLOCKS_H_
