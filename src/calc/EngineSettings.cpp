#include "calc/EngineSettings.h"

namespace gandrel {

EngineSettings engineSettings;

void ResetEngineSettings() {
  engineSettings = EngineSettings{};
}

}  // namespace gandrel
