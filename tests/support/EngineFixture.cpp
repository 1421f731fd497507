#include "support/EngineFixture.h"

#include "dice/Random.h"
#include "script/EngineState.h"

namespace gandrel::testing {

void EngineTest::SetUp() {
  ResetEngineState();
  SeedRandom(12345);
}

void EngineTest::TearDown() {
  ResetEngineState();
}

}  // namespace gandrel::testing
