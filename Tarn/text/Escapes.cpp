// Both directions copy whole runs of characters that stay as they are, and look at the others one by one. Unescaping
// makes a text no longer, so it first finds out whether the text is well formed and then works within it.
#include "Tarn/text/Escapes.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <locale>
#include <string_view>
#include <utility>

#include "Tarn/text/ValueReader.h"
#include "Tarn/text/internal/Blocks.h"
#include "Tarn/text/internal/Characters.h"
#include "Tarn/text/internal/EscapeText.h"
#include "Tarn/text/internal/Utf8.h"

namespace Tarn {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

// The bytes that escaping does not leave as they are.
constexpr internal::ByteClass<internal::ByteRange{0x80, 0xFF}, internal::ByteRange{'\n', '\n'},
                              internal::ByteRange{'\r', '\r'}, internal::ByteRange{'"', '"'},
                              internal::ByteRange{'\\', '\\'}>
    kEscaped;

constexpr bool isPlain(char byte) { return !internal::isOf(byte, kEscaped); }

// The character behind the backslash of a short escape, for a character that has one.
constexpr char shortEscape(char16_t character) {
  return character == u'\n' ? 'n' : character == u'\r' ? 'r' : static_cast<char>(character);
}

// The two capital hexadecimal digits of each byte.
constexpr std::array<std::array<char, 2>, 256> kHexDigits = [] {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::array<std::array<char, 2>, 256> digits{};
  for (std::size_t i = 0; i < digits.size(); ++i) digits[i] = {kDigits[i / 16], kDigits[i % 16]};
  return digits;
}();

char* putUnicodeEscape(char* out, unsigned character) {
  *out++ = '\\';
  *out++ = 'u';
  for (const auto& digits : {kHexDigits[character >> 8U], kHexDigits[character & 0xFFU]}) {
    out = std::copy(digits.begin(), digits.end(), out);
  }
  return out;
}

// Writes what stands for a character that is not plain.
char* putEscape(char* out, char16_t character, bool unicodeEscapes) {
  if (character >= 0x80) {
    if (unicodeEscapes) return putUnicodeEscape(out, character);
    *out++ = static_cast<char>(static_cast<unsigned char>(character));
  } else if (isPlain(static_cast<char>(character))) {
    *out++ = static_cast<char>(character);  // An overlong sequence can stand for it.
  } else {
    *out++ = '\\';
    *out++ = shortEscape(character);
  }
  return out;
}

// Escapes a text piece by piece, so that only whole pieces are appended to a growing text.
class Escaper {
 public:
  Escaper(std::string_view text, bool unicodeEscapes)
      : at_(text.data()), end_(at_ + text.size()), unicodeEscapes_(unicodeEscapes) {}

  // The text that is still to be escaped.
  [[nodiscard]] std::size_t left() const { return static_cast<std::size_t>(end_ - at_); }

  // Escapes some more text.
  std::string_view next() {
    char* out = piece_.data();
    const char* const stop = at_ + std::min<std::ptrdiff_t>(end_ - at_, kPiece);
    while (at_ < stop) {
      out = copyPlain(out, stop);
      for (; at_ < stop && !isPlain(*at_);)
        out = putEscape(out, internal::takeWideCharacter(at_, end_), unicodeEscapes_);
    }
    return {piece_.data(), static_cast<std::size_t>(out - piece_.data())};
  }

 private:
  static constexpr std::ptrdiff_t kPiece = 512;

  // Copies what stays as it is.
  char* copyPlain(char* out, const char* stop) {
    while (stop - at_ >= internal::kBlockSize) {
      const auto block = internal::Block::load(at_);
      block.store(out);
      const auto escaped = kEscaped.in(block);
      if (escaped.any()) {
        at_ += escaped.first();
        return out + escaped.first();
      }
      at_ += internal::kBlockSize;
      out += internal::kBlockSize;
    }
    while (at_ < stop && isPlain(*at_)) *out++ = *at_++;
    return out;
  }

