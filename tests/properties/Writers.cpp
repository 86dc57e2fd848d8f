// What is written reads back where the rules say so. Input: the bytes of the numbers, then texts in pairs.
#include <cmath>
#include <stdexcept>

#include "Tarn/text/Escapes.h"
#include "tests/Plain.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn;

const std::string kBehind = " | behind";

void requireRest(const std::string& buffer, const std::string& separator) {
  require(buffer == kBehind || buffer == separator + kBehind, "what is behind it stays");
}

template <class T>
void requireBack(const T& value, const std::string& separator) {
  std::string buffer = written(value) + separator + kBehind;
  T back{};
  buffer >> back;
  require(back == value, "a value comes back");
  requireRest(buffer, separator);
}

template <class T>
void requireAsStreamed(T value) {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream << value;
  require(written(value) == stream.str(), "a number is written as streams do");
}

template <class T>
void requireInteger(T value) {
  requireAsStreamed(value);
  requireBack(value, "");
}

// Six digits are written, so it is their text that comes back; exactly written, the number does.
template <class T>
void requireFloat(T value) {
  if (!std::isfinite(value)) return;  // Runtimes differ in the names of what is no number.
  requireAsStreamed(value);
  std::string buffer = written(value) + kBehind;
  const std::string text = buffer;
  T back{};
  buffer >> back;
  require(written(back) + buffer == text, "the digits come back");
  buffer.clear();
  buffer << exact(value) << kBehind;
  buffer >> back;
  require(back == value && buffer == kBehind, "an exact number comes back");
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
  const auto bits = input.number<std::uint64_t>();
  const auto number = input.number<double>();
  for (unsigned shift = 0; shift < 64; shift += 21) {
    requireInteger(static_cast<long long>(bits >> shift));
    requireInteger(bits >> shift);
    requireInteger(static_cast<long>(bits >> shift));
    requireInteger(static_cast<int>(bits >> shift));
    requireInteger(static_cast<unsigned>(bits >> shift));
    requireInteger(static_cast<short>(bits >> shift));
    requireFloat(static_cast<double>(bits >> shift) / 1000);
    requireFloat(static_cast<float>(bits >> shift));
  }
  const double tie = static_cast<double>(bits % 4000000) / 2;  // Or near to one, of two numbers of six digits.
  for (const double scale : {-1e-21, 1e-12, 1e-3, 1.0, 1e3, -1e19, 1e22}) requireFloat(tie * scale);
  requireFloat(number);
#ifndef _LIBCPP_VERSION  // Which gives a long double the digits of a double.
  requireFloat(static_cast<long double>(number) / 3);
#endif
  requireFloat(input.number<float>());
  requireBack(uuids::uuid(input.number<std::array<unsigned char, 16>>()), "\n");
  StringMap map;
  while (!input.isEmpty()) {
    const std::string key = input.text();
    if (key.find('\n') == std::string::npos && !key.starts_with('"')) requireBack(key, "\n");
    map[key] = input.text();
  }
  requireMapBack(map);
}
