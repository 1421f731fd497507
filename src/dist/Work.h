// The budget, the progress hook and the way out of one distribution's
// computation.
//
// Every loop that may run long counts its work here. When the budget is
// spent, the caller cancels, or a part finds it cannot be exact, the
// computation gives up by throwing NotExactSignal, which only the entry
// catches. It is not derived from std::exception, so no handler of the
// engine ever takes it for a run-time error.
#pragma once

#include <string>

#include "dist/Distribution.h"

namespace gandrel {

struct NotExactSignal {
  NotExactReason why;
  std::string reason;
};

[[noreturn]] void GiveUp(NotExactReason why, const std::string& reason);

class Work {
 public:
  explicit Work(const DistOptions& options) : options_(options) {}

  // Counts n texts calculated by the evaluator; gives up past the budget.
  void Evaluations(double n);
  // Counts n steps of arithmetic (a multiply-add of a convolution).
  void Operations(double n);
  // True when n more evaluations (operations) would still fit.
  bool EvaluationsFit(double n) const;
  bool OperationsFit(double n) const;

  // The evaluations the current step expects in all, for the progress hook.
  void Expect(double evaluations) { expected_ = evaluations; }

  double Truncation() const { return options_.truncation; }
  double Budget() const { return options_.budget; }

 private:
  void Poll();
  const DistOptions& options_;
  double expected_ = 0;
  double evaluations_ = 0;
  double operations_ = 0;
  double sincePoll_ = 0;
};

}  // namespace gandrel
