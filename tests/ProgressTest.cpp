// What the property of properties/Progress.cpp leaves open: how hubs are made, lifetimes and depth.
#include "Tarn/DataStructures/PartialProgress.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace {

using namespace Tarn::DataStructures;
using Values = std::vector<double>;
using Steps = std::vector<std::string>;

static_assert(!std::is_copy_constructible_v<Progress> && !std::is_move_constructible_v<PartialProgress>);

TEST(Progress, TakesItsFirstObserversWhenItIsMade) {
  Values values;
  Steps steps;
  const auto make = []() -> Progress { return {}; };  // As a program's own members are made, too.
  EXPECT_EQ(make().addProgress(3), 3);
  Progress hub([&values](double value) { values.push_back(value); },
               [&steps](const std::string& step) { steps.push_back(step); });
  hub.addObserver(std::function<void(std::string)>());  // Empty ones are ignored.
  hub.addObserver(std::function<void(double)>());
  EXPECT_EQ(hub.setProgress(0.5) + hub.addProgress(0.25) + hub.setProgress(0.75), 1.25);
  for (const char* step : {"", "Reading", "Reading", ""}) hub.setStep(step);
  EXPECT_EQ(values, (Values{0.5, 0.75}));
  EXPECT_EQ(steps, (Steps{"Reading", ""}));
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
  std::vector<std::vector<unsigned char>> scrap;  // What takes the place of what is destroyed.
  const auto destroy = [&part, &scrap](double) {
    part.reset();
    scrap.emplace_back(sizeof(PartialProgress), static_cast<unsigned char>(0xFF));
  };
  scrap.reserve(2);
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
    meter->reached = 0;
    move();
    EXPECT_LT(reinterpret_cast<std::uintptr_t>(&here) - meter->reached, 512000U);
  }
}
#endif

}  // namespace
