#include "Tarn/DataStructures/PartialProgress.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

namespace {

using namespace Tarn::DataStructures;
using Values = std::vector<double>;
using Steps = std::vector<std::string>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

static_assert(!std::is_copy_constructible_v<Progress> && !std::is_move_constructible_v<PartialProgress>);

// A hub is made like any member of a program's own.
struct Task {
  std::string name;
  Progress progress;
};

TEST(Progress, IsMadeByDefault) {
  Task task{"x", {}};
  Progress two[2] = {};
  const auto make = []() -> Progress { return {}; };
  EXPECT_EQ(task.progress.addProgress(1) + two[1].addProgress(2) + make().addProgress(3), 6);
}

// A call, what it returns and what observers see of it: nothing, or one value.
struct Move {
  int line;
  char call;
  double argument, result;
  Values seen;
};

TEST(Progress, MovesAndNotifies) {
  const Move moves[] = {
      {__LINE__, 's', 0.0, 0.0, {}},
      {__LINE__, 's', 0.5, 0.5, {0.5}},
      {__LINE__, 's', 0.5, 0.0, {}},
      {__LINE__, 's', 0.25, -0.25, {0.25}},
      {__LINE__, 'a', 0.25, 0.5, {0.5}},
      {__LINE__, 'a', 0.0, 0.5, {}},
      {__LINE__, 'a', kNan, 0.5, {}},
      {__LINE__, 's', kNan, kNan, {}},
      {__LINE__, 'a', -0.75, -0.25, {-0.25}},
      {__LINE__, 's', 250.0, 250.25, {250.0}},
      {__LINE__, 's', kInfinity, kInfinity, {kInfinity}},
      {__LINE__, 's', kInfinity, kNan, {}},
      {__LINE__, 'a', -kInfinity, kNan, {kNan}},
      {__LINE__, 's', 1.0, kNan, {}},
  };
  Values seen;
  Progress hub([&seen](double value) { seen.push_back(value); });
  for (const Move& move : moves) {
    testing::ScopedTrace at(__FILE__, move.line, "");
    seen.clear();
    const double result = move.call == 's' ? hub.setProgress(move.argument) : hub.addProgress(move.argument);
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    EXPECT_TRUE(same(result, move.result)) << result;
    EXPECT_TRUE(std::equal(seen.begin(), seen.end(), move.seen.begin(), move.seen.end(), same));
  }
}

TEST(Progress, ReportsAStepOnce) {
  Steps seen;
  Progress hub({}, [&seen](std::string step) { seen.push_back("first " + step); });
  hub.addObserver([&seen](const std::string& step) { seen.push_back("second " + step); });
  hub.addObserver(std::function<void(std::string)>());
  hub.addObserver(std::function<void(double)>());
  for (const char* step : {"", "Reading", "Reading", "", "Reading"}) hub.setStep(step);
  EXPECT_EQ(seen, (Steps{"first Reading", "second Reading", "first ", "second ", "first Reading", "second Reading"}));
  EXPECT_EQ(hub.setProgress(1.0), 1.0);
}

TEST(Progress, ObserversMayCallTheHub) {
  Progress hub;
  Values late;
  hub.addObserver([&hub, &late](double value) {
    if (value == 1.0) hub.addObserver([&late](double added) { late.push_back(added); });
    if (value < 3.0) hub.addProgress(1.0);
  });
  hub.addObserver([&hub](const std::string& step) { hub.setStep(step.substr(1)); });
  hub.setProgress(1.0);
  EXPECT_THROW(hub.setStep("abc"), std::out_of_range);  // The observer's own, at the end of the text.
  // The one added in the first pass sees the passes that began after it, the innermost first.
  EXPECT_EQ(late, (Values{3.0, 2.0}));
}

TEST(Progress, ObserversMayChangeAndDestroyWhatTheyAreCalledFor) {
  Steps seen;
  auto text = std::make_unique<std::string>("a step that is too long for a string's own room");
  const std::string expected = *text;
  auto hub = std::make_unique<Progress>();
  hub->addObserver([&](const std::string& step) {
    seen.push_back(step);
    *text = "changed";
    text.reset();
    hub.reset();
  });
  hub->addObserver([&seen](const std::string& step) { seen.push_back(step); });
  hub->setStep(*text);
  EXPECT_EQ(seen, (Steps{expected, expected}));
  Values values;
  auto root = std::make_shared<Progress>([&values](double value) { values.push_back(value); });
  auto part = std::make_unique<PartialProgress>(root, 0.5);
  const auto destroy = [&part](double) { part.reset(); };
  part->addObserver(destroy);
  EXPECT_EQ(part->setProgress(2), 2.0);
  part = std::make_unique<PartialProgress>(std::move(root), 0.5);
  part->addObserver(destroy);
  EXPECT_EQ(part->addProgress(4), 4.0);
  EXPECT_EQ(values, (Values{1.0, 3.0}));
  auto top = std::make_shared<Progress>();
  top->addObserver([&part](const std::string&) { part.reset(); });
  part = std::make_unique<PartialProgress>(std::move(top), 1.0);
  part->setStep("the last owner of its parent goes");
  EXPECT_EQ(part, nullptr);
}

TEST(Progress, EachPassHasCopiesOfTheObservers) {
  Values counts;
  Progress hub([&counts, n = 0](double) mutable { counts.push_back(++n); });
  hub.setProgress(1.0);
  hub.setProgress(2.0);
  EXPECT_EQ(counts, (Values{1, 1}));
}

TEST(Progress, AThrowingObserverLeavesTheChange) {
  int behind = 0;
  Progress hub(
      [](double value) {
        if (value == 1.0) throw std::runtime_error("no");
      },
      [](const std::string& step) {
        if (step == "bad") throw std::runtime_error("no");
      });
  hub.addObserver([&behind](double) { ++behind; });
  EXPECT_THROW(hub.setProgress(1.0), std::runtime_error);
  EXPECT_EQ(behind, 0);
  EXPECT_EQ(hub.addProgress(0.0), 1.0);
  EXPECT_THROW(hub.setStep("bad"), std::runtime_error);
  EXPECT_NO_THROW(hub.setStep("bad"));  // It is the current step.
  EXPECT_EQ(hub.addProgress(1.0), 2.0);
  EXPECT_EQ(behind, 1);
}

TEST(PartialProgress, MovesItsParentByItsShare) {
  const auto root = std::make_shared<Progress>();
  Values own;
  {
    PartialProgress part(root, 0.5);
    part.addObserver([&own, &root](double value) { own.push_back(value + 10 * root->addProgress(0.0)); });
    EXPECT_EQ(part.setProgress(0.25), 0.25);
    EXPECT_EQ(part.setProgress(0.75), 0.5);
    EXPECT_EQ(part.addProgress(0.25), 1.0);
    EXPECT_EQ(root->addProgress(0.0), 0.5);
    EXPECT_EQ(part.setProgress(0.5), -0.5);
  }
  EXPECT_EQ(own, (Values{0.25, 2.0, 4.75, 5.5}));  // Each before the root moved.
  EXPECT_EQ(root->addProgress(0.0), 0.25);         // What it contributed stays.
}

TEST(PartialProgress, ScalesThroughEachLevel) {
  Steps steps;
  Values values;
  const auto root = std::make_shared<Progress>([&values](double value) { values.push_back(value); },
                                               [&steps](const std::string& step) { steps.push_back(step); });
  const auto middle = std::make_shared<PartialProgress>(root, 0.5);
  const auto none = std::make_shared<PartialProgress>(middle, 0.0);
  PartialProgress inner(std::make_shared<PartialProgress>(middle, 2.0), -0.25);
  inner.addObserver([&steps](const std::string&) { steps.emplace_back("never"); });
  inner.setProgress(1.0);
  inner.setProgress(1.0);
  none->addProgress(5.0);
  inner.setStep("Copying");
  EXPECT_EQ(values, (Values{-0.25}));
  EXPECT_EQ(steps, (Steps{"Copying"}));
  PartialProgress alone(nullptr, 1.0);
  EXPECT_EQ(alone.setProgress(2.0) + alone.addProgress(1.0), 5.0);
  EXPECT_NO_THROW(alone.setStep("nowhere"));
}

// Notes how far the stack of this thread has grown.
class StackMeter : public IProgress {
 public:
  double setProgress(double) override { return 0; }
  double addProgress(double) override {
    const char here = 0;
    reached = reinterpret_cast<std::uintptr_t>(&here);
    return 0;
  }
  void setStep(const std::string&) override { addProgress(0); }
  std::uintptr_t reached = 0;
};

// Released a level after the other, while parts that belong to observers are released within.
TEST(PartialProgress, ChainsAreAsLongAsMemoryAllows) {
  const auto meter = std::make_shared<StackMeter>();
  std::shared_ptr<IProgress> last = meter;
  int released = 0;
  for (int i = 0; i < 1000000; ++i) {
    auto part = std::make_shared<PartialProgress>(last, 1.0);
    if (i % 1000 == 0) {
      const auto side = std::make_shared<PartialProgress>(last, 1.0);
      part->addObserver([side, count = std::shared_ptr<int>(&released, [](int* n) { ++*n; })](double) {});
    }
    last = std::move(part);
  }
  last.reset();
  EXPECT_EQ(released, 1000);
  EXPECT_EQ(meter.use_count(), 1);
}

#ifndef TARN_TEST_SANITIZED  // By far more of it.
TEST(PartialProgress, ForwardingTakesTheStackThatTheHeaderSays) {
  const auto meter = std::make_shared<StackMeter>();
  std::shared_ptr<IProgress> last = meter;
  for (int i = 0; i < 1000; ++i) last = std::make_shared<PartialProgress>(last, 1.0);
  const char here = 0;
  const std::function<void()> moves[] = {[&] { last->setProgress(1); }, [&] { last->addProgress(1); },
                                         [&] { last->setStep("x"); }};
  for (const auto& move : moves) {
    move();
    EXPECT_LT(reinterpret_cast<std::uintptr_t>(&here) - meter->reached, 512000U);
  }
}
#endif

// Notes what reaches it, and its own end.
class Parent : public IProgress {
 public:
  explicit Parent(Steps& calls) : calls_(calls) {}
  Parent(const Parent&) = delete;
  Parent& operator=(const Parent&) = delete;
  ~Parent() override { calls_.emplace_back("gone"); }
  double setProgress(double) override { throw std::logic_error("never"); }
  double addProgress(double increment) override {
    calls_.push_back(std::to_string(static_cast<int>(increment)));
    if (increment > 8.0) throw std::runtime_error("no");
    return -1.0;
  }
  void setStep(const std::string& step) override { calls_.push_back(step); }

