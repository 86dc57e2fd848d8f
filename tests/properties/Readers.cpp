// Chains of reads of every type. Input: a letter for each read, '|', the text.
#include <complex>
#include <stdexcept>
#include <tuple>

#include "tests/Plain.h"
#include "tests/TimeZones.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn;

// What is skipped or taken without a value.
struct Skip {};
struct SkipToValue {};
struct Line {};

// Values that reads start from: each keeps what the last read of its type left.
using Values = std::tuple<char, signed char, unsigned char, bool, short, unsigned short, int, unsigned, long,
                          unsigned long long, float, double, std::complex<float>, std::string, StringMap, uuids::uuid,
                          Time, JsonValue, Skip, Line, long double, SkipToValue>;

struct Sources {
  std::string text, buffer;
  ValueReader reader;
  Values values;
};

template <class T>
bool isSame(const T& a, const T& b) {
  return a == b;
}
bool isSame(const Time& a, const Time& b) { return a.getLastTime() == b.getLastTime(); }
bool isSame(const JsonValue& a, const JsonValue& b) { return a.text == b.text; }

template <class T>
void read(Sources& sources, T& value) {
  T expected = value;
  T byBuffer = value;
  ValueReader trial = sources.reader;
  const std::string before = sources.text;
  const std::optional<T> tried = trial.tryRead<T>();
  bool isWhole = false;
  const std::string error = wordsOf<std::out_of_range>([&] { isWhole = plainTake(sources.text, expected); });
  reached(isWhole ? "a value tried and read" : "no value for a try");
  require(tried.has_value() == isWhole, "only a whole value is tried and read");
  require(!tried || isSame(*tried, expected), "what is tried is read by the rule");
  require(trial.rest() == (tried ? sources.text : before), "a try takes what the rule takes, or nothing");
  require(wordsOf<std::out_of_range>([&] { sources.reader >> value; }) == error, "the reader throws as its rule");
  require(wordsOf<std::out_of_range>([&] { sources.buffer >> byBuffer; }) == error, "the buffer throws as its rule");
  require(isSame(value, expected) && isSame(byBuffer, expected), "reader and buffer read what the rule reads");
}

// As a program does that looks for the next good value.
void read(Sources& sources, Skip&) {
  sources.text.erase(0, 1);
  sources.buffer.erase(0, 1);
  sources.reader.skip(1);
}

void read(Sources& sources, SkipToValue&) {
  const std::size_t value = findValue(sources.text);
  require(sources.reader.skipToValue() == (value < sources.text.size()), "a value is found where one begins");
  if (value < sources.text.size()) sources.text.erase(0, value);
  sources.buffer = sources.text;
}

void read(Sources& sources, Line&) {
  const std::optional<std::string_view> line = sources.reader.takeLine();
  require(line.has_value() == !sources.text.empty(), "there is a line but at the end");
  if (!line) return;
  require(*line == sources.text.substr(0, sources.text.find('\n')), "a line goes up to its line feed");
  sources.text.erase(0, line->size() + 1);
  sources.buffer = sources.text;
}

// Reads into the value of a number.
template <std::size_t... kNumbers>
void readNumbered(Sources& sources, std::size_t number, std::index_sequence<kNumbers...>) {
  static_cast<void>(((kNumbers == number && (read(sources, std::get<kNumbers>(sources.values)), true)) || ...));
}

}  // namespace

void checkReaders(Input input) {
  const TimeZone zone("UTC");
  const std::string reads = input.text();
  const std::string text = input.rest();
  Sources sources{text, text, ValueReader(text), {}};
  std::get<std::string>(sources.values) = "before";
  std::get<StringMap>(sources.values) = {{"old", "entry"}};
  std::get<Time>(sources.values).setTime(77.0);
  constexpr std::size_t kCount = std::tuple_size_v<Values>;
  for (const char read : reads) {
    readNumbered(sources, static_cast<unsigned char>(read - 'a') % kCount, std::make_index_sequence<kCount>());
    require(sources.reader.rest() == sources.text && sources.buffer == sources.text, "each keeps the same rest");
  }
}
