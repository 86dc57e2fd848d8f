// A change is made under the lock, and what observers are to be told is copied under it. They are called behind it,
// when nothing of the hub is needed any more: an observer may destroy it.
#include "Tarn/DataStructures/Progress.h"

#include <utility>

namespace Tarn::DataStructures {
namespace {

// Whether a difference is a change: neither zero nor NaN.
bool moves(double difference) { return difference < 0.0 || difference > 0.0; }

// What observers are told. They must be copies, even for one pass each: an observer may have a state of its own, and
// passes of several threads overlap.
template <class Observer, class Value>
class Pass {
 public:
  Pass(const std::vector<Observer>& observers, Value value) : value_(std::move(value)) {
    if (observers.size() == 1) {
      only_ = observers.front();  // The usual case, without memory for a list.
    } else {
      observers_ = observers;
    }
  }

  void call() const {
    if (only_) only_(value_);
    for (const Observer& observer : observers_) observer(value_);
  }

 private:
  Value value_;
  Observer only_;
  std::vector<Observer> observers_;
};

}  // namespace

IProgress::~IProgress() = default;

Progress::Progress() = default;

Progress::Progress(std::function<void(double)> progressCallback, std::function<void(std::string)> stepCallback) {
  addObserver(std::move(progressCallback));
  addObserver(std::move(stepCallback));
}

Progress::~Progress() = default;

void Progress::addObserver(std::function<void(double)> callback) {
  if (!callback) return;
  const std::lock_guard lock(mutex_);
  progressObservers_.push_back(std::move(callback));
}

void Progress::addObserver(std::function<void(std::string)> callback) {
  if (!callback) return;
  const std::lock_guard lock(mutex_);
  stepObservers_.push_back(std::move(callback));
}

double Progress::setProgress(double value) {
  std::unique_lock lock(mutex_);
  const double difference = value - value_;
  if (!moves(difference)) return difference;
  value_ = value;
  const Pass pass(progressObservers_, value);
  lock.unlock();
  pass.call();
  return difference;
}

double Progress::addProgress(double increment) {
  std::unique_lock lock(mutex_);
  if (!moves(increment)) return value_;
  value_ += increment;
  const double sum = value_;
  const Pass pass(progressObservers_, sum);
  lock.unlock();
  pass.call();
  return sum;
}

void Progress::setStep(const std::string& step) {
  std::unique_lock lock(mutex_);
  if (step == step_) return;
  step_ = step;
  const Pass pass(stepObservers_, step_);
  lock.unlock();
  pass.call();
}

}  // namespace Tarn::DataStructures
