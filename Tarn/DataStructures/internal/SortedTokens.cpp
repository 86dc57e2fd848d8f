#include "Tarn/DataStructures/internal/SortedTokens.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <new>

namespace Tarn::internal {
namespace {

constexpr std::size_t kMostTokens = 256;  // What an insertion moves at most, against the blocks to be searched.
constexpr std::uint64_t kLowerHalf = 0xFFFFFFFF;
constexpr std::size_t kFewElements = 16;  // Not worth moving.

// Room for so many elements, and for half as many more.
template <class T>
void reallocate(std::vector<T>& list) {
  std::vector<T> moved;
  moved.reserve(list.size() + list.size() / 2 + 1);
  moved.insert(moved.end(), std::make_move_iterator(list.begin()), std::make_move_iterator(list.end()));
  list.swap(moved);
}

// Gives memory back where less than half of it is used, unless there is none to move to.
template <class T>
void giveBack(std::vector<T>& list) noexcept {
  if (list.capacity() <= kFewElements || list.size() >= list.capacity() / 2) return;
  try {
    reallocate(list);
  } catch (const std::bad_alloc&) {
    return;  // At the next removal, perhaps.
  }
}

// The number of elements at the front for which `isBefore` holds; behind them it holds for none. All, as when tokens
// come in ascending order, is seen at once. Else by binary search, branchless: which half comes next is a coin's toss,
// and half of the jumps would be predicted wrongly. Compilers move a pointer without a jump, but jump around an
// addition.
template <class T, class IsBefore>
std::size_t countBefore(const std::vector<T>& list, IsBefore isBefore) noexcept {
  if (list.empty() || isBefore(list.back())) return list.size();
  const T* first = list.data();
  for (std::size_t size = list.size(); size > 1;) {
    const std::size_t half = size / 2;
    const T* const next = first + half;
    first = isBefore(next[-1]) ? next : first;
    size -= half;
  }
  return static_cast<std::size_t>(first - list.data()) + (isBefore(*first) ? 1 : 0);
}

std::size_t placeOf(std::uint64_t token, const std::vector<std::uint64_t>& tokens) noexcept {
  return countBefore(tokens, [token](std::uint64_t other) { return other < token; });
}

template <class T>
auto iteratorAt(std::vector<T>& list, std::size_t at) noexcept {
  return list.begin() + static_cast<std::ptrdiff_t>(at);
}

}  // namespace

const std::uint64_t* SortedTokens::at(std::uint64_t position) const noexcept {
  const std::uint64_t remembered = remembered_.load(std::memory_order_relaxed);
  const auto block = static_cast<std::size_t>(remembered & kLowerHalf);
  std::uint64_t within = position - (remembered >> 32U);
  if (block < blocks_.size() && within < blocks_[block].tokens.size()) {
    return &blocks_[block].tokens[static_cast<std::size_t>(within)];
  }
  std::size_t before = 0;  // Blocks that end before the position, which then counts from behind them.
  within = position;
  for (std::size_t step = std::bit_floor(counts_.size()); step > 0; step /= 2) {
    if (before + step > counts_.size() || counts_[before + step - 1] > within) continue;
    before += step;
    within -= counts_[before - 1];
  }
  if (before == blocks_.size()) return nullptr;
  if (within == 0) remembered_.store(position << 32U | before, std::memory_order_relaxed);
  return &blocks_[before].tokens[static_cast<std::size_t>(within)];
}

void SortedTokens::insert(std::uint64_t token) {
  remembered_ = {};
  if (blocks_.empty()) {
    counts_.reserve(1);
    blocks_.push_back(Block{token, {token}});
    counts_.push_back(1);
    return;
  }
  blocks_.front().begin = std::min(blocks_.front().begin, token);
  std::size_t block = blockOf(token);
  if (blocks_[block].tokens.size() == kMostTokens) {
    split(block, token);
    if (token >= blocks_[block + 1].begin) ++block;
  }
  std::vector<std::uint64_t>& tokens = blocks_[block].tokens;
  if (tokens.size() == tokens.capacity()) reallocate(tokens);
  tokens.insert(iteratorAt(tokens, placeOf(token, tokens)), token);
  addToCount(block, 1);
}

void SortedTokens::erase(std::uint64_t token) noexcept {
  remembered_ = {};
  const std::size_t block = blockOf(token);
  std::vector<std::uint64_t>& tokens = blocks_[block].tokens;
  tokens.erase(iteratorAt(tokens, placeOf(token, tokens)));
  addToCount(block, std::uint64_t{0} - 1);
  giveBack(tokens);
  if (tokens.empty()) {
    eraseBlock(block);
  } else if (!joinNext(block) && block > 0) {
    joinNext(block - 1);
  }
}

// The block that holds the token or would.
std::size_t SortedTokens::blockOf(std::uint64_t token) const noexcept {
  const std::size_t begun = countBefore(blocks_, [token](const Block& block) { return block.begin <= token; });
  return begun == 0 ? 0 : begun - 1;
}

// Moves half of a full block to one behind it. Where the token comes behind all others, the new block begins with it
// instead, so that tokens in ascending order fill their blocks.
void SortedTokens::split(std::size_t block, std::uint64_t token) {
  const bool isLast = block + 1 == blocks_.size() && token > blocks_[block].tokens.back();
  const std::size_t kept = isLast ? kMostTokens : kMostTokens / 2;
  Block next{isLast ? token : blocks_[block].tokens[kept], {}};
  next.tokens.reserve(isLast ? kFewElements : kMostTokens / 4 * 3);
  next.tokens.assign(iteratorAt(blocks_[block].tokens, kept), blocks_[block].tokens.end());
  if (counts_.size() == counts_.capacity()) reallocate(counts_);
  if (blocks_.size() == blocks_.capacity()) reallocate(blocks_);
  blocks_.insert(iteratorAt(blocks_, block + 1), std::move(next));
  counts_.push_back(0);
  blocks_[block].tokens.resize(kept);
  recountFrom(block);
}

// Takes the next block's tokens over where half a block holds both.
bool SortedTokens::joinNext(std::size_t block) noexcept {
  if (block + 1 == blocks_.size()) return false;
  std::vector<std::uint64_t>& tokens = blocks_[block].tokens;
  const std::vector<std::uint64_t>& next = blocks_[block + 1].tokens;
  if (tokens.size() + next.size() > kMostTokens / 2) return false;
  try {
    tokens.reserve(tokens.size() + next.size());
  } catch (const std::bad_alloc&) {
    return false;
  }
  tokens.insert(tokens.end(), next.begin(), next.end());
  eraseBlock(block + 1);
  recountFrom(block);
  return true;
}

void SortedTokens::eraseBlock(std::size_t block) noexcept {
  blocks_.erase(iteratorAt(blocks_, block));
  counts_.pop_back();
  recountFrom(block);
  giveBack(blocks_);
  giveBack(counts_);
}

void SortedTokens::addToCount(std::size_t block, std::uint64_t change) noexcept {
  for (std::size_t n = block + 1; n <= counts_.size(); n += n & (~n + 1)) counts_[n - 1] += change;
}

void SortedTokens::recountFrom(std::size_t block) noexcept {
  for (std::size_t n = block + 1; n <= counts_.size(); ++n) {
    std::uint64_t sum = blocks_[n - 1].tokens.size();
    for (std::size_t half = 1; (n & half) == 0; half *= 2) sum += counts_[n - half - 1];
    counts_[n - 1] = sum;
  }
}

}  // namespace Tarn::internal
