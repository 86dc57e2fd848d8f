// Chains of reads of every type. Input: a letter for each read, '|', the text.
#include <complex>
#include <iterator>
#include <stdexcept>
#include <tuple>

#include "tests/Plain.h"
#include "tests/TimeZones.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn;

// Values that reads start from: each keeps what the last read of its type left.
using Values =
    std::tuple<char, signed char, unsigned char, bool, short, unsigned short, int, unsigned, long, unsigned long long,
               float, double, long double, std::complex<float>, std::string, StringMap, uuids::uuid>;

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

// What `tryRead` gives has to be what the rule reads; whether it is whole is for the rows of ValueReaderTest.cpp to
// say.
template <class T>
void requireSame(const std::optional<T>& tried, const ValueReader& behind, const T& expected, const std::string& rest) {
  reached(tried ? "a value tried and read" : "no value for a try");
  require(!tried || (isSame(*tried, expected) && behind.rest() == rest), "what is tried is read by the rule");
}

template <class T>
void readByAll(Sources& sources, T& value) {
  T expected = value;
  T byBuffer = value;
  const std::size_t size = sources.buffer.size();
  ValueReader trial = sources.reader;
  const auto tried = trial.tryRead<T>();
  require(tried || trial.rest() == sources.text, "a try in vain takes nothing");
  const std::string error = plainTake(sources.text, expected);
  require(!tried || error.empty(), "nothing is tried and read that throws");
  requireSame(tried, trial, expected, sources.text);
  require(wordsOf<std::out_of_range>([&] { sources.reader >> value; }) == error, "the reader throws as its rule");
  require(wordsOf<std::out_of_range>([&] { sources.buffer >> byBuffer; }) == error, "the buffer throws as its rule");
  require(isSame(value, expected) && isSame(byBuffer, expected), "reader and buffer read what the rule reads");
  require(sources.reader.rest() == sources.text && sources.buffer == sources.text, "reader and buffer keep the rest");
  require(sources.buffer.size() <= size, "a buffer never grows");
}

template <class T>
void read(Sources& sources) {
  readByAll(sources, std::get<T>(sources.values));
}

void readTime(Sources& sources) {
  Time time;
  time.setTime(77.0);
  readByAll(sources, time);
}

void readJson(Sources& sources) {
  JsonValue value{"kept"};
  ValueReader reader(sources.text);
  reader >> value;
  const std::string rest(reader.rest());
  std::string expected;
  plainTake(sources.text, expected);
  require(value.text == expected && rest == sources.text, "JSON is read as a string");
  sources.reader >> value;
  sources.buffer >> value;
}

// As a program does that looks for the next good value.
void skipOne(Sources& sources) {
  sources.text.erase(0, 1);
  sources.buffer.erase(0, 1);
  sources.reader.skip(1);
}

void takeLine(Sources& sources) {
  const std::optional<std::string_view> line = sources.reader.takeLine();
  require(line.has_value() == !sources.text.empty(), "there is a line but at the end");
  if (!line) return;
  require(*line == sources.text.substr(0, sources.text.find('\n')), "a line goes up to its line feed");
  sources.text.erase(0, line->size() + 1);
  sources.buffer = sources.text;
}

constexpr void (*kReads[])(Sources&) = {read<char>,
                                        read<signed char>,
                                        read<unsigned char>,
                                        read<bool>,
                                        read<short>,
                                        read<unsigned short>,
                                        read<int>,
                                        read<unsigned>,
                                        read<long>,
                                        read<unsigned long long>,
                                        read<float>,
                                        read<double>,
                                        read<std::complex<float>>,
                                        read<std::string>,
                                        read<StringMap>,
                                        read<uuids::uuid>,
                                        readTime,
                                        readJson,
                                        skipOne,
                                        takeLine,
                                        read<long double>};

}  // namespace

void checkReaders(Input input) {
  const TimeZone zone("UTC");
  const std::string reads = input.text();
  const std::string text = input.rest();
  Sources sources{text, text, ValueReader(text), {}};
  std::get<std::string>(sources.values) = "before";
  std::get<StringMap>(sources.values) = {{"old", "entry"}};
  for (const char read : reads) kReads[static_cast<unsigned char>(read - 'a') % std::size(kReads)](sources);
}
