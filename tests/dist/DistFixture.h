// What the distribution tests share: a clean engine with a few die types, the
// outcomes of a distribution as a table, and the real engine rolled through
// every sequence of faces as the reference.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "dist/Distribution.h"
#include "support/EngineFixture.h"

namespace gandrel::testing {

using Shown = std::map<std::string, double>;

class DistTest : public EngineTest {
 protected:
  void SetUp() override;
};

// The outcomes' texts and probabilities.
Shown ShownOf(const Distribution& dist);

// The two tables hold the same texts with probabilities within tolerance; a
// text on one side only may have a probability above 0 up to the tolerance.
void ExpectShown(const Shown& actual, const Shown& expected, double tolerance = 1e-12);

// What a roll of dieValue shows, by the engine itself, over every sequence of
// draws: each draw a die of the given number of faces (FaceToRnd), the
// sequence's probability the product of 1/faces. A die value beginning with
// "=" (or "@") runs as the assignment "result =..." does: ProcFunc, then
// ExpandAllDice and Calc, then the value or the quoted text. Sequences longer
// than maxDraws are cut off; their probability goes to cut.
Shown RolledThrough(const std::string& dieValue, double faces, int maxDraws = 12,
                    double* cut = nullptr);

}  // namespace gandrel::testing
