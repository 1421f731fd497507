#include "app/QtEntryList.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/QtButtons.h"
#include "calc/Basic.h"
#include "calc/UserInterface.h"

namespace gandrel {

QtEntryList::QtEntryList(bool reorderable, Checker check, Arranger arrange, QWidget* parent)
    : QWidget(parent), check_(std::move(check)), arrange_(std::move(arrange)) {
  lstEntries = new QListWidget(this);
  lstEntries->setObjectName("lstEntries");
  txtEntry = new QLineEdit(this);
  txtEntry->setObjectName("txtEntry");
  txtEntry->installEventFilter(this);
  btnAdd = MakeButton(tr("&Add"), this);
  btnChange = MakeButton(tr("C&hange"), this);
  btnRemove = MakeButton(tr("Re&move"), this);

  auto* buttons = new QVBoxLayout;
  buttons->addWidget(btnAdd);
  buttons->addWidget(btnChange);
  buttons->addWidget(btnRemove);
  if (reorderable) {
    btnUp = MakeButton(tr("&Up"), this);
    btnDown = MakeButton(tr("Do&wn"), this);
    buttons->addSpacing(8);
    buttons->addWidget(btnUp);
    buttons->addWidget(btnDown);
    connect(btnUp, &QPushButton::clicked, this, [this] { MoveEntry(-1); });
    connect(btnDown, &QPushButton::clicked, this, [this] { MoveEntry(+1); });
  }
  buttons->addStretch();

  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->addWidget(txtEntry, 0, 0);
  grid->addWidget(lstEntries, 1, 0);
  grid->addLayout(buttons, 0, 1, 2, 1);

  connect(btnAdd, &QPushButton::clicked, this, [this] { AddEntry(); });
  connect(btnChange, &QPushButton::clicked, this, [this] { ChangeEntry(); });
  connect(btnRemove, &QPushButton::clicked, this, [this] { RemoveEntry(); });
  connect(lstEntries, &QListWidget::currentRowChanged, this, [this](int row) {
    if (row >= 0) txtEntry->setText(lstEntries->item(row)->text());
    UpdateButtons();
  });
  UpdateButtons();
}

void QtEntryList::SetEntries(const std::vector<std::string>& entries) {
  lstEntries->clear();
  for (const std::string& entry : entries)
    lstEntries->addItem(QString::fromStdString(entry));
  UpdateButtons();
}

std::vector<std::string> QtEntryList::Entries() const {
  return EntriesExcept(-1);
}

std::vector<std::string> QtEntryList::EntriesExcept(int skip) const {
  std::vector<std::string> entries;
  for (int row = 0; row < lstEntries->count(); ++row)
    if (row != skip) entries.push_back(lstEntries->item(row)->text().toStdString());
  return entries;
}

std::optional<EntryVerdict> QtEntryList::Accepts(const std::string& entry, int skip) {
  EntryVerdict verdict;
  verdict.stored = entry;
  if (check_) verdict = check_(entry, EntriesExcept(skip));
  if (!verdict.refusal.empty()) {
    MsgBox(verdict.refusal);
    txtEntry->setFocus();
    return std::nullopt;
  }
  if (verdict.replaces >= 0) {
    if (UI().ShowMessage(verdict.question, MsgButtons::YesNo, MsgIcon::Question, kAppTitle) !=
        MsgAnswer::Yes) {
      txtEntry->setFocus();
      return std::nullopt;
    }
    // An index among the other rows, made a row of the list.
    if (skip >= 0 && verdict.replaces >= skip) ++verdict.replaces;
  }
  return verdict;
}

void QtEntryList::Arrange(const QString& text) {
  if (arrange_) SetEntries(arrange_(Entries()));
  QList<QListWidgetItem*> found = lstEntries->findItems(text, Qt::MatchExactly);
  if (!found.isEmpty()) lstEntries->setCurrentItem(found.front());
  UpdateButtons();
}

bool QtEntryList::AddEntry() {
  std::optional<EntryVerdict> verdict = Accepts(Trim(txtEntry->text().toStdString()), -1);
  if (!verdict) return false;
  QString stored = QString::fromStdString(verdict->stored);
  if (verdict->replaces >= 0)
    lstEntries->item(static_cast<int>(verdict->replaces))->setText(stored);
  else
    lstEntries->addItem(stored);
  Arrange(stored);
  txtEntry->clear();
  txtEntry->setFocus();  // ready for the next entry, after a question too
  return true;
}

bool QtEntryList::ChangeEntry() {
  int row = lstEntries->currentRow();
  if (row < 0) return false;
  std::optional<EntryVerdict> verdict = Accepts(Trim(txtEntry->text().toStdString()), row);
  if (!verdict) return false;
  QString stored = QString::fromStdString(verdict->stored);
  lstEntries->item(row)->setText(stored);
  if (verdict->replaces >= 0) delete lstEntries->takeItem(static_cast<int>(verdict->replaces));
  Arrange(stored);
  return true;
}

void QtEntryList::RemoveEntry() {
  int row = lstEntries->currentRow();
  if (row < 0) return;
  delete lstEntries->takeItem(row);
  UpdateButtons();
}

void QtEntryList::MoveEntry(int step) {
  int row = lstEntries->currentRow();
  int target = row + step;
  if (row < 0 || target < 0 || target >= lstEntries->count()) return;
  QListWidgetItem* item = lstEntries->takeItem(row);
  lstEntries->insertItem(target, item);
  lstEntries->setCurrentRow(target);
}

void QtEntryList::UpdateButtons() {
  int row = lstEntries->currentRow();
  btnChange->setEnabled(row >= 0);
  btnRemove->setEnabled(row >= 0);
  if (btnUp != nullptr) btnUp->setEnabled(row > 0);
  if (btnDown != nullptr) btnDown->setEnabled(row >= 0 && row + 1 < lstEntries->count());
}

bool QtEntryList::eventFilter(QObject* watched, QEvent* event) {
  if (watched == txtEntry && event->type() == QEvent::KeyPress) {
    int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      if (!txtEntry->text().trimmed().isEmpty()) AddEntry();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace gandrel
