// What the library does, defined as plainly as can be: a step at a time, by the standard library, whatever it costs.
// Tests and fuzzers compare with it.
#ifndef TESTS_PLAIN_H_
#define TESTS_PLAIN_H_

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>

#include "Tarn/text/ValueText.h"
#include "Tarn/time/Time.h"

// The decoder's table, byte by byte; nothing where it throws.
inline std::optional<std::wstring> plainWide(const std::string& text) {
  std::wstring result;
  for (std::size_t i = 0; i < text.size();) {
    const auto at = [&text](std::size_t k) { return k < text.size() ? static_cast<unsigned char>(text[k]) : 0U; };
    const unsigned b = at(i);
    if ((b >= 0x80 && b <= 0xBF) || b >= 0xF8) return std::nullopt;
    const std::size_t size = b < 0x80 ? 1 : b < 0xE0 ? 2 : b < 0xF0 ? 3 : 4;
    const unsigned c1 = at(i + 1) & 0x3F;
    const unsigned c2 = at(i + 2) & 0x3F;
    const unsigned c3 = at(i + 3) & 0x3F;
    const unsigned value = size == 1   ? b
                           : size == 2 ? (b & 0x1F) << 6 | c1
                           : size == 3 ? (b & 0x0F) << 12 | c1 << 6 | c2
                                       : (c1 & 0x0F) << 12 | c2 << 6 | c3;
    result += static_cast<wchar_t>(value);
    i += size;
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
  std::ostringstream result;
  const std::wstring characters = plainWide(text).value();
  for (const wchar_t character : characters) {
    const auto code = static_cast<unsigned>(character);
    if (code == '\n' || code == '\r') {
      result << '\\' << (code == '\n' ? 'n' : 'r');
    } else if (code == '"' || code == '\\') {
      result << '\\' << static_cast<char>(code);
    } else if (code >= 0x80 && unicode) {
      for (const char c : {'\\', 'u'}) result << c;
      for (const int shift : {12, 8, 4, 0}) result << "0123456789ABCDEF"[code >> shift & 15];
    } else {
      result << static_cast<char>(code & 0xFF);
    }
  }
  return result.str();
}

inline int plainUnescape(std::string& text, bool unicode) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      result += text[i];
      continue;
    }
    const int position = static_cast<int>(i);
    if (++i == text.size()) break;
    const std::size_t known = std::string("nr\"\\").find(text[i]);
    if (known != std::string::npos) {
      result += "\n\r\"\\"[known];
    } else if (text[i] == 'u' && !unicode) {
      result += "\\u";
    } else if (text[i] == 'u' && i + 4 < text.size() &&
               text.substr(i + 1, 4).find_first_not_of("0123456789abcdefABCDEF") == std::string::npos) {
      result += plainUtf8(static_cast<unsigned>(std::stoi(text.substr(i + 1, 4), nullptr, 16)));
      i += 4;
    } else {
      return position;
    }
  }
  text = result;
  return -1;
}

