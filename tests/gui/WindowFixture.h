// A clean main window for each widget test: a temporary application folder,
// default settings, no die types, message boxes recorded instead of shown,
// the script windows installed with no remembered places, and no window left
// over from the test before.
#pragma once

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <memory>
#include <string>
#include <vector>

#include "app/DialogModels.h"
#include "app/QtScriptDialog.h"
#include "app/QtScriptWindows.h"
#include "app/QtUserInterface.h"
#include "app/Settings.h"
#include "app/frmMain.h"
#include "app/modGandrel.h"
#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "dice/modDiceCalc.h"
#include "script/EngineState.h"
#include "support/TempFolder.h"

namespace gandrel::testing {

// The real Qt interface (events, busy pointer), with message boxes recorded.
class RecordingQtUI : public QtUserInterface {
 public:
  MsgAnswer ShowMessage(const std::string& text, MsgButtons buttons, MsgIcon,
                        const std::string&) override {
    messages.push_back(text);
    lastButtons = buttons;
    return buttons == MsgButtons::Ok ? MsgAnswer::Ok : answer;
  }
  std::vector<std::string> messages;
  MsgButtons lastButtons = MsgButtons::Ok;
  MsgAnswer answer = MsgAnswer::No;  // what a Yes/No/Cancel box answers
};

inline std::string Text(const QLabel* label) {
  return label->text().toStdString();
}
inline std::string Text(const QPlainTextEdit* box) {
  return box->toPlainText().toStdString();
}

// The top-level windows of that type that are up.
template <typename Window>
std::vector<Window*> Shown() {
  std::vector<Window*> found;
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (auto* window = qobject_cast<Window*>(widget); window && window->isVisible())
      found.push_back(window);
  return found;
}

// Lets deleteLater() and the output windows' gathered text take effect.
inline void Settle() {
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

class WindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    SetAppDirectory(folder.path());
    ResetEngineState();
    ResetSettings();
    scriptDialogPlaces = ScriptDialogPlaces{};
  }

  void TearDown() override {
    window.reset();
    QList<QPointer<QWidget>> left;
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (widget->parent() == nullptr) left.append(widget);
    for (const QPointer<QWidget>& widget : left)
      delete widget.data();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  // A new main window, started as the program starts it.
  frmMain& StartWindow() {
    window.reset();  // the old window must be gone before the new one is the main view
    window = std::make_unique<frmMain>();
    scriptWindows.Attach(window.get());
    window->Start();
    // No window manager here: make it the active window as one would.
    QApplication::setActiveWindow(window.get());
    return *window;
  }

  // Replaces the die value by text and presses Enter in the box (keys reach
  // the line edit through the box, its focus proxy, as typed keys do).
  void TypeAndEnter(const QString& text) {
    window->comboDieValue->lineEdit()->selectAll();
    QTest::keyClicks(window->comboDieValue, text);
    QTest::keyClick(window->comboDieValue, Qt::Key_Return);
  }

  // The path of the file of that name in the test's folder.
  QString PathOf(const char* name) const { return QString::fromStdString(folder.Path(name)); }
  bool FileExists(const char* name) const { return QFile::exists(PathOf(name)); }
  QString WriteFile(const char* name, const std::string& content) const {
    return QString::fromStdString(folder.Write(name, content));
  }

  TempFolder folder;
  RecordingQtUI ui;
  QtScriptWindows scriptWindows;
  std::unique_ptr<frmMain> window;
};

}  // namespace gandrel::testing
