// How the cost of each function grows with its input, for the report's second table.
#include <sstream>

#include "Tarn/Tarn.h"
#include "bench/Tables.h"

namespace {

using namespace Tarn;
using std::string;
using std::wstring;
using Strings = std::vector<string>;

template <class Make, class Function>
void grow(const string& name, Make make, Function function) {
  bench::compare(name, {1 << 10, 1 << 11, 1 << 12, 1 << 13, 1 << 14, 1 << 15, 1 << 16}, make, function).grows();
}

// A function of a text.
template <class Function>
void growInText(const string& name, Function function, const bench::Script& script = bench::kEuropean) {
  grow(
      name, [script](std::size_t size) { return script.withFewEscapes(size); }, function);
}

// A function that changes a text, with a copy of it to change.
template <class Function>
void growInCopy(const string& name, Function function, const bench::Script& script = bench::kEuropean) {
  growInText(
      name,
      [function](const string& text) {
        string copy = text;
        function(copy);
        return copy;
      },
      script);
}

// A function of as many characters as the text has, and one at its end.
template <class Function>
void growInRun(const string& name, char character, char last, Function function) {
  grow(
      name, [character, last](std::size_t size) { return string(size, character) + last; }, function);
}

template <class Value>
auto readBack(const string& text) {
  ValueReader reader(text);
  Value value{};
  reader >> value;
  return value;
}

wstring widened(const string& text) { return {text.begin(), text.end()}; }

void registerTexts() {
  growInText("wide", [](const string& text) { return wide(text); });
  grow(
      "narrow", [](std::size_t size) { return wstring(size, L'\u00e9'); },
      [](const wstring& text) { return narrow(text, '?'); });
  grow(
      "wide text to a stream", [](std::size_t size) { return wstring(size, L'\u00e9'); },
      [](const wstring& text) {
        std::ostringstream stream;
        stream << text;
        return stream.str();
      });
  growInCopy("controlsToEsc", [](string& text) { controlsToEsc(text, true); });
  growInCopy("controlsToEsc without unicodeEscapes", [](string& text) { controlsToEsc(text, false); });
  grow(
      "escToControls",
      [](std::size_t size) {
        string text = bench::kEuropean.withFewEscapes(size);
        controlsToEsc(text, true);
        return text;
      },
      [](const string& text) {
        string copy = text;
        escToControls(copy, true);
        return copy;
      });
  growInRun("eatwhite", ' ', 'x', [](string text) {
    eatwhite(text);
    return text;
  });
  growInRun("eatWS", ' ', 'x', [](const string& text) { return (std::istringstream(text) >> eatWS).peek(); });
  growInRun("word from a stream", 'x', ' ', [](const string& text) {
    std::istringstream stream(text);
    std::optional<string> word;
    stream >> word;
    return word;
  });
  growInRun("ltrim", ' ', 'x', [](const string& text) { return ltrim_copy(text); });
  growInRun("rtrim", ' ', ' ', [](const string& text) { return rtrim_copy(string("x").append(text)); });
  growInRun("trim", ' ', 'x', [](const string& text) { return trim_copy(text); });
  growInRun("isAscii", 'x', 'x', [](const string& text) { return isAscii(text); });
  growInRun("findAlphaNum", ' ', 'x', [](const string& text) { return findAlphaNum(text, 0); });
  growInRun("findNonWS", ' ', 'x', [](const string& text) { return findNonWS(text, 0); });
  growInRun("findValidNumberChar", 'x', '1', [](const string& text) { return findValidNumberChar(text, 0); });
  growInRun("findLastOf a character", 'x', 'y', [](const string& text) { return findLastOf(text, '!', 0); });
  growInRun("findLastOf a short text", 'x', 'y', [](const string& text) { return findLastOf(text, "!xxx"); });
  growInRun("findLastOf a long text, repetitive", 'x', 'x',
            [](const string& text) { return findLastOf(text, text.substr(text.size() / 2) + 'y'); });
  growInRun("startsWith", 'x', 'y', [](const string& text) { return startsWith(text, string(text.data())); });
  growInCopy("replaceAll", [](string& text) { replaceAll(text, " ", "__"); });
  growInRun("replaceAll of a long text, repetitive", 'x', 'x', [](string text) {
    replaceAll(text, text.substr(text.size() / 2) + "y", "");
    return text;
  });
  growInText("replaceAll of wide text", [](const string& text) {
    wstring copy = widened(text);
    replaceAll(copy, L" ", L"__");
    return copy;
  });
  grow(
      "implode, parts", [](std::size_t count) { return Strings(count, "Tower"); },
      [](const Strings& parts) { return implode(parts, ", "); });
  growInText("compareIgnoreCase", [](const string& text) { return compareIgnoreCase(text, string(text.data())); });
  growInText(
      "compareIgnoreCase with wide text", [](const string& text) { return compareIgnoreCase(text, widened(text)); },
      bench::kAscii);
  growInRun("incrementIndex", '9', '9', [](string text) {
    incrementIndex(text);
    return text;
  });
  grow(
      "fromIsoTimeStrIgnoringTimeZone, lines",
      [](std::size_t lines) {
        string text;
        for (std::size_t i = 0; i < lines; ++i) text += "2024-03-05T14:07:09\n";
        return text;
      },
      [](const string& text) { return Time::fromIsoTimeStrIgnoringTimeZone(text).getLastTime(); });
}

void registerCodec() {
  const auto mapOf = [](std::size_t count) {
    StringMap map;
    for (std::size_t i = 0; i < count; ++i) map["property " + std::to_string(i)] = "T\u00fcrmchen";
    return map;
  };
  grow("map write, entries", mapOf, [](const StringMap& map) {
    string text;
    text << map;
    return text;
  });
  grow(
      "map read, entries",
      [mapOf](std::size_t count) {
        string text;
        text << mapOf(count);
        return text;
      },
      readBack<StringMap>);
  growInRun("string read", 'x', '\n', readBack<string>);
  growInRun("number read, of zeros", '0', ' ', readBack<long>);
  growInRun("uuid read, of hyphens", '-', '-', [](const string& text) { return parseUuid(text).has_value(); });
  grow(
      "numbers read one after the other, count",
      [](std::size_t count) {
        string text;
        for (std::size_t i = 0; i < count; ++i) text << i << ' ';
        return text;
      },
      [](const string& text) {
        ValueReader reader(text);
        std::uint64_t sum = 0;
        for (std::uint64_t number = 0; reader.rest().size() > 1; sum += number) reader >> number;
        return sum;
      });
}

template <class Tables>
void registerTables() {
  using Key = typename Tables::Key;
  using Table = typename Tables::Ours;
  const auto make = bench::entriesOf<Tables>;
  const string name = Tables::kName;
  grow(name + "::keyToToken", make, bench::toToken<Table, Key>);
  grow(name + "::tokenToKey", make, bench::toKey<Table, Key>);
  grow(name + " filled", make, bench::fill<Table, Key>);
  grow(name + "::rmEntry and addEntry", make, [](const bench::Entries<Key>& entries) {
    return [filled = bench::filled<Table>(entries), next = bench::Cycle(entries.lookedUp)]() mutable {
      const auto& [token, key] = next();
      return filled->table.rmEntry(token, key) && filled->table.addEntry(token, key);
    };
  });
}

void registerPositions() {
  grow("UuidKeyTable::getKey, at random positions", bench::entriesOf<bench::UuidTables>,
       [](const bench::Entries<uuids::uuid>& entries) {
         return [filled = bench::filled<bench::UuidTables::Ours>(entries),
                 next = bench::Cycle(entries.lookedUp)]() mutable { return filled->table.getKey(next().token / 7); };
       });
}

void registerProgress() {
  grow(
      "Progress::addProgress, observers", [](std::size_t count) { return count; },
      [](std::size_t count) {
        auto hub = std::make_shared<DataStructures::Progress>();
        auto sum = std::make_shared<double>(0.0);
        for (std::size_t i = 0; i < count; ++i) hub->addObserver([sum](double value) { *sum += value; });
        return [hub, sum] { return hub->addProgress(1) + *sum; };
      });
}

}  // namespace

void bench::registerCases() {
  registerTexts();
  registerCodec();
  ::registerTables<StringTables>();
  ::registerTables<UuidTables>();
  registerPositions();
  registerProgress();
}