 private:
  Steps& calls_;
};

TEST(PartialProgress, ForwardsEveryCallAndKeepsItsParent) {
  Steps calls;
  {
    PartialProgress part(std::make_shared<Parent>(calls), 0.5);
    EXPECT_EQ(part.setProgress(6.0), 6.0);
    EXPECT_EQ(part.setProgress(6.0), 0.0);
    EXPECT_EQ(part.addProgress(0.0), 6.0);
    for (const char* step : {"", "a", "a"}) part.setStep(step);
    EXPECT_THROW(part.addProgress(20.0), std::runtime_error);
    EXPECT_EQ(part.addProgress(-2.0), 24.0);  // The own value had moved before its parent threw.
  }
  EXPECT_EQ(calls, (Steps{"3", "0", "0", "", "a", "a", "10", "-1", "gone"}));
}

TEST(PartialProgress, AThrowingObserverKeepsTheChangeFromTheParent) {
  const auto root = std::make_shared<Progress>();
  PartialProgress part(root, 1.0);
  part.addObserver([](double value) {
    if (value == 1.0) throw std::runtime_error("no");
  });
  EXPECT_THROW(part.addProgress(1.0), std::runtime_error);
  EXPECT_EQ(root->addProgress(0.0), 0.0);
  EXPECT_EQ(part.addProgress(1.0), 2.0);
  EXPECT_EQ(root->addProgress(0.0), 1.0);
}

}  // namespace
