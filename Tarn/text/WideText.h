/// @file
/// UTF-8 to wide text, wide text to bytes, and wide text on narrow streams.
///
/// Wide text has one unit from U+0000 to U+FFFF for each UTF-8 sequence, on every platform. Free functions without
/// state: threads may call them at once.
#ifndef TARN_TEXT_WIDETEXT_H_
#define TARN_TEXT_WIDETEXT_H_

#include <concepts>
#include <iosfwd>
#include <string>
#include <string_view>

#include "Tarn/Export.h"

namespace Tarn {

/// Decodes UTF-8 (RFC 3629), leniently, into one wide character for each sequence.
///
///     lead byte     bytes  wide character
///     0x00 to 0x7F  1      the byte
///     0xC0 to 0xDF  2      5 + 6 bits
///     0xE0 to 0xEF  3      4 + 6 + 6 bits
///     0xF0 to 0xF7  4      the low 16 bits: U+1F600 becomes U+F600, never a surrogate pair
///     others               an exception
///
/// Only the low six bits of continuation bytes count, whatever they are; overlong forms and surrogates are taken as
/// they come. A sequence cut short by the end of the text takes its missing bytes as zero. Linear in the text.
///
///     wide("caf\xC3\xA9");  // L"caf\u00E9"
///     wide("\xC3\x41");     // L"\u00C1"
///     wide("\x80");         // throws
///
/// Throws `std::invalid_argument` with "Invalid UTF-8 byte encountered." for a byte 0x80 to 0xBF or 0xF8 to 0xFF
/// where a sequence should begin.
[[nodiscard]] TARN_API std::wstring wide(const std::string& text);
/// The same for the bytes before the first NUL. The pointer must be valid.
[[nodiscard]] TARN_API std::wstring wide(const unsigned char* text);
/// The same for exactly `length` bytes; NULs among them become U+0000.
[[nodiscard]] TARN_API std::wstring wide(const unsigned char* text, unsigned long long length);
/// The same for a view.
template <std::same_as<std::string_view> View>
[[nodiscard]] std::wstring wide(View text) {
  return wide(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

/// Turns each wide character into one byte, as the global locale's `std::ctype<wchar_t>` narrows it. This encodes no
/// UTF-8; `operator<<` below does, and that of `ValueText.h` on a `std::string`.
///
/// In the classic locale U+0000 to U+00FF become the byte of the same value, on every platform.
///
///     narrow(L"caf\u00E9 \u20AC", '?');  // "caf\xE9 ?"
///
/// @return a text of the same length, with `replacement` for characters that have no byte.
[[nodiscard]] TARN_API std::string narrow(const std::wstring& text, char replacement);

/// The character that ends a NUL-terminated text of its type, for templates over the character type.
template <class Character>
[[nodiscard]] Character getStringEnd();
template <>
[[nodiscard]] TARN_API char getStringEnd<char>();  ///< NUL.
template <>
[[nodiscard]] TARN_API wchar_t getStringEnd<wchar_t>();  ///< U+0000.

/// Inserts wide text as UTF-8, each unit encoded by its own value, the way a `std::string` of those bytes is inserted:
/// width, which counts bytes, fill and adjustment apply.
///
/// Surrogates are not joined: each becomes three bytes. Where `wchar_t` has 32 bits, a character above U+FFFF becomes
/// four bytes and one above U+10FFFF the bytes of U+FFFD. Found from other namespaces after `using namespace Tarn`.
TARN_API std::ostream& operator<<(std::ostream& stream, const std::wstring& text);
/// The same for the characters before the first NUL. The pointer must be valid.
TARN_API std::ostream& operator<<(std::ostream& stream, const wchar_t* text);

}  // namespace Tarn

#endif  // TARN_TEXT_WIDETEXT_H_
