/// @file
/// Reading values from the front of a text, in one pass and without a copy.
#ifndef TARN_TEXT_VALUEREADER_H_
#define TARN_TEXT_VALUEREADER_H_

#include <algorithm>
#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <limits>
#include <locale>
#include <map>
#include <new>
#include <optional>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

#include "Tarn/Export.h"
#include "Tarn/uuids/uuid.h"

namespace Tarn {

/// A text that is JSON. It is read and written exactly as a `std::string` is.
struct JsonValue {
  std::string text;  ///< Not checked to be JSON.
};

/// Takes one token from a stream: `stream >> word`.
///
/// Leading whitespace is skipped (`eatWS`). A token that begins with a double quote ends at the next double quote,
/// both are taken and dropped, and a backslash stands for the character behind it. Any other token ends before the
/// next whitespace. A token that the end of the input cuts off keeps what was read, and the stream is left failed as
/// any read past the end leaves it. With nothing left to read, the optional stays as it was.
///
///     std::istringstream stream(R"(  north "of the \"wall\"" )");
///     stream >> word;  // north
///     stream >> word;  // of the "wall"
TARN_API std::istream& operator>>(std::istream& stream, std::optional<std::string>& word);

/// Takes one token from a stream and reads it with `parseUuid`. A token that is no uuid leaves `id` unchanged, which
/// the stream does not tell.
TARN_API std::istream& operator>>(std::istream& stream, uuids::uuid& id);

/// The number types that have decimal digits: every standard integer but characters and `bool`.
template <class T>
concept DecimalInteger = std::same_as<T, short> || std::same_as<T, unsigned short> || std::same_as<T, int> ||
    std::same_as<T, unsigned> || std::same_as<T, long> || std::same_as<T, unsigned long> ||
    std::same_as<T, long long> || std::same_as<T, unsigned long long>;

/// What an `std::istream` can extract.
template <class T>
concept StreamExtractable = requires(std::istream& stream, T& value) {
  stream >> value;
};

/// Takes values from the front of a text, by the rules of the buffer operators, without changing the text.
///
///     value                          skipped first                 taken
///     char                           whitespace (`findNonWS`)      one character; NUL if there is none
///     signed char, unsigned char     up to where a number begins   an int, its low eight bits
///     bool                           up to where a value begins    true, false, or one character of a number
///     std::string, JsonValue         nothing                       a quoted string, a line, or all there is
///     std::map<string, string>       whitespace                    { "key"=>"value" ... }
///     uuids::uuid                    nothing                       what a string takes; unchanged if it is no uuid
///     Time                           whitespace                    day.month.year hour:minute:second:millisecond
///     numbers, other types           up to where a value begins    what `std::istream` extracts
///
/// "Where a value begins" is the first letter, digit, plus, minus or full stop. If there is none, numbers and other
/// types leave value and text unchanged, and a `bool` becomes false and takes all. If what stands there is no value
/// of the type, they throw `std::out_of_range` with "invalid string position"; what was skipped is gone then, the rest
/// is there. A quoted string drops the text behind its first NUL. Numbers are read as in the classic locale.
///
///     ValueReader reader("-12 true \"a b\"=>c");
///     int number = 0;
///     bool flag = false;
///     char space = 0;
///     reader >> number >> flag;  // -12, true
///     reader.rest();             // " \"a b\"=>c"
///
/// Any number of reads together is linear in the text. If allocation throws, reader and value are as before, except
/// for types with a stream operator of their own. The text must outlive the reader. Threads: as for any plain value.
class ValueReader {
 public:
  /// A reader at the front of the text.
  explicit ValueReader(std::string_view text) noexcept : rest_(text) {}

  /// The same for the characters before the first NUL. The pointer must be valid.
  explicit ValueReader(const char* text) noexcept : rest_(text) {}

  /// A reader does not keep the text alive, so it cannot be made from a temporary string.
  explicit ValueReader(const std::string&& text) = delete;

  /// The text that has not been read yet.
  [[nodiscard]] std::string_view rest() const noexcept { return rest_; }

  /// Drops characters from the front, all that are left at most.
  void skip(std::size_t count) noexcept { rest_.remove_prefix(std::min(count, rest_.size())); }

  /// Drops what stands before the next letter, digit, plus, minus or full stop.
  /// @return false, and nothing changes, if there is none.
  TARN_API bool skipToValue() noexcept;