  const char* at_;
  const char* end_;
  bool unicodeEscapes_;
  std::array<char, 6 * kPiece> piece_;  // A byte becomes six at most: a sequence cut short by the end of the text.
};

constexpr internal::ByteClass<internal::ByteRange{'\\', '\\'}> kBackslash;

// The value of four hexadecimal digits; above 0xFFFF if one of them is none.
unsigned hexValue(const char* digits) {
  unsigned value = 0;
  unsigned malformed = 0;
  for (int i = 0; i < 4; ++i) {
    const unsigned digit = internal::kHexDigitValues[static_cast<unsigned char>(digits[i])];
    malformed |= digit & 0xF0U;
    value = (value << 4U) | digit;
  }
  return malformed != 0 ? 0x10000 : value;
}

// The length of the escape whose backslash begins the text, or 0 if it is malformed.
std::ptrdiff_t escapeLength(const char* escape, const char* end, bool unicodeEscapes) {
  if (end - escape == 1) return 1;
  switch (escape[1]) {
    case 'n':
    case 'r':
    case '"':
    case '\\':
      return 2;
    case 'u':
      if (!unicodeEscapes) return 2;
      return end - escape >= 6 && hexValue(escape + 2) <= 0xFFFF ? 6 : 0;
    default:
      return 0;
  }
}

// Writes what the well-formed escape at `escape` stands for, which is never longer than the escape.
char* putPlain(char* out, const char* escape, std::ptrdiff_t length) {
  if (length == 6) return internal::putUtf8(out, hexValue(escape + 2));
  if (length == 1) return out;
  switch (escape[1]) {
    case 'n':
      *out++ = '\n';
      break;
    case 'r':
      *out++ = '\r';
      break;
    case 'u':
      *out++ = '\\';
      *out++ = 'u';
      break;
    default:
      *out++ = escape[1];
  }
  return out;
}

// The backslash of the first malformed escape, or the end.
const char* findMalformed(const char* at, const char* end, bool unicodeEscapes) {
  while ((at = internal::findFirst(at, end, kBackslash)) != end) {
    do {
      const std::ptrdiff_t length = escapeLength(at, end, unicodeEscapes);
      if (length == 0) return at;
      at += length;
    } while (at != end && *at == '\\');
  }
  return end;
}

// Copies the text in front of the next backslash to `out`, which is in the same text and not behind `at`.
char* moveToBackslash(const char*& at, const char* end, char* out) {
  while (end - at >= internal::kBlockSize) {
    const auto block = internal::Block::load(at);
    const auto backslash = kBackslash.in(block);
    if (backslash.any()) {
      const char* const run = at;
      at += backslash.first();
      if (run - out < internal::kBlockSize) return std::copy(run, at, out);
      block.store(out);
      return out + backslash.first();
    }
    block.store(out);
    at += internal::kBlockSize;
    out += internal::kBlockSize;
  }
  while (at != end && *at != '\\') *out++ = *at++;
  return out;
}

// Unescapes a text without malformed escapes from its first backslash on.
void unescapeFrom(std::string& text, std::size_t backslash, bool unicodeEscapes) {
  char* out = text.data() + backslash;
  const char* at = out;
  const char* const end = text.data() + text.size();
  while (at != end) {
    do {
      const std::ptrdiff_t length = escapeLength(at, end, unicodeEscapes);
      out = putPlain(out, at, length);
      at += length;
    } while (at != end && *at == '\\');
    out = moveToBackslash(at, end, out);
  }
  text.resize(static_cast<std::size_t>(out - text.data()));
}

using ByteSet = std::array<bool, 256>;

ByteSet whitespaceOf(const std::locale& locale) {
  const auto& facet = std::use_facet<std::ctype<char>>(locale);
  ByteSet set{};
  for (std::size_t i = 0; i < set.size(); ++i) set[i] = facet.is(std::ctype_base::space, static_cast<char>(i));
  return set;
}

}  // namespace

void internal::appendEscaped(std::string& out, std::string_view text, bool unicodeEscapes) {
  const std::size_t plain = std::min(findFirstOf(text, kEscaped), text.size());
  out.append(text, 0, plain);
  for (Escaper escaper(text.substr(plain), unicodeEscapes); escaper.left() > 0;) out.append(escaper.next());
}

void controlsToEsc(std::string& text, bool unicodeEscapes) {
  if (internal::findFirstOf(text, kEscaped) == kNone) return;
  Escaper escaper(text, unicodeEscapes);
  const std::string_view first = escaper.next();
  const std::size_t taken = text.size() - escaper.left();
  std::string escaped;
  escaped.reserve(first.size() + escaper.left() / taken * first.size() + text.size() / 32);  // If it goes on like this.
  escaped = first;
  while (escaper.left() > 0) escaped.append(escaper.next());
  text = std::move(escaped);
}

int escToControls(std::string& text, bool unicodeEscapes) {
  const std::size_t backslash = internal::findFirstOf(text, kBackslash);
  if (backslash == kNone) return -1;
  const char* const end = text.data() + text.size();
  const char* const malformed = findMalformed(text.data() + backslash, end, unicodeEscapes);
  if (malformed != end) return malformed - text.data() <= INT_MAX ? static_cast<int>(malformed - text.data()) : -1;
  unescapeFrom(text, backslash, unicodeEscapes);
  return -1;
}

std::istream& eatWS(std::istream& stream) {
  thread_local const ByteSet whitespace = whitespaceOf(stream.getloc());
  constexpr int kEnd = std::istream::traits_type::eof();
  for (int next = stream.peek(); next != kEnd && whitespace[static_cast<std::size_t>(next)]; next = stream.peek()) {
    stream.get();
  }
  return stream;
}

void eatwhite(std::string& text) {
  const std::size_t first = internal::findFirstOf(text, internal::kVisible);
  if (first != kNone) text.erase(0, first);
}

}  // namespace Tarn
