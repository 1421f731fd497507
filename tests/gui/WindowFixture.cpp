#include "WindowFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QTest>

#include "app/Settings.h"
#include "app/modGandrel.h"
#include "calc/Pump.h"
#include "dice/modDiceCalc.h"
#include "script/RunFlags.h"

namespace gandrel::testing {

MsgAnswer RecordingQtUI::ShowMessage(const std::string& text, MsgButtons buttons, MsgIcon,
                                     const std::string&) {
  messages.push_back(text);
  return buttons == MsgButtons::Ok ? MsgAnswer::Ok : answer;
}

void WindowTest::SetUp() {
  ASSERT_TRUE(folder.isValid());
  SetAppDirectory(folder.path().toStdString());
  ResetSettings();
  ClearDieTypes();
  runFlags = RunFlags{};
  SetPumpEveryCall(false);
}

void WindowTest::TearDown() {
  window.reset();
  SetPumpEveryCall(false);
  runFlags = RunFlags{};
}

frmMain& WindowTest::StartWindow() {
  window = std::make_unique<frmMain>();
  window->Start();
  // No window manager here: make it the active window as one would.
  QApplication::setActiveWindow(window.get());
  return *window;
}

frmMain& WindowTest::Restart() {
  window->close();
  window.reset();
  ResetSettings();
  ClearDieTypes();
  return StartWindow();
}

void WindowTest::TypeAndEnter(const QString& text) {
  // Keys reach the line edit through the box, its focus proxy, as typed keys do.
  window->comboDieValue->lineEdit()->selectAll();
  QTest::keyClicks(window->comboDieValue, text);
  QTest::keyClick(window->comboDieValue, Qt::Key_Return);
}

std::string WindowTest::PathOf(const std::string& name) const {
  return folder.filePath(QString::fromStdString(name)).toStdString();
}

bool WindowTest::FileExists(const std::string& name) const {
  return QFile::exists(QString::fromStdString(PathOf(name)));
}

std::string WindowTest::ReadFile(const std::string& name) const {
  QFile file(QString::fromStdString(PathOf(name)));
  if (!file.open(QIODevice::ReadOnly)) return "";
  return file.readAll().toStdString();
}

}  // namespace gandrel::testing
