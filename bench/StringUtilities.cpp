#include "Tarn/text/StringUtilities.h"

#include <absl/strings/ascii.h>
#include <absl/strings/match.h>
#include <absl/strings/str_join.h>
#include <absl/strings/str_replace.h>
#include <absl/strings/strip.h>
#include <strings.h>

#include <algorithm>
#include <boost/algorithm/string.hpp>
#include <cstring>
#include <string_view>

#include "bench/Bench.h"
#include "bench/Texts.h"

namespace {

using bench::comparePool;
using std::size_t;
using std::string;
using std::uint64_t;

const bench::Sizes kSizes = {16, 1024, 65536};

template <class Character>
struct Pair {
  std::basic_string<Character> first;
  std::basic_string<Character> second;
};

// Changes a text in a string that is there already, so that no allocation hides what the change takes.
auto inPlace(void (*function)(string&)) {
  return [function](const string& text) {
    return [function, &text, kept = text]() mutable -> const string& {
      kept = text;
      function(kept);
      return kept;
    };
  };
}

void registerTrim() {
  const auto make = [](size_t size, uint64_t seed) {
    const size_t front = seed % (size / 4 + 1);
    const size_t back = seed / 8 % (size / 4 + 1);
    return string(front, ' ') + bench::ascii(size - front - back, seed) + string(back, '\t');
  };
  comparePool("trim", kSizes, make, inPlace(Tarn::trim)).peer("Abseil", inPlace([](string& text) {
                                                                absl::StripAsciiWhitespace(&text);
                                                              }));
  comparePool("trim_copy", kSizes, make, [](const string& text) {
    return Tarn::trim_copy(text);
  }).peer("Abseil", [](const string& text) {
      return string(absl::StripAsciiWhitespace(text));
    }).limitCopy();
}

// A search for one character behind `others`, a short way before the end, beside plain loops over the same class.
template <class IsWanted>
void registerSearch(const string& name, std::string_view others, char wanted, int (*ours)(const string&, int),
                    IsWanted isWanted) {
  const auto make = [others, wanted](size_t size, uint64_t seed) {
    std::mt19937_64 random(seed);
    string text(size, '\0');
    for (char& c : text) c = others[random() % others.size()];
    text[size - 1 - seed % (size / 4)] = wanted;
    return text;
  };
  std::array<bool, 256> table{};
  for (size_t c = 0; c < table.size(); ++c) table[c] = isWanted(static_cast<char>(c));
  comparePool(name, kSizes, make, [ours](const string& text) { return ours(text, 0); })
      .peer("find_if",
            [isWanted](const string& text) { return std::find_if(text.begin(), text.end(), isWanted) - text.begin(); })
      .peer("loop over a table", [table](const string& text) {
        size_t at = 0;
        while (at < text.size() && !table[static_cast<unsigned char>(text[at])]) ++at;
        return at;
      });
}

// Words with a text near the front.
auto wordsBehind(std::string_view front) {
  return [front](size_t size, uint64_t seed) {
    return bench::ascii(size, seed).replace(seed % (size / 4), front.size(), front);
  };
}

void registerSearches() {
  const auto isNumeric = [](char c) { return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.'; };
  registerSearch("findAlphaNum", " ,;:()\n", 'x', Tarn::findAlphaNum,
                 [isNumeric](char c) { return isNumeric(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); });
  registerSearch("findNonWS", " \t\n", 'x', Tarn::findNonWS,
                 [](char c) { return static_cast<unsigned char>(c) > ' ' && c != '\x7F'; });
  registerSearch("findValidNumberChar", "abc xyz,:", '7', Tarn::findValidNumberChar,
                 [isNumeric](char c) { return isNumeric(c) || c == 'E' || c == 'e'; });
  comparePool("isAscii", kSizes, bench::ascii, [](const string& text) {
    return Tarn::isAscii(text);
  }).peer("or of all bytes", [](const string& text) {
    char all = 0;
    for (const char c : text) all = static_cast<char>(all | c);
    return static_cast<unsigned char>(all) < 0x80;
  });
  comparePool("findLastOf a text", kSizes, wordsBehind("needle"), [](const string& text) {
    return Tarn::findLastOf(text, "needle");
  }).peer("rfind", [](const string& text) { return text.rfind("needle"); });
  comparePool("findLastOf a character", kSizes, wordsBehind("!"), [](const string& text) {
    return Tarn::findLastOf(text, '!', 0);
  }).peer("rfind", [](const string& text) {
      return text.rfind('!');
    }).peer("memrchr", [](const string& text) {
    return static_cast<const char*>(memrchr(text.data(), '!', text.size())) - text.data();
  });
  comparePool(
      "startsWith", kSizes,
      [](size_t size, uint64_t seed) {
        return Pair<char>{bench::ascii(size, seed), bench::ascii(size, seed)};
      },
      [](const Pair<char>& two) { return Tarn::startsWith(two.first, two.second); })
      .peer("Abseil", [](const Pair<char>& two) { return absl::StartsWith(two.first, two.second); });
}

// A text, what to replace in it, and by what.
struct Replacement {
  string text;
  string from;
  string to;
};

void registerReplaceAll() {
  for (const auto& [name, from, to] : std::vector<Replacement>{{"no hit", "@@", "@"},
                                                               {"few hits", "12\"\n", "12\\\"\\n"},
                                                               {"many hits", " ", "__"},
                                                               {"many hits, same size", " ", "_"},
                                                               {"many hits, shorter", "er ", ""}}) {
    comparePool(
        "replaceAll, " + name, kSizes,
        [from, to](size_t size, uint64_t seed) {
          return Replacement{bench::kAscii.withFewEscapes(size, seed), from, to};
        },
        [](const Replacement& all) {
          string text = all.text;
          Tarn::replaceAll(text, all.from, all.to);
          return text;
        })
        .peer("Abseil",
              [](const Replacement& all) {
                string text = all.text;
                absl::StrReplaceAll({{all.from, all.to}}, &text);
                return text;
              })
        .peer("Boost", [](const Replacement& all) { return boost::replace_all_copy(all.text, all.from, all.to); })
        .limitCopy();
  }
}

void registerImplode() {
  using Parts = std::vector<string>;
  comparePool(
      "implode", kSizes,
      [](size_t size, uint64_t seed) {
        std::mt19937_64 random(seed);
        Parts parts(size / 8);
        for (string& part : parts) part = bench::kAscii.words[random() % 8];
        return parts;
      },
      [](const Parts& parts) { return Tarn::implode(parts, ", "); })
      .peer("Abseil", [](const Parts& parts) { return absl::StrJoin(parts, ", "); })
      .peer("Boost", [](const Parts& parts) { return boost::join(parts, ", "); })
      .limitCopy();
}

int sign(int value) { return (value > 0) - (value < 0); }

// Compares texts that are equal but for their case.
template <class Character>
Pair<Character> twoCases(size_t size, uint64_t seed) {
  const string text = bench::ascii(size, seed);
  Pair<Character> pair{{text.begin(), text.end()}, {text.begin(), text.end()}};
  for (Character& c : pair.second) c = static_cast<Character>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  return pair;
}

void registerCompare() {
  const auto ours = [](const auto& pair) { return sign(Tarn::compareIgnoreCase(pair.first, pair.second)); };
  comparePool("compareIgnoreCase", kSizes, twoCases<char>, ours)
      .peer("strcasecmp",
            [](const Pair<char>& pair) { return sign(strcasecmp(pair.first.c_str(), pair.second.c_str())); })
      .peer("Abseil", [](const Pair<char>& pair) { return absl::EqualsIgnoreCase(pair.first, pair.second) ? 0 : 1; });
  comparePool("compareIgnoreCase of wide text", kSizes, twoCases<wchar_t>, ours)
      .peer("wcscasecmp",
            [](const Pair<wchar_t>& pair) { return sign(wcscasecmp(pair.first.c_str(), pair.second.c_str())); });
}

}  // namespace

void bench::registerCases() {
  registerTrim();
  registerSearches();
  registerReplaceAll();
  registerImplode();
  registerCompare();
}
