#include "script/RunFlags.h"

namespace gandrel {

RunFlags runFlags;

}  // namespace gandrel
