// frmPause: the pause window of the script command PAUSE.
//
// Shown without waiting: the script waits for it between lines while the
// user may still use every other window. Continue goes on; Cancel (or
// Escape) asks the script to break first. However the window goes away (a
// button, Escape, the close box, the main window closing) it ends the pause:
// runFlags.Paused False, PauseEnded True. It deletes itself when closed.
#pragma once

#include "app/QtScriptDialog.h"

class QLabel;
class QPushButton;

namespace gandrel {

class frmPause : public QtScriptDialog {
  Q_OBJECT

 public:
  explicit frmPause(QWidget* parent = nullptr);
  ~frmPause() override;

  // Cancel on the pause window that is open, if any.
  static void CancelOpenPause();

  void done(int result) override;

  QPushButton* btnCancel;
  QPushButton* Command1;
  QLabel* Label1;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void CancelClicked();
  void EndPause();

  bool pausing_ = false;
};

}  // namespace gandrel
