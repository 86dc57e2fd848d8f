/// @file
/// Values appended to a text buffer and taken back from its front, by the shift operators.
///
/// The operators are found from other namespaces after `using namespace Tarn`; in a namespace with shift operators of
/// its own, after `using Tarn::operator<<` and `using Tarn::operator>>`. They hold no state: threads may use them at
/// once, each on a buffer of its own.
#ifndef TARN_TEXT_VALUETEXT_H_
#define TARN_TEXT_VALUETEXT_H_

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <locale>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "Tarn/Export.h"
#include "Tarn/text/ValueReader.h"
#include "Tarn/text/WideText.h"
#include "Tarn/uuids/uuid.h"

namespace Tarn {

/// The map type of the codec.
using StringMap = std::map<std::string, std::string>;

/// What an `std::ostream` can insert.
template <class T>
concept StreamInsertable = requires(std::ostream& stream, const T& value) {
  stream << value;
};

/// Appends a value to the buffer, with no separator, quote or escape of its own.
///
///     char, std::string, const char*, JsonValue   their characters, unchanged
///     bool                                        true or false
///     std::map<string, string>                    { "key"=>"value" ... }, keys and values escaped (`controlsToEsc`)
///     uuids::uuid                                 its canonical text
///     wide text                                   UTF-8
///     Time                                        day.month.year hour:minute:second:millisecond
///     numbers, other types                        what a default-formatted `std::ostream` inserts
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

// Implementation of the templates.

namespace internal {

// The text that a default-formatted stream in the classic locale makes of a value.
template <class T>
std::string streamedText(const T& value) {
  static_assert(StreamInsertable<T>, "a value is written by its operator<< on std::ostream, and this type has none");
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream.exceptions(std::ios::badbit);  // So that a failed allocation is thrown: streams keep quiet about it.
  stream << value;
  return std::move(stream).str();
}

// Appends digits by `std::to_chars`, which writes the same as a stream in the classic locale and does not need one.
template <class T, class... Format>
void appendNumber(std::string& buffer, T value, Format... format) {
  std::array<char, 32> text;  // Holds 20 digits and a sign, and 6 digits with sign, point and exponent.
  const auto result = std::to_chars(text.data(), text.data() + text.size(), value, format...);
  buffer.append(text.data(), result.ptr);
}

// Runs a reader over the buffer's text, then removes what it took, also when it throws.
class FrontEraser {
 public:
  explicit FrontEraser(std::string& buffer) noexcept : buffer_(buffer), reader_(std::string_view(buffer)) {}
  FrontEraser(const FrontEraser&) = delete;
  FrontEraser& operator=(const FrontEraser&) = delete;
  ~FrontEraser() {
    const std::string_view rest = reader_.rest();
    const auto taken = static_cast<std::size_t>(rest.data() - buffer_.data());
    const std::size_t end = taken + rest.size();
    if (end != buffer_.size()) buffer_.resize(end);  // Never grows: the rest is part of the buffer.
    buffer_.erase(0, taken);
  }
  [[nodiscard]] ValueReader& reader() noexcept { return reader_; }

 private:
  std::string& buffer_;
  ValueReader reader_;
};

template <class T>
std::string& takeFromFront(std::string& buffer, T& value) {
  FrontEraser front(buffer);
  front.reader() >> value;
  return buffer;
}

}  // namespace internal

template <class T>
std::string& operator<<(std::string& buffer, const T& value) {
  if constexpr (DecimalInteger<T>) {
    internal::appendNumber(buffer, value);
  } else if constexpr (std::floating_point<T>) {
    internal::appendNumber(buffer, value, std::chars_format::general, 6);
  } else {
    buffer += internal::streamedText(value);
  }
  return buffer;
}

template <class T>
std::string& operator>>(std::string& buffer, T& value) {
  return internal::takeFromFront(buffer, value);
}

}  // namespace Tarn

#endif  // TARN_TEXT_VALUETEXT_H_
