// QtIcon: Gandrel's icon, a red die showing five, drawn by the program.
//
// It is the same drawing as resources/gandrel.svg (which the desktop uses),
// painted here so that the window program needs no image plug-in.
#pragma once

#include <QIcon>

namespace gandrel {

QIcon GandrelIcon();

}  // namespace gandrel
