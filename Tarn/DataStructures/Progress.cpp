// Every change is made under the lock; observers run behind it, in a copy of their list taken under the same lock,
// before the change, as copying may throw.
#include "Tarn/DataStructures/Progress.h"

#include <utility>

namespace Tarn::DataStructures {
namespace {

// Whether a difference is a change: neither zero nor NaN.
bool moves(double difference) { return difference < 0.0 || difference > 0.0; }

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
  const auto observers = progressObservers_;
  value_ = value;
  lock.unlock();
  for (const auto& observer : observers) observer(value);
  return difference;
}

double Progress::addProgress(double increment) {
  std::unique_lock lock(mutex_);
  if (!moves(increment)) return value_;
  const auto observers = progressObservers_;
  value_ += increment;
  const double sum = value_;
  lock.unlock();
  for (const auto& observer : observers) observer(sum);
  return sum;
}

void Progress::setStep(const std::string& step) {
  std::unique_lock lock(mutex_);
  if (step == step_) return;
  const auto observers = stepObservers_;
  step_ = step;
  lock.unlock();
  for (const auto& observer : observers) observer(step);
}

}  // namespace Tarn::DataStructures
