// A hub and its parts against a plain model. Input: an operation each, of four bytes: what, at which hub, two numbers.
#include <cmath>
#include <limits>
#include <sstream>
#include <vector>

#include "Tarn/DataStructures/PartialProgress.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn::DataStructures;

// Written where something happens, the same for the library and for its model.
std::ostringstream* transcript = nullptr;

void note(const std::string& what, double number) {
  *transcript << what << ' ' << (std::isnan(number) ? "none" : std::to_string(number)) << '\n';
}

// What a program derives itself, as the parent of a part.
class Outside : public IProgress {
 public:
  double setProgress(double) override { throw std::logic_error("parts only add"); }
  double addProgress(double increment) override {
    note("outside", increment);
    if (increment == 2.0) throw std::runtime_error("outside");
    return -1.0;
  }
  void setStep(const std::string& step) override { note("outside " + step, 0.0); }
};

// A hub, or a part with a share: nothing but what is promised.
class Plain : public IProgress {
 public:
  Plain() = default;
  Plain(std::shared_ptr<IProgress> parent, double share) : isPart_(true), parent_(std::move(parent)), share_(share) {}

  void addObserver(const std::function<void(double)>& callback) { observers_.push_back(callback); }
  void addObserver(const std::function<void(std::string)>& callback) { stepObservers_.push_back(callback); }
  double setProgress(double value) override {
    const double difference = value - value_;
    move(difference, value);
    return difference;
  }
  double addProgress(double increment) override { return move(increment, value_ + increment); }
  void setStep(const std::string& step) override {
    if (parent_) parent_->setStep(step);
    if (isPart_ || step == step_) return;
    step_ = step;
    for (auto observer : std::vector(stepObservers_)) observer(step);
  }

 private:
  double move(double difference, double value) {
    const bool moves = !std::isnan(difference) && difference != 0.0;
    const double result = moves ? value : value_;
    value_ = result;
    if (moves) {
      for (auto observer : std::vector(observers_)) observer(value);
    }
    if (parent_) parent_->addProgress(difference * share_);
    return result;
  }

  bool isPart_ = false;
  std::shared_ptr<IProgress> parent_;
  double share_ = 0.0;
  double value_ = 0.0;
  std::string step_;
  std::vector<std::function<void(double)>> observers_;
  std::vector<std::function<void(std::string)>> stepObservers_;
};

// Counts its own calls, fails at 2, and changes its hub at 1: what it adds there is called from the next pass on.
template <class Hub>
std::function<void(double)> observerOf(Hub* hub, const std::string& name) {
  return [hub, name, calls = 0](double value) mutable {
    note(name + std::to_string(++calls), value);
    if (value == 2.0) throw std::runtime_error("observer");
    if (value != 1.0) return;
    hub->setStep("inside");
    hub->addObserver(std::function<void(double)>([name](double late) { note(name + "late", late); }));
    hub->addProgress(0.5);
  };
}

template <class Hub, class Part>
std::string transcriptOf(Input input) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNumbers[] = {0.0, 1.0, 0.5, -1.0, 2.0, 0.25, -0.5, 4.0, 3.0, -kInfinity, kInfinity, NAN};
  std::ostringstream text;
  transcript = &text;
  std::vector<std::shared_ptr<Hub>> hubs = {std::make_shared<Hub>(),
                                            std::make_shared<Part>(std::make_shared<Outside>(), 0.5)};
  for (int i = 0; i < 100 && !input.isEmpty(); ++i) {
    const std::size_t operation = input.below(9);
    const auto& hub = hubs[input.below(hubs.size())];
    const double number = kNumbers[input.below(std::size(kNumbers))];
    const std::string name = "observer " + std::to_string(i) + ' ';
    const std::string step(input.below(3), 'a');
    try {
      if (operation == 0) {
        hubs.push_back(std::make_shared<Part>(std::isnan(number) ? nullptr : hub, number));
      } else if (operation == 1) {
        hub->addObserver(observerOf(hub.get(), name));
      } else if (operation == 2) {
        hub->addObserver(std::function<void(std::string)>([name](const std::string& s) { note(name + s, 0.0); }));
      } else if (operation == 3) {
        hub->setStep(step);
      } else {
        note("result", operation % 2 == 0 ? hub->setProgress(number) : hub->addProgress(number));
      }
    } catch (const std::runtime_error& error) {
      note(error.what(), 0.0);
    }
  }
  return text.str();
}

}  // namespace

void checkProgress(Input input) {
  const std::string seen = transcriptOf<Progress, PartialProgress>(input);
  require(seen == transcriptOf<Plain, Plain>(input), "hubs and parts do what their model does");
  reached("an observer that fails", seen.find("observer 0") != std::string::npos);
  reached("a late observer", seen.find("late") != std::string::npos);
  reached("a failing parent", seen.find("outside 0") != std::string::npos);
}
