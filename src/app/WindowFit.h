// WindowFit: where a window goes so that all of it can be seen.
//
// A placement saved on a larger screen, at another scale factor or on a
// screen that is gone, and the design size on a small screen, would put the
// window's bottom row (Roll's neighbours, Exit) out of reach. The window is
// shrunk to the screen's available area first and then moved inside it.
// Rectangles are in the window system's logical pixels; the window's own
// rectangle is its inside, without the frame the window manager adds.
#pragma once

namespace gandrel {

struct ScreenRect {
  int left = 0, top = 0, width = 0, height = 0;
  bool operator==(const ScreenRect&) const = default;
};

// What the window manager adds around a window (title bar, borders).
struct FrameMargins {
  int left = 0, top = 0, right = 0, bottom = 0;
};

// The inside of a window wanted at window, framed by frame, fitted into
// available: its size is at most what the area leaves after the frame, but
// never below minWidth x minHeight; then it is moved the least distance that
// puts its frame inside the area. A window that cannot fit (its minimum is
// larger than the area) keeps its frame's top-left corner in the area, so
// that its title bar and its top row can be reached.
ScreenRect FitWindowRect(ScreenRect window, const FrameMargins& frame, const ScreenRect& available,
                         int minWidth = 0, int minHeight = 0);

}  // namespace gandrel
