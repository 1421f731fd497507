#include "app/frmPick.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "calc/Markers.h"
#include "calc/RunFlags.h"

namespace gandrel {

frmPick::frmPick(QWidget* parent) : QtScriptDialog(parent, scriptDialogPlaces.Pick, true) {
  setObjectName("frmPick");
  setWindowTitle(tr("Pick List..."));

  cmdCancel = new QPushButton(tr("&Cancel"), this);
  cmdCancel->setObjectName("cmdCancel");
  cmdCancel->setAutoDefault(false);
  cmdOkay = new QPushButton(tr("&Okay"), this);
  cmdOkay->setObjectName("cmdOkay");
  cmdOkay->setDefault(true);
  lstItems = new QListWidget(this);
  lstItems->setObjectName("lstItems");
  lstItems->setSelectionMode(QAbstractItemView::SingleSelection);
  lblPrompt = new QLabel(QString::fromUtf8(kPickPrompt.data(), kPickPrompt.size()), this);
  lblPrompt->setObjectName("lblPrompt");
  lblPrompt->setTextFormat(Qt::PlainText);
  lblPrompt->setWordWrap(true);
  lblPrompt->setBuddy(lstItems);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdOkay);
  buttons->addWidget(cmdCancel);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(lblPrompt);
  layout->addWidget(lstItems, 1);
  layout->addLayout(buttons);
  resize(320, 300);

  connect(cmdOkay, &QPushButton::clicked, this, &frmPick::OkayClicked);
  connect(cmdCancel, &QPushButton::clicked, this, &frmPick::CancelClicked);
  // Escape is Cancel here; only the close box leaves PickIndex alone.
  SetEscapeButton(cmdCancel);
  connect(lstItems, &QListWidget::itemDoubleClicked, this, &frmPick::OkayClicked);
}

void frmPick::Prepare(const std::string& prompt, const std::vector<std::string>& items,
                      int16_t selected) {
  lblPrompt->setText(QString::fromStdString(prompt));
  lstItems->clear();
  int number = 0;
  for (const std::string& text : items) {
    auto* item = new QListWidgetItem(QString::fromStdString(text), lstItems);
    item->setData(Qt::UserRole, ++number);
  }
  if (selected >= 1 && selected <= lstItems->count()) {
    lstItems->setCurrentRow(selected - 1);
    lstItems->scrollToItem(lstItems->currentItem());
  }
  lstItems->setFocus();
}

void frmPick::OkayClicked() {
  QList<QListWidgetItem*> chosen = lstItems->selectedItems();
  runFlags.PickIndex =
      chosen.isEmpty() ? 0 : static_cast<int16_t>(chosen.front()->data(Qt::UserRole).toInt());
  accept();
}

void frmPick::CancelClicked() {
  runFlags.PickIndex = 0;
  reject();
}

}  // namespace gandrel
