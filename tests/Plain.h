// What the library does, defined as plainly as can be: a step at a time, by the standard library, whatever it costs.
// Tests and fuzzers compare with it.
#ifndef TESTS_PLAIN_H_
#define TESTS_PLAIN_H_

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Tarn/text/ValueText.h"
#include "Tarn/time/Time.h"

inline constexpr const char* kDigits = "0123456789";
inline constexpr const char* kHexDigits = "0123456789abcdefABCDEF";

// The decoder's table, byte by byte; nothing where it throws. Bytes missing at the end count as zero.
inline std::optional<std::wstring> plainWide(const std::string& text) {
  std::wstring result;
  const auto byte = [&text](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U; };
  for (std::size_t at = 0, size = 0; at < text.size(); at += size) {
    const unsigned lead = byte(at);
    if ((lead >= 0x80 && lead < 0xC0) || lead >= 0xF8) return std::nullopt;
    size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    unsigned value = size == 2 ? lead & 0x1F : lead;
    for (std::size_t i = 1; i < size; ++i) value = value << 6 | (byte(at + i) & 0x3F);
    result += static_cast<wchar_t>(value & 0xFFFF);
  }
  return result;
}

// The UTF-8 of a 16-bit value.
inline std::string plainUtf8(unsigned code) {
  const auto byte = [](unsigned value) { return static_cast<char>(static_cast<unsigned char>(value)); };
  if (code < 0x80) return {byte(code)};
  if (code < 0x800) return {byte(0xC0 | code >> 6), byte(0x80 | (code & 0x3F))};
  return {byte(0xE0 | code >> 12), byte(0x80 | (code >> 6 & 0x3F)), byte(0x80 | (code & 0x3F))};
}

// Both directions of escaping, character by character. Of a text that can be decoded.
inline std::string plainEscape(const std::string& text, bool unicode) {
  std::string result;
  const std::wstring characters = plainWide(text).value();
  for (const wchar_t character : characters) {
    const std::size_t known = std::wstring(L"\n\r\"\\").find(character);
    if (known != std::string::npos) {
      result += std::string("\\") + "nr\"\\"[known];
    } else if (unicode && character >= 0x80) {
      std::array<char, 8> code{};
      std::snprintf(code.data(), code.size(), "\\u%04X", static_cast<unsigned>(character & 0xFFFF));
      result += code.data();
    } else {
      result += static_cast<char>(character & 0xFF);
    }
  }
  return result;
}

inline int plainUnescape(std::string& text, bool unicode) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      result += text[i];
    } else if (++i < text.size()) {
      const std::size_t known = std::string("nr\"\\").find(text[i]);
      const std::string digits = text.substr(i + 1, 4);
      if (known != std::string::npos) {
        result += "\n\r\"\\"[known];
      } else if (text[i] == 'u' && !unicode) {
        result += "\\u";
      } else if (text[i] == 'u' && digits.size() == 4 && digits.find_first_not_of(kHexDigits) == std::string::npos) {
        result += plainUtf8(static_cast<unsigned>(std::stoi(digits, nullptr, 16)));
        i += 4;
      } else {
        return static_cast<int>(i - 1);
      }
    }
  }
  text = result;
  return -1;
}

// Last occurrences in C strings.
inline int plainFindLast(const std::string& text, const std::string& needle) {
  const std::string sought = needle.c_str();
  return sought.empty() ? -1 : static_cast<int>(std::string(text.c_str()).rfind(sought));  // npos becomes -1.
}

inline int plainFindLast(const std::string& text, char character, int start) {
  if (start < 0 || static_cast<std::size_t>(start) >= text.size()) return -1;
  const char* hit = std::strrchr(text.c_str() + start, character);
  return hit == nullptr ? -1 : static_cast<int>(hit - text.c_str());
}

