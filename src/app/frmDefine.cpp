#include "app/frmDefine.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/DialogModels.h"
#include "app/QtEntryList.h"
#include "app/modGandrel.h"

namespace gandrel {

frmDefine::frmDefine(QWidget* parent) : QDialog(parent) {
  setObjectName("frmDefine");
  setWindowTitle(tr("Define Die Types"));

  auto* hint = new QLabel(tr("A die type is a name, \"=\" and either a range or a list of faces, "
                             "for example\n"
                             "    dfate = -1 to 1\n"
                             "    dfib = 1,1,2,3,5\n"
                             "Then roll it like any die: 4dfate, 2dfib+1."),
                          this);
  hint->setTextFormat(Qt::PlainText);

  lstTypes = new QtEntryList(false, CheckDieTypeEntry, ArrangeDieTypeEntries, this);
  lstTypes->SetEntries(ListDieTypeEntries());
  lblStored = new QLabel(this);
  lblStored->setObjectName("lblStored");
  lblStored->setTextFormat(Qt::PlainText);
  lblStored->setWordWrap(true);
  connect(lstTypes->txtEntry, &QLineEdit::textChanged, this, [this](const QString& text) {
    lblStored->setText(
        QString::fromStdString(PreviewDieTypeEntry(text.toStdString(), lstTypes->Entries())));
  });

  btnOkay = new QPushButton(tr("&Okay"), this);
  btnOkay->setAutoDefault(false);
  btnCancel = new QPushButton(tr("Cancel"), this);
  btnCancel->setAutoDefault(false);
  connect(btnOkay, &QPushButton::clicked, this, [this] {
    Apply();
    accept();
  });
  connect(btnCancel, &QPushButton::clicked, this, &QDialog::reject);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(btnOkay);
  buttons->addWidget(btnCancel);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(hint);
  layout->addWidget(lstTypes, 1);
  layout->addWidget(lblStored);
  layout->addLayout(buttons);
  resize(460, 360);
  lstTypes->txtEntry->setFocus();
}

void frmDefine::Apply() {
  RebuildDieTypes(lstTypes->Entries());
  emit applied();
  SaveSettings();
}

}  // namespace gandrel
