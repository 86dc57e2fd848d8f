// How a `ValueReader` reads numbers: floating-point ones, what streams read, and why no read looks at the digits of
// another again.
#include <algorithm>
#include <charconv>
#include <limits>
#include <locale>
#include <streambuf>

#include "Tarn/text/ValueReader.h"
#include "Tarn/text/internal/Characters.h"

namespace Tarn {
namespace {

// A narrow input stream over a text, without a copy of it, in the classic locale.
class ViewStream : private std::streambuf, public std::istream {
 public:
  explicit ViewStream(std::string_view text) : std::istream(this) {
    char* const begin = const_cast<char*>(text.data());  // A get area is never written to.
    setg(begin, begin, begin + text.size());
    std::istream::imbue(std::locale::classic());
  }
  [[nodiscard]] std::size_t consumed() const { return static_cast<std::size_t>(gptr() - eback()); }

 private:
  std::streampos seekoff(std::streamoff offset, std::ios::seekdir from, std::ios::openmode which) override {
    const std::streamoff base = from == std::ios::beg ? 0 : (from == std::ios::cur ? gptr() : egptr()) - eback();
    const bool isWithin = -base <= offset && offset <= egptr() - eback() - base;
    if ((which & std::ios::in) == 0 || !isWithin) return std::streamoff{-1};
    setg(eback(), eback() + base + offset, egptr());
    return base + offset;
  }
  std::streampos seekpos(std::streampos position, std::ios::openmode which) override {
    return seekoff(position, std::ios::beg, which);
  }
};

const char* skipDigits(const char* at, const char* end) {
  while (at != end && internal::isOf(*at, internal::kDigit)) ++at;
  return at;
}

// The characters that a stream accumulates for a floating-point number, without its sign.
struct FloatText {
  FloatText(const char* begin, const char* end) : digits(begin), point(skipDigits(begin, end)) {
    stop = point;
    if (stop != end && *stop == '.') stop = skipDigits(stop + 1, end);
    exponent = stop;
    if (stop - begin == (point != stop ? 1 : 0) || stop == end || (*stop | 0x20) != 'e') return;
    ++stop;
    if (stop != end && (*stop == '+' || *stop == '-')) ++stop;
    stop = skipDigits(stop, end);
  }

  // Whether they are a number: with a digit, and with another one behind the exponent's letter.
  [[nodiscard]] bool isNumber() const {
    return exponent - digits > (point != exponent ? 1 : 0) &&
           (stop == exponent || internal::isOf(stop[-1], internal::kDigit));
  }

  // The exponent, clamped so that sums with it cannot overflow.
  [[nodiscard]] std::ptrdiff_t exponentValue() const {
    const bool hasPlus = stop - exponent > 1 && exponent[1] == '+';
    int value = 0;
    const bool isHuge = std::from_chars(exponent + (hasPlus ? 2 : 1), stop, value).ec == std::errc::result_out_of_range;
    constexpr std::ptrdiff_t kHuge = std::numeric_limits<std::ptrdiff_t>::max() / 4;
    return !isHuge ? value : exponent[1] == '-' ? -kHuge : kHuge;
  }

  // Of a number that is not 0: whether it is at least 1.
  [[nodiscard]] bool isAtLeastOne() const {
    const char* first = digits;
    while (*first == '0' || *first == '.') ++first;
    return (first < point ? point - first : point + 1 - first) + (stop != exponent ? exponentValue() : 0) > 0;
  }

