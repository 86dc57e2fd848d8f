// Every change is made under the lock; observers run behind it, in a copy of their list taken under the same lock.
#include "Tarn/DataStructures/Progress.h"

#include <utility>

namespace Tarn::DataStructures {
namespace {

// Whether a difference is a change: neither zero nor NaN.
bool moves(double difference) { return difference < 0.0 || difference > 0.0; }

// Ends a change: copies the observers under the lock, frees it and calls the copies. They must be copies, even for one
// pass each: an observer may have a state of its own, and passes of several threads overlap.
template <class Observer, class Value>
void notify(const std::vector<Observer>& observers, std::unique_lock<std::mutex>& lock, const Value& value) {
  if (observers.size() == 1) {  // The usual case, without memory for a list.
    const Observer observer = observers.front();
    lock.unlock();
    observer(value);
    return;
  }
  const std::vector<Observer> copies(observers.begin(), observers.end());
  lock.unlock();
  for (const Observer& observer : copies) observer(value);
}

}  // namespace

IProgress::~IProgress() = default;

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
  notify(progressObservers_, lock, value);
  return difference;
}

double Progress::addProgress(double increment) {
  std::unique_lock lock(mutex_);
  if (!moves(increment)) return value_;
  value_ += increment;
  const double sum = value_;
  notify(progressObservers_, lock, sum);
  return sum;
}

void Progress::setStep(const std::string& step) {
  std::unique_lock lock(mutex_);
  if (step == step_) return;
  step_ = step;
  notify(stepObservers_, lock, step);
}

}  // namespace Tarn::DataStructures
