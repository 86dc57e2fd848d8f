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
  bench::compare(name, {1 << 10, 1 << 11, 1 << 12, 1 << 13, 1 << 14, 1 << 15, 1 << 16}, make, function);
}

// Inputs: words with few escapes, and as many characters as the size says, with a last one behind them.
string words(std::size_t size) { return bench::kEuropean.withFewEscapes(size); }
string ascii(std::size_t size) { return bench::ascii(size); }
auto run(char character, char last) {
  return [character, last](std::size_t size) { return string(size, character) + last; };
}
string lines(std::size_t count) {
  string text;
  for (std::size_t i = 0; i < count; ++i) text += "2024-03-05T14:07:09\n";
  return text;
}
wstring wideRun(std::size_t size) { return wstring(size, L'\u00e9'); }
Strings parts(std::size_t count) { return Strings(count, "Tower"); }
string numbers(std::size_t count) {
  string text;
  for (std::size_t i = 0; i < count; ++i) text << i << ' ';
  return text;
}
StringMap map(std::size_t count) {
  StringMap map;
  for (std::size_t i = 0; i < count; ++i) map["property " + std::to_string(i)] = "T\u00fcrmchen";
  return map;
}

template <class Value>
Value readBack(const string& text) {
  ValueReader reader(text);
  Value value{};
  reader >> value;
  return value;
}

std::uint64_t sumOf(const string& text) {
  ValueReader reader(text);
  std::uint64_t sum = 0;
  for (std::uint64_t number = 0; reader.rest().size() > 1; sum += number) reader >> number;
  return sum;
}

string escaped(string text) {
  controlsToEsc(text, true);
  return text;
}

using bench::changed;

void registerTexts() {
  grow("wide", words, [](const string& text) { return wide(text); });
  grow("narrow", wideRun, [](const wstring& text) { return narrow(text, '?'); });
  grow("wide text written", wideRun, bench::written<wstring>);
  grow("controlsToEsc", words, escaped);
  grow("controlsToEsc without unicodeEscapes", words, changed([](string& text) { controlsToEsc(text, false); }));
  grow(
      "escToControls", [](std::size_t size) { return escaped(words(size)); },
      changed([](string& text) { escToControls(text, true); }));
  grow("eatwhite", run(' ', 'x'), changed(eatwhite));
  grow("eatWS", run(' ', 'x'), [](const string& text) { return (std::istringstream(text) >> eatWS).peek(); });
  grow("word from a stream", run('x', ' '), [](const string& text) {
    std::istringstream stream(text);
    std::optional<string> word;
    stream >> word;
    return word;
  });
  grow("ltrim", run(' ', 'x'), changed(ltrim));
  grow("rtrim", run(' ', ' '), changed(rtrim));
  grow("isAscii", run('x', 'x'), [](const string& text) { return isAscii(text); });
  grow("findAlphaNum", run(' ', 'x'), [](const string& text) { return findAlphaNum(text, 0); });
  grow("findNonWS", run(' ', 'x'), [](const string& text) { return findNonWS(text, 0); });
  grow("findValidNumberChar", run('x', '1'), [](const string& text) { return findValidNumberChar(text, 0); });
  grow("findLastOf a character", run('x', 'y'), [](const string& text) { return findLastOf(text, '!', 0); });
  grow("findLastOf a short text", run('x', 'y'), [](const string& text) { return findLastOf(text, "!xxx"); });
  grow("findLastOf a long text, repetitive", run('x', 'x'),
       [](const string& text) { return findLastOf(text, text.substr(text.size() / 2) + 'y'); });
  grow("startsWith", run('x', 'y'), [](const string& text) { return startsWith(text, string(text.data())); });
  grow("replaceAll", words, changed([](string& text) { replaceAll(text, " ", "__"); }));
  grow("replaceAll of a long text, repetitive", run('x', 'x'),
       changed([](string& text) { replaceAll(text, text.substr(text.size() / 2) + 'y', ""); }));
  grow("replaceAll of wide text", wideRun, [](wstring text) {
    replaceAll(text, L"\u00e9", L"__");
    return text;
  });
  grow("implode, parts", parts, [](const Strings& parts) { return implode(parts, ", "); });
  grow("compareIgnoreCase", words, [](const string& text) { return compareIgnoreCase(text, string(text.data())); });
  grow("compareIgnoreCase with wide text", ascii,
       [](const string& text) { return compareIgnoreCase(text, wstring(text.begin(), text.end())); });
  grow("incrementIndex", run('9', '9'), changed(incrementIndex));
  grow("fromIsoTimeStrIgnoringTimeZone, lines", lines,
       [](const string& text) { return Time::fromIsoTimeStrIgnoringTimeZone(text).getLastTime(); });
}

void registerCodec() {
  grow("map written, entries", map, bench::written<StringMap>);
  grow(
      "map read, entries", [](std::size_t count) { return bench::written(map(count)); }, readBack<StringMap>);
  grow("string read", run('x', '\n'), readBack<string>);
  grow("number read, of zeros", run('0', ' '), readBack<long>);
  grow("uuid read, of hyphens", run('-', '-'), [](const string& text) { return parseUuid(text).has_value(); });
  grow("numbers read one after the other", numbers, sumOf);
}

template <class Tables>
void registerTables() {
  using Table = typename Tables::Ours;
  const auto make = bench::entriesOf<Tables>;
  const string name = Tables::kName;
  grow(name + "::keyToToken", make, bench::kFound<Table>);
  grow(name + "::tokenToKey", make, bench::kToKey<Table>);
  grow(name + " filled", make, bench::kFilled<Table>);
  grow(name + "::rmEntry and addEntry", make, bench::kRemoved<Table>);
}

void registerPositions() {
  grow("UuidKeyTable::getKey, at random positions", bench::entriesOf<bench::UuidTables>,
       [](const bench::Entries<uuids::uuid>& entries) {
         return [filled = bench::filled<bench::UuidTables::Ours>(entries),
                 next = bench::Cycle(entries.lookedUp)]() mutable { return filled->table.getKey(next().token / 7); };
       });
}

void registerProgress() {
  const auto observers = [](std::size_t count) { return count; };
  grow("Progress::addProgress, observers", observers, [](std::size_t count) {
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
  ::registerTables<StringTables<24>>();
  ::registerTables<UuidTables>();
  registerPositions();
  registerProgress();
}
