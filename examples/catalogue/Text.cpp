#include "catalogue/Text.h"

#include <Tarn/Tarn.h>

#include <algorithm>
#include <bit>

namespace catalogue {
namespace {

struct Range {
  char32_t first, last;
};

constexpr Range kInvisible[] = {{0x0300, 0x036F}, {0x200B, 0x200D}, {0x20D0, 0x20FF},
                                {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFEFF, 0xFEFF}};
constexpr Range kWide[] = {{0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0xA4CF}, {0xAC00, 0xD7A3},
                           {0xF900, 0xFAFF}, {0xFE30, 0xFE4F}, {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}};
// Controls, and the marks that turn the direction of writing.
constexpr Range kDisturbing[] = {{0x00, 0x1F}, {0x7F, 0x9F}, {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}};

template <std::size_t Size>
bool isIn(const Range (&ranges)[Size], char32_t character) {
  return std::any_of(std::begin(ranges), std::end(ranges),
                     [character](const Range& range) { return range.first <= character && character <= range.last; });
}

// The character at the front, or none in a byte that begins none. It is taken.
struct Taken {
  std::optional<char32_t> character;
  std::string_view bytes;
};

Taken take(std::string_view& text) {
  const std::string_view before = text;
  const std::optional<char32_t> character = takeCharacter(text);
  if (!character) text.remove_prefix(1);
  return {character, before.substr(0, before.size() - text.size())};
}

// What is shown for the character at the front, which is taken.
struct Shown {
  std::string_view text;
  std::size_t columns;
};

Shown takeShown(std::string_view& text) {
  const auto [character, bytes] = take(text);
  if (!character || isIn(kDisturbing, *character)) return {"?", 1};
  return {bytes, isIn(kWide, *character) ? 2U : isIn(kInvisible, *character) ? 0U : 1U};
}

// Whether each byte is a column, as in most texts.
bool isPlain(std::string_view text) {
  return std::ranges::all_of(text, [](char byte) { return byte >= ' ' && byte <= '~'; });
}

}  // namespace

std::optional<char32_t> takeCharacter(std::string_view& text) {
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};  // Index: the number of bytes.
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) {
    text.remove_prefix(1);
    return lead;
  }
  const auto ones = static_cast<std::size_t>(std::countl_one(lead));  // As many bytes as the lead has high ones.
  if (ones == 1 || ones > 4 || text.size() < ones) return std::nullopt;
  char32_t value = lead & (0xFFU >> (ones + 1));
  for (const char next : text.substr(1, ones - 1)) {
    const auto byte = static_cast<unsigned char>(next);
    if ((byte & 0xC0U) != 0x80) return std::nullopt;
    value = (value << 6U) | (byte & 0x3FU);
  }
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  if (value < kSmallest[ones] || value > 0x10FFFF || isSurrogate) return std::nullopt;
  text.remove_prefix(ones);
  return value;
}

std::size_t displayWidth(std::string_view text) {
  if (isPlain(text)) return text.size();
  std::size_t columns = 0;
  while (!text.empty()) columns += takeShown(text).columns;
  return columns;
}

std::string shortened(std::string_view text, std::size_t columns) {
  if (text.size() <= columns && isPlain(text)) return std::string(text);
  const bool fits = displayWidth(text) <= columns;
  std::size_t left = fits || columns == 0 ? columns : columns - 1;  // One is for the ellipsis.
  std::string result;
  while (!text.empty()) {
    const Shown shown = takeShown(text);
    if (shown.columns > left) break;
    result += shown.text;
    left -= shown.columns;
  }
  return fits || columns == 0 ? result : result + "\u2026";
}

std::string padded(std::string text, std::size_t columns) {
  const std::size_t width = displayWidth(text);
  return text.append(columns - std::min(width, columns), ' ');
}

std::string inQuotes(std::string_view text) { return '"' + shortened(text, 60) + '"'; }

std::string jsonText(std::string_view text) {
  std::string result = "\"";
  while (!text.empty()) {
    const auto [character, bytes] = take(text);
    if (!character || isIn(kDisturbing, *character)) {
      result += Tarn::PrintF("\\u%04X", static_cast<unsigned>(character.value_or(0xFFFD)));
    } else {
      if (*character == '"' || *character == '\\') result += '\\';
      result += bytes;
    }
  }
  return result + '"';
}

std::string jsonObject(const std::vector<std::pair<std::string, std::string>>& members) {
  std::vector<std::string> parts;
  parts.reserve(members.size());
  for (const auto& [key, value] : members) parts.push_back(jsonText(key) + ':' + value);
  return '{' + Tarn::implode(parts, ",") + '}';
}

}  // namespace catalogue
