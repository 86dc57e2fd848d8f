/// @file
/// Reading values from the front of a text, in one pass and without a copy.
#ifndef TARN_TEXT_VALUEREADER_H_
#define TARN_TEXT_VALUEREADER_H_

#include <concepts>
#include <cstddef>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "Tarn/Export.h"
#include "Tarn/uuids/UuidText.h"

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
///
/// Beware: `while (stream >> word)` loses a last word without whitespace behind it. Begin each round with an empty
/// optional, and end where one stays empty.
TARN_API std::istream& operator>>(std::istream& stream, std::optional<std::string>& word);

/// Takes one token from a stream and reads it with `parseUuid`. A token that is no uuid leaves `id` unchanged, which
/// the stream does not tell; and a last one with nothing behind it leaves the stream failed, as above.
TARN_API std::istream& operator>>(std::istream& stream, uuids::uuid& id);

// So that it is found wherever a uuid is read, as by `std::istream_iterator`.
namespace uuids {
using Tarn::operator>>;
}

/// The number types that have decimal digits: every standard integer but characters and `bool`.
template <class T>
concept DecimalInteger = std::same_as<T, short> || std::same_as<T, unsigned short> || std::same_as<T, int> ||
    std::same_as<T, unsigned> || std::same_as<T, long> || std::same_as<T, unsigned long> ||
    std::same_as<T, long long> || std::same_as<T, unsigned long long>;

class ValueReader;

/// Takes a value of any type that has no reader of its own, numbers among them, by the rules of `ValueReader`. A type
/// of the program's own is read by its `operator>>` on `std::istream`; this operator comes before one that the program
/// has for a base class of the type.
template <class T>
ValueReader& operator>>(ValueReader& reader, T& value);

