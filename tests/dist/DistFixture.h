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
#include "support/ForcedFaces.h"

namespace gandrel::testing {

class DistTest : public EngineTest {
 protected:
  void SetUp() override;
};

// What a roll of dieValue shows, by the engine itself, over every sequence of
// faces (EveryFaceSequence). A die value beginning with "=" (or "@") runs as
// the assignment "result =..." does: ProcFunc, then ExpandAllDice and Calc,
// then the value, or the text Calc left when the line holds a quote.
Shown RolledThrough(const std::string& dieValue, double faces, int maxDraws = 12,
                    double* cut = nullptr);

}  // namespace gandrel::testing
