/// @file
/// Trimming, searching, classifying, joining, replacing and comparing text.
///
/// Character classes and case folding are fixed ASCII tables that no locale changes. Search positions are `int`; a
/// position that an `int` cannot hold is reported as not found. Every function is linear in its text unless it says
/// otherwise, and only allocation can throw. Free functions without state: threads may call them at once, each on a
/// text of its own.
#ifndef TARN_TEXT_STRINGUTILITIES_H_
#define TARN_TEXT_STRINGUTILITIES_H_

#include <concepts>
#include <string>
#include <string_view>
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

namespace internal {
template <class T>
concept View = std::same_as<T, std::string_view>;
// One is a view, and the other becomes one at least.
template <class A, class B>
concept ViewPair =
    (View<A> ||
     View<B>)&&std::convertible_to<const A&, std::string_view>&& std::convertible_to<const B&, std::string_view>;

TARN_API bool isAscii(std::string_view text);
TARN_API int findAlphaNum(std::string_view text, int start);
TARN_API int findNonWS(std::string_view text, int start);
TARN_API int findValidNumberChar(std::string_view text, int start);
TARN_API int findLastOf(std::string_view text, std::string_view needle);
TARN_API int findLastOf(std::string_view text, char character, int start);
TARN_API int compareIgnoreCase(std::string_view a, std::string_view b);
TARN_API std::string_view trimmed(std::string_view text, bool front, bool end);
}  // namespace internal

/// The same of a text that is a `std::string_view`; where there are two, of one or both. Templates, so that literals
/// and what else becomes a `std::string` go the way that they went.
/// @{
[[nodiscard]] bool isAscii(internal::View auto text) { return internal::isAscii(text); }
[[nodiscard]] int findAlphaNum(internal::View auto text, int start) { return internal::findAlphaNum(text, start); }
[[nodiscard]] int findNonWS(internal::View auto text, int start) { return internal::findNonWS(text, start); }
[[nodiscard]] int findValidNumberChar(internal::View auto text, int start) {
  return internal::findValidNumberChar(text, start);
}
[[nodiscard]] int findLastOf(internal::View auto text, char character, int start) {
  return internal::findLastOf(text, character, start);
}
template <class A, class B>
requires internal::ViewPair<A, B>
[[nodiscard]] int findLastOf(const A& text, const B& needle) { return internal::findLastOf(text, needle); }
template <class A, class B>
requires internal::ViewPair<A, B>
[[nodiscard]] bool startsWith(const A& text, const B& prefix) {
  return std::string_view(text).starts_with(std::string_view(prefix));
}
template <class A, class B>
requires internal::ViewPair<A, B>
[[nodiscard]] int compareIgnoreCase(const A& a, const B& b) { return internal::compareIgnoreCase(a, b); }
[[nodiscard]] std::string ltrim_copy(internal::View auto text) {
  return std::string(internal::trimmed(text, true, false));
}
[[nodiscard]] std::string rtrim_copy(internal::View auto text) {
  return std::string(internal::trimmed(text, false, true));
}
[[nodiscard]] std::string trim_copy(internal::View auto text) {
  return std::string(internal::trimmed(text, true, true));
}
/// @}

}  // namespace Tarn

#endif  // TARN_TEXT_STRINGUTILITIES_H_
