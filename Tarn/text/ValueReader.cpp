// Every reader takes its value from a copy of the cursor and moves the cursor last, so that a failed allocation leaves
// cursor and value as they were.
#include "Tarn/text/ValueReader.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Tarn/text/Escapes.h"
#include "Tarn/text/internal/Characters.h"
#include "Tarn/text/internal/EscapeText.h"

namespace Tarn {
namespace {

using internal::kNone;
constexpr std::string_view kMapSeparator = R"("=>")";

// Whether the double quote at this position of a quoted text is escaped: by one backslash, not by two.
bool isEscaped(std::string_view text, std::size_t quote) {
  return quote >= 1 && text[quote - 1] == '\\' && (quote < 2 || text[quote - 2] != '\\');
}

// The position of the quote that closes a quoted text, or npos.
std::size_t findClosingQuote(std::string_view text) {
  std::size_t quote = text.find('"');
  while (quote != kNone && isEscaped(text, quote)) quote = text.find('"', quote + 1);
  return quote;
}

// Takes the text in front of a position, and the one character there.
std::string_view takeUntil(std::string_view& rest, std::size_t position) {
  const std::string_view taken = rest.substr(0, position);
  rest.remove_prefix(std::min(taken.size() + 1, rest.size()));
  return taken;
}

template <class Character>
ValueReader& readSmallInteger(ValueReader& reader, Character& value) {
  if (!reader.skipToValue()) return reader;
  int number = 0;
  reader >> number;
  value = static_cast<Character>(number);
  return reader;
}

// The rest of a token that began with something else than a quote.
void takeWord(std::istream& stream, std::string& word) {
  for (int next = stream.get(); stream.good(); next = stream.get()) {
    if (internal::isOf(static_cast<char>(next), internal::kSpace)) {
      stream.unget();
      return;
    }
    word += static_cast<char>(next);
  }
}

// The rest of a token behind its opening quote.
void takeQuotedWord(std::istream& stream, std::string& word) {
  for (int next = stream.get(); stream.good() && next != '"'; next = stream.get()) {
    if (next == '\\') next = stream.get();
    if (stream.good()) word += static_cast<char>(next);
  }
}

// Adds an entry whose value is still escaped, unless its key is there already; `readable` is the end of the text that
// the value is part of. It is constructed in place, from views where possible: a move of a string that has just been
// written stalls, as its stores cannot be forwarded.
template <class Key>
void addEntry(std::map<std::string, std::string>& entries, Key&& key, std::string_view value, const char* readable) {
  internal::ShortText room;
  const bool isShort = value.size() <= internal::kMostShort;
  if (isShort) value = internal::unescaped(value, readable, room);
  const std::size_t count = entries.size();
  const auto entry = entries.emplace_hint(entries.end(), std::forward<Key>(key), value);
  if (!isShort && entries.size() > count) escToControls(entry->second, true);
}

// The fast path to the usual key or value, one search in place of four: where the text without escapes and NULs that is
// quoted in front ends, or npos.
std::size_t findPlainEnd(std::string_view rest) {
  constexpr internal::ByteClass<internal::ByteRange{'\0', '\0'}, internal::ByteRange{'"', '"'},
                                internal::ByteRange{'\\', '\\'}>
      kNotPlain;
  if (!rest.starts_with('"')) return kNone;
  const std::size_t end = internal::findFirstOf(rest, kNotPlain, 1);
  return end != kNone && rest[end] == '"' ? end : kNone;
}

}  // namespace

void internal::throwNoValue() { throw std::out_of_range("invalid string position"); }

// Where a value begins, or npos.
std::size_t ValueReader::findValue() noexcept {
  const std::ptrdiff_t known = std::max<std::ptrdiff_t>(noValueBefore_ - rest_.data(), 0);  // The rest may end before.
  const std::size_t from = std::min(static_cast<std::size_t>(known), rest_.size());
  const std::size_t first = internal::findFirstOf(rest_, internal::kAlphaNum, from);
  noValueBefore_ = rest_.data() + std::min(first, rest_.size());
  return first;
}

bool ValueReader::skipToValue() noexcept {
  const std::size_t first = findValue();
  if (first == kNone) return false;
  rest_.remove_prefix(first);
  return true;
}

std::optional<std::string_view> ValueReader::takeLine() noexcept {
  if (rest_.empty()) return std::nullopt;
  return takeUntil(rest_, rest_.find('\n'));
}

// Takes true, false or one character of a number. False if there is none of them: another word stays, and where no
// value begins, all is taken.
bool ValueReader::takeBool(bool& value) noexcept {
  value = false;
  const std::size_t first = findValue();
  if (first == kNone) {
    rest_.remove_prefix(rest_.size());
    return false;
  }
  const std::string_view text = rest_.substr(first);
  std::size_t size = 1;
  if (!internal::isOf(text.front(), internal::kLetter)) {
    value = isNonZeroInteger(text);
  } else if (internal::startsWithWord(text, "true")) {
    value = true;
    size = 4;
  } else if (internal::startsWithWord(text, "false")) {
    size = 5;
  } else {
    return false;
  }
  rest_.remove_prefix(first + size);
  return true;
}

// A quoted string, a line, or all there is. In front of a quote, the text counts up to its first NUL. False for a
// string whose closing quote is missing.
bool ValueReader::takeString(std::string_view& value) noexcept {
  const bool isQuoted = rest_.starts_with('"');
  if (isQuoted && !holdsNoNul_) {
    rest_ = rest_.substr(0, rest_.find('\0'));
    holdsNoNul_ = true;
  }
  rest_.remove_prefix(isQuoted ? 1 : 0);
  const std::size_t end = isQuoted ? findClosingQuote(rest_) : rest_.find('\n');
  value = takeUntil(rest_, std::min(end, rest_.size()));
  return !isQuoted || end != kNone;
}

// Takes a key with the arrow behind it. Without a separator in the rest, an arrow alone has an empty key before it.
std::optional<std::string_view> ValueReader::takeMapKey() noexcept {
  const std::size_t quote = holdsNoSeparator_ ? kNone : rest_.find(kMapSeparator);
  if (quote == kNone) {
    holdsNoSeparator_ = true;
    if (!rest_.starts_with("=>")) return std::nullopt;
    rest_.remove_prefix(2);
    return std::string_view();
  }
  ValueReader keyText(rest_.substr(0, quote + 1));
  rest_.remove_prefix(quote + 3);
  std::string_view key;
  keyText.takeString(key);
  return key;
}

// Takes one entry. False where none begins.
bool ValueReader::takeMapEntry(std::map<std::string, std::string>& entries) {
  const char* const readable = rest_.data() + rest_.size();
  std::string_view value;
  const std::size_t keyEnd = findPlainEnd(rest_);
  const bool isPlain = keyEnd != kNone && rest_[1] != '=';  // `"=>"` ends an empty key.
  if (isPlain && rest_.substr(keyEnd).starts_with(kMapSeparator)) {
    const std::string_view key = rest_.substr(1, keyEnd - 1);
    rest_.remove_prefix(keyEnd + 3);
    if (const std::size_t end = holdsNoNul_ ? findPlainEnd(rest_) : kNone; end != kNone) {
      entries.emplace_hint(entries.end(), key, rest_.substr(1, end - 1));
      rest_.remove_prefix(end + 1);
    } else {
      takeString(value);
      addEntry(entries, key, value, readable);
    }
    return true;
  }
  const std::optional<std::string_view> keyText = takeMapKey();
  if (!keyText) return false;
  std::string key(*keyText);
  escToControls(key, true);
  takeString(value);
  addEntry(entries, std::move(key), value, readable);
  return true;
}

// Takes what there is of a map. False if one of its braces is missing.
bool ValueReader::takeMap(std::map<std::string, std::string>& map) {
  char brace = '\0';
  *this >> brace;
  while (!rest_.empty()) {
    const std::size_t visible = internal::findFirstOf(rest_, internal::kVisible);
    if (visible != kNone) rest_.remove_prefix(visible);
    if (rest_.starts_with('}')) {
      rest_.remove_prefix(1);
      return brace == '{';
    }
    if (!takeMapEntry(map)) return false;
  }
  return false;
}

ValueReader& operator>>(ValueReader& reader, char& value) {
  const std::size_t visible = internal::findFirstOf(reader.rest(), internal::kVisible);
  value = visible == kNone ? '\0' : reader.rest()[visible];
  reader.skip(visible == kNone ? reader.rest().size() : visible + 1);
  return reader;
}

ValueReader& operator>>(ValueReader& reader, signed char& value) { return readSmallInteger(reader, value); }

ValueReader& operator>>(ValueReader& reader, unsigned char& value) { return readSmallInteger(reader, value); }

ValueReader& operator>>(ValueReader& reader, bool& value) {
  reader.takeBool(value);
  return reader;
}

ValueReader& operator>>(ValueReader& reader, std::string& value) {
  ValueReader behind = reader;
  std::string_view text;
  behind.takeString(text);
  value.assign(text);
  reader = behind;
  return reader;
}

ValueReader& operator>>(ValueReader& reader, JsonValue& value) { return reader >> value.text; }

ValueReader& operator>>(ValueReader& reader, std::map<std::string, std::string>& value) {
  ValueReader behind = reader;
  std::map<std::string, std::string> map;
  behind.takeMap(map);
  value = std::move(map);
  reader = behind;
  return reader;
}

ValueReader& operator>>(ValueReader& reader, uuids::uuid& value) {
  std::string_view text;
  reader.takeString(text);
  value = parseUuid(text).value_or(value);
  return reader;
}

bool takeWhole(ValueReader& reader, char& value) noexcept {
  const bool isThere = internal::findFirstOf(reader.rest(), internal::kVisible) != kNone;
  reader >> value;
  return isThere;
}

namespace {

template <class Character>
bool takeSmallInteger(ValueReader& reader, Character& value) noexcept {
  const std::optional<int> number = reader.tryRead<int>();
  value = static_cast<Character>(number.value_or(0));
  return number.has_value();
}

}  // namespace

bool takeWhole(ValueReader& reader, signed char& value) noexcept { return takeSmallInteger(reader, value); }

bool takeWhole(ValueReader& reader, unsigned char& value) noexcept { return takeSmallInteger(reader, value); }

bool takeWhole(ValueReader& reader, bool& value) noexcept { return reader.takeBool(value); }

bool takeWhole(ValueReader& reader, std::string& value) {
  std::string_view text;
  if (reader.rest().empty() || !reader.takeString(text)) return false;
  value = text;
  return true;
}

bool takeWhole(ValueReader& reader, JsonValue& value) { return takeWhole(reader, value.text); }

bool takeWhole(ValueReader& reader, std::map<std::string, std::string>& value) { return reader.takeMap(value); }

bool takeWhole(ValueReader& reader, uuids::uuid& value) noexcept {
  std::string_view text;
  reader.takeString(text);
  const std::optional<uuids::uuid> id = parseUuid(text);
  value = id.value_or(value);
  return id.has_value();
}

std::istream& operator>>(std::istream& stream, std::optional<std::string>& word) {
  eatWS(stream);
  const int first = stream.get();
  if (!stream.good()) return stream;
  std::string token;
  if (first == '"') {
    takeQuotedWord(stream, token);
  } else {
    token += static_cast<char>(first);
    takeWord(stream, token);
  }
  word = std::move(token);
  return stream;
}

std::istream& operator>>(std::istream& stream, uuids::uuid& id) {
  std::optional<std::string> word;
  stream >> word;
  if (word) id = parseUuid(*word).value_or(id);
  return stream;
}

}  // namespace Tarn
