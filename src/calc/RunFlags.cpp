#include "calc/RunFlags.h"

namespace gandrel {

RunFlags runFlags;

void ResetRunFlags() {
  runFlags = RunFlags{};
}

}  // namespace gandrel
