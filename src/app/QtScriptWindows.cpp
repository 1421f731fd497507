#include "app/QtScriptWindows.h"

#include <QApplication>
#include <QScreen>

#include "app/frmGet.h"
#include "app/frmMain.h"
#include "app/frmOutput.h"
#include "app/frmPause.h"
#include "app/frmPick.h"
#include "calc/RunFlags.h"
#include "calc/UserInterface.h"

namespace gandrel {

namespace {

const char* const kStopAnyway = "The script has switched breaking off. Stop it anyway?";

// The run's hold on one output window. Dropping it leaves the window on
// screen; once the window is closed, by the script or by the user, every
// call is ignored.
class QtOutputWindow final : public OutputWindow {
 public:
  explicit QtOutputWindow(frmOutput* window) : window_(window) {}

  void Print(const std::string& text) override {
    if (Open()) window_->Append(text);
  }
  void Clear() override {
    if (Open()) window_->Clear();
  }
  void Close() override {
    if (Open()) window_->close();
  }
  void Raise() override {
    if (!Open()) return;
    window_->showNormal();
    window_->raise();
    window_->activateWindow();
  }
  bool IsOpen() const override { return Open(); }

 private:
  bool Open() const { return window_ != nullptr && !window_->Closed(); }

  QPointer<frmOutput> window_;
};

// Runs a modal dialog that its parent may delete while it is up (the main
// window closing), and deletes it afterwards if it is still there.
template <typename Dialog>
void RunModal(QPointer<Dialog> dialog) {
  dialog->exec();
  delete dialog.data();
}

}  // namespace

QtScriptWindows::QtScriptWindows() {
  SetScriptWindows(this);
}

QtScriptWindows::~QtScriptWindows() {
  SetScriptWindows(nullptr);
}

void QtScriptWindows::Attach(frmMain* main) {
  main_ = main;
}

// A run the user insists on stopping (the main window is closing, or Yes to
// stopping a script that switched breaking off) stops at its next line: it
// asks nothing more, as if each prompt were closed at once.

void QtScriptWindows::GetNumber(const std::string& prompt, const std::string& defaultText) {
  if (runFlags.BreakForced) return;
  QPointer<frmGet> dialog = new frmGet(main_);
  dialog->Prepare(prompt, defaultText);
  RunModal(dialog);
}

void QtScriptWindows::PickItem(const std::string& prompt, const std::vector<std::string>& items,
                               int16_t selected) {
  if (runFlags.BreakForced) return;
  QPointer<frmPick> dialog = new frmPick(main_);
  dialog->Prepare(prompt, items, selected);
  RunModal(dialog);
}

void QtScriptWindows::ShowPause() {
  if (runFlags.BreakForced) {
    runFlags.Paused = false;
    runFlags.PauseEnded = true;
    return;
  }
  auto* pause = new frmPause(main_);
  pause->show();
  pause->raise();
  pause->activateWindow();
}

// Each new window opens a little lower and to the right of the last one
// still open, starting from the middle of the screen.
std::unique_ptr<OutputWindow> QtScriptWindows::OpenOutputWindow(const std::string&,
                                                                const std::string& caption) {
  int open = 0;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    auto* output = qobject_cast<frmOutput*>(window);
    if (output != nullptr && !output->Closed() && output->isVisible()) ++open;
  }
  auto* window = new frmOutput(main_);
  window->setWindowTitle(QString::fromStdString(caption));
  if (QScreen* screen = window->screen()) {
    QRect area = screen->availableGeometry();
    QPoint corner = area.center() - QPoint(window->width() / 2, window->height() / 2);
    window->move(corner + QPoint(28, 28) * (open % 8));
  }
  window->show();
  return std::make_unique<QtOutputWindow>(window);
}

void QtScriptWindows::Display(const std::string& result, const std::string& log) {
  if (main_ != nullptr) main_->ShowDisplay(result, log);
}

void EscapePressed() {
  if (runFlags.BreakRequested && !runFlags.BreakEnabled && !runFlags.BreakForced) {
    if (UI().ShowMessage(kStopAnyway, MsgButtons::YesNo, MsgIcon::Question, kAppTitle) !=
        MsgAnswer::Yes)
      return;
    runFlags.BreakForced = true;
  }
  runFlags.BreakRequested = true;
  frmPause::CancelOpenPause();
}

}  // namespace gandrel