template <class Text>
Text plainReplace(Text text, const Text& from, const Text& to) {
  for (std::size_t at = 0; !from.empty() && (at = text.find(from, at)) != Text::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// The name whose number is greater by one: a nine becomes a zero and carries.
inline std::string plainIncrement(std::string name) {
  std::size_t at = name.size();
  while (at > 0 && name[at - 1] == '9') name[--at] = '0';
  if (at > 0 && name[at - 1] >= '0' && name[at - 1] <= '8') {
    ++name[at - 1];
  } else {
    name.insert(at, "1");
  }
  return name;
}

// A uuid's digits in order, where a text has 32 of them and nothing else but hyphens.
inline std::optional<Tarn::uuids::uuid> plainParse(std::string text) {
  text = text.c_str();
  if (!text.empty() && text.front() == '{') {
    if (text.back() != '}') return std::nullopt;
    text = text.substr(1, text.size() - 2);
  }
  std::erase(text, '-');
  if (text.size() != 32 || text.find_first_not_of(kHexDigits) != std::string::npos) return std::nullopt;
  std::array<unsigned char, 16> bytes{};
  for (std::size_t i = 0; i < 16; ++i)
    bytes[i] = static_cast<unsigned char>(std::stoi(text.substr(2 * i, 2), nullptr, 16));
  return Tarn::uuids::uuid(bytes);
}

// The first line that fits the pattern of an ISO 8601 time; the epoch without one.
inline Tarn::Time byPattern(const std::string& text) {
  static const std::regex kPattern(R"((\d{4})-(\d{2})-(\d{2})[Tt](\d{2}):(\d{2}):(\d{2})([Zz]|([+-])(\d{2}):(\d{2})))");
  Tarn::Time time;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    std::smatch match;
    const std::string line = text.substr(start, end - start);
    if (std::regex_match(line, match, kPattern)) {
      const auto field = [&match](std::size_t group) { return std::stoi(match[group]); };
      time.setTime(field(1), field(2), field(3), field(4), field(5), field(6), 0);
      return time;
    }
    start = end + 1;
  }
  return time;
}

// A key table is two maps.
template <class Key>
struct PlainTable {
  std::map<std::uint64_t, Key> byToken;
  std::map<Key, std::uint64_t> byKey;

  bool addEntry(std::uint64_t token, const Key& key) {
    if (!byToken.emplace(token, key).second) return false;
    byKey.emplace(key, token);
    return true;
  }
  bool rmEntry(std::uint64_t token, const Key& key) {
    if (!byToken.contains(token) || !byKey.contains(key)) return false;
    byToken.erase(token);
    byKey.erase(key);
    return true;
  }
};

// What the library writes to an empty buffer.
template <class T>
std::string written(const T& value) {
  using Tarn::operator<<;
  std::string buffer;
  buffer << value;
  return buffer;
}

inline std::size_t findVisible(const std::string& text) {
  const auto isVisible = [](char c) { return static_cast<unsigned char>(c) > ' ' && c != '\x7F'; };
  return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isVisible) - text.begin());
}

inline bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// Where a value begins, or the size.
inline std::size_t findValue(const std::string& text) {
  const auto isStart = [](char c) {
    return isLetter(c) || std::string_view("+-.0123456789").find(c) != std::string::npos;
  };
  return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isStart) - text.begin());
}

inline constexpr const char* kNoValue = "invalid string position";

// The rules of reading, each on a text that is cut at every step. True for a whole value.

// The general rule, with a stream.
template <class T>
bool plainTake(std::string& text, T& value) {
  const std::size_t start = findValue(text);
  if (start == text.size()) return false;
  text.erase(0, start);
  std::size_t end = text.size();
  if constexpr (std::is_floating_point_v<T>) {  // Some libraries go on, in search of other digits than decimal ones.
    const auto behindDigits = [&text](std::size_t at) {
      return std::min(text.find_first_not_of(kDigits, at), text.size());
    };
    const auto isAt = [&text](const char* set, std::size_t at) { return text.find_first_of(set, at) == at; };
    end = behindDigits(isAt("+-", 0) ? 1 : 0);
    if (isAt(".", end)) end = behindDigits(end + 1);
    if (isAt("eE", end) && text.find_first_of(kDigits) < end) end = behindDigits(end + (isAt("+-", end + 1) ? 2 : 1));
  }
  std::istringstream stream(end < text.size() ? text.substr(0, end) + '|' : text);
  stream.imbue(std::locale::classic());
  stream >> value;
  if constexpr (std::is_floating_point_v<T>) {  // Nor do all keep to the largest number, or take what is nearly zero.
    if (std::isinf(value)) value = std::copysign(std::numeric_limits<T>::max(), value);
    char* stop = nullptr;
    if (std::abs(std::strtod(text.c_str(), &stop)) < 1 && stop == text.c_str() + end && end > 0)
      stream.clear(stream.rdstate() & std::ios::eofbit);
  }
  if (!stream.eof() && stream.fail()) throw std::out_of_range(kNoValue);
  text.erase(0, stream.eof() ? text.size() : static_cast<std::size_t>(stream.tellg()));
  return !stream.fail();
}

