#include "app/QtUserInterface.h"

#include <QApplication>
#include <QEventLoop>
#include <QMessageBox>
#include <QPushButton>

namespace gandrel {

QtUserInterface::QtUserInterface() {
  SetUI(this);
}

QtUserInterface::~QtUserInterface() {
  while (busyDepth_ > 0)
    SetBusy(false);
  SetUI(nullptr);
}

static MsgAnswer AnswerOf(const QMessageBox& box, QAbstractButton* yes, QAbstractButton* no) {
  QAbstractButton* clicked = box.clickedButton();
  if (clicked != nullptr && clicked == yes) return MsgAnswer::Yes;
  if (clicked != nullptr && clicked == no) return MsgAnswer::No;
  return MsgAnswer::Cancel;
}

MsgAnswer QtUserInterface::ShowMessage(const std::string& text, MsgButtons buttons, MsgIcon icon,
                                       const std::string& title) {
  QMessageBox box(QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  box.setWindowTitle(QString::fromStdString(title));
  box.setText(QString::fromStdString(text));
  switch (icon) {
    case MsgIcon::None:
      box.setIcon(QMessageBox::NoIcon);
      break;
    case MsgIcon::Critical:
      box.setIcon(QMessageBox::Critical);
      break;
    case MsgIcon::Question:
      box.setIcon(QMessageBox::Question);
      break;
  }

  // The message must be readable even while a roll shows the busy pointer.
  QApplication::setOverrideCursor(Qt::ArrowCursor);
  MsgAnswer answer = MsgAnswer::Ok;
  if (buttons != MsgButtons::Ok) {
    QAbstractButton* yes = box.addButton(QMessageBox::Yes);
    QAbstractButton* no = box.addButton(QMessageBox::No);
    box.setDefaultButton(QMessageBox::Yes);
    if (buttons == MsgButtons::YesNoCancel) {
      box.addButton(QMessageBox::Cancel);
      box.setEscapeButton(QMessageBox::Cancel);
    } else {
      box.setEscapeButton(no);
    }
    box.exec();
    answer = AnswerOf(box, yes, no);
    // Without a Cancel button, closing the box is No.
    if (buttons == MsgButtons::YesNo && answer == MsgAnswer::Cancel) answer = MsgAnswer::No;
  } else {
    box.setStandardButtons(QMessageBox::Ok);
    box.exec();
  }
  QApplication::restoreOverrideCursor();
  return answer;
}

void QtUserInterface::ProcessEvents() {
  QCoreApplication::processEvents();
}

void QtUserInterface::WaitForEvents() {
  QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void QtUserInterface::SetBusy(bool busy) {
  if (busy) {
    ++busyDepth_;
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else if (busyDepth_ > 0) {
    --busyDepth_;
    QApplication::restoreOverrideCursor();
  }
}

}  // namespace gandrel
