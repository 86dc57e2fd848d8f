// Searches for a text in a text, from the front or from the end, in time linear in both.
//
// Candidates are the positions where the needle's first and last character match. Each is compared in full, which is
// fast on all but repetitive texts. Once the comparisons in vain add up to several times the text, the algorithm of
// Knuth, Morris and Pratt takes over, which reads no character twice but needs memory. Where there is none, the
// comparisons go on.
#ifndef TARN_TEXT_INTERNAL_SEARCH_H_
#define TARN_TEXT_INTERNAL_SEARCH_H_

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "Tarn/text/internal/Blocks.h"
#include "Tarn/text/internal/Characters.h"

namespace Tarn::internal {

// A text in the order of its characters.
template <class CharacterType>
class Forwards {
 public:
  using Character = CharacterType;
  using Traits = std::char_traits<Character>;

  Forwards(std::basic_string_view<Character> text) : text_(text) {}
  [[nodiscard]] std::size_t size() const { return text_.size(); }
  Character operator[](std::size_t at) const { return text_.data()[at]; }
  // Where the `size` characters from this position on begin in memory.
  [[nodiscard]] const Character* memory(std::size_t at, std::size_t /*size*/) const { return text_.data() + at; }
  // Skips positions where the character does not stand, as many of those from `at` up to `end` as is fast.
  [[nodiscard]] std::size_t skip(Character character, std::size_t at, std::size_t end) const {
    const Character* const found = Traits::find(text_.data() + at, end - at, character);
    return found == nullptr ? end : static_cast<std::size_t>(found - text_.data());
  }
  // The offset of the first match in a block, or 16.
  static std::size_t first(Block found) { return found.first(); }

 private:
  std::basic_string_view<Character> text_;
};

// The same from the last character to the first.
class Backwards {
 public:
  using Character = char;
  using Traits = std::char_traits<char>;

  Backwards(std::string_view text) : text_(text) {}
  [[nodiscard]] std::size_t size() const { return text_.size(); }
  char operator[](std::size_t at) const { return *memory(at, 1); }
  [[nodiscard]] const char* memory(std::size_t at, std::size_t size) const {
    return text_.data() + (text_.size() - at - size);
  }
  static std::size_t skip(char /*character*/, std::size_t at, std::size_t /*end*/) { return at; }
  static std::size_t first(Block found) { return kBlockSize - found.behindLast(); }

 private:
  std::string_view text_;
};

// Whether the needle, which is not empty, may stand at the position: its first and last character do.
template <class Text>
bool endsMatch(const Text& text, const Text& needle, std::size_t at) {
  return text[at] == needle[0] && text[at + needle.size() - 1] == needle[needle.size() - 1];
}

// Whether it stands at a candidate.
template <class Text>
bool matchesAt(const Text& text, const Text& needle, std::size_t at) {
  const std::size_t size = needle.size();
  return size <= 2 || Text::Traits::compare(text.memory(at, size), needle.memory(0, size), size) == 0;
}

// The first candidate from `at` on and in front of `end`, or `end`. Looks at each position.
template <class Text>
std::size_t scanForCandidate(const Text& text, const Text& needle, std::size_t at, std::size_t end) {
  if constexpr (sizeof(typename Text::Character) == 1) {
    if (end - at >= kBlockSize) {
      const Block front = Block::of(needle[0]);
      const Block back = Block::of(needle[needle.size() - 1]);
      const auto candidates = [&](std::size_t from) {
        return (Block::load(text.memory(from, kBlockSize)) == front) &
               (Block::load(text.memory(from + needle.size() - 1, kBlockSize)) == back);
      };
      const std::size_t last = end - kBlockSize;
      for (; at < last; at += kBlockSize) {
        const Block found = candidates(at);
        if (found.any()) return at + Text::first(found);
      }
      return last + Text::first(candidates(last));  // This block overlaps the one before.
    }
  }
  while (at != end && !endsMatch(text, needle, at)) ++at;
  return at;
}

// The same, faster where the needle's first character is rare: from time to time, skips to the next one. Where that
// was near, the next try comes after twice as many positions.
template <class Text>
std::size_t findCandidate(const Text& text, const Text& needle, std::size_t at, std::size_t end) {
  constexpr std::size_t kLeast = 256;
  for (std::size_t looks = kLeast;; looks *= 2) {
    const std::size_t stop = at + std::min(looks, end - at);
    const std::size_t found = scanForCandidate(text, needle, at, stop);
    if (found != stop || stop == end) return found;
    at = text.skip(needle[0], stop, end);
    if (at - stop > looks) looks = kLeast / 2;
  }
}

// The failure function of Knuth, Morris and Pratt: for each prefix of the needle the size of its longest border, a
// shorter text that it both begins and ends with.
template <class Text>
std::vector<std::size_t> bordersOf(const Text& needle) {
  std::vector<std::size_t> borders(needle.size());
  for (std::size_t i = 1; i < needle.size(); ++i) {
    std::size_t border = borders[i - 1];
    while (border > 0 && needle[border] != needle[i]) border = borders[border - 1];
    borders[i] = border + (needle[border] == needle[i] ? 1 : 0);
  }
  return borders;
}

// Finds the occurrences of a needle, which is not empty, one behind the other in a text of this size.
template <class Text>
class Finder {
 public:
  Finder(const Text& needle, std::size_t textSize) : needle_(needle), budget_(4 * textSize) {}