inline bool plainTake(std::string& text, char& value) {
  const std::size_t visible = findVisible(text);
  const bool isThere = visible < text.size();
  value = isThere ? text[visible] : '\0';
  text.erase(0, visible + 1);
  return isThere;
}

template <class Byte>
bool plainTakeByte(std::string& text, Byte& value) {
  int number = value;
  const bool isWhole = plainTake(text, number);
  value = static_cast<Byte>(number);
  return isWhole;
}
inline bool plainTake(std::string& text, signed char& value) { return plainTakeByte(text, value); }
inline bool plainTake(std::string& text, unsigned char& value) { return plainTakeByte(text, value); }

inline bool plainTake(std::string& text, bool& value) {
  const std::size_t start = findValue(text);
  std::string word = text.substr(start, 5);
  const bool isNumber = word.empty() || !isLetter(word.front());
  for (char& c : word) c = isLetter(c) ? static_cast<char>(c | 0x20) : c;
  value = isNumber ? std::strtoll(text.c_str() + start, nullptr, 10) != 0 : word.starts_with("true");
  if (!isNumber && !value && word != "false") return false;
  text.erase(0, start + (isNumber ? 1 : value ? 4 : 5));
  return !word.empty();
}

inline bool plainTake(std::string& text, std::string& value) {
  const bool isQuoted = text.starts_with('"');
  const bool isThere = !text.empty();
  if (isQuoted) text = std::string(text.c_str() + 1);
  std::size_t end = text.find(isQuoted ? '"' : '\n');
  while (isQuoted && end != std::string::npos && end > 0 && text[end - 1] == '\\' &&
         (end == 1 || text[end - 2] != '\\')) {
    end = text.find('"', end + 1);
  }
  value = text.substr(0, end);
  text.erase(0, value.size() + 1);
  return isThere && (!isQuoted || end != std::string::npos);
}

inline bool plainTake(std::string& text, Tarn::JsonValue& value) { return plainTake(text, value.text); }

// Every step searches what is left anew.
inline bool plainTake(std::string& text, Tarn::StringMap& map) {
  map.clear();
  char brace = '\0';
  plainTake(text, brace);
  while (!text.empty()) {
    if (const std::size_t visible = findVisible(text); visible < text.size()) text.erase(0, visible);
    if (text.front() == '}') {
      text.erase(0, 1);
      return brace == '{';
    }
    const std::size_t quote = text.find("\"=>\"");
    if (quote == std::string::npos && !text.starts_with("=>")) break;
    std::string keyText = text.substr(0, quote + 1);  // npos becomes 0.
    text.erase(0, keyText.size() + 2);
    std::string key;
    std::string value;
    plainTake(keyText, key);
    plainTake(text, value);
    plainUnescape(key, true);
    plainUnescape(value, true);
    map.emplace(key, value);
  }
  return false;
}

inline bool plainTake(std::string& text, Tarn::uuids::uuid& value) {
  std::string word;
  plainTake(text, word);
  const auto id = plainParse(word);
  value = id.value_or(value);
  return id.has_value();
}

inline bool plainTake(std::string& text, Tarn::Time& value) {
  std::array<int, 7> fields{};
  bool isWhole = true;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    char separator = '\0';
    if (i != 0 && i != 3) plainTake(text, separator);
    if (plainTake(text, fields[i])) continue;
    fields[i] = 0;
    isWhole = false;
  }
  const auto& [day, month, year, hour, minute, second, millisecond] = fields;
  value.setTime(year, month, day, hour, minute, second, millisecond);
  return isWhole;
}

#endif  // TESTS_PLAIN_H_