/// Takes values from the front of a text, by the rules of the buffer operators, without changing the text.
///
///     value                          skipped first                 taken
///     char                           whitespace (`findNonWS`)      one character; NUL if there is none
///     signed char, unsigned char     up to where a number begins   an int, its low eight bits
///     bool                           up to where a value begins    true, false, or one character of a number
///     std::string, JsonValue         nothing, not a space either   a quoted string, a line, or all there is
///     std::map<string, string>       whitespace                    { "key"=>"value" ... }
///     uuids::uuid                    nothing                       what a string takes; unchanged if it is no uuid
///     Time                           up to where a value begins    day.month.year hour:minute:second:millisecond
///     numbers, other types           up to where a value begins    what `std::istream` extracts
///
/// "Where a value begins" is the first letter, digit, plus, minus or full stop. If there is none, numbers and other
/// types leave value and text unchanged, and a `bool` becomes false and takes all. If what stands there is no value
/// of the type, they throw `std::out_of_range` with "invalid string position"; what was skipped is gone then, the rest
/// is there. A `bool` for which another word stands there becomes false and takes nothing. Numbers are read as in the
/// classic locale.
///
///     ValueReader reader("-12 true \"a b\"=>c");
///     int number = 0;
///     bool flag = false;
///     char space = 0;
///     reader >> number >> flag;  // -12, true
///     reader.rest();             // " \"a b\"=>c"
///
/// Wide text is read as a `std::string`, which `wide` decodes. To ask whether a value is there, take `tryRead`: `>>`
/// throws.
///
/// Beware: a quoted string drops what stands behind the first NUL of the whole rest, be it far behind the string. A
/// `std::uint8_t` or `std::int8_t` is written as a character and read as a number, so it does not come back. Whoever
/// reads what somebody else may have written takes it line by line and uses `tryRead`.
///
/// Any number of reads together is linear in the text, also where they throw and a character is skipped after each; but
/// for types with a stream operator of their own, which may look at all the text each time. If allocation throws,
/// reader and value are as before, except for these types. The text must outlive the reader. Threads: as for any plain
/// value.
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
  void skip(std::size_t count) noexcept { rest_.remove_prefix(count < rest_.size() ? count : rest_.size()); }

  /// Drops what stands before the next letter, digit, plus, minus or full stop.
  /// @return false, and nothing changes, if there is none.
  TARN_API bool skipToValue() noexcept;

  /// The text up to the next line feed, which is dropped, whatever it begins with; all there is without a line feed.
  /// @return nothing at the end of the text.
  TARN_API std::optional<std::string_view> takeLine() noexcept;

  /// Takes a value as `>>` does, if a whole one is there.
  ///
  /// Not whole is a number that its type cannot hold, a word that is neither true nor false, a quoted string without
  /// its closing quote, any string at the end of the text, a map without its braces, a text that is no uuid, a time
  /// without one of its seven numbers.
  ///
  ///     text << '"' << id << "\" " << size << '\n';  // How each line was written: a uuid ends where a string does.
  ///
  ///     while (const auto line = reader.takeLine()) {
  ///       ValueReader record(*line);  // What is wrong with one line cannot reach the next.
  ///       const auto id = record.tryRead<uuids::uuid>();
  ///       const auto size = record.tryRead<int>();
  ///       if (id && size) add(*id, *size);
  ///     }
  ///
  /// Beware: what stands in front of a number or behind a value is not looked at, nor is whether a date exists. A minus
  /// in front of an unsigned number wraps around, as with streams, and characters keep an int's low eight bits. A
  /// string at the end of a line that may be empty is read by quotes, or is the `rest()`.
  ///
  /// @return nothing, and nothing is taken, if there is none. Throws nothing but what allocation or a type's own
  /// stream operator throws.
  template <class T>
  std::optional<T> tryRead();

 private:
  friend TARN_API ValueReader& operator>>(ValueReader& reader, bool& value);
  friend TARN_API ValueReader& operator>>(ValueReader& reader, std::string& value);
  friend TARN_API ValueReader& operator>>(ValueReader& reader, std::map<std::string, std::string>& value);
  friend TARN_API ValueReader& operator>>(ValueReader& reader, uuids::uuid& value);
  template <class T>
  friend ValueReader& operator>>(ValueReader& reader, T& value);

  // Each takes a value. False, having taken anything or nothing, if none is there or it is not whole.
  friend TARN_API bool takeWhole(ValueReader& reader, char& value) noexcept;
  friend TARN_API bool takeWhole(ValueReader& reader, signed char& value) noexcept;
  friend TARN_API bool takeWhole(ValueReader& reader, unsigned char& value) noexcept;
  friend TARN_API bool takeWhole(ValueReader& reader, bool& value) noexcept;
  friend TARN_API bool takeWhole(ValueReader& reader, std::string& value);
  friend TARN_API bool takeWhole(ValueReader& reader, JsonValue& value);
  friend TARN_API bool takeWhole(ValueReader& reader, std::map<std::string, std::string>& value);
  friend TARN_API bool takeWhole(ValueReader& reader, uuids::uuid& value) noexcept;

  // What a stream would have done.
  struct Extraction {
    std::size_t size;  // Of the text that it took.
    bool atEnd;
    bool failed;
  };

  // What an `std::istream` extracts from the front of the rest, which stays.
  template <class T>
  Extraction extract(T& value);
  TARN_API Extraction extract(float& value);
  TARN_API Extraction extract(double& value);
  TARN_API Extraction extract(long double& value);
  template <class T>
  Extraction extractFloat(T& value);
  template <class T>
  Extraction extractUnusualFloat(T& value, const char* digits);
  TARN_API Extraction extractByStream(void (*read)(std::istream& stream, void* value), void* value) const;

  // Every number that begins in front of `before` is out of the range of types whose maximum is at most `largest`; if
  // that is 0, none of them is well formed.
  struct NoNumbers {
    const char* before;
    double largest;
  };
  TARN_API static NoNumbers tooLarge(const char* digits, const char* end, std::ptrdiff_t most, double largest) noexcept;

  std::size_t findValue() noexcept;
  bool takeBool(bool& value) noexcept;
  bool isNonZeroInteger(std::string_view text) noexcept;
  bool takeString(std::string_view& value) noexcept;
  std::optional<std::string_view> takeMapKey() noexcept;
  bool takeMapEntry(std::map<std::string, std::string>& entries);
  bool takeMap(std::map<std::string, std::string>& map);

  std::string_view rest_;

  // Facts about the rest, so that no read scans the same text again. They stay true, as the rest only shrinks.
  bool holdsNoNul_ = false;
  bool holdsNoSeparator_ = false;
  const char* noValueBefore_ = rest_.data();
  const char* zerosBefore_ = rest_.data();
  NoNumbers noIntegers_{rest_.data(), 0};
  NoNumbers noFloats_{rest_.data(), 0};
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
/// @}

}  // namespace Tarn

#include "Tarn/text/internal/Reading.h"

#endif  // TARN_TEXT_VALUEREADER_H_
