#include "Tarn/text/StringUtilities.h"

#include <strings.h>

#include <algorithm>
#include <string_view>

#include "bench/Bench.h"
#include "bench/Texts.h"

#if WITH_ABSL
#include <absl/strings/ascii.h>
#include <absl/strings/match.h>
#include <absl/strings/str_join.h>
#include <absl/strings/str_replace.h>
#include <absl/strings/strip.h>
#endif
#if WITH_BOOST
#include <boost/algorithm/string.hpp>
#endif

namespace {

using std::string;

const bench::Sizes kSizes = {16, 1024, 65536};

std::function<string(std::size_t)> filledWith(char filler, const string& end) {
  return [filler, end](std::size_t size) { return string(size - end.size(), filler) + end; };
}

template <class Character>
struct Pair {
  std::basic_string<Character> first;
  std::basic_string<Character> second;
};

void registerTrim() {
  const auto make = [](std::size_t size) {
    return string(size / 4, ' ') + string(size / 2, 'x') + string(size / 4, '\t');
  };
  auto trim = bench::compare("trim", kSizes, make, bench::changed(Tarn::trim));
  auto copy = bench::compare("trim_copy", kSizes, make, [](const string& text) { return Tarn::trim_copy(text); });
  const auto copyOf = [](const string& text) { return text; };
  trim.limit("memcpy", copyOf);
  copy.limit("memcpy", copyOf);
#if WITH_ABSL
  trim.peer("Abseil", bench::changed([](string& text) { absl::StripAsciiWhitespace(&text); }));
  copy.peer("Abseil", [](const string& text) { return string(absl::StripAsciiWhitespace(text)); });
#endif
#if WITH_BOOST
  trim.peer("Boost", bench::changed([](string& text) { boost::trim(text); }));
  copy.peer("Boost", [](const string& text) { return boost::trim_copy(text); });
#endif
}

// A search from a text's front to its last character, of which `pattern` has both, beside plain loops over the same
// class of characters.
template <class IsWanted>
void registerSearch(const string& name, const string& pattern, int (*ours)(const string&, int), const string& wanted,
                    IsWanted isWanted) {
  bench::compare(name, kSizes, filledWith(pattern[0], pattern.substr(1)), [ours](const string& text) {
    return ours(text, 0);
  }).peer("find_first_of", [wanted](const string& text) {
      return text.find_first_of(wanted);
    }).peer("find_if", [isWanted](const string& text) {
    return std::find_if(text.begin(), text.end(), isWanted) - text.begin();
  });
}

Pair<char> twoAlike(std::size_t size) { return {bench::ascii(size), bench::ascii(size)}; }

void registerSearches() {
  const string digits = "0123456789+-.";
  const string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  string visible;
  for (int c = 0x21; c < 0x100; ++c) {
    if (c != 0x7F) visible += static_cast<char>(c);
  }
  const auto isAlphaNum = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '+' || c == '-' ||
           c == '.';
  };
  registerSearch("findAlphaNum", ",x", Tarn::findAlphaNum, letters + digits, isAlphaNum);
  registerSearch("findNonWS", " x", Tarn::findNonWS, visible,
                 [](char c) { return static_cast<unsigned char>(c) > ' ' && c != '\x7F'; });
  registerSearch("findValidNumberChar", "x7", Tarn::findValidNumberChar, digits + "Ee", [](char c) {
    return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.' || c == 'E' || c == 'e';
  });

  bench::compare("isAscii", kSizes, bench::ascii, [](const string& text) {
    return Tarn::isAscii(text);
  }).peer("std::all_of", [](const string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  });
  auto last = bench::compare(
      "findLastOf a text", kSizes, [](std::size_t size) { return string("needle").append(bench::ascii(size - 6)); },
      [](const string& text) { return Tarn::findLastOf(text, "needle"); });
  last.peer("rfind", [](const string& text) { return text.rfind("needle"); });
  bench::compare(
      "findLastOf a character", kSizes, [](std::size_t size) { return string("!").append(bench::ascii(size - 1)); },
      [](const string& text) { return Tarn::findLastOf(text, '!', 0); })
      .peer("rfind", [](const string& text) { return text.rfind('!'); });
  auto starts = bench::compare("startsWith", kSizes, twoAlike,
                               [](const Pair<char>& two) { return Tarn::startsWith(two.first, two.second); });
#if WITH_ABSL
  starts.peer("Abseil", [](const Pair<char>& two) { return absl::StartsWith(two.first, two.second); });
#endif
#if WITH_BOOST
  last.peer("Boost", [](const string& text) { return boost::find_last(text, "needle").begin() - text.begin(); });
  starts.peer("Boost", [](const Pair<char>& two) { return boost::starts_with(two.first, two.second); });
#endif
}

