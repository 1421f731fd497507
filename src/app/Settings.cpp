#include "app/Settings.h"

namespace gandrel {

AppSettings settings;

void ResetSettings() {
  settings = AppSettings{};
  ResetEngineSettings();
}

}  // namespace gandrel
