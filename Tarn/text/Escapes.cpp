// Both directions copy runs of plain characters in blocks and handle the others one by one. Unescaping never makes a
// text longer, so a long text is validated first and then rewritten in place.
#include "Tarn/text/Escapes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <istream>
#include <locale>
#include <string_view>
#include <utility>

#include "Tarn/text/internal/Blocks.h"
#include "Tarn/text/internal/Characters.h"
#include "Tarn/text/internal/EscapeText.h"
#include "Tarn/text/internal/GiveBack.h"
#include "Tarn/text/internal/Position.h"
#include "Tarn/text/internal/Transcode.h"
#include "Tarn/text/internal/Utf8.h"
#include "Tarn/uuids/internal/HexDigits.h"

namespace Tarn {
namespace {

using internal::kNone;

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
  const auto& high = kHexDigits[character >> 8U];
  const auto& low = kHexDigits[character & 0xFFU];
  return std::copy(low.begin(), low.end(), std::copy(high.begin(), high.end(), out));
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

// Escapes a text piece by piece, through a buffer of fixed size: the result then grows by pieces, not by characters.
class Escaper {
 public:
  Escaper(std::string_view text, bool unicodeEscapes)
      : at_(text.data()), end_(at_ + text.size()), unicodeEscapes_(unicodeEscapes) {}

  // The text that is still to be escaped.
  [[nodiscard]] std::size_t left() const { return static_cast<std::size_t>(end_ - at_); }

  // Escapes some more text.
  std::string_view next() {
    using Done = internal::Transcoded<char>;
    const auto copyBlock = [](const char* from, char* out) { internal::Block::load(from).store(out); };
    const char* const stop = at_ + std::min(end_ - at_, kPiece);
    const Done done = transcode(Done{at_, piece_.data()}, stop, end_, kEscaped, copyBlock, [this](Done from) {
      const internal::WideCharacter character = internal::decodeUtf8(from.at, end_);
      return Done{from.at + character.size, putEscape(from.out, character.value, unicodeEscapes_)};
    });
    at_ = done.at;
    return {piece_.data(), static_cast<std::size_t>(done.out - piece_.data())};
  }

 private:
  static constexpr std::ptrdiff_t kPiece = 1024;

