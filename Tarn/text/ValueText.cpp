#include "Tarn/text/ValueText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <locale>
#include <new>
#include <ostream>
#include <stdexcept>
#include <streambuf>
#include <utility>

#include "Tarn/text/internal/EscapeText.h"
#include "Tarn/text/internal/SixDigits.h"

namespace Tarn {
namespace {

void appendQuoted(std::string& buffer, std::string_view text) {
  buffer += '"';
  internal::appendEscaped(buffer, text, true);
  buffer += '"';
}

constexpr std::size_t kFewBytes = 16;  // Of a key or value: more are escaped faster in blocks.

// Appends an entry of short texts, or leaves the buffer as it was.
void appendShortEntry(std::string& buffer, const StringMap::value_type& entry) {
  std::array<char, kFewBytes * 2 * 6 + 7> text;
  char* out = text.data();
  const auto put = [&out](std::string_view part) { out = std::copy(part.begin(), part.end(), out); };
  put(" \"");
  out = internal::putEscaped(out, entry.first);
  put("\"=>\"");
  out = internal::putEscaped(out, entry.second);
  put("\"");
  buffer.append(text.data(), out);
}

// Appends one entry, or leaves the buffer as it was.
void appendEntry(std::string& buffer, const StringMap::value_type& entry) {
  if (entry.first.size() <= kFewBytes && entry.second.size() <= kFewBytes) return appendShortEntry(buffer, entry);
  const std::size_t size = buffer.size();
  try {
    buffer += ' ';
    appendQuoted(buffer, entry.first);
    buffer += "=>";
    appendQuoted(buffer, entry.second);
  } catch (...) {
    buffer.resize(size);
    throw;
  }
}

// Reads into a temporary, as the value may be the buffer or own it.
template <class T>
std::string& takeAside(std::string& buffer, T& value) {
  T taken;
  internal::takeFromFront(buffer, taken);
  value.swap(taken);
  return buffer;
}

std::string& takeString(std::string& buffer, std::string& value) {
  return &value == &buffer ? takeAside(buffer, value) : internal::takeFromFront(buffer, value);
}

// An output stream that appends to a text, in the classic locale. Streams swallow the exception of a failed allocation,
// so it is remembered here, and `text` throws it again.
class AppendStream : private std::streambuf, public std::ostream {
 public:
  AppendStream() : std::ostream(this) { std::ostream::imbue(std::locale::classic()); }

  [[nodiscard]] const std::string& text() const {
    if (isOutOfMemory_) throw std::bad_alloc();
    return text_;
  }

 private:
  std::streamsize xsputn(const char* characters, std::streamsize count) override {
    try {
      text_.append(characters, static_cast<std::size_t>(count));
      return count;
    } catch (const std::bad_alloc&) {
      isOutOfMemory_ = true;
      return 0;
    }
  }
  int overflow(int character) override {
    using Traits = std::char_traits<char>;
    const char appended = Traits::to_char_type(character);
    const bool isDone = character == Traits::eof() || xsputn(&appended, 1) == 1;
    return isDone ? Traits::not_eof(character) : Traits::eof();
  }

  std::string text_;
  bool isOutOfMemory_ = false;
};

// Holds the digits of every number and a sign, point and exponent.
using NumberText = std::array<char, 64>;

template <class T, class... Format>
void appendFloat(std::string& buffer, T number, Format... format) {
  NumberText text;
  buffer.append(text.data(), std::to_chars(text.data(), text.data() + text.size(), number, format...).ptr);
}

}  // namespace

void internal::appendByStream(std::string& buffer, void (*insert)(std::ostream& stream, const void* value),
                              const void* value) {
  AppendStream stream;
  insert(stream, value);
  buffer += stream.text();
}

void internal::appendNumber(std::string& buffer, double number) {
  NumberText text;
  if (char* const end = internal::writeSixDigits(text.data(), number)) {
    buffer.append(text.data(), end);
  } else {
    appendFloat(buffer, number, std::chars_format::general, 6);
  }
}

void internal::appendNumber(std::string& buffer, long double number) {
  appendFloat(buffer, number, std::chars_format::general, 6);
}

std::string& operator<<(std::string& buffer, const Exact<float>& number) {
  appendFloat(buffer, number.value);
  return buffer;
}

std::string& operator<<(std::string& buffer, const Exact<double>& number) {
  appendFloat(buffer, number.value);
  return buffer;
}

std::string& operator<<(std::string& buffer, const Exact<long double>& number) {
  appendFloat(buffer, number.value);
  return buffer;
}

bool comesBack(const StringMap& map) {
  std::string text;
  try {
    text << map;
  } catch (const std::invalid_argument&) {
    return false;
  }
  StringMap back;
  ValueReader reader(text);
  reader >> back;
  return back == map && reader.rest() == " ";
}

template <>
std::string& operator<<(std::string& buffer, const char& value) {
  return buffer += value;
}

template <>
std::string& operator<<(std::string& buffer, const bool& value) {
  return buffer += value ? "true" : "false";
}

template <>
std::string& operator<<(std::string& buffer, const std::string& value) {
  return buffer += value;
}

template <>
std::string& operator<<(std::string& buffer, const StringMap& value) {
  buffer += '{';
  for (auto next = value.begin(); next != value.end();) {
    const auto& entry = *next++;  // A cache miss on the next entry overlaps with the writing of this one.
    if (&entry.second == &buffer) {
      appendEntry(buffer, StringMap::value_type(entry));  // The buffer's own text is what it was before this entry.
    } else {
      appendEntry(buffer, entry);
    }
  }
  return buffer += " } ";
}

template <>
std::string& operator<<(std::string& buffer, const uuids::uuid& value) {
  return buffer += value.string();
}

std::string& operator<<(std::string& buffer, const JsonValue& value) { return buffer += value.text; }

std::string& operator<<(std::string& buffer, const char* value) { return buffer += value; }

template <>
std::string& operator>>(std::string& buffer, char& value) {
  return internal::takeFromFront(buffer, value);
}

template <>
std::string& operator>>(std::string& buffer, signed char& value) {
  return internal::takeFromFront(buffer, value);
}

template <>
std::string& operator>>(std::string& buffer, unsigned char& value) {
  return internal::takeFromFront(buffer, value);
}

template <>
std::string& operator>>(std::string& buffer, bool& value) {
  return internal::takeFromFront(buffer, value);
}

template <>
std::string& operator>>(std::string& buffer, std::string& value) {
  return takeString(buffer, value);
}

template <>
std::string& operator>>(std::string& buffer, JsonValue& value) {
  return takeString(buffer, value.text);
}

template <>
std::string& operator>>(std::string& buffer, StringMap& value) {
  return takeAside(buffer, value);
}

template <>
std::string& operator>>(std::string& buffer, uuids::uuid& value) {
  return internal::takeFromFront(buffer, value);
}

}  // namespace Tarn
