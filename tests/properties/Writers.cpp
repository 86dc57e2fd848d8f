// What is written reads back where the rules say so. Input: the bytes of the numbers, then texts in pairs.
#include <cmath>
#include <stdexcept>

#include "Tarn/text/Escapes.h"
#include "tests/Plain.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn;

const std::string kBehind = " | behind";

template <class T>
void requireBack(const T& value, const std::string& separator) {
  std::string buffer = written(value) + separator + kBehind;
  T back{};
  buffer >> back;
  require(back == value, "a value comes back");
  require(buffer == kBehind || buffer == separator + kBehind, "what is behind it stays");
}

// Six digits are written, so it is the text that comes back.
template <class T>
void requireDigitsBack(T value) {
  if (!std::isfinite(value)) return;
  std::string buffer = written(value) + kBehind;
  const std::string text = buffer;
  T back{};
  buffer >> back;
  require(written(back) + buffer == text, "the digits come back");
}

// Whether a text in a map comes back: no more than 16 bits a character, each in its shortest form, no NUL, and nothing
// that looks like the end of a string.
bool textComesBack(const std::string& text) {
  std::string back = text;
  return wordsOf<std::invalid_argument>([&] { controlsToEsc(back, true); }).empty() &&
         escToControls(back, true) == -1 && back == text && text.find('\0') == std::string::npos &&
         text.find("\\\"") == std::string::npos;
}

void requireMapBack(const StringMap& map) {
  std::string expected = "before{";
  bool isText = true;
  bool isWhole = true;
  for (const auto& [key, value] : map) {
    isText = isText && plainWide(key) && plainWide(value);
    if (isText) expected += " \"" + plainEscape(key, true) + "\"=>\"" + plainEscape(value, true) + '"';
    isWhole = isWhole && textComesBack(key) && textComesBack(value) && !('"' + key).ends_with("\"=>");
  }
  if (isText) expected += " } ";
  std::string buffer = "before";
  const std::string error = wordsOf<std::invalid_argument>([&] { buffer << map; });
  require(error == (isText ? "" : "Invalid UTF-8 byte encountered."), "only bad text keeps a map from being written");
  require(buffer == expected, "a map is written in its form, or the entries before bad text are");
  require(comesBack(map) == isWhole, "a map tells whether it comes back");
  reached(isWhole ? "a map that comes back" : "a map that does not");
  if (!isWhole) return;
  buffer.erase(0, 6) += kBehind;
  StringMap back = {{"old", "entry"}};
  buffer >> back;
  require(back == map && buffer == ' ' + kBehind, "a map comes back");
}

}  // namespace

void checkWriters(Input input) {
  requireBack(input.number<long long>(), "");
  requireBack(input.number<unsigned long long>(), "");
  requireBack(input.number<int>(), "");
  requireBack(input.number<short>(), "");
  requireDigitsBack(input.number<double>());
  requireDigitsBack(input.number<float>());
  requireBack(uuids::uuid(input.number<std::array<unsigned char, 16>>()), "\n");
  StringMap map;
  while (!input.isEmpty()) {
    const std::string key = input.text();
    if (key.find('\n') == std::string::npos && !key.starts_with('"')) requireBack(key, "\n");
    map[key] = input.text();
  }
  requireMapBack(map);
}