  const char* at_;
  const char* end_;
  bool unicodeEscapes_;
  std::array<char, 6 * (kPiece + 2 * internal::kBlockSize)> piece_;  // A byte becomes six at most.
};

constexpr internal::ByteClass<internal::ByteRange{'\\', '\\'}> kBackslash;

// What may follow a backslash, but for another one.
constexpr internal::ByteClass<internal::ByteRange{'"', '"'}, internal::ByteRange{'n', 'n'},
                              internal::ByteRange{'r', 'r'}>
    kShortEscape;

constexpr internal::ByteClass<internal::ByteRange{'0', '9'}, internal::ByteRange{'A', 'F'},
                              internal::ByteRange{'a', 'f'}>
    kHexDigit;

// The value of four hexadecimal digits, or more than it can be.
std::uint32_t valueOfFour(const char* digits) {
  const auto value = [digits](int at) { return internal::hexDigitValue(digits[at]); };
  return value(0) << 12U | value(1) << 8U | value(2) << 4U | value(3);
}

// Takes the escape that begins a text, writes what it stands for to `out`, which is never longer, and gives the end of
// that. A malformed escape is left, and nothing is given.
char* takeEscape(const char*& at, const char* end, char* out, bool unicodeEscapes) {
  const char* const escape = at;
  if (end - escape == 1) {
    at = end;
    return out;
  }
  at += 2;
  switch (escape[1]) {
    case 'n':
      *out = '\n';
      return out + 1;
    case 'r':
      *out = '\r';
      return out + 1;
    case '"':
    case '\\':
      *out = escape[1];
      return out + 1;
    case 'u':
      if (!unicodeEscapes) {
        *out = '\\';
        out[1] = 'u';
        return out + 2;
      }
      if (const std::uint32_t value = end - at >= 4 ? valueOfFour(at) : internal::kNoHexDigit;
          value < internal::kNoHexDigit) {
        at += 4;
        return internal::putUtf8(out, value);
      }
      [[fallthrough]];
    default:
      at = escape;
      return nullptr;
  }
}

// `isClean` loads a window of 64 bytes and judges the backslashes among the first 58 of them, so that each has the
// longest escape, six bytes, within the window.
constexpr std::ptrdiff_t kWindow = 64;
constexpr std::ptrdiff_t kCleanSize = kWindow - 6;

// A bit for each byte of a window, the lowest for the first, set where the byte is of the class.
template <class Class>
std::uint64_t bitsOf(const char* window, Class sought) {
  std::uint64_t bits = 0;
  for (std::ptrdiff_t at = 0; at < kWindow; at += internal::kBlockSize) {
    bits |= std::uint64_t{sought.in(internal::Block::load(window + at)).bits()} << static_cast<unsigned>(at);
  }
  return bits;
}

// Whether each backslash among the first bytes of a window begins a well-formed escape. False also where one follows
// another: which of them begins an escape depends on how many there are.
bool isClean(const char* window, bool unicodeEscapes) {
  const std::uint64_t backslash = bitsOf(window, kBackslash);
  if (backslash == 0) return true;
  const std::uint64_t unicode = bitsOf(window, internal::OneByte{'u'});
  const std::uint64_t hex = unicodeEscapes ? bitsOf(window, kHexDigit) : ~std::uint64_t{0};
  const std::uint64_t wellFormed =
      bitsOf(window, kShortEscape) >> 1U | (unicode >> 1U & hex >> 2U & hex >> 3U & hex >> 4U & hex >> 5U);
  const std::uint64_t malformed = backslash & ~wellFormed;
  return (malformed << (kWindow - kCleanSize)) == 0;
}

// The backslash of the first malformed escape, or the end.
const char* findMalformed(const char* at, const char* end, bool unicodeEscapes) {
  std::array<char, 4> ignored;
  while (at != end) {
    const char* stop = end;
    if (end - at >= kWindow) {
      stop = at + kCleanSize;
      if (isClean(at, unicodeEscapes)) {
        at = stop;
        continue;
      }
    }
    while (at < stop && (at = internal::findFirst(at, stop, kBackslash)) != stop) {
      if (takeEscape(at, end, ignored.data(), unicodeEscapes) == nullptr) return at;
    }
  }
  return end;
}

// Copies the text in front of the next backslash to `out`, which is elsewhere and has room for all that is left and a
// block, moves `at` there and gives the end of the copy. The text goes on behind its end, up to `readable`.
char* copyPlain(const char*& at, const char* end, const char* readable, char* out) {
  for (; readable - at >= internal::kBlockSize; at += internal::kBlockSize, out += internal::kBlockSize) {
    const auto block = internal::Block::load(at);
    const auto found = decltype(kBackslash)::in(block);
    block.store(out);
    if (found.any() || end - at < internal::kBlockSize) {
      const auto size = std::min(static_cast<std::ptrdiff_t>(found.first()), end - at);
      at += size;
      return out + size;
    }
  }
  while (at != end && *at != '\\') *out++ = *at++;
  return out;
}

// The same within one text, `out` not being behind `at`. A block with a backslash must not be stored where it would
// overwrite unread bytes.
char* movePlain(const char*& at, const char* end, char* out) {
  for (; end - at >= internal::kBlockSize; at += internal::kBlockSize, out += internal::kBlockSize) {
    const auto block = internal::Block::load(at);
    const auto found = decltype(kBackslash)::in(block);
    if (found.any()) {
      const std::size_t size = found.first();
      if (at - out < internal::kBlockSize) {
        std::memmove(out, at, size);
      } else {
        block.store(out);
      }
      at += size;
      return out + size;
    }
    block.store(out);
  }
  while (at != end && *at != '\\') *out++ = *at++;
  return out;
}

// Unescapes a text to `out`, up to its end or a malformed escape.
template <class PutPlain>
internal::Transcoded<char> unescape(const char* at, const char* end, char* out, bool unicodeEscapes,
                                    PutPlain putPlain) {
  while ((out = putPlain(at, end, out), at != end)) {
    do {
      char* const behind = takeEscape(at, end, out, unicodeEscapes);
      if (behind == nullptr) return {at, out};
      out = behind;
    } while (at != end && *at == '\\');
  }
  return {at, out};
}

// The end of an unescaped text; or the first malformed escape, and the text is as it was.
struct Unescaped {
  char* end = nullptr;
  const char* malformed = nullptr;
};

// Unescapes a short text to `room`, up to its end or a malformed escape. It goes on behind its end, up to `readable`.
internal::Transcoded<char> unescapeTo(internal::ShortText& room, const char* begin, const char* end,
                                      const char* readable, bool unicodeEscapes) {
  const auto putPlain = [readable](const char*& at, const char* stop, char* out) {
    return copyPlain(at, stop, readable, out);
  };
  return unescape(begin, end, room.data(), unicodeEscapes, putPlain);
}

// Unescapes a short text in one pass, by way of the stack: twice as fast ("escToControls" of 64 and 4096 B).
Unescaped unescapeShort(char* begin, const char* end, bool unicodeEscapes) {
  internal::ShortText plain;
  const auto [at, plainEnd] = unescapeTo(plain, begin, end, end, unicodeEscapes);
  if (at != end) return {.malformed = at};
  return {.end = std::copy(plain.data(), plainEnd, begin)};
}

// Unescapes a text in place, after validating all of it, 58 bytes at once: nearly twice as fast as validating escape by
// escape ("escToControls" of 1 MiB).
Unescaped unescapeLong(char* begin, const char* end, bool unicodeEscapes) {
  const char* const malformed = findMalformed(begin, end, unicodeEscapes);
  if (malformed != end) return {.malformed = malformed};
  return {.end = unescape(begin, end, begin, unicodeEscapes, movePlain).out};
}

using ByteSet = std::array<bool, 256>;

ByteSet whitespaceOf(const std::locale& locale) {
  const auto& facet = std::use_facet<std::ctype<char>>(locale);
  ByteSet set{};
  for (std::size_t i = 0; i < set.size(); ++i) set[i] = facet.is(std::ctype_base::space, static_cast<char>(i));
  return set;
}

}  // namespace

char* internal::putEscaped(char* out, std::string_view text) {
  const char* const end = text.data() + text.size();
  for (const char* at = text.data(); at != end;) {
    if (isPlain(*at)) {
      *out++ = *at++;
    } else {
      const WideCharacter character = decodeUtf8(at, end);
      out = putEscape(out, character.value, true);
      at += character.size;
    }
  }
  return out;
}

void internal::appendEscaped(std::string& out, std::string_view text, bool unicodeEscapes) {
  for (Escaper escaper(text, unicodeEscapes); escaper.left() > 0;) out.append(escaper.next());
}

std::string_view internal::unescaped(std::string_view text, const char* readable, ShortText& room) {
  const char* const end = text.data() + text.size();
  const auto [at, plainEnd] = unescapeTo(room, text.data(), end, readable, true);
  const auto size = static_cast<std::size_t>(plainEnd - room.data());
  return at != end || size == text.size() ? text : std::string_view(room.data(), size);
}

void controlsToEsc(std::string& text, bool unicodeEscapes) {
  if (internal::findFirstOf(text, kEscaped) == kNone) return;
  Escaper escaper(text, unicodeEscapes);
  const std::string_view first = escaper.next();
  std::string escaped;
  if (const std::size_t left = escaper.left(); left > 0) {
    escaped.reserve(first.size() + left / (text.size() - left) * first.size() + text.size() / 32);  // If it goes on so.
  }
  escaped = first;
  while (escaper.left() > 0) escaped.append(escaper.next());
  internal::giveBack(escaped);
  text = std::move(escaped);
}

int escToControls(std::string& text, bool unicodeEscapes) {
  const std::size_t backslash = internal::findFirstOf(text, kBackslash);
  if (backslash == kNone) return -1;
  char* const begin = text.data() + backslash;
  const char* const end = text.data() + text.size();
  const bool isShort = text.size() - backslash <= internal::kMostShort;
  const Unescaped unescaped =
      isShort ? unescapeShort(begin, end, unicodeEscapes) : unescapeLong(begin, end, unicodeEscapes);
  if (unescaped.malformed != nullptr) {
    return internal::toPosition(static_cast<std::size_t>(unescaped.malformed - text.data()));
  }
  text.resize(static_cast<std::size_t>(unescaped.end - text.data()));
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
