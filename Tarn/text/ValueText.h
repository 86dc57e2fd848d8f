/// @file
/// Values appended to a text buffer and taken back from its front, by the shift operators.
///
/// The operators are found from other namespaces after `using namespace Tarn`; in a namespace with shift operators of
/// its own, after `using Tarn::operator<<` and `using Tarn::operator>>`. They hold no state: threads may use them at
/// once, each on a buffer of its own.
#ifndef TARN_TEXT_VALUETEXT_H_
#define TARN_TEXT_VALUETEXT_H_

#include <concepts>
#include <map>
#include <string>
#include <string_view>

#include "Tarn/Export.h"
#include "Tarn/text/ValueReader.h"
#include "Tarn/text/WideText.h"
#include "Tarn/uuids/uuid.h"

namespace Tarn {

/// The map type of the codec.
using StringMap = std::map<std::string, std::string>;

/// Appends a value to the buffer, with no separator, quote or escape of its own.
///
///     char, std::string, const char*, JsonValue   their characters, unchanged
///     bool                                        true or false
///     std::map<string, string>                    { "key"=>"value" ... }, keys and values escaped (`controlsToEsc`)
///     uuids::uuid                                 its canonical text, which is read as a string is: up to a line feed
///     wide text                                   UTF-8
///     Time                                        day.month.year hour:minute:second:millisecond
///     numbers, other types                        what a default-formatted `std::ostream` inserts: six digits of a
///                                                 `double`, of which `exact` keeps all
///
/// Numbers are written as in the classic locale, the same on every platform.
///
///     using namespace Tarn;
///     std::string buffer;
///     buffer << uuids::uuid::generate() << '\n' << StringMap{{"name", "north"}} << 42;
///
/// Throws what `controlsToEsc` throws for a map's text that is not UTF-8; the buffer then keeps the entries before
/// that one. If allocation throws, the buffer has its old text in front.
/// @return the buffer.
template <class T>
std::string& operator<<(std::string& buffer, const T& value);

/// Takes a value from the front of the buffer and removes what it took. `ValueReader` has the rules; use it for many
/// values, since each removal here moves the rest of the buffer.
///
///     std::string buffer = "-12 rest";
///     int number = 0;
///     buffer >> number;  // -12; the buffer is " rest"
///
/// Also when a reader throws, the buffer has lost exactly what that reader had skipped.
/// @return the buffer.
template <class T>
std::string& operator>>(std::string& buffer, T& value);

/// @name Writers and readers in the library
/// @{

/// Appends or takes a value as described above.
template <>
TARN_API std::string& operator<<(std::string& buffer, const char& value);
template <>
TARN_API std::string& operator<<(std::string& buffer, const bool& value);
template <>
TARN_API std::string& operator<<(std::string& buffer, const std::string& value);
template <>
TARN_API std::string& operator<<(std::string& buffer, const StringMap& value);
template <>
TARN_API std::string& operator<<(std::string& buffer, const uuids::uuid& value);
TARN_API std::string& operator<<(std::string& buffer, const JsonValue& value);
/// The pointer must be valid.
TARN_API std::string& operator<<(std::string& buffer, const char* value);

template <>
TARN_API std::string& operator>>(std::string& buffer, char& value);
template <>
TARN_API std::string& operator>>(std::string& buffer, signed char& value);
template <>
TARN_API std::string& operator>>(std::string& buffer, unsigned char& value);
template <>
TARN_API std::string& operator>>(std::string& buffer, bool& value);
template <>
TARN_API std::string& operator>>(std::string& buffer, std::string& value);
template <>
TARN_API std::string& operator>>(std::string& buffer, JsonValue& value);
template <>
TARN_API std::string& operator>>(std::string& buffer, StringMap& value);
template <>
TARN_API std::string& operator>>(std::string& buffer, uuids::uuid& value);
/// @}

/// A floating-point number in the fewest digits that read back as the same number: `buffer << exact(0.1)`. Built with
/// libc++, a `long double` has the digits of a `double`.
template <std::floating_point T>
struct Exact {
  T value;  ///< Infinite ones and NaN are written, but not read.
};

/// Writes a number so that it keeps what was measured: the default form keeps six digits. Both are read by the same
/// rule.
/// @{
template <std::floating_point T>
[[nodiscard]] constexpr Exact<T> exact(T value) noexcept {
  return {value};
}
TARN_API std::string& operator<<(std::string& buffer, const Exact<float>& number);
TARN_API std::string& operator<<(std::string& buffer, const Exact<double>& number);
TARN_API std::string& operator<<(std::string& buffer, const Exact<long double>& number);
/// @}

/// Whether the map, written to a buffer, is read back as it is. It is not where a key or value is no UTF-8 in its
/// shortest form (that of a surrogate is taken), or holds a character above U+FFFF, a NUL, or a backslash before a
/// double quote; or where a key ends in `"=>` or is `=>`.
[[nodiscard]] TARN_API bool comesBack(const StringMap& map);

}  // namespace Tarn

#include "Tarn/text/internal/Writing.h"

#endif  // TARN_TEXT_VALUETEXT_H_
