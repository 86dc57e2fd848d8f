// Tokens in ascending order, found by position: what a `UuidKeyTable` adds to its pairs. It is installed because the
// table has it as a member, and is no part of the interface.
//
// The tokens stand one behind the other in blocks of bounded size, and the blocks in one list:
//
//     blocks_    2 | 3 | 7        9 | 12 | 15 | 16       ...
//     counts_    3                7                      ...
//
// A position is found by the counts, a Fenwick tree: that of block number n, counted from 1, is the number of tokens in
// the n & -n blocks that end with it. A token's place is found by binary search, among the blocks' beginnings and then
// in the block. So both take logarithmic time. Who visits all positions from the first on has each block searched for
// once: the last one whose first token was asked for is remembered until the next change. An insertion or a removal
// moves part of a block besides; one in half a block's worth of them splits or joins blocks, which moves the lists
// behind them, less than a byte of them for each token.
//
// Memory: each block has room for at most twice its tokens, but for a few, and neighbours that are small are joined.
// Copying, moving and destroying are the vectors': who assigns a copy makes it first. What is remembered is copied
// along, also by a move, behind which there is no block that it could stand for. An insertion that throws has changed
// nothing.
#ifndef TARN_DATASTRUCTURES_INTERNAL_SORTEDTOKENS_H_
#define TARN_DATASTRUCTURES_INTERNAL_SORTEDTOKENS_H_

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tarn::internal {

class SortedTokens {
 public:
  // The token that so many others stand before, or null. Valid until the next change.
  [[nodiscard]] const std::uint64_t* at(std::uint64_t position) const noexcept;

  // It must not be there.
  void insert(std::uint64_t token);

  // It must be there.
  void erase(std::uint64_t token) noexcept;

 private:
  // A block's index in the lower half, and how many tokens stand before it: both fit, as a table holds fewer pairs than
  // 32 bits can number. At first the block at the front. Threads that read at once may overtake each other: what is
  // stored holds until the next change.
  struct Remembered : std::atomic<std::uint64_t> {
    Remembered() noexcept : atomic(0) {}
    Remembered(const Remembered& other) noexcept : atomic(other.load(std::memory_order_relaxed)) {}
    Remembered& operator=(const Remembered& other) noexcept {
      if (this != &other) store(other.load(std::memory_order_relaxed), std::memory_order_relaxed);
      return *this;
    }
  };

  struct Block {
    std::uint64_t begin;  // No token of it is smaller, and all tokens of earlier blocks are.
    std::vector<std::uint64_t> tokens;
  };

  [[nodiscard]] std::size_t blockOf(std::uint64_t token) const noexcept;
  void split(std::size_t block, std::uint64_t token);
  bool joinNext(std::size_t block) noexcept;
  void eraseBlock(std::size_t block) noexcept;
  void addToCount(std::size_t block, std::uint64_t change) noexcept;
  void recountFrom(std::size_t block) noexcept;

  std::vector<Block> blocks_;
  std::vector<std::uint64_t> counts_;
  mutable Remembered remembered_;
};

}  // namespace Tarn::internal

#endif  // TARN_DATASTRUCTURES_INTERNAL_SORTEDTOKENS_H_
