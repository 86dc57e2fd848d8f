// What the benchmark programs share: a case times our function beside its peers, on the same inputs in the same run.
//
//     comparePool("wide of ASCII", {64, 4096}, ascii, [](const std::string& text) { return Tarn::wide(text); })
//         .peer("utf8cpp", [](const std::string& text) { return ...; })
//         .limitCopy();
//
// registers benchmarks named "case/side/size", which is how bench/report.py groups them.
#ifndef BENCH_BENCH_H_
#define BENCH_BENCH_H_

#include <benchmark/benchmark.h>

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace bench {

// Each program defines it, to register its cases.
void registerCases();

using Sizes = std::vector<std::int64_t>;

// A value for each size, made when it is first asked for and kept: what a filter leaves out costs nothing.
template <class Value>
class Lazy {
 public:
  explicit Lazy(std::function<Value(std::size_t)> make) : make_(std::move(make)) {}
  Value& operator()(std::size_t size) {
    const std::scoped_lock lock(mutex_);
    auto found = values_.find(size);
    if (found == values_.end()) found = values_.emplace(size, make_(size)).first;
    return found->second;
  }

 private:
  std::function<Value(std::size_t)> make_;
  std::map<std::size_t, Value> values_;
  std::mutex mutex_;
};

// A side of a case is a function of an input. When it gives a function in turn, that one is timed, and what it holds,
// such as a filled table, is prepared once. Side and input must stay.
template <class Side, class Input>
auto bind(const Side& side, const Input& input) {
  using Result = std::invoke_result_t<const Side&, const Input&>;
  if constexpr (std::invocable<Result&>) {
    return side(input);
  } else {
    return [&side, &input] { return side(input); };
  }
}

template <class A, class B>
bool same(const A& a, const B& b) {
  if constexpr (std::integral<A> && std::integral<B> && !std::same_as<A, B>) {
    return static_cast<std::int64_t>(a) == static_cast<std::int64_t>(b);
  } else if constexpr (requires { a == b; }) {
    return a == b;
  } else {
    static_assert(std::is_trivially_copyable_v<A> && std::is_trivially_copyable_v<B> && sizeof(A) == sizeof(B));
    return std::memcmp(&a, &b, sizeof(A)) == 0;
  }
}

// Walks through values, round and round.
template <class T>
class Cycle {
 public:
  explicit Cycle(const std::vector<T>& values) : values_(&values) {}
  const T& operator()() {
    if (next_ == values_->size()) next_ = 0;
    return (*values_)[next_++];
  }

 private:
  const std::vector<T>* values_;
  std::size_t next_ = 0;
};

template <class Input, class Ours>
class Case {
 public:
  using Pool = std::vector<Input>;

  Case(std::string name, Sizes sizes, std::function<Pool(std::size_t)> make, Ours ours)
      : name_(std::move(name)),
        sizes_(std::move(sizes)),
        inputs_(std::make_shared<Lazy<Pool>>(std::move(make))),
        ours_(std::move(ours)) {
    add("ours", ours_, Unchecked{});
  }

  // Another way to the same result. `view` turns its result into one that can be compared with ours, untimed.
  template <class Side, class View = std::identity>
  Case& peer(const std::string& name, Side side, View view = {}) {
    return add(name, side, [ours = ours_, view](const Input& input, const auto& result) {
      return same(bind(ours, input)(), view(result));
    });
  }

  // What bounds us from below; it need not give the same result.
  template <class Side>
  Case& limit(const std::string& name, Side side) {
    return add("limit " + name, side, Unchecked{});
  }

  // Copying the result, which no way to it can do without.
  Case& limitCopy() {
    return limit("copy",
                 [ours = ours_](const Input& input) { return [result = bind(ours, input)()] { return result; }; });
  }

  // All sides that have been added or will be run in so many threads at once.
  Case& threads(int count) {
    threads_ = count;
    last_->Threads(count);
    return *this;
  }

 private:
  struct Unchecked {};

  template <class Side, class Check>
  Case& add(const std::string& name, Side side, Check check) {
    struct Calls {
      std::vector<decltype(bind(std::declval<const Side&>(), std::declval<const Input&>()))> runs;
      bool areRight = true;
    };
    const auto calls = std::make_shared<Lazy<Calls>>([inputs = inputs_, side, check](std::size_t size) {
      Calls made;
      for (const Input& input : (*inputs)(size)) {
        made.runs.push_back(bind(side, input));
        if constexpr (!std::same_as<Check, Unchecked>) {
          made.areRight = made.areRight && check(input, made.runs.back()());
        }
      }
      return made;
    });
    const auto time = [calls, isSized = !sizes_.empty()](benchmark::State& state) {
      const std::int64_t size = isSized ? state.range(0) : 0;
      auto& [runs, areRight] = (*calls)(static_cast<std::size_t>(size));
      if (!areRight) state.SkipWithError("the result differs from ours");
      std::size_t next = 0;
      for (auto _ : state) {
        benchmark::DoNotOptimize(runs[next]());
        next = next + 1 < runs.size() ? next + 1 : 0;
      }
    };
    last_ = benchmark::RegisterBenchmark((name_ + '/' + name).c_str(), time);
    for (const std::int64_t size : sizes_) last_->Arg(size);
    if (threads_ > 1) last_->Threads(threads_);
    return *this;
  }

  std::string name_;
  Sizes sizes_;
  std::shared_ptr<Lazy<Pool>> inputs_;
  Ours ours_;
  int threads_ = 1;
  benchmark::internal::Benchmark* last_ = nullptr;
};

// A case on one input of each size.
template <class Make, class Ours>
auto compare(std::string name, Sizes sizes, Make make, Ours ours) {
  using Input = std::invoke_result_t<Make, std::size_t>;
  const auto single = [make](std::size_t size) {
    std::vector<Input> pool;
    pool.push_back(make(size));
    return pool;
  };
  return Case<Input, Ours>(std::move(name), std::move(sizes), single, std::move(ours));
}

// A case that takes one after the other of many inputs: from a single one, a processor learns how each branch goes.
template <class Input, class Ours>
auto comparePool(std::string name, std::vector<Input> pool, Ours ours) {
  return Case<Input, Ours>(
      std::move(name), {}, [pool = std::move(pool)](std::size_t) { return pool; }, std::move(ours));
}

// The same with inputs that `make` makes of a size, of so many bytes each, and a seed.
template <class Make, class Ours>
auto comparePool(std::string name, Sizes sizes, Make make, Ours ours, std::size_t bytes = 1) {
  using Input = std::invoke_result_t<Make, std::size_t, std::uint64_t>;
  const auto many = [make, bytes](std::size_t size) {
    const std::size_t count = std::clamp<std::size_t>((std::size_t{1} << 19) / (size * bytes), 1, 4096);
    std::vector<Input> pool;
    for (std::uint64_t seed = 1; seed <= count; ++seed) pool.push_back(make(size, seed));
    return pool;
  };
  return Case<Input, Ours>(std::move(name), std::move(sizes), many, std::move(ours));
}

}  // namespace bench

#endif  // BENCH_BENCH_H_
