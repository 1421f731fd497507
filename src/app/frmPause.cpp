#include "app/frmPause.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>

#include "calc/RunFlags.h"

namespace gandrel {

static QPointer<frmPause> openPause;

frmPause::frmPause(QWidget* parent) : QtScriptDialog(parent, scriptDialogPlaces.Pause, false) {
  setObjectName("frmPause");
  setWindowTitle(tr("Paused..."));
  setAttribute(Qt::WA_DeleteOnClose);

  btnCancel = new QPushButton(tr("Cancel"), this);
  btnCancel->setObjectName("btnCancel");
  btnCancel->setAutoDefault(false);
  Command1 = new QPushButton(tr("&Continue"), this);
  Command1->setObjectName("Command1");
  Command1->setDefault(true);
  Label1 = new QLabel(tr("Paused, please click 'Continue' to continue with the script..."), this);
  Label1->setObjectName("Label1");
  Label1->setTextFormat(Qt::PlainText);
  Label1->setWordWrap(true);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(Command1);
  buttons->addWidget(btnCancel);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(Label1);
  layout->addLayout(buttons);
  setMinimumWidth(340);

  connect(Command1, &QPushButton::clicked, this, &QDialog::accept);
  connect(btnCancel, &QPushButton::clicked, this, &frmPause::CancelClicked);
  // Escape is Cancel here; only the close box goes on without a break.
  SetEscapeButton(btnCancel);
}

frmPause::~frmPause() {
  EndPause();
}

void frmPause::CancelOpenPause() {
  if (openPause != nullptr && openPause->pausing_) openPause->btnCancel->click();
}

void frmPause::showEvent(QShowEvent* event) {
  if (!event->spontaneous()) {
    runFlags.Paused = true;
    pausing_ = true;
    openPause = this;
  }
  QtScriptDialog::showEvent(event);
}

void frmPause::done(int result) {
  EndPause();
  QtScriptDialog::done(result);
}

void frmPause::CancelClicked() {
  runFlags.BreakRequested = true;
  reject();
}

void frmPause::EndPause() {
  if (!pausing_) return;
  pausing_ = false;
  runFlags.Paused = false;
  runFlags.PauseEnded = true;
}

}  // namespace gandrel
