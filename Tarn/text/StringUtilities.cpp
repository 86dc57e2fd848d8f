#include "Tarn/text/StringUtilities.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Tarn/text/WideText.h"
#include "Tarn/text/internal/Blocks.h"
#include "Tarn/text/internal/Characters.h"
#include "Tarn/text/internal/GiveBack.h"
#include "Tarn/text/internal/Position.h"
#include "Tarn/text/internal/Search.h"

namespace Tarn {
namespace {

using internal::isOf;
using internal::toPosition;

// Whether a search may begin at `start`.
bool isInside(std::string_view text, int start) { return start >= 0 && static_cast<std::size_t>(start) < text.size(); }

template <class Class>
int findClass(std::string_view text, Class sought, int start) {
  if (!isInside(text, start)) return -1;
  return toPosition(internal::findFirstOf(text, sought, static_cast<std::size_t>(start)));
}

// Replaces by moving the kept pieces together, within the text. Needs `to` to be no longer than `from`.
template <class Text, class Find>
void replaceShrinking(Text& text, const Text& from, const Text& to, Find find, std::size_t hit) {
  std::size_t read = hit;
  std::size_t written = hit;
  const auto keep = [&](std::size_t end) {
    Text::traits_type::move(text.data() + written, text.data() + read, end - read);
    written += end - read;
  };
  for (; hit != Text::npos; hit = find(read)) {
    keep(hit);
    Text::traits_type::copy(text.data() + written, to.data(), to.size());
    written += to.size();
    read = hit + from.size();
  }
  keep(text.size());
  text.resize(written);
}

// Replaces into a new text.
template <class Text, class Find>
void replaceGrowing(Text& text, const Text& from, const Text& to, Find find, std::size_t hit) {
  Text result;
  result.reserve(text.size() + text.size() / 16 + to.size());  // Enough for one hit, and for few in a long text.
  std::size_t read = 0;
  while (hit != Text::npos) {
    result.append(text, read, hit - read).append(to);
    read = hit + from.size();
    hit = find(read);
  }
  result.append(text, read);
  internal::giveBack(result);
  text = std::move(result);
}

template <class Text>
void replaceAllIn(Text& text, const Text& from, const Text& to) {
  if (from.empty()) return;
  using View = std::basic_string_view<typename Text::value_type>;
  internal::Finder<internal::Forwards<typename Text::value_type>> finder(View(from), text.size());
  const auto find = [&](std::size_t start) { return finder.find(View(text), start); };
  const std::size_t hit = find(0);
  if (hit == Text::npos) return;
  const bool sharesText = &from == &text || &to == &text;
  if (to.size() > from.size() || sharesText) {
    replaceGrowing(text, from, to, find, hit);
  } else {
    replaceShrinking(text, from, to, find, hit);
  }
}

// Where two texts differ but for letter case, or one ends, by its size or a NUL.
template <class Character>
std::size_t findStop(std::basic_string_view<Character> a, std::basic_string_view<Character> b) {
  const std::size_t size = std::min(a.size(), b.size());
  std::size_t at = 0;
  while (at != size && a[at] != 0 && internal::toLower(a[at]) == internal::toLower(b[at])) ++at;
  return at;
}

std::size_t findStopInBlocks(std::string_view a, std::string_view b) {
  using internal::Block;
  constexpr std::size_t kSize = internal::kBlockSize;
  const std::size_t size = std::min(a.size(), b.size());
  if (size < kSize) return findStop(a, b);
  const auto blockAt = [a](std::size_t at) { return Block::load(a.data() + at); };
  const auto differencesAt = [&](std::size_t at) { return differentLetters(blockAt(at), Block::load(b.data() + at)); };
  const auto stops = [zero = Block::of(0)](Block block, Block differences) {
    return (block & (differences == zero)) == zero;
  };
  const std::size_t last = size - kSize;
  std::size_t at = 0;
  for (; last - at >= 4 * kSize; at += 4 * kSize) {
    const Block least =
        lesser(lesser(blockAt(at), blockAt(at + kSize)), lesser(blockAt(at + 2 * kSize), blockAt(at + 3 * kSize)));
    const Block differences =
        differencesAt(at) | differencesAt(at + kSize) | differencesAt(at + 2 * kSize) | differencesAt(at + 3 * kSize);
    if (stops(least, differences).any()) break;
  }
  for (; at < last; at += kSize) {
    const Block found = stops(blockAt(at), differencesAt(at));
    if (found.any()) return at + found.first();
  }
  return last + stops(blockAt(last), differencesAt(last)).first();  // This block overlaps the one before.
}

// Characters compare by their codes, and the end of a text comes before all.
template <class Character>
int compareAt(std::basic_string_view<Character> a, std::basic_string_view<Character> b, std::size_t stop) {
  const auto codeAt = [stop](std::basic_string_view<Character> text) {
    const Character character = stop < text.size() ? text[stop] : Character{};
    return static_cast<std::make_unsigned_t<Character>>(internal::toLower(character));
  };
  return (codeAt(a) > codeAt(b) ? 1 : 0) - (codeAt(a) < codeAt(b) ? 1 : 0);
}

// Leaves of the text a part of it.
void keepOnly(std::string& text, std::string_view part) {
  if (part.data() != text.data()) std::copy(part.begin(), part.end(), text.begin());
  text.erase(part.size());
}

}  // namespace

std::string_view internal::trimmed(std::string_view text, bool front, bool end) {
  const char* const first = text.data();
  const char* const last = first + text.size();
  // Mostly there is nothing to trim.
  const bool hasFront = front && !text.empty() && isOf(text.front(), kSpace);
  const bool hasEnd = end && !text.empty() && isOf(text.back(), kSpace);
  const char* const begin = hasFront ? findFirst(first, last, kNoSpace) : first;
  const char* const behind = hasEnd ? findBehindLast(first, last, kNoSpace) : last;
  return {begin, static_cast<std::size_t>(std::max(begin, behind) - begin)};  // Whitespace alone: they have crossed.
}

void ltrim(std::string& text) { keepOnly(text, internal::trimmed(text, true, false)); }

void rtrim(std::string& text) { keepOnly(text, internal::trimmed(text, false, true)); }

void trim(std::string& text) { keepOnly(text, internal::trimmed(text, true, true)); }

std::string ltrim_copy(std::string text) {
  ltrim(text);
  return text;
}

std::string rtrim_copy(std::string text) {
  rtrim(text);
  return text;
}

std::string trim_copy(std::string text) {
  trim(text);
  return text;
}

bool isAlphaNum(const char& character) { return isOf(character, internal::kAlphaNum); }

bool isValidNumberChar(const char& character) { return isOf(character, internal::kNumberChar); }

bool internal::isAscii(std::string_view text) {
  const char* const end = text.data() + text.size();
  return findFirst(skipFourBlocks(text.data(), end, kNonAscii), end, kNonAscii) == end;
}

bool isAscii(const std::string& text) { return internal::isAscii(text); }

int internal::findAlphaNum(std::string_view text, int start) { return findClass(text, kAlphaNum, start); }

int findAlphaNum(const std::string& text, int start) { return internal::findAlphaNum(text, start); }

int internal::findNonWS(std::string_view text, int start) { return findClass(text, kVisible, start); }

int findNonWS(const std::string& text, int start) { return internal::findNonWS(text, start); }

int internal::findValidNumberChar(std::string_view text, int start) { return findClass(text, kNumberChar, start); }

int findValidNumberChar(const std::string& text, int start) { return internal::findValidNumberChar(text, start); }

int internal::findLastOf(std::string_view text, std::string_view needle) {
  if (needle.empty() || needle.front() == '\0') return -1;
  std::size_t found = findLast(text, needle);
  // Mostly a needle holds no NUL, and one that is found need not be searched for it: where there is a NUL in the
  // needle, there is one in the text, behind the last place for what precedes it.
  if (found == kNone && needle.find('\0') != kNone) found = findLast(text, untilNul(needle));
  return toPosition(found);
}

int findLastOf(const std::string& text, const std::string& needle) { return internal::findLastOf(text, needle); }

int internal::findLastOf(std::string_view text, char character, int start) {
  if (!isInside(text, start)) return -1;
  const auto first = static_cast<std::size_t>(start);
  const std::size_t end = std::min(text.find('\0', first), text.size());
  if (character == '\0') return toPosition(end);
  const char* const begin = text.data() + first;
  const char* const behind = findBehindLast(begin, text.data() + end, OneByte{character});
  return behind == begin ? -1 : toPosition(static_cast<std::size_t>(behind - text.data()) - 1);
}

int findLastOf(const std::string& text, char character, int start) {
  if (!isInside(text, start)) return -1;
  const char* const last = std::strrchr(text.c_str() + start, character);
  return last == nullptr ? -1 : toPosition(static_cast<std::size_t>(last - text.c_str()));
}

bool startsWith(const std::string& text, const std::string& prefix) {
  return text.size() >= prefix.size() && std::memcmp(text.data(), prefix.data(), prefix.size()) == 0;
}

std::string implode(const std::vector<std::string>& parts, const std::string& separator) {
  std::string result;
  if (parts.empty()) return result;
  std::size_t size = (parts.size() - 1) * separator.size();
  for (const std::string& part : parts) size += part.size();
  result.resize(size);
  const auto put = [](char* out, const std::string& text) { return std::copy_n(text.data(), text.size(), out); };
  char* out = put(result.data(), parts.front());
  for (auto part = parts.begin() + 1; part != parts.end(); ++part) out = put(put(out, separator), *part);
  return result;
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) { replaceAllIn(text, from, to); }

void replaceAll(std::wstring& text, const std::wstring& from, const std::wstring& to) { replaceAllIn(text, from, to); }

int internal::compareIgnoreCase(std::string_view a, std::string_view b) {
  return compareAt(a, b, findStopInBlocks(a, b));
}

int compareIgnoreCase(const std::string& a, const std::string& b) { return internal::compareIgnoreCase(a, b); }

int compareIgnoreCase(const std::string& a, const std::wstring& b) { return compareIgnoreCase(wide(a), b); }

int compareIgnoreCase(const std::wstring& a, const std::wstring& b) {
  const std::wstring_view viewA = a;
  const std::wstring_view viewB = b;
  return compareAt(viewA, viewB, findStop(viewA, viewB));
}

int compareIgnoreCase(const std::wstring& a, const std::string& b) { return compareIgnoreCase(a, wide(b)); }

}  // namespace Tarn
