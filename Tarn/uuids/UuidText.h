/// @file
/// Reading the text of a uuid.
#ifndef TARN_UUIDS_UUIDTEXT_H_
#define TARN_UUIDS_UUIDTEXT_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "Tarn/uuids/internal/HexDigits.h"
#include "Tarn/uuids/uuid.h"

namespace Tarn {

/// The uuid that a text shows, or nothing.
///
/// 32 hexadecimal digits of either case (RFC 4122). Hyphens may stand anywhere and are skipped; braces may stand around
/// it all. The text counts up to its first NUL. Usable in constant expressions:
///
///     constexpr auto id = parseUuid("{00112233-4455-6677-8899-AABBCCDDEEFF}");
///     static_assert(id && !id->is_nil());
[[nodiscard]] constexpr std::optional<uuids::uuid> parseUuid(std::string_view text) noexcept;

// Implementation.

namespace internal {

// The uuid of 32 digits, in eight groups of four that need not adjoin; nothing if another character is among them.
constexpr std::optional<uuids::uuid> uuidOfDigits(const char* text,
                                                  const std::array<unsigned char, 8>& eighths) noexcept {
  std::array<unsigned char, 16> bytes{};
  bool areDigits = true;
  for (std::size_t i = 0; i < 4; ++i) {
    const std::uint32_t value = valueOfEight(text + eighths[2 * i], text + eighths[2 * i + 1], areDigits);
    for (std::size_t k = 0; k < 4; ++k) bytes[4 * i + k] = static_cast<unsigned char>(value >> (24 - 8 * k));
  }
  if (!areDigits) return std::nullopt;
  return uuids::uuid(bytes);
}

// What `parseUuid` gives for the canonical form and for 32 digits; nothing for any other text.
constexpr std::optional<uuids::uuid> parseUsualUuid(std::string_view text) noexcept {
  const char* const at = text.data();
  if (text.size() == 32) return uuidOfDigits(at, {0, 4, 8, 12, 16, 20, 24, 28});
  if (text.size() != 36 || at[8] != '-' || at[13] != '-' || at[18] != '-' || at[23] != '-') return std::nullopt;
  return uuidOfDigits(at, {0, 4, 9, 14, 19, 24, 28, 32});
}

}  // namespace internal

constexpr std::optional<uuids::uuid> parseUuid(std::string_view text) noexcept {
  if (const auto id = internal::parseUsualUuid(text)) return id;
  text = text.substr(0, text.find('\0'));
  if (text.starts_with('{')) {
    if (!text.ends_with('}')) return std::nullopt;
    text.remove_prefix(1);
    text.remove_suffix(1);
  }
  std::array<unsigned char, 16> bytes{};
  std::size_t digits = 0;
  for (const char character : text) {
    if (character == '-') continue;
    const std::uint32_t value = internal::hexDigitValue(character);
    if (digits == 32 || value == internal::kNoHexDigit) return std::nullopt;
    bytes[digits / 2] = static_cast<unsigned char>(unsigned{bytes[digits / 2]} << 4U | value);
    ++digits;
  }
  if (digits < 32) return std::nullopt;
  return uuids::uuid(bytes);
}

}  // namespace Tarn

#endif  // TARN_UUIDS_UUIDTEXT_H_