  // The first occurrence at or after `start`, which is at most the size; or npos.
  std::size_t find(const Text& text, std::size_t start) noexcept {
    if (!borders_.empty()) return findByBorders(text, start);
    if (text.size() - start < needle_.size()) return kNone;
    const std::size_t end = text.size() - needle_.size() + 1;
    for (std::size_t at = start; (at = findCandidate(text, needle_, at, end)) != end; ++at) {
      if (matchesAt(text, needle_, at)) return at;
      spent_ += needle_.size();
      if (spent_ > budget_ && makeBorders()) return findByBorders(text, at + 1);
    }
    return kNone;
  }

 private:
  // False if there is no memory for them. Then it is tried again when as much has been spent again.
  bool makeBorders() noexcept {
    spent_ = 0;
    try {
      borders_ = bordersOf(needle_);
      return true;
    } catch (const std::bad_alloc&) {
      return false;
    }
  }

  [[nodiscard]] std::size_t findByBorders(const Text& text, std::size_t start) const {
    std::size_t matched = 0;
    for (std::size_t at = start; at < text.size(); ++at) {
      while (matched > 0 && needle_[matched] != text[at]) matched = borders_[matched - 1];
      if (needle_[matched] == text[at]) ++matched;
      if (matched == needle_.size()) return at + 1 - matched;
    }
    return kNone;
  }

  Text needle_;
  std::size_t budget_;
  std::size_t spent_ = 0;  // On comparisons in vain.
  std::vector<std::size_t> borders_;
};

// The text before its first NUL.
inline std::string_view untilNul(std::string_view text) { return text.substr(0, text.find('\0')); }

// A bit for each position where the needle may stand, the lowest for the first, in front of the text's first NUL. The
// text has up to 32 bytes and is no shorter than the needle. From 16 bytes on, no branch depends on its characters, as
// they cannot be foreseen.
inline std::uint32_t candidatesIn(std::string_view text, std::string_view needle) {
  const std::size_t toBack = needle.size() - 1;
  if (text.size() < kBlockSize) {
    std::uint32_t candidates = 0;
    for (std::size_t at = 0; at + toBack < text.size() && text[at] != '\0'; ++at) {
      const bool isFront = text[at] == needle.front();
      const bool isBack = text[at + toBack] == needle.back();
      candidates |= static_cast<std::uint32_t>(isFront && isBack) << at;
    }
    return candidates;
  }
  const std::size_t second = text.size() - kBlockSize;  // Where the second block begins, which may overlap the first.
  const auto bitsOf = [&](char character) {
    const auto bitsAt = [&](std::size_t at) { return (Block::load(text.data() + at) == Block::of(character)).bits(); };
    return bitsAt(0) | bitsAt(second) << second;
  };
  return bitsOf(needle.front()) & bitsOf(needle.back()) >> toBack & (bitsOf('\0') - 1);
}

// `findLast` in such a text.
inline std::size_t findLastInShort(std::string_view text, std::string_view needle) noexcept {
  std::uint32_t candidates = candidatesIn(text, needle);
  while (candidates != 0) {
    const auto at = static_cast<std::size_t>(std::bit_width(candidates)) - 1;
    // By a loop: callers make needles from constants, and bytes that were stored in parts are late when loaded at once.
    std::size_t size = 1;
    while (size < needle.size() && text[at + size] == needle[size]) ++size;
    if (size == needle.size()) return at;
    candidates ^= std::uint32_t{1} << at;
  }
  return kNone;
}

// The position of the last occurrence that begins in front of the text's first NUL, or npos. The needle is not empty
// and does not begin with a NUL; one that holds a NUL may be missed.
inline std::size_t findLast(std::string_view text, std::string_view needle) noexcept {
  if (text.size() < needle.size()) return kNone;
  if (text.size() <= 2 * kBlockSize) return findLastInShort(text, needle);
  text = untilNul(text);
  const std::size_t found = Finder<Backwards>(Backwards(needle), text.size()).find(Backwards(text), 0);
  return found == kNone ? kNone : text.size() - found - needle.size();
}

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_SEARCH_H_
