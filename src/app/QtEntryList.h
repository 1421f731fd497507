// QtEntryList: a list of text entries the user adds, changes, removes and,
// where order matters, moves up and down.
//
// The Define Die Types dialog lists die types with it, the Preferences dialog
// the always-add items. Each entry typed is checked before it goes in; a
// refused entry is explained in a message box and stays in the edit box.
#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

class QLineEdit;
class QListWidget;
class QPushButton;

namespace gandrel {

class QtEntryList : public QWidget {
  Q_OBJECT

 public:
  // Why entry cannot go in beside others, or "" when it can.
  using Checker =
      std::function<std::string(const std::string& entry, const std::vector<std::string>& others)>;

  QtEntryList(bool reorderable, Checker check, QWidget* parent = nullptr);

  void SetEntries(const std::vector<std::string>& entries);
  std::vector<std::string> Entries() const;

  // The typed entry, trimmed, as a new last entry / in place of the selected
  // one. False when it was refused (the user has been told why).
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
  bool Accepts(const std::string& entry, int skip);
  void UpdateButtons();

  Checker check_;
};

}  // namespace gandrel
