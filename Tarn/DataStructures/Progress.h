/// @file
/// The progress interface and the hub that passes progress on to observers.
#ifndef TARN_DATASTRUCTURES_PROGRESS_H_
#define TARN_DATASTRUCTURES_PROGRESS_H_

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "Tarn/Export.h"

namespace Tarn::DataStructures {

/// What a long-running task reports to: how far it has come and which step it works on.
///
/// The unit of the value is the caller's choice. Nothing clamps, scales or limits it.
class TARN_API IProgress {
 public:
  /// Moves to `value`.
  /// @return how far that is from the previous value, possibly negative.
  virtual double setProgress(double value) = 0;

  /// Moves by `increment`, possibly negative.
  /// @return the new value.
  virtual double addProgress(double increment) = 0;

  /// Names the step that the task works on now.
  virtual void setStep(const std::string& step) = 0;

  virtual ~IProgress();

 protected:
  IProgress() = default;
  /// Only what derives from it can be copied.
  /// @{
  IProgress(const IProgress&) = default;
  IProgress& operator=(const IProgress&) = default;
  /// @}
};

/// Keeps a progress value and a step text and passes every change to its observers, in the order they were added.
///
///     Progress hub([](double value) { std::cout << value << '\n'; });
///     hub.setProgress(0.5);   // prints 0.5; returns 0.5, the difference
///     hub.addProgress(0.25);  // prints 0.75; returns 0.75, the new value
///     hub.setProgress(0.75);  // prints nothing: the value stands there already
///     hub.addProgress(0);     // tells the value: 0.75
///
/// The hub owns copies of the observers for as long as it lives. An observer runs on the thread that made the change,
/// in a copy taken for that pass, with no lock held: it may call the hub, and what it adds is called from the next
/// pass on. It may destroy the hub, and what the caller handed in: each observer of the pass gets a copy of its own of
/// what was stored, and the hub is not touched behind them. An exception that it throws reaches the caller of the
/// change; the observers behind it are not called, the change stays. So it is when allocation throws while the
/// observers are copied: none is called then.
///
/// Threads: any number may call any member at once. Passes of different threads may overlap and overtake each other,
/// so an observer of a hub that several threads change sees values out of order unless it serialises them itself. A
/// process that is forked while a thread changes a hub must not use that hub in the child: its lock may be held there.
class TARN_API Progress : public IProgress {
 public:
  /// A hub at 0.0 with an empty step, without observers.
  Progress();

  /// The same with an observer for each callback that is not empty. Nothing is notified.
  explicit Progress(std::function<void(double)> progressCallback, std::function<void(std::string)> stepCallback = {});

  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() override;

  /// Adds an observer of the value; an empty function is ignored.
  void addObserver(std::function<void(double)> callback);

  /// Adds an observer of the step text; an empty function is ignored.
  void addObserver(std::function<void(std::string)> callback);

  /// Moves to `value` and notifies, unless the difference is zero or NaN: then nothing is stored.
  /// @return the new value minus the previous one.
  double setProgress(double value) override;

  /// Moves by `increment` and notifies, unless it is zero or NaN.
  /// @return the value afterwards.
  double addProgress(double increment) override;

  /// Stores the step text and notifies, unless it is the current one.
  void setStep(const std::string& step) override;

 private:
  double value_ = 0.0;
  std::string step_;
  std::mutex mutex_;
  std::vector<std::function<void(double)>> progressObservers_;
  std::vector<std::function<void(std::string)>> stepObservers_;
};

}  // namespace Tarn::DataStructures

#endif  // TARN_DATASTRUCTURES_PROGRESS_H_
