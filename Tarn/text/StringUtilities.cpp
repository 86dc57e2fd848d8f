#include "Tarn/text/StringUtilities.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Tarn/text/WideText.h"
#include "Tarn/text/internal/Blocks.h"
#include "Tarn/text/internal/Characters.h"

namespace Tarn {
namespace {

using internal::isOf;

constexpr std::size_t kNone = std::string_view::npos;

// A position as the interface gives it: -1 for none, and for one that an int cannot hold.
int toPosition(std::size_t position) { return position <= INT_MAX ? static_cast<int>(position) : -1; }

// Whether a search may begin at `start`.
bool isInside(const std::string& text, int start) {
  return start >= 0 && static_cast<std::size_t>(start) < text.size();
}

int findClass(const std::string& text, unsigned classes, int start) {
  if (!isInside(text, start)) return -1;
  return toPosition(internal::findFirstOf(text, classes, static_cast<std::size_t>(start)));
}

// The text before its first NUL.
template <class Character>
std::basic_string_view<Character> untilNul(const std::basic_string<Character>& text) {
  return std::basic_string_view<Character>(text).substr(0, text.find(Character{}));
}

// Replaces by moving the kept pieces together, within the text. Needs `to` to be no longer than `from`.
template <class Text>
void replaceShrinking(Text& text, const Text& from, const Text& to, std::size_t hit) {
  std::size_t read = hit;
  auto* out = text.data() + hit;
  while (hit != Text::npos) {
    out = std::copy(text.data() + read, text.data() + hit, out);
    out = std::copy(to.begin(), to.end(), out);
    read = hit + from.size();
    hit = text.find(from, read);
  }
  out = std::copy(text.data() + read, text.data() + text.size(), out);
  text.resize(static_cast<std::size_t>(out - text.data()));
}

// Replaces into a new text.
template <class Text>
void replaceGrowing(Text& text, const Text& from, const Text& to, std::size_t hit) {
  Text result;
  std::size_t read = 0;
  while (hit != Text::npos) {
    result.append(text, read, hit - read).append(to);
    read = hit + from.size();
    hit = text.find(from, read);
  }
  result.append(text, read);
  text = std::move(result);
}

template <class Text>
void replaceAllIn(Text& text, const Text& from, const Text& to) {
  if (from.empty()) return;
  const std::size_t hit = text.find(from);
  if (hit == Text::npos) return;
  const bool sharesText = &from == &text || &to == &text;
  if (to.size() > from.size() || sharesText) {
    replaceGrowing(text, from, to, hit);
  } else {
    replaceShrinking(text, from, to, hit);
  }
}

// Characters compare by their unsigned codes.
template <class Character>
int compareFolded(std::basic_string_view<Character> a, std::basic_string_view<Character> b) {
  const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(), [](Character x, Character y) {
    return internal::toLower(x) == internal::toLower(y);
  });
  if (inA == a.end() || inB == b.end()) return (inA != a.end() ? 1 : 0) - (inB != b.end() ? 1 : 0);
  using Unsigned = std::make_unsigned_t<Character>;
  return static_cast<Unsigned>(internal::toLower(*inA)) < static_cast<Unsigned>(internal::toLower(*inB)) ? -1 : 1;
}

}  // namespace

void ltrim(std::string& text) {
  const auto isSpace = [](char character) { return isOf(character, internal::kSpace); };
  text.erase(text.begin(), std::find_if_not(text.begin(), text.end(), isSpace));
}

void rtrim(std::string& text) {
  std::size_t size = text.size();
  while (size > 0 && isOf(text[size - 1], internal::kSpace)) --size;
  text.resize(size);
}

void trim(std::string& text) {
  rtrim(text);  // First, so that less is moved to the front.
  ltrim(text);
}

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

bool isAscii(const std::string& text) {
  const char* const end = text.data() + text.size();
  return internal::findNonAscii(text.data(), end) == end;
}

int findAlphaNum(const std::string& text, int start) { return findClass(text, internal::kAlphaNum, start); }

int findNonWS(const std::string& text, int start) { return findClass(text, internal::kVisible, start); }

int findValidNumberChar(const std::string& text, int start) { return findClass(text, internal::kNumberChar, start); }

int findLastOf(const std::string& text, const std::string& needle) {
  const std::string_view sought = untilNul(needle);
  if (sought.empty()) return -1;
  return toPosition(untilNul(text).rfind(sought));
}

int findLastOf(const std::string& text, char character, int start) {
  if (!isInside(text, start)) return -1;
  const auto first = static_cast<std::size_t>(start);
  const std::size_t end = std::min(text.find('\0', first), text.size());
  if (character == '\0') return toPosition(end);
  const std::size_t found = std::string_view(text).substr(first, end - first).rfind(character);
  return found == kNone ? -1 : toPosition(first + found);
}

bool startsWith(const std::string& text, const std::string& prefix) { return text.starts_with(prefix); }

std::string implode(const std::vector<std::string>& parts, const std::string& separator) {
  if (parts.empty()) return {};
  std::size_t size = (parts.size() - 1) * separator.size();
  for (const std::string& part : parts) size += part.size();
  std::string result;
  result.reserve(size);
  result = parts.front();
  for (std::size_t i = 1; i < parts.size(); ++i) result.append(separator).append(parts[i]);
  return result;
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) { replaceAllIn(text, from, to); }

void replaceAll(std::wstring& text, const std::wstring& from, const std::wstring& to) { replaceAllIn(text, from, to); }

int compareIgnoreCase(const std::string& a, const std::string& b) { return compareFolded(untilNul(a), untilNul(b)); }

int compareIgnoreCase(const std::string& a, const std::wstring& b) { return compareIgnoreCase(wide(a), b); }

int compareIgnoreCase(const std::wstring& a, const std::wstring& b) { return compareFolded(untilNul(a), untilNul(b)); }

int compareIgnoreCase(const std::wstring& a, const std::string& b) { return compareIgnoreCase(a, wide(b)); }

}  // namespace Tarn