// Last occurrences by the C library, hit by hit.
inline int plainFindLast(const std::string& text, const std::string& needle) {
  if (needle.c_str()[0] == '\0') return -1;
  int last = -1;
  for (const char* hit = std::strstr(text.c_str(), needle.c_str()); hit != nullptr;
       hit = std::strstr(hit + 1, needle.c_str())) {
    last = static_cast<int>(hit - text.c_str());
  }
  return last;
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

// The name whose number is greater by one. Of up to 19 digits.
inline std::string plainIncrement(const std::string& name) {
  const std::size_t first = name.find_last_not_of("0123456789") + 1;  // 0 if there is no other.
  const std::string digits = name.substr(first);
  const std::string number = std::to_string(digits.empty() ? 1 : std::stoull(digits) + 1);
  const std::string zeros(digits.size() - std::min(digits.size(), number.size()), '0');
  return name.substr(0, first) + zeros + number;
}

// A uuid's digits in order, where a text has 32 of them and nothing else but hyphens.
inline std::optional<Tarn::uuids::uuid> plainParse(std::string text) {
  text = text.c_str();
  if (!text.empty() && text.front() == '{') {
    if (text.back() != '}') return std::nullopt;
    text = text.substr(1, text.size() - 2);
  }
  std::erase(text, '-');
  if (text.size() != 32 || text.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) return std::nullopt;
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

// The rules of reading, each on a text that is cut at every step. An exception's words, or none.

// The general rule, with a stream.
template <class T>
std::string plainTake(std::string& text, T& value, bool* hasFailed = nullptr) {
  const std::size_t start = findValue(text);
  if (start == text.size()) return "";
  text.erase(0, start);
  std::string seen = text;
  if constexpr (std::is_floating_point_v<T>) {  // Some libraries go on, in search of other digits than decimal ones.
    static const std::regex kNumber("[+-]?[0-9]*(\\.[0-9]*)?");
    std::smatch match;
    std::regex_search(text, match, kNumber, std::regex_constants::match_continuous);
    std::size_t end = static_cast<std::size_t>(match.length());
    const bool hasDigit = match.str().find_first_of("0123456789") != std::string::npos;
    if (hasDigit && end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
      ++end;
      if (end < text.size() && (text[end] == '+' || text[end] == '-')) ++end;
      end = std::min(text.find_first_not_of("0123456789", end), text.size());
    }
    if (end < text.size()) seen = text.substr(0, end) + '|';
  }
  std::istringstream stream(seen);
  stream.imbue(std::locale::classic());
  stream >> value;
  if constexpr (std::is_floating_point_v<T>) {  // Nor do all keep to the largest number.
    if (std::isinf(value)) value = std::copysign(std::numeric_limits<T>::max(), value);
  }
  if (hasFailed != nullptr) *hasFailed = stream.fail();
  if (!stream.eof() && stream.fail()) return kNoValue;
  text.erase(0, stream.eof() ? text.size() : static_cast<std::size_t>(stream.tellg()));
  return "";
}

inline std::string plainTake(std::string& text, char& value) {
  const std::size_t visible = findVisible(text);
  value = visible < text.size() ? text[visible] : '\0';
  text.erase(0, visible + 1);
  return "";
}

template <class Byte>
std::string plainTakeByte(std::string& text, Byte& value) {
  int number = value;
  std::string error = plainTake(text, number);
  if (error.empty()) value = static_cast<Byte>(number);
  return error;
}

inline std::string plainTake(std::string& text, signed char& value) { return plainTakeByte(text, value); }

inline std::string plainTake(std::string& text, unsigned char& value) { return plainTakeByte(text, value); }

inline std::string plainTake(std::string& text, bool& value) {
  const std::size_t start = findValue(text);
  std::string word = text.substr(start, 5);
  for (char& c : word) c = isLetter(c) ? static_cast<char>(c | 0x20) : c;
  value = word.starts_with("true") || std::strtoll(word.c_str(), nullptr, 10) != 0;
  if (!word.empty() && !isLetter(word.front())) {
    value = std::strtoll(text.c_str() + start, nullptr, 10) != 0;
    text.erase(0, start + 1);
  } else if (word.empty() || value || word == "false") {
    text.erase(0, start + (value ? 4 : 5));
  }
  return "";
}

// The string rule.
inline std::string plainString(std::string& text) {
  const bool isQuoted = text.starts_with('"');
  if (isQuoted) text = std::string(text.c_str() + 1);
  std::size_t end = text.find(isQuoted ? '"' : '\n');
  while (isQuoted && end != std::string::npos && end > 0 && text[end - 1] == '\\' &&
         (end == 1 || text[end - 2] != '\\')) {
    end = text.find('"', end + 1);
  }
  std::string value = text.substr(0, end);
  text.erase(0, value.size() + 1);
  return value;
}

inline std::string plainTake(std::string& text, std::string& value) {
  value = plainString(text);
  return "";
}

// Every step searches what is left anew.
inline Tarn::StringMap plainMap(std::string& text) {
  Tarn::StringMap map;
  text.erase(0, findVisible(text) + 1);
  while (!text.empty()) {
    if (const std::size_t visible = findVisible(text); visible < text.size()) text.erase(0, visible);
    const std::size_t quote = text.find("\"=>\"");
    const bool isEnd = text.front() == '}';
    if (isEnd || (quote == std::string::npos && !text.starts_with("=>"))) {
      text.erase(0, isEnd ? 1 : 0);
      break;
    }
    std::string keyText = quote == std::string::npos ? "" : text.substr(0, quote + 1);
    text.erase(0, quote == std::string::npos ? 2 : quote + 3);
    std::string key = plainString(keyText);
    std::string value = plainString(text);
    plainUnescape(key, true);
    plainUnescape(value, true);
    map.emplace(key, value);
  }
  return map;
}

inline std::string plainTake(std::string& text, Tarn::StringMap& value) {
  value = plainMap(text);
  return "";
}

inline std::string plainTake(std::string& text, Tarn::uuids::uuid& value) {
  value = plainParse(plainString(text)).value_or(value);
  return "";
}

inline std::string plainTake(std::string& text, Tarn::Time& value) {
  std::array<int, 7> fields{};
  for (std::size_t i = 0; i < fields.size(); ++i) {
    char separator = '\0';
    if (i != 0 && i != 3) plainTake(text, separator);
    bool hasFailed = false;
    if (std::string error = plainTake(text, fields[i], &hasFailed); !error.empty()) return error;
    if (hasFailed) fields[i] = 0;
  }
  const auto& [day, month, year, hour, minute, second, millisecond] = fields;
  value.setTime(year, month, day, hour, minute, second, millisecond);
  return "";
}

#endif  // TESTS_PLAIN_H_
