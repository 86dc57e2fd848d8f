/// @file
/// Trimming, searching, classifying, joining, replacing and comparing text.
///
/// Character classes and case folding are fixed ASCII tables that no locale changes. Search positions are `int`; a
/// position that an `int` cannot hold is reported as not found. Every function is linear in its text unless it says
/// otherwise, and only allocation can throw. Free functions without state: threads may call them at once, each on a
/// text of its own.
#ifndef TARN_TEXT_STRINGUTILITIES_H_
#define TARN_TEXT_STRINGUTILITIES_H_

#include <string>
#include <vector>

#include "Tarn/Export.h"

/// The time type, the value text codec and the string utilities.
namespace Tarn {

/// Removes whitespace from the front of the text: space, tab, line feed, vertical tab, form feed, carriage return.
TARN_API void ltrim(std::string& text);
/// Removes whitespace from the end of the text.
TARN_API void rtrim(std::string& text);
/// Removes whitespace from both ends of the text.
TARN_API void trim(std::string& text);

/// The text as `ltrim` leaves it.
[[nodiscard]] TARN_API std::string ltrim_copy(std::string text);
/// The text as `rtrim` leaves it.
[[nodiscard]] TARN_API std::string rtrim_copy(std::string text);
/// The text as `trim` leaves it.
[[nodiscard]] TARN_API std::string trim_copy(std::string text);

/// Whether a value can begin here: an ASCII letter, a digit, plus, minus or full stop.
[[nodiscard]] TARN_API bool isAlphaNum(const char& character);
/// Whether the character can stand in a number: a digit, plus, minus, full stop, E or e.
[[nodiscard]] TARN_API bool isValidNumberChar(const char& character);
/// Whether every byte is at most 0x7F; true for the empty text.
[[nodiscard]] TARN_API bool isAscii(const std::string& text);

/// Finds the first character at or after `start` that `isAlphaNum` accepts.
///
///     findAlphaNum("  -3", 0);  // 2
///     findAlphaNum("a,b", 1);   // 2: a comma does not count
///
/// @return its position, or -1 if there is none or `start` is negative or not below the size.
[[nodiscard]] TARN_API int findAlphaNum(const std::string& text, int start);

/// Finds the first byte at or after `start` that is no whitespace: 0x21 to 0x7E and, so that UTF-8 text is never
/// skipped, 0x80 to 0xFF. Space, 0x7F and all controls, NUL included, are whitespace here.
/// @return its position, or -1 if there is none or `start` is negative or not below the size.
[[nodiscard]] TARN_API int findNonWS(const std::string& text, int start);

/// Finds the first character at or after `start` that `isValidNumberChar` accepts.
/// @return its position, or -1 if there is none or `start` is negative or not below the size.
[[nodiscard]] TARN_API int findValidNumberChar(const std::string& text, int start);

/// Finds the last occurrence of `needle`. Both texts count up to their first NUL.
///
///     findLastOf("aaa", "aa");  // 1: occurrences may overlap
///
/// Linear in both texts. Throws nothing: on texts that repeat themselves it uses some memory if there is any.
/// @return its position, or -1 if there is none or the needle is empty.
[[nodiscard]] TARN_API int findLastOf(const std::string& text, const std::string& needle);

/// Finds the last occurrence of `character` at or after `start` and before the first NUL there. The NUL character
/// itself is found at that first NUL, which is the text's size when the text holds none.
/// @return its position, or -1 if there is none or `start` is negative or not below the size.
[[nodiscard]] TARN_API int findLastOf(const std::string& text, char character, int start);

/// Whether the text begins with the prefix, byte for byte.
[[nodiscard]] TARN_API bool startsWith(const std::string& text, const std::string& prefix);

/// The parts in order, with the separator between each two neighbours, empty parts included.
[[nodiscard]] TARN_API std::string implode(const std::vector<std::string>& parts, const std::string& separator);

/// Replaces every occurrence of `from` by `to`, left to right, without looking at what was inserted.
///
///     std::string text = "aaa";
///     replaceAll(text, "aa", "b");  // "ba"
///     replaceAll(text, "a", "aa");  // "baa"
///
/// An empty `from` changes nothing. `from` and `to` may be the text itself. If allocation throws, the text is as
/// before.
TARN_API void replaceAll(std::string& text, const std::string& from, const std::string& to);
/// The same on wide text.
TARN_API void replaceAll(std::wstring& text, const std::wstring& from, const std::wstring& to);

/// Compares up to the first NUL of each, A to Z taken as a to z, by code value.
///
///     compareIgnoreCase("ABC", "abc");  // 0
///     compareIgnoreCase("_", "A");      // negative: '_' (0x5F) comes before 'a' (0x61)
///
/// @return a negative number, zero or a positive number, as the first text sorts before, with or behind the second.
[[nodiscard]] TARN_API int compareIgnoreCase(const std::string& a, const std::string& b);
/// The same, the first text decoded by `wide`, with its exception for bytes that are not UTF-8, anywhere in the text.
[[nodiscard]] TARN_API int compareIgnoreCase(const std::string& a, const std::wstring& b);
/// The same on wide text.
[[nodiscard]] TARN_API int compareIgnoreCase(const std::wstring& a, const std::wstring& b);
/// The same, the second text decoded by `wide`, with its exception for bytes that are not UTF-8, anywhere in the text.
[[nodiscard]] TARN_API int compareIgnoreCase(const std::wstring& a, const std::string& b);

}  // namespace Tarn

#endif  // TARN_TEXT_STRINGUTILITIES_H_