 private:
  friend TARN_API ValueReader& operator>>(ValueReader& reader, bool& value);
  friend TARN_API ValueReader& operator>>(ValueReader& reader, std::string& value);
  friend TARN_API ValueReader& operator>>(ValueReader& reader, std::map<std::string, std::string>& value);
  friend TARN_API ValueReader& operator>>(ValueReader& reader, uuids::uuid& value);

  bool isNonZeroInteger(std::string_view text) noexcept;
  std::string_view takeString() noexcept;
  std::optional<std::string_view> takeMapKey() noexcept;
  bool takeMapEntry(std::map<std::string, std::string>& entries);

  std::string_view rest_;
  // What is known of the rest. It stays true, as the rest only shrinks, and spares a search at every read.
  bool holdsNoValue_ = false;
  bool holdsNoNul_ = false;
  bool holdsNoSeparator_ = false;
  const char* zerosEnd_ = rest_.data();  // What stands before it in the rest is zeros.
};

/// @name Readers
/// See `ValueReader`.
/// @{

/// Takes a value by the rules of `ValueReader`.
TARN_API ValueReader& operator>>(ValueReader& reader, char& value);
TARN_API ValueReader& operator>>(ValueReader& reader, signed char& value);
TARN_API ValueReader& operator>>(ValueReader& reader, unsigned char& value);
TARN_API ValueReader& operator>>(ValueReader& reader, bool& value);
TARN_API ValueReader& operator>>(ValueReader& reader, std::string& value);
TARN_API ValueReader& operator>>(ValueReader& reader, JsonValue& value);
/// Takes a map; entries in front of a malformed one are kept, and so is the text from there on.
///
/// The first character is taken as the opening brace, whatever it is. When a key occurs twice, its first value wins.
TARN_API ValueReader& operator>>(ValueReader& reader, std::map<std::string, std::string>& value);
TARN_API ValueReader& operator>>(ValueReader& reader, uuids::uuid& value);
/// Every other type, numbers among them. Not constrained: the check would ask itself the same question for each type
/// whose stream operator is looked up in this namespace.
template <class T>
ValueReader& operator>>(ValueReader& reader, T& value);
/// @}

/// The uuid that a text shows, or nothing.
///
/// 32 hexadecimal digits of either case. Hyphens may stand anywhere and are skipped; braces may stand around it all.
/// The text counts up to its first NUL. Usable in constant expressions:
///
///     constexpr auto id = parseUuid("{00112233-4455-6677-8899-AABBCCDDEEFF}");
///     static_assert(id && !id->is_nil());
[[nodiscard]] constexpr std::optional<uuids::uuid> parseUuid(std::string_view text) noexcept;

// Implementation of the templates.

namespace internal {

// The value of each hexadecimal digit, 0xFF for other bytes.
inline constexpr std::array<unsigned char, 256> kHexDigitValues = [] {
  std::array<unsigned char, 256> values{};
  values.fill(0xFF);
  for (unsigned char i = 0; i < 10; ++i) values[static_cast<std::size_t>('0') + i] = i;
  for (unsigned char i = 0; i < 6; ++i) {
    values[static_cast<std::size_t>('a') + i] = static_cast<unsigned char>(10 + i);
    values[static_cast<std::size_t>('A') + i] = static_cast<unsigned char>(10 + i);
  }
  return values;
}();

// A narrow input stream over a text, without a copy of it, in the classic locale.
class ViewStream : private std::streambuf, public std::istream {
 public:
  explicit ViewStream(std::string_view text) : std::istream(this) {
    char* const begin = const_cast<char*>(text.data());  // A get area is never written to.
    setg(begin, begin, begin + text.size());
    std::istream::imbue(std::locale::classic());
  }
  [[nodiscard]] std::size_t consumed() const { return static_cast<std::size_t>(gptr() - eback()); }
};

// Whether a number begins right here, as it mostly does: then nothing has to be searched.
constexpr bool beginsWithNumber(std::string_view text) noexcept {
  return !text.empty() && (('0' <= text.front() && text.front() <= '9') || text.front() == '-');
}

[[noreturn]] inline void throwNoValue() { throw std::out_of_range("invalid string position"); }

// What is left of an extraction that ended at `consumed`, its stream at the end of the text or failed.
inline void finishExtraction(ValueReader& reader, std::size_t consumed, bool atEnd, bool failed) {
  if (!atEnd && failed) throwNoValue();
  reader.skip(atEnd ? reader.rest().size() : consumed);
}

// The number with this sign and magnitude, or the nearest there is; false if that is another one. A minus before an
// unsigned number counts modulo 2 to the power of its width, as it does for streams.
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

// What an extraction by a stream does, without the stream: an optional sign, then digits.
template <DecimalInteger T>
void readInteger(ValueReader& reader, T& value) {
  const std::string_view text = reader.rest();
  const bool negative = text.front() == '-';
  const bool hasSign = negative || text.front() == '+';
  const char* const end = text.data() + text.size();
  std::make_unsigned_t<T> magnitude = 0;
  const auto [stop, error] = std::from_chars(text.data() + (hasSign ? 1 : 0), end, magnitude);
  bool failed = error == std::errc::invalid_argument;
  if (failed) {
    value = 0;
  } else {
    failed = !assignInteger(value, negative, magnitude, error == std::errc::result_out_of_range);
  }
  finishExtraction(reader, static_cast<std::size_t>(stop - text.data()), stop == end, failed);
}

template <class T>
void readByStream(ValueReader& reader, T& value) {
  static_assert(StreamExtractable<T>, "a value is read by its operator>> on std::istream, and this type has none");
  ViewStream view(reader.rest());
  std::istream& stream = view;
  // A failed allocation is all that is bad about a number. Streams keep quiet about it, and the text would be to blame.
  if constexpr (std::floating_point<T>) stream.exceptions(std::ios::badbit);
  stream >> value;
  finishExtraction(reader, view.consumed(), stream.eof(), stream.fail());
}

// Four bytes as one number, the first most significant.
constexpr std::uint32_t bigEndian(const char* bytes) noexcept {
  std::uint32_t number = 0;
  for (int i = 0; i < 4; ++i) number = number << 8U | static_cast<unsigned char>(bytes[i]);
  return number;
}

// The value of eight hexadecimal digits, four here and four there. Clears `areDigits` if another character is there.
// The digits are looked at together, as the bytes of one number: to add what takes a character to 0x80 sets the top
// bits of the bytes from that character on.
constexpr std::uint32_t hexValue(const char* here, const char* there, bool& areDigits) noexcept {
  constexpr std::uint64_t kEach = 0x0101010101010101;
  const std::uint64_t text = std::uint64_t{bigEndian(here)} << 32U | bigEndian(there);
  const std::uint64_t ascii = text & (0x7F * kEach);
  const std::uint64_t lower = ascii | (0x20 * kEach);
  const std::uint64_t digits = (ascii + (0x80 - '0') * kEach) & ~(ascii + (0x80 - '9' - 1) * kEach);
  const std::uint64_t letters = (lower + (0x80 - 'a') * kEach) & ~(lower + (0x80 - 'f' - 1) * kEach);
  areDigits &= ((digits | letters) & ~text & (0x80 * kEach)) == 0x80 * kEach;
  std::uint64_t value = (text & (0x0F * kEach)) + 9 * (letters >> 7U & kEach);
  value = (value | value >> 4U) & 0x00FF00FF00FF00FF;
  value = (value | value >> 8U) & 0x0000FFFF0000FFFF;
  return static_cast<std::uint32_t>(value | value >> 16U);
}

// The uuid of 32 digits, given by where each eighth of them stands; nothing if another character is among them.
constexpr std::optional<uuids::uuid> uuidOfDigits(const char* text,
                                                  const std::array<unsigned char, 8>& eighths) noexcept {
  std::array<unsigned char, 16> bytes{};
  bool areDigits = true;
  for (std::size_t i = 0; i < 4; ++i) {
    const std::uint32_t value = hexValue(text + eighths[2 * i], text + eighths[2 * i + 1], areDigits);
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

template <class T>
ValueReader& operator>>(ValueReader& reader, T& value) {
  const ValueReader before = reader;
  if (!internal::beginsWithNumber(reader.rest()) && !reader.skipToValue()) return reader;
  if constexpr (DecimalInteger<T>) {
    internal::readInteger(reader, value);
  } else if constexpr (std::floating_point<T>) {
    try {
      internal::readByStream(reader, value);
    } catch (const std::bad_alloc&) {
      reader = before;
      throw;
    }
  } else {
    internal::readByStream(reader, value);
  }
  return reader;
}

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
    const unsigned char value = internal::kHexDigitValues[static_cast<unsigned char>(character)];
    if (digits == 32 || value > 0xF) return std::nullopt;
    bytes[digits / 2] = static_cast<unsigned char>(bytes[digits / 2] << 4 | value);
    ++digits;
  }
  if (digits < 32) return std::nullopt;
  return uuids::uuid(bytes);
}

}  // namespace Tarn

#endif  // TARN_TEXT_VALUEREADER_H_
