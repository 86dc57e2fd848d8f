// What tables and texts take of memory, counted in the bytes that are asked of operator new.
#include "Tarn/Tarn.h"
#include "bench/CountingNew.h"
#include "bench/Tables.h"

namespace {

// Registers what `measure` finds at a size.
void amount(const std::string& name, std::int64_t size, std::function<double(std::size_t)> measure) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [measure](benchmark::State& state) {
                                 for (auto _ : state)
                                   state.counters["amount"] = measure(static_cast<std::size_t>(state.range(0)));
                               })
      ->Arg(size)
      ->Iterations(1);
}

template <class Table, class Tables>
void bytesAKey(const std::string& side) {
  amount(Tables::kName + ", bytes a key/" + side, 100000, [](std::size_t count) {
    const auto entries = bench::entriesOf<Tables>(count);
    const std::size_t before = bench::allocated;
    const auto table = bench::filled<Table>(entries);
    return static_cast<double>(bench::allocated - before) / static_cast<double>(count);
  });
}

template <class Tables>
void registerTables() {
  bytesAKey<typename Tables::Ours, Tables>("ours");
  bytesAKey<typename Tables::Std, Tables>(Tables::kStd);
  bytesAKey<typename Tables::Absl, Tables>(Tables::kAbsl);
  bytesAKey<bench::MultiIndex<typename Tables::Key>, Tables>("boost::multi_index");
}

// The most that is allocated at a time, and what the result keeps, for each byte of the input.
template <class Input, class Function>
void peakAByte(const std::string& name, Input (*make)(std::size_t), Function function) {
  const auto measure = [make, function](bool isPeak) {
    return [make, function, isPeak](std::size_t size) {
      const Input input = make(size);
      const std::size_t before = bench::allocated;
      bench::peak = before;
      const auto result = function(input);
      return static_cast<double>((isPeak ? bench::peak : bench::allocated) - before) / static_cast<double>(size);
    };
  };
  amount(name + ", peak bytes a byte/ours", 1 << 20, measure(true));
  amount(name + ", peak bytes a byte/the result alone", 1 << 20, measure(false));
}

std::string ascii(std::size_t size) { return bench::ascii(size); }
std::string european(std::size_t size) { return bench::kEuropean.withFewEscapes(size); }

using bench::changed;

void registerTexts() {
  using std::string;
  peakAByte("wide of ASCII", ::ascii, [](const string& text) { return Tarn::wide(text); });
  peakAByte("wide of European text", european, [](const string& text) { return Tarn::wide(text); });
  peakAByte("controlsToEsc", european, changed([](string& text) { Tarn::controlsToEsc(text, true); }));
  peakAByte("escToControls", ::ascii, changed([](string& text) { Tarn::escToControls(text, true); }));
  peakAByte("replaceAll, growing", ::ascii, changed([](string& text) { Tarn::replaceAll(text, " ", "__"); }));
  peakAByte("replaceAll, shrinking", ::ascii, changed([](string& text) { Tarn::replaceAll(text, "er ", ""); }));
  peakAByte("trim", ::ascii, changed(Tarn::trim));
  peakAByte("string read", ::ascii, [](const string& text) {
    Tarn::ValueReader reader(text);
    string value;
    reader >> value;
    return value;
  });
}

}  // namespace

void bench::registerCases() {
  ::registerTables<StringTables<24>>();
  ::registerTables<UuidTables>();
  registerTexts();
}
