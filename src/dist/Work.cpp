#include "dist/Work.h"

#include <algorithm>

namespace gandrel {

namespace {

// A convolution's multiply-add costs about this much less than one text
// calculated by the evaluator.
constexpr double kOperationsPerEvaluation = 400;
// Work between two calls of the progress hook.
constexpr double kPollEvery = 4096;

}  // namespace

void GiveUp(NotExactReason why, const std::string& reason) {
  throw NotExactSignal{why, reason};
}

void Work::Evaluations(double n) {
  evaluations_ += n;
  if (evaluations_ > options_.budget)
    GiveUp(NotExactReason::Budget, "more combinations than the budget allows");
  sincePoll_ += n;
  if (sincePoll_ >= kPollEvery) Poll();
}

void Work::Operations(double n) {
  operations_ += n;
  if (operations_ > options_.budget * kOperationsPerEvaluation)
    GiveUp(NotExactReason::Budget, "more arithmetic than the budget allows");
  sincePoll_ += n / kOperationsPerEvaluation;
  if (sincePoll_ >= kPollEvery) Poll();
}

bool Work::EvaluationsFit(double n) const {
  return evaluations_ + n <= options_.budget;
}

bool Work::OperationsFit(double n) const {
  return operations_ + n <= options_.budget * kOperationsPerEvaluation;
}

void Work::Poll() {
  sincePoll_ = 0;
  if (!options_.progress) return;
  double expected = expected_ > 0 ? expected_ : options_.budget;
  double done =
      std::max(evaluations_ / expected, operations_ / (options_.budget * kOperationsPerEvaluation));
  if (!options_.progress(std::min(done, 1.0))) GiveUp(NotExactReason::Cancelled, "cancelled");
}

}  // namespace gandrel
