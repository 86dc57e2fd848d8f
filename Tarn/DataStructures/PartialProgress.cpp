#include "Tarn/DataStructures/PartialProgress.h"

#include <utility>

namespace Tarn::DataStructures {
namespace {

// Where a part that is destroyed leaves its parent, if a part below it waits for that.
constinit thread_local std::shared_ptr<IProgress>* parentOfReleased = nullptr;

}  // namespace

PartialProgress::PartialProgress(std::shared_ptr<IProgress> parent, double share)
    : parent_(std::move(parent)), share_(share) {}

// Releases one level after the other: a chain of parts may be longer than a stack is deep.
PartialProgress::~PartialProgress() {
  if (auto* const left = std::exchange(parentOfReleased, nullptr)) {
    *left = std::move(parent_);
    return;
  }
  while (parent_) {
    std::shared_ptr<IProgress> next;
    parentOfReleased = &next;
    parent_.reset();
    parentOfReleased = nullptr;
    parent_ = std::move(next);
  }
}

// Observers may destroy this part: what is needed behind them is copied first.

double PartialProgress::setProgress(double value) {
  const std::shared_ptr<IProgress> parent = parent_;
  const double share = share_;
  const double difference = Progress::setProgress(value);
  if (parent) parent->addProgress(difference * share);
  return difference;
}

double PartialProgress::addProgress(double increment) {
  const std::shared_ptr<IProgress> parent = parent_;
  const double share = share_;
  const double total = Progress::addProgress(increment);
  if (parent) parent->addProgress(increment * share);
  return total;
}

void PartialProgress::setStep(const std::string& step) {
  if (const std::shared_ptr<IProgress> parent = parent_) parent->setStep(step);
}

}  // namespace Tarn::DataStructures
