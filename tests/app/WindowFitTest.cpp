#include <gtest/gtest.h>

#include <tuple>

#include "app/WindowFit.h"

namespace gandrel::testing {
namespace {

TEST(WindowFit, ShrinksFirstThenMovesInside) {
  // A 1280x800 screen at scale factor 2, less a 20-pixel panel at the top.
  const ScreenRect screen{0, 20, 640, 380};
  const FrameMargins frame{2, 18, 2, 2};
  // What the case is, the place wanted, the least width and height, the place given.
  const std::tuple<const char*, ScreenRect, int, int, ScreenRect> cases[] = {
      {"design size on the small screen", {120, 80, 760, 520}, 400, 300, {2, 38, 636, 360}},
      {"fits already", {100, 100, 300, 200}, 0, 0, {100, 100, 300, 200}},
      {"off to the right and below", {600, 390, 300, 200}, 0, 0, {338, 198, 300, 200}},
      {"off to the left and above", {-20000, -500, 300, 200}, 0, 0, {2, 38, 300, 200}},
      {"minimum larger than the screen", {300, 300, 900, 700}, 700, 500, {2, 38, 700, 500}},
      {"empty size", {10, 40, 0, 0}, 0, 0, {10, 40, 1, 1}},
  };
  for (const auto& [what, wanted, minWidth, minHeight, fitted] : cases)
    EXPECT_EQ(FitWindowRect(wanted, frame, screen, minWidth, minHeight), fitted) << what;
}

}  // namespace
}  // namespace gandrel::testing