// A text, what to replace in it, and by what.
struct Replacement {
  string text;
  string from;
  string to;
};

void registerReplaceAll() {
  for (const auto& [name, from, to] : std::vector<Replacement>{{"few hits", "12\"\n", "12\\\"\\n"},
                                                               {"many hits", " ", "__"},
                                                               {"many hits, same size", " ", "_"},
                                                               {"many hits, shorter", "er ", ""}}) {
    auto replace = bench::compare(
        "replaceAll, " + name, kSizes,
        [from, to](std::size_t size) {
          return Replacement{bench::kAscii.withFewEscapes(size), from, to};
        },
        [](const Replacement& all) {
          string text = all.text;
          Tarn::replaceAll(text, all.from, all.to);
          return text;
        });
    replace.limit("memcpy", [](const Replacement& all) { return all.text; });
#if WITH_ABSL
    replace.peer("Abseil", [](const Replacement& all) { return absl::StrReplaceAll(all.text, {{all.from, all.to}}); });
#endif
#if WITH_BOOST
    replace.peer("Boost", [](const Replacement& all) { return boost::replace_all_copy(all.text, all.from, all.to); });
#endif
  }
}

void registerImplode() {
  using Parts = std::vector<string>;
  auto implode = bench::compare(
      "implode", kSizes, [](std::size_t size) { return Parts(size / 8, "Tower"); },
      [](const Parts& parts) { return Tarn::implode(parts, ", "); });
#if WITH_ABSL
  implode.peer("Abseil", [](const Parts& parts) { return absl::StrJoin(parts, ", "); });
#endif
#if WITH_BOOST
  implode.peer("Boost", [](const Parts& parts) { return boost::join(parts, ", "); });
#endif
}

int sign(int value) { return (value > 0) - (value < 0); }

// Compares texts that are equal but for their case.
template <class Character>
Pair<Character> twoCases(std::size_t size) {
  const string text = bench::ascii(size);
  Pair<Character> pair{{text.begin(), text.end()}, {text.begin(), text.end()}};
  for (Character& c : pair.second) c = static_cast<Character>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  return pair;
}

void registerCompare() {
  const auto ours = [](const auto& pair) { return sign(Tarn::compareIgnoreCase(pair.first, pair.second)); };
  auto narrow = bench::compare("compareIgnoreCase", kSizes, twoCases<char>, ours);
  narrow.peer("strcasecmp",
              [](const Pair<char>& pair) { return sign(strcasecmp(pair.first.c_str(), pair.second.c_str())); });
  bench::compare("compareIgnoreCase of wide text", kSizes, twoCases<wchar_t>, ours)
      .peer("wcscasecmp",
            [](const Pair<wchar_t>& pair) { return sign(wcscasecmp(pair.first.c_str(), pair.second.c_str())); });
  const auto ifEqual = [](bool isEqual) { return isEqual ? 0 : 1; };
#if WITH_ABSL
  narrow.peer(
      "Abseil", [](const Pair<char>& pair) { return absl::EqualsIgnoreCase(pair.first, pair.second); }, ifEqual);
#endif
#if WITH_BOOST
  narrow.peer(
      "Boost", [](const Pair<char>& pair) { return boost::iequals(pair.first, pair.second); }, ifEqual);
#endif
}

}  // namespace

void bench::registerCases() {
  registerTrim();
  registerSearches();
  registerReplaceAll();
  registerImplode();
  registerCompare();
}
