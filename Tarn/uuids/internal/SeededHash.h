// Hashes for tables in memory, seeded at random once a process: who chooses keys cannot know which of them collide.
//
// Each step multiplies two words and folds the product, whose upper half depends on all bits of both, onto its lower
// half. Both words are combined with a secret first, so that nobody can choose one that clears the product. Not for
// storage: another process hashes otherwise.
#ifndef TARN_UUIDS_INTERNAL_SEEDEDHASH_H_
#define TARN_UUIDS_INTERNAL_SEEDEDHASH_H_

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "Tarn/platform/WideMultiply.h"

namespace Tarn::internal {

struct HashSeeds {
  std::uint64_t first;
  std::uint64_t second;
};

// Zero until they are drawn, as they are by the first call, be it from a static initialiser.
extern constinit HashSeeds drawnSeeds;
extern constinit std::atomic<bool> areSeedsDrawn;
void drawSeeds() noexcept;

// The same in all of the process.
inline const HashSeeds& hashSeeds() noexcept {
  if (!areSeedsDrawn.load(std::memory_order_acquire)) drawSeeds();
  return drawnSeeds;
}

template <class Word>
std::uint64_t wordAt(const char* bytes) noexcept {
  Word word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

inline std::uint64_t seededHash(std::uint64_t number) noexcept {
  const HashSeeds& seeds = hashSeeds();
  return platform::foldedProduct(number ^ seeds.first, seeds.second);
}

// Of 16 bytes.
inline std::uint64_t seededHash16(const void* data) noexcept {
  const HashSeeds& seeds = hashSeeds();
  const char* const bytes = static_cast<const char*>(data);
  return platform::foldedProduct(wordAt<std::uint64_t>(bytes) ^ seeds.first,
                                 wordAt<std::uint64_t>(bytes + 8) ^ seeds.second);
}

// Two words that hold all of a text of up to 16 bytes. Where it is no multiple of words they overlap: texts of one size
// have the same words only if they are the same.
struct Ends {
  std::uint64_t front;
  std::uint64_t back;
  bool operator==(const Ends&) const = default;
};

inline Ends endsOf(const char* bytes, std::size_t size) noexcept {
  if (size >= 8) return {wordAt<std::uint64_t>(bytes), wordAt<std::uint64_t>(bytes + size - 8)};
  if (size >= 4) return {wordAt<std::uint32_t>(bytes), wordAt<std::uint32_t>(bytes + size - 4)};
  if (size == 0) return {0, 0};
  return {wordAt<unsigned char>(bytes) << 8U | wordAt<unsigned char>(bytes + size / 2),
          wordAt<unsigned char>(bytes + size - 1)};
}

inline std::uint64_t seededHash(std::string_view text) noexcept {
  const HashSeeds& seeds = hashSeeds();
  const char* bytes = text.data();
  std::size_t size = text.size();
  std::uint64_t hash = size * seeds.second;
  for (; size > 16; size -= 16, bytes += 16) {
    hash = platform::foldedProduct(wordAt<std::uint64_t>(bytes) ^ seeds.first,
                                   wordAt<std::uint64_t>(bytes + 8) ^ seeds.second ^ hash);
  }
  const Ends ends = endsOf(bytes, size);
  return platform::foldedProduct(ends.front ^ seeds.first, ends.back ^ seeds.second ^ hash);
}

inline bool areEqual(std::string_view a, std::string_view b) noexcept {
  if (a.size() != b.size()) return false;
  if (a.size() > 16) return std::memcmp(a.data(), b.data(), a.size()) == 0;
  return endsOf(a.data(), a.size()) == endsOf(b.data(), b.size());
}

}  // namespace Tarn::internal

#endif  // TARN_UUIDS_INTERNAL_SEEDEDHASH_H_
