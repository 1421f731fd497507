#include "app/Settings.h"

namespace gandrel {

AppSettings settings;

void ResetSettings() {
  settings = AppSettings{};
}

}  // namespace gandrel
