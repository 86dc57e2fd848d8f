// Every reader takes its value from a copy of the cursor and moves the cursor last, so that a failed allocation leaves
// cursor and value as they were.
#include "Tarn/text/ValueReader.h"

#include <utility>

#include "Tarn/text/Escapes.h"
#include "Tarn/text/internal/Characters.h"

namespace Tarn {
namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kMapSeparator = R"("=>")";

// Whether the double quote at this position of a quoted text is escaped: by one backslash, not by two.
bool isEscaped(std::string_view text, std::size_t quote) {
  return quote >= 1 && text[quote - 1] == '\\' && (quote < 2 || text[quote - 2] != '\\');
}

// The position of the quote that closes a quoted text, or its size.
std::size_t findClosingQuote(std::string_view text) {
  std::size_t quote = text.find('"');
  while (quote != kNone && isEscaped(text, quote)) quote = text.find('"', quote + 1);
  return std::min(quote, text.size());
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

// Adds an entry whose value is still escaped, unless its key is there already. It is made in its place, from views
// where that can be: a processor waits where it is to move a string that has just been written.
template <class Key>
void addEntry(std::map<std::string, std::string>& entries, Key&& key, std::string_view value) {
  const std::size_t count = entries.size();
  const auto entry = entries.emplace_hint(entries.end(), std::forward<Key>(key), value);
  if (entries.size() > count) escToControls(entry->second, true);
}

// Takes a key with the arrow behind it as `takeMapKey` does, by one search in place of four, if it is as most keys are:
// in quotes, without escapes and NULs.
std::optional<std::string_view> takePlainKey(std::string_view& rest) {
  constexpr internal::ByteClass<internal::ByteRange{'\0', '\0'}, internal::ByteRange{'"', '"'},
                                internal::ByteRange{'\\', '\\'}>
      kNotPlain;
  if (rest.size() < 2 || rest[0] != '"' || rest[1] == '=') return std::nullopt;  // `"=>"` ends an empty key.
  const std::size_t end = internal::findFirstOf(rest, kNotPlain, 1);
  if (end == kNone || !rest.substr(end).starts_with(kMapSeparator)) return std::nullopt;
  const std::string_view key = rest.substr(1, end - 1);
  rest.remove_prefix(end + 3);
  return key;
}

}  // namespace

bool ValueReader::skipToValue() noexcept {
  const std::size_t first = holdsNoValue_ ? kNone : internal::findFirstOf(rest_, internal::kAlphaNum);
  holdsNoValue_ = first == kNone;
  if (holdsNoValue_) return false;
  rest_.remove_prefix(first);
  return true;
}

// Whether a decimal integer at the front of a part of the rest is not 0, however long it is.
bool ValueReader::isNonZeroInteger(std::string_view text) noexcept {
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  const char* const end = text.data() + text.size();
  if (text.data() >= zerosEnd_) zerosEnd_ = text.data() + std::min(text.find_first_not_of('0'), text.size());
  return zerosEnd_ != end && internal::isOf(*zerosEnd_, internal::kDigit);
}

// A quoted string, a line, or all there is. In front of a quote, the text counts up to its first NUL.
std::string_view ValueReader::takeString() noexcept {
  if (!rest_.starts_with('"')) return takeUntil(rest_, rest_.find('\n'));
  if (!holdsNoNul_) {
    rest_ = rest_.substr(0, rest_.find('\0'));
    holdsNoNul_ = true;
  }
  rest_.remove_prefix(1);
  return takeUntil(rest_, findClosingQuote(rest_));
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
  ValueReader key(rest_.substr(0, quote + 1));
  rest_.remove_prefix(quote + 3);
  return key.takeString();
}

// Takes one entry. False at the end of the map, which is taken too, and where no entry begins.
bool ValueReader::takeMapEntry(std::map<std::string, std::string>& entries) {
  const std::size_t visible = internal::findFirstOf(rest_, internal::kVisible);
  if (visible != kNone) rest_.remove_prefix(visible);
  if (rest_.starts_with('}')) {
    rest_.remove_prefix(1);
    return false;
  }
  if (const auto plainKey = takePlainKey(rest_)) {
    addEntry(entries, *plainKey, takeString());
    return true;
  }
  const std::optional<std::string_view> keyText = takeMapKey();
  if (!keyText) return false;
  std::string key(*keyText);
  escToControls(key, true);
  addEntry(entries, std::move(key), takeString());
  return true;
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
  value = false;
  const std::size_t first = internal::findFirstOf(reader.rest(), internal::kAlphaNum);
  if (first == kNone) {
    reader.skip(reader.rest().size());
    return reader;
  }
  const std::string_view text = reader.rest().substr(first);
  if (!internal::isOf(text.front(), internal::kLetter)) {
    value = reader.isNonZeroInteger(text);
    reader.skip(first + 1);
  } else if (internal::startsWithWord(text, "true")) {
    value = true;
    reader.skip(first + 4);
  } else if (internal::startsWithWord(text, "false")) {
    reader.skip(first + 5);
  }
  return reader;
}

ValueReader& operator>>(ValueReader& reader, std::string& value) {
  ValueReader behind = reader;
  value.assign(behind.takeString());
  reader = behind;
  return reader;
}

ValueReader& operator>>(ValueReader& reader, JsonValue& value) { return reader >> value.text; }

ValueReader& operator>>(ValueReader& reader, std::map<std::string, std::string>& value) {
  ValueReader behind = reader;
  std::map<std::string, std::string> entries;
  char brace = '\0';
  behind >> brace;
  while (!behind.rest().empty() && behind.takeMapEntry(entries)) {
  }
  value = std::move(entries);
  reader = behind;
  return reader;
}

ValueReader& operator>>(ValueReader& reader, uuids::uuid& value) {
  value = parseUuid(reader.takeString()).value_or(value);
  return reader;
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
