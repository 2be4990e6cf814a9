#pragma once

#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessa {

/// Thrown by a step that cannot do its work; the text says why in plain words.
class StepFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct FailedStep {
  std::string Step;
  std::string Reason;
};

/// Runs the steps of a routine so that a failed one leaves its target as it was and the next one
/// runs. Keeps what failed and why; prints it under the logging category "tessa.steps" when that
/// is switched on.
class StepLog {
 public:
  /// True when the step came through.
  template <typename Step>
  bool Run(std::string_view name, Step&& step) {
    try {
      std::forward<Step>(step)();
      return true;
    } catch (const std::bad_alloc&) {
      ranOutOfMemory_ = true;
      Record(name, "there is not enough memory");
      return false;
    } catch (const std::exception& failure) {
      Record(name, failure.what());
      return false;
    }
  }

  const std::vector<FailedStep>& Failures() const { return failures_; }
  /// True when a step failed for want of memory.
  bool RanOutOfMemory() const { return ranOutOfMemory_; }
  void Clear() {
    failures_.clear();
    ranOutOfMemory_ = false;
  }

 private:
  void Record(std::string_view name, std::string_view reason);

  // A file can make a step fail on every row; more than this says nothing new.
  static constexpr std::size_t kMostKept = 200;
  std::vector<FailedStep> failures_;
  bool ranOutOfMemory_ = false;
};

/// The nearest integer to `value`, ties to even. Throws StepFailure when no 32-bit integer is near.
int RoundToInteger(double value);

/// `numerator` / `denominator`; a denominator of zero is a failed step, not infinity.
double Divide(double numerator, double denominator);

}  // namespace tessa
