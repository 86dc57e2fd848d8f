// Searches for a text in a text, in time linear in both.
//
// Places where the first and the last character fit are looked at one by one, which is fast on all but texts that
// repeat themselves. When this has compared more than a few times what there is, the method of Knuth, Morris and Pratt
// takes over, which looks at no character twice but needs some memory. Without that memory all goes on as before.
#ifndef TARN_TEXT_INTERNAL_SEARCH_H_
#define TARN_TEXT_INTERNAL_SEARCH_H_

#include <cstddef>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "Tarn/text/internal/Blocks.h"

namespace Tarn::internal {

// Whether the needle, which is not empty, may stand at the position: its ends fit.
template <class Character>
bool endsFit(std::basic_string_view<Character> text, std::basic_string_view<Character> needle, std::size_t at) {
  return text.data()[at] == needle.front() && text.data()[at + needle.size() - 1] == needle.back();
}

// Whether it does stand there.
template <class Character>
bool standsAt(std::basic_string_view<Character> text, std::basic_string_view<Character> needle, std::size_t at) {
  return std::char_traits<Character>::compare(text.data() + at, needle.data(), needle.size()) == 0;
}

// Sixteen of these positions.
inline Block endsFitInBlock(std::string_view text, std::string_view needle, std::size_t at) {
  const char* const from = text.data() + at;
  return (Block::load(from) == Block::of(needle.front())) &
         (Block::load(from + needle.size() - 1) == Block::of(needle.back()));
}

// The first position of those from `at` up to `end` where the ends fit, or `end`.
template <class Character>
std::size_t findFit(std::basic_string_view<Character> text, std::basic_string_view<Character> needle, std::size_t at,
                    std::size_t end) {
  if constexpr (sizeof(Character) == 1) {
    if (end - at >= kBlockSize) {
      const std::size_t last = end - kBlockSize;
      for (; at < last; at += kBlockSize) {
        const Block fits = endsFitInBlock(text, needle, at);
        if (fits.any()) return at + fits.first();
      }
      return last + endsFitInBlock(text, needle, last).first();
    }
  }
  while (at != end && !endsFit(text, needle, at)) ++at;
  return at;
}

// The position behind the last one before `end` where the ends fit, or 0.
inline std::size_t findBehindLastFit(std::string_view text, std::string_view needle, std::size_t end) {
  for (; end >= kBlockSize; end -= kBlockSize) {
    const Block fits = endsFitInBlock(text, needle, end - kBlockSize);
    if (fits.any()) return end - kBlockSize + fits.behindLast();
  }
  while (end != 0 && !endsFit(text, needle, end - 1)) --end;
  return end;
}

// For each beginning of the needle, the size of the longest shorter text that it both begins and ends with. `needle`
// gives the character at a position.
template <class Needle>
std::vector<std::size_t> bordersOf(Needle needle, std::size_t size) {
  std::vector<std::size_t> borders(size);
  for (std::size_t i = 1; i < size; ++i) {
    std::size_t border = borders[i - 1];
    while (border > 0 && needle(border) != needle(i)) border = borders[border - 1];
    borders[i] = border + (needle(border) == needle(i) ? 1 : 0);
  }
  return borders;
}

// The first occurrence of the needle with these borders, or the size. `text` gives the character at a position, too.
template <class Text, class Needle>
std::size_t findByBorders(Text text, std::size_t size, Needle needle, const std::vector<std::size_t>& borders) {
  std::size_t matched = 0;
  for (std::size_t at = 0; at < size; ++at) {
    while (matched > 0 && needle(matched) != text(at)) matched = borders[matched - 1];
    if (needle(matched) == text(at)) ++matched;
    if (matched == borders.size()) return at + 1 - matched;
  }
  return size;
}

// What was compared in vain, and whether it has become too much.
class Budget {
 public:
  explicit Budget(std::size_t size) : left_(4 * size) {}
  // Charges a comparison. True once all is spent, and again each time when as much has been spent again.
  bool spend(std::size_t compared) {
    spent_ += compared;
    if (spent_ <= left_) return false;
    spent_ = 0;
    return true;
  }

 private:
  std::size_t left_;
  std::size_t spent_ = 0;
};

// The borders, or nothing when there is no memory for them.
template <class Needle>
std::vector<std::size_t> bordersIfPossible(Needle needle, std::size_t size) noexcept {
  try {
    return bordersOf(needle, size);
  } catch (const std::bad_alloc&) {
    return {};
  }
}

// Finds the occurrences of a needle, which is not empty, from left to right in a text of this size.
template <class Character>
class Finder {
 public:
  using View = std::basic_string_view<Character>;

  Finder(View needle, std::size_t textSize) : needle_(needle), budget_(textSize) {}

  // The first occurrence at or after `start`, which is at most the size; or npos.
  std::size_t find(View text, std::size_t start) noexcept {
    if (text.size() - start < needle_.size()) return View::npos;
    const std::size_t end = text.size() - needle_.size() + 1;
    std::size_t at = start;
    for (; borders_.empty(); ++at) {
      at = findFit(text, needle_, at, end);
      if (at == end) return View::npos;
      if (standsAt(text, needle_, at)) return at;
      if (budget_.spend(needle_.size())) borders_ = bordersIfPossible(characters(needle_), needle_.size());
    }
    const View rest = text.substr(at);
    at += findByBorders(characters(rest), rest.size(), characters(needle_), borders_);
    return at < text.size() ? at : View::npos;
  }

 private:
  static auto characters(View text) {
    return [text](std::size_t at) { return text.data()[at]; };
  }

  View needle_;
  Budget budget_;
  std::vector<std::size_t> borders_;
};

// The last occurrence of a needle, which is not empty; or npos.
inline std::size_t findLast(std::string_view text, std::string_view needle) noexcept {
  if (text.size() < needle.size()) return std::string_view::npos;
  Budget budget(text.size());
  std::vector<std::size_t> borders;
  const auto backwards = [](std::string_view view) {
    return [last = view.data() + view.size() - 1](std::size_t at) { return *(last - at); };
  };
  std::size_t end = text.size() - needle.size() + 1;
  for (; borders.empty(); --end) {
    end = findBehindLastFit(text, needle, end);
    if (end == 0) return std::string_view::npos;
    if (standsAt(text, needle, end - 1)) return end - 1;
    if (budget.spend(needle.size())) borders = bordersIfPossible(backwards(needle), needle.size());
  }
  text.remove_suffix(text.size() - (end + needle.size() - 1));
  const std::size_t found = findByBorders(backwards(text), text.size(), backwards(needle), borders);
  return found < text.size() ? text.size() - found - needle.size() : std::string_view::npos;
}

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_SEARCH_H_
