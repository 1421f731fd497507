#include "app/QtScriptDialog.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>

namespace gandrel {

ScriptDialogPlaces scriptDialogPlaces;

QtScriptDialog::QtScriptDialog(QWidget* parent, DialogPlace& place, bool keepsSize)
    : QDialog(parent), place_(place), keepsSize_(keepsSize) {}

void QtScriptDialog::keyPressEvent(QKeyEvent* event) {
  if (escapeButton_ != nullptr && event->key() == Qt::Key_Escape &&
      event->modifiers() == Qt::NoModifier) {
    escapeButton_->click();
    return;
  }
  QDialog::keyPressEvent(event);
}

QtScriptDialog::~QtScriptDialog() {
  RestorePointer();
}

void QtScriptDialog::showEvent(QShowEvent* event) {
  // A window shown again by the window system (restored from the task bar)
  // stays where it is.
  if (!event->spontaneous()) {
    MoveToPlace();
    if (!arrowShown_) {
      QApplication::setOverrideCursor(Qt::ArrowCursor);
      arrowShown_ = true;
    }
  }
  QDialog::showEvent(event);
}

// Left and top both 0 means the dialog has no place yet: it is centred, at
// its design size. A dialog put in the top left corner on purpose is
// therefore centred again next time.
void QtScriptDialog::MoveToPlace() {
  if (place_.Left == 0 && place_.Top == 0) {
    QRect screenArea = screen() != nullptr ? screen()->geometry() : QRect(0, 0, 0, 0);
    QSize size = frameGeometry().size();
    move(screenArea.x() + (screenArea.width() - size.width()) / 2,
         screenArea.y() + (screenArea.height() - size.height()) / 2);
    if (keepsSize_) {
      place_.Width = width();
      place_.Height = height();
    }
    return;
  }
  if (keepsSize_ && place_.Width > 0 && place_.Height > 0) resize(place_.Width, place_.Height);
  move(place_.Left, place_.Top);
}

void QtScriptDialog::done(int result) {
  if (isVisible()) {
    place_.Left = x();
    place_.Top = y();
    if (keepsSize_) {
      place_.Width = width();
      place_.Height = height();
    }
  }
  RestorePointer();
  QDialog::done(result);
}

void QtScriptDialog::RestorePointer() {
  if (!arrowShown_) return;
  arrowShown_ = false;
  QApplication::restoreOverrideCursor();
}

}  // namespace gandrel
