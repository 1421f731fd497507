// QtScriptDialog: what the number prompt, the pick list and the pause window
// share.
//
// Each comes back where the user left it: its place (and, for the pick list,
// its size) is remembered when it closes, for as long as the program runs.
// The first time, and whenever it was left in the very top left corner, it is
// centred on its screen instead. While it is up the mouse pointer is the
// arrow, whatever the running script shows.
#pragma once

#include <QDialog>

class QPushButton;

namespace gandrel {

// Where a script dialog stood when it last closed, in pixels; all zero until
// then. Width and height are kept by the pick list alone.
struct DialogPlace {
  int Left = 0;
  int Top = 0;
  int Width = 0;
  int Height = 0;
};

struct ScriptDialogPlaces {
  DialogPlace Get;
  DialogPlace Pick;
  DialogPlace Pause;
};

extern ScriptDialogPlaces scriptDialogPlaces;

class QtScriptDialog : public QDialog {
  Q_OBJECT

 public:
  // Every way the dialog goes away passes here (buttons, Escape, the close
  // box): the place is remembered and the pointer restored.
  void done(int result) override;

 protected:
  QtScriptDialog(QWidget* parent, DialogPlace& place, bool keepsSize);
  ~QtScriptDialog() override;

  void showEvent(QShowEvent* event) override;
  // Escape clicks this button instead of closing the dialog as the close box
  // would (the pick list and the pause tell the two apart).
  void SetEscapeButton(QPushButton* button) { escapeButton_ = button; }
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void MoveToPlace();
  void RestorePointer();

  DialogPlace& place_;
  bool keepsSize_;
  bool arrowShown_ = false;
  QPushButton* escapeButton_ = nullptr;
};

}  // namespace gandrel
