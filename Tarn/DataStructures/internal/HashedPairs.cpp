#include "Tarn/DataStructures/internal/HashedPairs.h"

#include <utility>

#include "Tarn/DataStructures/internal/HashedPairsInline.h"

namespace Tarn::internal {

namespace {

// Words are numbered with 32 bits.
constexpr std::size_t kMostWords = std::numeric_limits<HashedPairs::Number>::max();

}  // namespace

// The last pair that was removed, if it has that size, or 0.
HashedPairs::Number HashedPairs::lastRemoved(std::size_t size) const noexcept {
  const auto last = words_.empty() ? Number{0} : static_cast<Number>(words_[kRemoved]);
  return last != 0 && wordsFor(key(last).size()) == size ? last : 0;
}

// Makes room for so many words more.
void HashedPairs::reserveWords(std::size_t count) {
  if (words_.capacity() - words_.size() >= count && !words_.empty()) return;
  const std::size_t used = words_.empty() ? kFirst : words_.size() - static_cast<std::size_t>(words_[kUnused]);
  if (count > kMostWords - used) throw std::length_error("too many keys for a table");
  compact(std::min(used + count + used / 2, kMostWords));
}

// Moves the pairs that are left to memory for so many words. Each leaves its new number at its old place, from where
// the indexes take it.
void HashedPairs::compact(std::size_t capacity) {
  std::vector<std::uint64_t> words;
  words.reserve(capacity);
  words.resize(kFirst);
  for (std::size_t pair = kFirst, size = 0; pair < words_.size(); pair += size) {
    size = wordsFor(static_cast<std::size_t>(words_[pair + 1] >> 2U));
    if ((words_[pair + 1] & (kLedByToken | kLedByKey)) == 0) continue;
    const auto at = words_.begin() + static_cast<std::ptrdiff_t>(pair);
    const std::size_t number = words.size();
    words.insert(words.end(), at, at + static_cast<std::ptrdiff_t>(size));
    words_[pair + 1] = number;
  }
  if (words.size() < words_.size()) {
    const auto renumbered = [this](Number pair) { return static_cast<Number>(words_[pair + 1]); };
    byToken_.renumber(renumbered);
    byKey_.renumber(renumbered);
  }
  words_.swap(words);
}

void HashedPairs::release(Number pair, std::uint64_t direction) noexcept {
  words_[pair + 1] &= ~direction;
  if ((words_[pair + 1] & (kLedByToken | kLedByKey)) == 0) {
    words_[kUnused] += wordsFor(key(pair).size());
    words_[pair] = std::exchange(words_[kRemoved], pair);
  }
}

void HashedPairs::shrink() noexcept {
  byToken_.shrink();
  byKey_.shrink();
  const std::size_t used = words_.size() - static_cast<std::size_t>(words_[kUnused]);
  if (words_.capacity() <= kFewestWords || used >= words_.capacity() / 2) return;
  try {
    compact(used + used / 2);
  } catch (const std::bad_alloc&) {
    return;  // The unused words stay.
  }
}

}  // namespace Tarn::internal
