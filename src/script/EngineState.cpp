#include "script/EngineState.h"

#include "calc/EngineSettings.h"
#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "calc/modEvaluate.h"
#include "dice/DiceText.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

void ResetEngineState() {
  ResetRunFlags();
  ResetEngineSettings();
  ResetPump();
  ResetEvaluator();
  ClearDieTypes();
  maxDiceText = kMostDiceText;
  ResetRandom();
}

}  // namespace gandrel
