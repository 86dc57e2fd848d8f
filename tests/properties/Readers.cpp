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
using Values = std::tuple<char, signed char, unsigned char, bool, short, unsigned short, int, unsigned, long,
                          unsigned long long, float, double, std::complex<float>, std::string, StringMap, uuids::uuid>;

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

template <class T>
void readByAll(Sources& sources, T& value) {
  T expected = value;
  T byBuffer = value;
  const std::size_t size = sources.buffer.size();
  const std::string error = plainTake(sources.text, expected);
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
                                        readJson};

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
