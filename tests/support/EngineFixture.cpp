#include "support/EngineFixture.h"

#include "app/Settings.h"
#include "calc/Pump.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "script/RunFlags.h"

namespace gandrel::testing {

void EngineTest::SetUp() {
  ResetSettings();
  ClearDieTypes();
  runFlags = RunFlags{};
  SetPumpEveryCall(false);
  SeedRandom(12345);
}

void EngineTest::TearDown() {
  SetPumpEveryCall(false);
  runFlags = RunFlags{};
  ScriptRandom({});
  UnseedRandom();
}

}  // namespace gandrel::testing
