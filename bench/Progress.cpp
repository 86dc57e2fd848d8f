#include "Tarn/DataStructures/Progress.h"

#include "bench/Bench.h"

#include <boost/signals2.hpp>

namespace {

// Moves a hub with some observers, which add up what they are told; gives the sum.
template <class Hub>
auto notify(std::size_t observers) {
  struct Observed {
    Hub hub;
    double sum = 0;
    double value = 0;
  };
  auto observed = std::make_shared<Observed>();
  for (std::size_t i = 0; i < observers; ++i) {
    observed->hub.addObserver([raw = observed.get()](double value) { raw->sum += value; });
  }
  return [observed] {
    observed->hub.setProgress(observed->value += 1);
    return observed->sum;
  };
}

struct Signal {
  boost::signals2::signal<void(double)> signal;
  template <class F>
  void addObserver(F observer) {
    signal.connect(observer);
  }
  void setProgress(double value) { signal(value); }
};

struct Functions {
  std::vector<std::function<void(double)>> functions;
  template <class F>
  void addObserver(F observer) {
    functions.emplace_back(observer);
  }
  void setProgress(double value) {
    for (const auto& function : functions) function(value);
  }
};

}  // namespace

void bench::registerCases() {
  const auto observers = [](std::size_t count) { return count; };
  auto progress = compare("notify, observers", {0, 1, 8}, observers, notify<Tarn::DataStructures::Progress>);
  progress.limit("bare functions", notify<Functions>);
  progress.peer("boost::signals2", notify<Signal>);
}
