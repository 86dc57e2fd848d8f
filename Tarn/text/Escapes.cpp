// Both directions copy whole runs of characters that stay as they are, and look at the others one by one. Unescaping
// makes a text no longer, so it first finds out whether the text is well formed and then works within it.
#include "Tarn/text/Escapes.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
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

// Whether escaping leaves the byte as it is.
constexpr bool isPlain(char byte) {
  return static_cast<unsigned char>(byte) < 0x80 && byte != '\n' && byte != '\r' && byte != '"' && byte != '\\';
}

bool holdsEscaped(std::uint64_t block) {
  return internal::holdsNonAscii(block) || internal::holds(block, '\n') || internal::holds(block, '\r') ||
         internal::holds(block, '"') || internal::holds(block, '\\');
}

// The first byte that escaping does not leave as it is, or the end.
const char* findEscaped(const char* at, const char* end) {
  return internal::findByte(
      at, end, [](char byte) { return !isPlain(byte); }, holdsEscaped);
}

// The character behind the backslash of a short escape, for a character that has one.
constexpr char shortEscape(char16_t character) {
  return character == u'\n' ? 'n' : character == u'\r' ? 'r' : static_cast<char>(character);
}

void appendUnicodeEscape(std::string& out, char16_t character) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const unsigned value = character;
  const std::array<char, 6> escape = {'\\',
                                      'u',
                                      kDigits[value >> 12U],
                                      kDigits[(value >> 8U) & 0xFU],
                                      kDigits[(value >> 4U) & 0xFU],
                                      kDigits[value & 0xFU]};
  out.append(escape.data(), escape.size());
}

// Appends what stands for a character that is not plain.
void appendEscape(std::string& out, char16_t character, bool unicodeEscapes) {
  if (character >= 0x80) {
    if (unicodeEscapes) {
      appendUnicodeEscape(out, character);
    } else {
      out += static_cast<char>(static_cast<unsigned char>(character));
    }
  } else if (isPlain(static_cast<char>(character))) {
    out += static_cast<char>(character);  // An overlong sequence can stand for it.
  } else {
    out += '\\';
    out += shortEscape(character);
  }
}

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
std::size_t escapeLength(std::string_view text, bool unicodeEscapes) {
  if (text.size() == 1) return 1;
  switch (text[1]) {
    case 'n':
    case 'r':
    case '"':
    case '\\':
      return 2;
    case 'u':
      if (!unicodeEscapes) return 2;
      return text.size() >= 6 && hexValue(text.data() + 2) <= 0xFFFF ? 6 : 0;
    default:
      return 0;
  }
}

// Writes what the well-formed escape at `escape` stands for, which is never longer than the escape.
char* putPlain(char* out, const char* escape, std::size_t length) {
  if (length == 1) return out;
  if (length == 6) return internal::putUtf8(out, hexValue(escape + 2));
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

std::size_t findMalformed(std::string_view text, bool unicodeEscapes) {
  for (std::size_t at = text.find('\\'); at != kNone;) {
    const std::size_t length = escapeLength(text.substr(at), unicodeEscapes);
    if (length == 0) return at;
    at = text.find('\\', at + length);
  }
  return kNone;
}

void unescapeInPlace(std::string& text, bool unicodeEscapes) {
  std::size_t at = text.find('\\');
  if (at == kNone) return;
  char* const data = text.data();
  char* out = data + at;
  while (at < text.size()) {
    const std::size_t length = escapeLength(std::string_view(text).substr(at), unicodeEscapes);
    out = putPlain(out, data + at, length);
    const std::size_t run = at + length;
    at = std::min(text.find('\\', run), text.size());
    out = std::copy(data + run, data + at, out);
  }
  text.resize(static_cast<std::size_t>(out - data));
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
  const char* at = text.data();
  const char* const end = at + text.size();
  while (true) {
    const char* const run = findEscaped(at, end);
    out.append(at, run);
    if (run == end) return;
    at = run;
    appendEscape(out, takeWideCharacter(at, end), unicodeEscapes);
  }
}

void controlsToEsc(std::string& text, bool unicodeEscapes) {
  const char* const end = text.data() + text.size();
  if (findEscaped(text.data(), end) == end) return;
  std::string escaped;
  escaped.reserve(text.size());
  internal::appendEscaped(escaped, text, unicodeEscapes);
  text = std::move(escaped);
}

int escToControls(std::string& text, bool unicodeEscapes) {
  const std::size_t malformed = findMalformed(text, unicodeEscapes);
  if (malformed != kNone) return malformed <= INT_MAX ? static_cast<int>(malformed) : -1;
  unescapeInPlace(text, unicodeEscapes);
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
