// Inputs, the same in every run.
#ifndef BENCH_TEXTS_H_
#define BENCH_TEXTS_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Tarn/text/ValueText.h"

namespace bench {

// Words in an order that the seed decides, `size` bytes of them; full stops fill the end. Every 32nd word is `rare`.
inline std::string wordsOf(std::span<const std::string_view> words, std::string_view rare, std::size_t size,
                           std::uint64_t seed) {
  std::mt19937_64 random(seed);
  std::string text;
  for (std::size_t count = 0;; ++count) {
    const std::string_view word = (count + seed) % 32 == 6 && !rare.empty() ? rare : words[random() % words.size()];
    if (text.size() + word.size() > size) break;
    text += word;
  }
  return text.append(size - text.size(), '.');
}

struct Script {
  const char* name;
  std::array<std::string_view, 8> words;

  [[nodiscard]] std::string plain(std::size_t size, std::uint64_t seed = 1) const {
    return wordsOf(words, "", size, seed);
  }
  [[nodiscard]] std::string withFewEscapes(std::size_t size, std::uint64_t seed = 1) const {
    return wordsOf(words, "12\"\n", size, seed);
  }
};

inline constexpr Script kAscii = {
    "ASCII", {"Tower ", "Cellar ", "north ", "a ", "of the ", "scanned, ", "12.5 m ", "reflectance "}};
inline constexpr Script kEuropean = {"European text",
                                     {"T\u00fcrmchen ", "ch\u00e2teau ", "\u0141\u00f3d\u017a ", "se\u00f1or ",
                                      "gem\u00e4\u00df ", "mesure ", "an ", "scan "}};
inline constexpr Script kCjk = {"CJK text",
                                {"\u5854\u697c", "\u6e2c\u91cf\u70b9", "\u5317", "\u5730\u4e0b\u5ba4",
                                 "\u626b\u63cf\u3002", "\u30b9\u30ad\u30e3\u30f3", "\uc2a4\uce94", "\u9ad8\u3055"}};

inline std::string ascii(std::size_t size, std::uint64_t seed = 1) { return kAscii.plain(size, seed); }

// What a function leaves of a copy of the text.
inline auto changed(void (*function)(std::string&)) {
  return [function](std::string text) {
    function(text);
    return text;
  };
}

// What a buffer gets of a value.
template <class Value>
std::string written(const Value& value) {
  using Tarn::operator<<;
  std::string text;
  text << value;
  return text;
}

// Numbers from 0 up to below `count` in random order.
inline std::vector<std::uint64_t> shuffled(std::size_t count, std::uint64_t seed = 2) {
  std::vector<std::uint64_t> numbers(count);
  for (std::size_t i = 0; i < count; ++i) numbers[i] = i;
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937_64(seed));
  return numbers;
}

// Values to look up: all in random order, and few of them again and again, each time in another order. A processor
// learns an order that repeats itself soon, and then foresees what no program could: the outcomes of each search.
template <class Value>
std::vector<Value> lookUps(const std::vector<Value>& values) {
  constexpr std::size_t kEnough = 65536;
  std::vector<Value> drawn;
  for (std::uint64_t seed = 2; drawn.size() < std::max(values.size(), kEnough); ++seed) {
    for (const std::uint64_t at : shuffled(values.size(), seed)) drawn.push_back(values[at]);
  }
  return drawn;
}

using Bytes = std::array<unsigned char, 16>;

// Random identifiers, all different.
inline std::vector<Bytes> randomBytes(std::size_t count) {
  std::mt19937_64 random(3);
  std::vector<Bytes> result(count);
  for (Bytes& bytes : result) {
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
  }
  return result;
}

// Identifiers of a type that is 16 bytes, made of the same bytes for every type.
template <class Id>
std::vector<Id> idsOf(const std::vector<Bytes>& bytes) {
  static_assert(sizeof(Id) == sizeof(Bytes) && std::is_trivially_copyable_v<Id>);
  std::vector<Id> ids(bytes.size());
  std::transform(bytes.begin(), bytes.end(), ids.begin(), [](const Bytes& id) { return std::bit_cast<Id>(id); });
  return ids;
}

}  // namespace bench

#endif  // BENCH_TEXTS_H_
