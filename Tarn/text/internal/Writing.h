// The inside of the templates of ValueText.h.
#ifndef TARN_TEXT_INTERNAL_WRITING_H_
#define TARN_TEXT_INTERNAL_WRITING_H_

#include <array>
#include <charconv>
#include <cstddef>
#include <ostream>

#include "Tarn/text/ValueText.h"

namespace Tarn {
namespace internal {

template <class T>
concept StreamInsertable = requires(std::ostream& stream, const T& value) {
  stream << value;
};

template <class T>
inline constexpr bool kHasNoWriter = false;  // Depends on T, so that the assertion fails on instantiation only.

// Types whose characters are appended without a stream.
template <class T>
inline constexpr bool kIsText = std::same_as<T, std::string_view> || std::same_as<T, char*>;
template <std::size_t kSize>
inline constexpr bool kIsText<char[kSize]> = true;

// The text that a default-formatted stream in the classic locale makes of a value.
TARN_API void appendByStream(std::string& buffer, void (*insert)(std::ostream& stream, const void* value),
                             const void* value);

// As a stream in the classic locale writes it, with six digits.
TARN_API void appendNumber(std::string& buffer, double number);
TARN_API void appendNumber(std::string& buffer, long double number);

template <DecimalInteger T>
void appendNumber(std::string& buffer, T number) {
  std::array<char, 24> text;  // Holds 20 digits and a sign.
  const char* const end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
  buffer.append(text.data(), static_cast<std::size_t>(end - text.data()));  // As a range, it would be a replacement.
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
  if constexpr (DecimalInteger<T> || std::same_as<T, double> || std::same_as<T, long double>) {
    internal::appendNumber(buffer, value);
  } else if constexpr (std::same_as<T, float>) {
    internal::appendNumber(buffer, double{value});
  } else if constexpr (internal::kIsText<T>) {
    buffer += value;
  } else if constexpr (internal::StreamInsertable<T>) {
    internal::appendByStream(
        buffer, [](std::ostream& stream, const void* from) { stream << *static_cast<const T*>(from); }, &value);
  } else {
    static_assert(internal::kHasNoWriter<T>,
                  "a value is written by its operator<< on std::ostream, and this type has none");
  }
  return buffer;
}

template <class T>
std::string& operator>>(std::string& buffer, T& value) {
  return internal::takeFromFront(buffer, value);
}

}  // namespace Tarn

#endif  // TARN_TEXT_INTERNAL_WRITING_H_
