// The inside of the templates of ValueReader.h.
#ifndef TARN_TEXT_INTERNAL_READING_H_
#define TARN_TEXT_INTERNAL_READING_H_

#include <charconv>
#include <concepts>
#include <istream>
#include <limits>
#include <new>
#include <system_error>
#include <type_traits>

#include "Tarn/text/ValueReader.h"

namespace Tarn {
namespace internal {

template <class T>
concept StreamExtractable = requires(std::istream& stream, T& value) {
  stream >> value;
};

template <class T>
inline constexpr bool kHasNoReader = false;  // Depends on T, so that the assertion fails on instantiation only.

// Whether a number begins right here, as it mostly does: then nothing has to be searched.
constexpr bool beginsWithNumber(std::string_view text) noexcept {
  return !text.empty() && '-' <= text.front() && text.front() <= '9' && text.front() != '/';
}

// To where a value begins, mostly here or behind one space. False if there is none.
inline bool skipToValue(ValueReader& reader) noexcept {
  const std::string_view text = reader.rest();
  if (beginsWithNumber(text)) return true;
  if (!text.starts_with(' ') || !beginsWithNumber(text.substr(1))) return reader.skipToValue();
  reader.skip(1);
  return true;
}

[[noreturn]] TARN_API void throwNoValue();

// Assigns the number with this sign and magnitude, clamped to the type's range. False if it had to be clamped. An
// unsigned number with a minus wraps around, as it does for streams.
template <DecimalInteger T>
constexpr bool assignInteger(T& value, bool negative, std::make_unsigned_t<T> magnitude, bool overflow) {
  using Unsigned = std::make_unsigned_t<T>;
  using Limits = std::numeric_limits<T>;
  const bool lowest = std::is_signed_v<T> && negative;
  const auto limit = static_cast<Unsigned>(static_cast<Unsigned>(Limits::max()) + (lowest ? 1U : 0U));
  if (overflow || magnitude > limit) {
    value = lowest ? Limits::min() : Limits::max();
    return false;
  }
  value = static_cast<T>(negative ? static_cast<Unsigned>(Unsigned{0} - magnitude) : magnitude);
  return true;
}

}  // namespace internal

template <class T>
ValueReader::Extraction ValueReader::extract(T& value) {
  if constexpr (DecimalInteger<T>) {
    using Limits = std::numeric_limits<T>;
    const char* const end = rest_.data() + rest_.size();
    const bool negative = rest_.front() == '-';
    const char* const digits = rest_.data() + (negative || rest_.front() == '+' ? 1 : 0);
    constexpr auto kLargest = static_cast<double>(Limits::max());
    std::make_unsigned_t<T> magnitude = 0;
    if (digits < noIntegers_.before && kLargest <= noIntegers_.largest) {
      internal::assignInteger(value, negative, magnitude, true);
      return {0, false, true};
    }
    const auto [stop, error] = std::from_chars(digits, end, magnitude);
    const Extraction found{static_cast<std::size_t>(stop - rest_.data()), stop == end, true};
    if (error == std::errc::invalid_argument) {
      value = 0;
      return found;
    }
    if (internal::assignInteger(value, negative, magnitude, error == std::errc::result_out_of_range)) {
      return {found.size, found.atEnd, false};
    }
    if (!found.atEnd) noIntegers_ = tooLarge(digits, stop, Limits::digits10 + 1, kLargest);
    return found;
  } else if constexpr (internal::StreamExtractable<T>) {
    return extractByStream([](std::istream& stream, void* to) { stream >> *static_cast<T*>(to); }, &value);
  } else {
    static_assert(internal::kHasNoReader<T>,
                  "a value is read by its operator>> on std::istream, and this type has none");
    return {};
  }
}

template <class T>
ValueReader& operator>>(ValueReader& reader, T& value) {
  const std::string_view before = reader.rest_;
  if (!internal::skipToValue(reader)) return reader;
  ValueReader::Extraction found{};
  if constexpr (std::floating_point<T>) {
    try {
      found = reader.extract(value);
    } catch (const std::bad_alloc&) {
      reader.rest_ = before;
      throw;
    }
  } else {
    found = reader.extract(value);
  }
  if (found.failed && !found.atEnd) internal::throwNoValue();
  reader.skip(found.atEnd ? reader.rest_.size() : found.size);
  return reader;
}

template <class T>
std::optional<T> ValueReader::tryRead() {
  ValueReader behind = *this;
  std::optional<T> value(std::in_place);
  if constexpr (requires { takeWhole(behind, *value); }) {
    if (!takeWhole(behind, *value)) return std::nullopt;
  } else {
    if (!internal::skipToValue(behind)) return std::nullopt;
    const Extraction found = behind.extract(*value);
    if (found.failed) return std::nullopt;
    behind.skip(found.size);
  }
  *this = behind;
  return value;
}

}  // namespace Tarn

#endif  // TARN_TEXT_INTERNAL_READING_H_
