// String utilities against one-line definitions. Input: a start, then three texts.
#include "Tarn/text/StringUtilities.h"

#include <limits>
#include <vector>

#include "Tarn/text/Escapes.h"
#include "Tarn/text/Formatting.h"
#include "tests/Plain.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn;

constexpr const char* kSpaces = " \t\n\v\f\r";

bool isNumberChar(char c) { return findValue({c}) == 0 && (!isLetter(c) || c == 'e' || c == 'E'); }

void requireSearches(const std::string& text, int start) {
  const auto search = [&](auto isSought) {
    for (std::size_t i = static_cast<unsigned>(start); start >= 0 && i < text.size(); ++i) {
      if (isSought(text[i])) return static_cast<int>(i);
    }
    return -1;
  };
  require(findAlphaNum(text, start) == search([](char c) { return findValue({c}) == 0; }), "the first of a value");
  require(findNonWS(text, start) == search([](char c) { return findVisible({c}) == 0; }), "the first visible one");
  require(findValidNumberChar(text, start) == search(isNumberChar), "the first of a number");
  const std::string_view view = text;
  require(findAlphaNum(view, start) == findAlphaNum(text, start) && findNonWS(view, start) == findNonWS(text, start) &&
              findValidNumberChar(view, start) == findValidNumberChar(text, start) && isAscii(view) == isAscii(text) &&
              trim_copy(view) == trim_copy(text) && ltrim_copy(view) == ltrim_copy(text) &&
              rtrim_copy(view) == rtrim_copy(text),
          "views are like strings");
  require(isAscii(text) == std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; }), "ASCII");
  for (const char c : {'a', '\0', '\xE9', text.empty() ? 'b' : text.back()}) {
    const int last = plainFindLast(text, c, start);
    require(findLastOf(text, c, start) == last && findLastOf(view, c, start) == last, "the last one is strrchr's");
  }
}

void requireTrims(const std::string& text) {
  const std::size_t first = std::min(text.find_first_not_of(kSpaces), text.size());
  const std::size_t end = text.find_last_not_of(kSpaces) + 1;
  require(ltrim_copy(text) == text.substr(first), "the front is trimmed");
  require(rtrim_copy(text) == text.substr(0, end), "the end is trimmed");
  require(trim_copy(text) == text.substr(first, end - std::min(first, end)), "both ends are trimmed");
  std::string eaten = text;
  eatwhite(eaten);
  const std::size_t visible = findVisible(text);
  require(eaten == (visible == text.size() ? text : text.substr(visible)), "whitespace in front is eaten");
}

void requireReplacements(const std::string& text, const std::string& from, const std::string& to) {
  std::string replaced = text;
  replaceAll(replaced, from, to);
  require(replaced == plainReplace(text, from, to), "hits are replaced one by one");
  std::wstring wideText(text.begin(), text.end());
  const std::wstring wideFrom(from.begin(), from.end());
  const std::wstring wideTo(to.begin(), to.end());
  const std::wstring expected = plainReplace(wideText, wideFrom, wideTo);
  replaceAll(wideText, wideFrom, wideTo);
  require(wideText == expected, "wide hits are replaced one by one");
  std::string own = text;
  replaceAll(own, from, own);
  require(own == plainReplace(text, from, text), "a text may replace what is in it");
}

// So many repetitions that a search looks for a better way.
std::string repeated(const std::string& text, std::size_t times) {
  std::string result;
  for (; times > 0; --times) result += text;
  return result;
}

}  // namespace

void checkStrings(Input input) {
  const int start = input.number<signed char>();
  const std::string text = input.text();
  const std::string from = input.text();
  const std::string to = input.rest();
  constexpr int kLast = std::numeric_limits<int>::max();
  const int size = static_cast<int>(text.size());
  for (const int at : {start, 0, size - 1, size, kLast, -kLast - 1}) requireSearches(text, at);
  require(findLastOf(text, from) == plainFindLast(text, from), "the last needle is strstr's");
  require(startsWith(text, from) == (text.compare(0, from.size(), from) == 0), "a prefix compares equal");
  const std::string many = repeated(text.substr(0, 100), 40);
  const std::string some = repeated(text.substr(0, 100), 10) + from;
  require(findLastOf(many + to, some) == plainFindLast(many + to, some), "the last of many needles is strstr's");
  requireReplacements(many + to, some, to);
  requireReplacements(many + from, from, to);
  reached("a hit far behind", (many + from).find(from.empty() ? "x" : from) + 1 > 1000);
  // Parts of a text, behind which there is no end.
  const std::string_view part = std::string_view(text).substr(0, text.size() / 2);
  const std::string whole(part);
  require(findLastOf(part, from) == findLastOf(whole, from) && startsWith(part, from) == startsWith(whole, from) &&
              startsWith(text, part) && compareIgnoreCase(part, to) == compareIgnoreCase(whole, to) &&
              compareIgnoreCase(to, part) == compareIgnoreCase(to, whole),
          "views end where they end");
  const std::string spaces(text.size() % 40, ' ');
  for (const std::string& spaced : {text, spaces + from + spaces}) requireTrims(spaced);
  reached("much whitespace on both sides", spaces.size() > 24 && !from.empty());
  requireReplacements(text, from, to);
  require(implode({text, from, to}, from) == text + from + from + from + to && implode({text}, from) == text &&
              implode({}, from).empty(),
          "parts are joined");
  require(std::string(PrintF("%s", text)) == std::string(text.c_str()).substr(0, 999), "a C string is printed");
  for (const std::string& end : {std::string(), std::string("09"), std::string(from.size(), '9')}) {
    std::string name = text + end;
    incrementIndex(name);
    require(name == plainIncrement(text + end), "a name is numbered on");
  }
}
