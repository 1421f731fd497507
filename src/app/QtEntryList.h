// QtEntryList: a list of text entries the user adds, changes, removes and,
// where order matters, moves up and down.
//
// The Define Die Types dialog lists die types with it, the Preferences dialog
// the always-add items. Each entry typed is checked before it goes in; a
// refused entry is explained in a message box and stays in the edit box. An
// entry that takes the place of another goes in only when the user says Yes
// to the checker's question. A list whose order follows from its entries
// (the die types) is arranged again after each entry that goes in.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/DialogModels.h"

class QLineEdit;
class QListWidget;
class QPushButton;

namespace gandrel {

class QtEntryList : public QWidget {
  Q_OBJECT

 public:
  // What becomes of entry beside others (the entries without the one being
  // changed).
  using Checker =
      std::function<EntryVerdict(const std::string& entry, const std::vector<std::string>& others)>;
  // The entries in the order the list shows them.
  using Arranger = std::function<std::vector<std::string>(const std::vector<std::string>&)>;

  QtEntryList(bool reorderable, Checker check, Arranger arrange = nullptr,
              QWidget* parent = nullptr);

  void SetEntries(const std::vector<std::string>& entries);
  std::vector<std::string> Entries() const;

  // The typed entry, as the checker stores it, as a new last entry (or in
  // place of the entry it replaces) / in place of the selected one. False
  // when it was refused (the user has been told why) or the user kept the
  // entry it would replace.
  bool AddEntry();
  bool ChangeEntry();
  void RemoveEntry();
  // Moves the selected entry step places (-1 up, +1 down) when it can.
  void MoveEntry(int step);

  QListWidget* lstEntries;
  QLineEdit* txtEntry;
  QPushButton* btnAdd;
  QPushButton* btnChange;
  QPushButton* btnRemove;
  QPushButton* btnUp = nullptr;
  QPushButton* btnDown = nullptr;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // The entries without row skip (-1: all of them).
  std::vector<std::string> EntriesExcept(int skip) const;
  // The verdict on entry beside the rows but skip, when the entry may go in:
  // not refused, and any replacement agreed to. replaces is made a row.
  std::optional<EntryVerdict> Accepts(const std::string& entry, int skip);
  // Arranges the list and selects the row that holds text.
  void Arrange(const QString& text);
  void UpdateButtons();

  Checker check_;
  Arranger arrange_;
};

}  // namespace gandrel
