#include <gtest/gtest.h>

#include "app/WindowFit.h"

namespace gandrel::testing {
namespace {

TEST(WindowFit, ShrinksFirstThenMovesInside) {
  // A 1280x800 screen at scale factor 2, less a 20-pixel panel at the top.
  const ScreenRect screen{0, 20, 640, 380};
  const FrameMargins frame{2, 18, 2, 2};
  const struct {
    const char* what;
    ScreenRect wanted;
    int minWidth, minHeight;
    ScreenRect fitted;
  } cases[] = {
      {"design size on the small screen", {120, 80, 760, 520}, 400, 300, {2, 38, 636, 360}},
      {"fits already", {100, 100, 300, 200}, 0, 0, {100, 100, 300, 200}},
      {"off to the right and below", {600, 390, 300, 200}, 0, 0, {338, 198, 300, 200}},
      {"off to the left and above", {-20000, -500, 300, 200}, 0, 0, {2, 38, 300, 200}},
      {"larger and off-screen", {3000, 2000, 2000, 1500}, 0, 0, {2, 38, 636, 360}},
      {"minimum larger than the screen", {300, 300, 900, 700}, 700, 500, {2, 38, 700, 500}},
      {"title bar above the area", {50, 25, 300, 200}, 0, 0, {50, 38, 300, 200}},
      {"empty size", {10, 40, 0, 0}, 0, 0, {10, 40, 1, 1}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(FitWindowRect(c.wanted, frame, screen, c.minWidth, c.minHeight), c.fitted);
  }
}

// A second screen to the left of the primary one has negative coordinates.
TEST(WindowFit, ScreensLeftOfThePrimary) {
  const ScreenRect left{-1920, 0, 1920, 1080};
  EXPECT_EQ(FitWindowRect({-1000, 100, 760, 520}, {}, left), (ScreenRect{-1000, 100, 760, 520}));
  EXPECT_EQ(FitWindowRect({-300, 100, 760, 520}, {}, left), (ScreenRect{-760, 100, 760, 520}));
}

}  // namespace
}  // namespace gandrel::testing
