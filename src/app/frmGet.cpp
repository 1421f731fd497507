#include "app/frmGet.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "calc/RunFlags.h"
#include "script/ScriptWindows.h"

namespace gandrel {

frmGet::frmGet(QWidget* parent) : QtScriptDialog(parent, scriptDialogPlaces.Get, false) {
  setObjectName("frmGet");
  setWindowTitle(tr("Get..."));

  cmdOkay = new QPushButton(tr("&Okay"), this);
  cmdOkay->setObjectName("cmdOkay");
  cmdOkay->setDefault(true);
  txtGet = new QLineEdit(this);
  txtGet->setObjectName("txtGet");
  lblPrompt = new QLabel(tr("Please enter a number:"), this);
  lblPrompt->setObjectName("lblPrompt");
  lblPrompt->setTextFormat(Qt::PlainText);
  lblPrompt->setWordWrap(true);
  lblPrompt->setBuddy(txtGet);

  auto* entry = new QHBoxLayout;
  entry->addWidget(txtGet, 1);
  entry->addWidget(cmdOkay);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(lblPrompt);
  layout->addLayout(entry);
  setMinimumWidth(320);

  connect(cmdOkay, &QPushButton::clicked, this, &frmGet::OkayClicked);
}

void frmGet::Prepare(const std::string& prompt, const std::string& defaultText) {
  lblPrompt->setText(QString::fromStdString(prompt));
  txtGet->setText(QString::fromStdString(defaultText));
  txtGet->selectAll();
  txtGet->setFocus();
}

void frmGet::OkayClicked() {
  runFlags.InputValue = EnteredNumber(txtGet->text().toStdString());
  accept();
}

}  // namespace gandrel
