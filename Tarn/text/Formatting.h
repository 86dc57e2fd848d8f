/// @file
/// Text from a printf format, and the next name in a numbered series.
#ifndef TARN_TEXT_FORMATTING_H_
#define TARN_TEXT_FORMATTING_H_

#include <concepts>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Tarn/Export.h"

namespace Tarn {

namespace internal {
template <class T>
inline constexpr bool kIsUnscopedEnum = std::is_enum_v<T>&& std::is_convertible_v<T, long long>;
}  // namespace internal

/// What printf can take: numbers, pointers and, passed as its C string, a `std::string`. Of a `std::string_view`, pass
/// `std::string(view)`.
template <class T>
concept PrintFArgument = std::is_arithmetic_v<T> || internal::kIsUnscopedEnum<T> ||
    std::is_pointer_v<std::decay_t<T>> || std::same_as<T, std::nullptr_t> || std::same_as<T, std::string>;

/// A text of up to 999 bytes formatted as by printf, wherever a `std::string` is expected.
///
///     std::string name = PrintF("Scan%03d", 7);  // "Scan007"
///     log("size of " + PrintF("%s: %.1f m", name, 12.25));
///     std::cout << PrintF("%5.2f", 2.125);
///
/// The text is formatted once, in the process's locale, and cut at 999 bytes and at the first NUL. As with printf,
/// the format must fit the arguments, or anything may happen: GCC and Clang check a literal one (`-Wformat`) where no
/// argument is a `std::string`. Where one wide character cannot be converted, the whole text is empty. A plain value:
/// threads may each use their own.
class PrintF {
 public:
  /// The text of the format and its arguments.
  /// @{
#if defined(__MINGW32__) && !defined(__clang__)
  __attribute__((format(gnu_printf, 2, 3)))
#elif defined(__GNUC__)
  __attribute__((format(printf, 2, 3)))
#endif
  TARN_API explicit PrintF(const char* format, ...);
  template <PrintFArgument... Arguments>
  requires(std::same_as<Arguments, std::string> || ...) explicit PrintF(const char* format,
                                                                        const Arguments&... arguments) {
    printf_apply(format, pass(arguments)...);
  }
  template <std::same_as<std::string> Format, PrintFArgument... Arguments>
  explicit PrintF(const Format& format, const Arguments&... arguments) {
    printf_apply(format.c_str(), pass(arguments)...);
  }
  /// @}

  /// What printf cannot take.
  template <class... Arguments>
  requires(!(PrintFArgument<Arguments> && ...)) explicit PrintF(const char* format,
                                                                const Arguments&... arguments) = delete;

  /// A copy of the text.
  TARN_API operator std::string() const;

  /// The text without a copy, of a temporary such as those above.
  template <std::same_as<std::string> Text>
  operator Text() && {
    return std::move(text_);
  }

  /// Insert, append or join the text as a `std::string` is.
  /// @{
  TARN_API friend std::ostream& operator<<(std::ostream& stream, const PrintF& text);
  friend std::string& operator<<(std::string& buffer, const PrintF& text) { return buffer += text.text_; }
  friend std::string operator+(std::string_view left, const PrintF& right) { return std::string(left) += right.text_; }
  friend std::string operator+(const PrintF& left, std::string_view right) { return left.text_ + std::string(right); }
  friend std::string operator+(const PrintF& left, const PrintF& right) { return left.text_ + right.text_; }
  /// @}

 private:
  template <class T>
  static const T& pass(const T& argument) {
    return argument;
  }
  static const char* pass(const std::string& argument) { return argument.c_str(); }

  // Sets the text, and gives a copy of it.
  TARN_API std::string printf_apply(const char* format, ...);

  std::string text_;
};

/// Advances the number that a name ends in, or appends "1" to a name that ends in none.
///
///     Scan -> Scan1    Scan009 -> Scan010    Scan99 -> Scan100    a-5 -> a-6
///
/// Leading zeros keep the width. Runs of digits of any length are counted exactly; linear in the run. If allocation
/// throws, the name is as before.
TARN_API void incrementIndex(std::string& name);

}  // namespace Tarn

#endif  // TARN_TEXT_FORMATTING_H_
