#include "app/WindowFit.h"

#include <algorithm>

namespace gandrel {

// One axis: the outer extent [start, start + size) with its frame, shrunk to
// room and moved into [low, low + room); the lower edge wins.
static void FitAxis(int& start, int& size, int frameBefore, int frameAfter, int low, int room,
                    int minSize) {
  int frame = frameBefore + frameAfter;
  size = std::max(std::min(size, room - frame), minSize);
  int outerStart = start - frameBefore;
  int outerSize = size + frame;
  outerStart = std::min(outerStart, low + room - outerSize);
  outerStart = std::max(outerStart, low);
  start = outerStart + frameBefore;
}

ScreenRect FitWindowRect(ScreenRect window, const FrameMargins& frame, const ScreenRect& available,
                         int minWidth, int minHeight) {
  FitAxis(window.left, window.width, frame.left, frame.right, available.left, available.width,
          std::max(minWidth, 1));
  FitAxis(window.top, window.height, frame.top, frame.bottom, available.top, available.height,
          std::max(minHeight, 1));
  return window;
}

}  // namespace gandrel
