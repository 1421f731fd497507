// A clean main window for each widget test: a temporary application folder,
// default settings, no die types, and message boxes recorded instead of shown.
#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <memory>
#include <string>
#include <vector>

#include "app/QtUserInterface.h"
#include "app/frmMain.h"

namespace gandrel::testing {

// The real Qt interface (events, busy pointer), with message boxes recorded.
class RecordingQtUI : public QtUserInterface {
 public:
  MsgAnswer ShowMessage(const std::string& text, MsgButtons buttons, MsgIcon icon,
                        const std::string& title) override;
  std::vector<std::string> messages;
  MsgAnswer answer = MsgAnswer::No;  // what a Yes/No/Cancel box answers
};

class WindowTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // A new main window, started as the program starts it.
  frmMain& StartWindow();
  // Closes the window (which saves), forgets every setting and die type, and
  // starts a new window on the same folder.
  frmMain& Restart();

  // Replaces the die value by text and presses Enter in the box.
  void TypeAndEnter(const QString& text);

  std::string PathOf(const std::string& name) const;
  bool FileExists(const std::string& name) const;
  std::string ReadFile(const std::string& name) const;

  QTemporaryDir folder;
  RecordingQtUI ui;
  std::unique_ptr<frmMain> window;
};

}  // namespace gandrel::testing
