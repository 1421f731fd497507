// A fixture that gives each test a clean engine: default settings, no die
// types, no break pending, a fixed random seed and a recording interface.
#pragma once

#include <gtest/gtest.h>

#include "support/RecordingUI.h"

namespace gandrel::testing {

class EngineTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
  RecordingUI ui;
};

}  // namespace gandrel::testing
