// What the benchmark programs share: a case times our function beside its peers, on the same inputs in the same run.
//
//     compare("wide of ASCII", {64, 4096}, ascii, [](const std::string& text) { return Tarn::wide(text); })
//         .peer("utf8cpp", [](const std::string& text) { return ...; })
//         .limit("widening loop", [](const std::string& text) { return ...; });
//
// registers benchmarks named "case/side/size", which is how bench/report.py groups them.
#ifndef BENCH_BENCH_H_
#define BENCH_BENCH_H_

#include <benchmark/benchmark.h>

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

// A side of a case is a function of the input. When it gives a function in turn, that one is timed, and what it holds,
// such as a filled table, is prepared once.
template <class Side, class Input>
auto bind(const Side& side, const Input& input) {
  using Result = std::invoke_result_t<const Side&, const Input&>;
  if constexpr (std::invocable<Result&>) {
    return side(input);
  } else {
    return [side, &input] { return side(input); };
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

// A side that takes one of the input's values at a call.
template <class Use>
auto each(Use use) {
  return [use](const auto& values) { return [use, next = Cycle(values)]() mutable { return use(next()); }; };
}

template <class Input, class Ours>
class Case {
 public:
  Case(std::string name, Sizes sizes, std::function<Input(std::size_t)> make, Ours ours)
      : name_(std::move(name)),
        sizes_(std::move(sizes)),
        inputs_(std::make_shared<Lazy<Input>>(std::move(make))),
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

  // A limit that peers are spared: the report takes it from our time before it compares with them.
  template <class Side>
  Case& beyond(const std::string& name, Side side) {
    return add("beyond " + name, side, Unchecked{});
  }

  // Settings of the side that was added last.
  Case& threads(int count) {
    last_->Threads(count);
    return *this;
  }
  Case& once() {
    last_->Iterations(1);
    return *this;
  }
  Case& grows() {
    last_->Complexity();
    return *this;
  }

 private:
  struct Unchecked {};

  template <class Side, class Check>
  Case& add(const std::string& name, Side side, Check check) {
    struct Call {
      decltype(bind(std::declval<const Side&>(), std::declval<const Input&>())) run;
      bool isRight;
    };
    const auto calls = std::make_shared<Lazy<Call>>([inputs = inputs_, side, check](std::size_t size) {
      const Input& input = (*inputs)(size);
      Call call{bind(side, input), true};
      if constexpr (!std::same_as<Check, Unchecked>) call.isRight = check(input, call.run());
      return call;
    });
    const auto time = [calls, isSized = !sizes_.empty()](benchmark::State& state) {
      const std::int64_t size = isSized ? state.range(0) : 0;
      Call& call = (*calls)(static_cast<std::size_t>(size));
      if (!call.isRight) state.SkipWithError("the result differs from ours");
      for (auto _ : state) benchmark::DoNotOptimize(call.run());
      state.SetComplexityN(size);
    };
    last_ = benchmark::RegisterBenchmark((name_ + '/' + name).c_str(), time);
    for (const std::int64_t size : sizes_) last_->Arg(size);
    return *this;
  }

  std::string name_;
  Sizes sizes_;
  std::shared_ptr<Lazy<Input>> inputs_;
  Ours ours_;
  benchmark::internal::Benchmark* last_ = nullptr;
};

// A case on inputs that `make` makes of sizes.
template <class Make, class Ours>
auto compare(std::string name, Sizes sizes, Make make, Ours ours) {
  using Input = std::invoke_result_t<Make, std::size_t>;
  return Case<Input, Ours>(std::move(name), std::move(sizes), std::move(make), std::move(ours));
}

// A case on one input.
template <class Input, class Ours>
auto compare(std::string name, Input input, Ours ours) {
  return Case<Input, Ours>(
      std::move(name), {}, [input = std::move(input)](std::size_t) { return input; }, std::move(ours));
}

}  // namespace bench

#endif  // BENCH_BENCH_H_
