#include "Tarn/DataStructures/PartialProgress.h"

#include <utility>

namespace Tarn::DataStructures {

PartialProgress::PartialProgress(std::shared_ptr<IProgress> parent, double share)
    : parent_(std::move(parent)), share_(share) {}

PartialProgress::~PartialProgress() = default;

double PartialProgress::setProgress(double value) {
  const double difference = Progress::setProgress(value);
  if (parent_) parent_->addProgress(difference * share_);
  return difference;
}

double PartialProgress::addProgress(double increment) {
  const double total = Progress::addProgress(increment);
  if (parent_) parent_->addProgress(increment * share_);
  return total;
}

void PartialProgress::setStep(const std::string& step) {
  if (parent_) parent_->setStep(step);
}

}  // namespace Tarn::DataStructures
