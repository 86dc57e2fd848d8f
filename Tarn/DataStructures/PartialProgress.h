/// @file
/// The progress of a sub-task that counts as a share of its parent's.
#ifndef TARN_DATASTRUCTURES_PARTIALPROGRESS_H_
#define TARN_DATASTRUCTURES_PARTIALPROGRESS_H_

#include <memory>
#include <string>

#include "Tarn/DataStructures/Progress.h"
#include "Tarn/Export.h"

namespace Tarn::DataStructures {

/// A hub of its own that also adds every change, times its share, to a parent.
///
///     auto whole = std::make_shared<Progress>();
///     PartialProgress writing(whole, 0.5);
///     writing.setProgress(0.25);  // the whole stands at 0.125
///     writing.setProgress(1.0);   // the whole stands at 0.5
///
/// A parent may be partial itself; each level scales by its own share. Own observers see own, unscaled values, before
/// the parent moves; one that throws keeps the change from the parent. Destruction reports nothing: what was
/// contributed stays in the parent, which lives at least as long as its parts.
///
/// A chain of parts may be as long as memory allows, and is released without recursion, unless a derived class owns
/// parts of its own: each of those adds a call. A change is forwarded by a call at each level, which takes at most 512
/// bytes of the stack: an 8 MiB stack holds 16 000 levels.
///
/// Threads: as for `Progress`. Threads that move one part may reach the parent in either order; the sums come out.
class TARN_API PartialProgress : public Progress {
 public:
  /// A hub at 0.0 without observers. The parent may be empty; the share may be any number, zero and negative included.
  PartialProgress(std::shared_ptr<IProgress> parent, double share);
  PartialProgress(const PartialProgress&) = delete;
  PartialProgress& operator=(const PartialProgress&) = delete;
  ~PartialProgress() override;

  /// As `Progress::setProgress`; then adds the scaled difference, zero included, to the parent.
  /// @return the own difference, unscaled.
  double setProgress(double value) override;

  /// As `Progress::addProgress`; then adds the scaled increment to the parent.
  /// @return the own new value, unscaled.
  double addProgress(double increment) override;

  /// Hands the text to the parent. Own step observers are never called; without a parent, nothing happens.
  void setStep(const std::string& step) override;

 private:
  std::shared_ptr<IProgress> parent_;
  double share_;
};

}  // namespace Tarn::DataStructures

#endif  // TARN_DATASTRUCTURES_PARTIALPROGRESS_H_