  const char* digits;
  const char* point;     // Behind the integer digits.
  const char* exponent;  // Its letter, or the end.
  const char* stop;
};

// The largest number of a type, as a `double`.
template <class T>
inline constexpr double kLargest = [] {
  if constexpr (std::numeric_limits<T>::max_exponent10 > std::numeric_limits<double>::max_exponent10) {
    return std::numeric_limits<double>::infinity();
  } else {
    return static_cast<double>(std::numeric_limits<T>::max());
  }
}();

// Whether the standard library converts numbers of a type without a stream, and exactly.
#if __cpp_lib_to_chars >= 201611L
template <class T>
inline constexpr bool kHasFromChars = !std::same_as<T, long double>;
#else
template <class T>
inline constexpr bool kHasFromChars = false;
#endif

// The fast path of `extractFloat`, which looks at the digits once ("double read"): converts the usual number, in range
// and with no malformed exponent behind it, and gives its end. Nothing for any other text.
template <class T>
const char* convertUsual(const char* begin, const char* end, T& number) {
  if constexpr (kHasFromChars<T>) {
    if (begin == end || !(*begin == '.' || internal::isOf(*begin, internal::kDigit))) return nullptr;  // As "inf" does.
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (error == std::errc() && (stop == end || (*stop | 0x20) != 'e')) return stop;
  }
  return nullptr;
}

// Converts a well-formed text without a sign. Nothing if the number is out of the type's range.
template <class T>
std::optional<T> convert(std::string_view text) {
  T number{};
  if constexpr (kHasFromChars<T>) {
    const std::errc error = std::from_chars(text.data(), text.data() + text.size(), number).ec;
    return error == std::errc() ? std::optional(number) : std::nullopt;
  } else {
    ViewStream stream(text);
    stream.exceptions(std::ios::badbit);  // Streams swallow the exception of a failed allocation otherwise.
    stream >> number;
    const bool isDenormal = 0 < number && number < std::numeric_limits<T>::min();  // Some libraries call it a failure.
    return !stream.fail() || isDenormal ? std::optional(number) : std::nullopt;
  }
}

}  // namespace

// A number is out of range for types that hold no more than `largest`, and so is any of more than `most` digits. Hence
// every number that begins at one of its leading zeros is, or at a digit with `most` or more digits behind it.
ValueReader::NoNumbers ValueReader::tooLarge(const char* digits, const char* end, std::ptrdiff_t most,
                                             double largest) noexcept {
  const char* const first = std::find_if(digits, end, [](char digit) { return digit != '0'; });
  const char* last = end - first > most ? end - most - 1 : first;
  while (last > first && *last == '0') --last;
  return {last + 1, largest};
}

ValueReader::Extraction ValueReader::extractByStream(void (*read)(std::istream& stream, void* value),
                                                     void* value) const {
  ViewStream stream(rest_);
  read(stream, value);
  return {stream.consumed(), stream.eof(), stream.fail()};
}

// As a stream does it: accumulates all that could belong to a number, and takes it if it is one.
template <class T>
ValueReader::Extraction ValueReader::extractFloat(T& value) {
  const bool negative = rest_.front() == '-';
  const char* const digits = rest_.data() + (negative || rest_.front() == '+' ? 1 : 0);
  const bool isMalformed = noFloats_.largest == 0;
  if (digits < noFloats_.before && (isMalformed || kLargest<T> <= noFloats_.largest)) {
    value = isMalformed ? T{0} : negative ? std::numeric_limits<T>::lowest() : std::numeric_limits<T>::max();
    return {0, false, true};
  }
  const char* const end = rest_.data() + rest_.size();
  T usual{};
  const char* const stop = convertUsual(digits, end, usual);
  if (stop == nullptr) return extractUnusualFloat(value, digits);
  value = negative ? -usual : usual;
  return {static_cast<std::size_t>(stop - rest_.data()), stop == end, false};
}

// The same for any text.
template <class T>
ValueReader::Extraction ValueReader::extractUnusualFloat(T& value, const char* digits) {
  using Limits = std::numeric_limits<T>;
  const char* const end = rest_.data() + rest_.size();
  const FloatText text(digits, end);
  Extraction found{static_cast<std::size_t>(text.stop - rest_.data()), text.stop == end, false};
  if (!text.isNumber()) {
    value = 0;
    found.failed = true;
    if (!found.atEnd) noFloats_ = {text.exponent, 0};
    return found;
  }
  std::optional<T> magnitude = convert<T>({digits, static_cast<std::size_t>(text.stop - digits)});
  if (!magnitude) {  // It is beyond the largest number, or nearer to 0 than the least.
    found.failed = text.isAtLeastOne();
    magnitude = found.failed ? Limits::max() : T{0};
  }
  value = rest_.front() == '-' ? -*magnitude : *magnitude;
  if (!found.failed || found.atEnd) return found;
  const std::ptrdiff_t exponent = text.stop != text.exponent ? text.exponentValue() : 0;
  const std::ptrdiff_t most = std::max<std::ptrdiff_t>(Limits::max_exponent10 + 1 - exponent, 0);
  noFloats_ = tooLarge(digits, text.point, most, kLargest<T>);
  return found;
}

ValueReader::Extraction ValueReader::extract(float& value) { return extractFloat(value); }
ValueReader::Extraction ValueReader::extract(double& value) { return extractFloat(value); }
ValueReader::Extraction ValueReader::extract(long double& value) { return extractFloat(value); }

// Whether a decimal integer at the front of a part of the rest is not 0, however long it is.
bool ValueReader::isNonZeroInteger(std::string_view text) noexcept {
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  const char* const end = text.data() + text.size();
  if (text.data() >= zerosBefore_) zerosBefore_ = text.data() + std::min(text.find_first_not_of('0'), text.size());
  return zerosBefore_ != end && internal::isOf(*zerosBefore_, internal::kDigit);
}

}  // namespace Tarn
