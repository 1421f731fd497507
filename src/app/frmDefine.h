// frmDefine: the Define Die Types dialog.
//
// Lists the user's die types as entries ("dfate = -1 to 1", "dfib =
// 1,1,2,3,5") to add, change and remove, in the order the tables keep them,
// each as it is stored; under the list, how the typed entry will be stored.
// An entry that would not roll is refused; one that replaces a type asks
// first. Okay rebuilds both die-type tables from the entries, so that a
// removed type is gone, tells the main window (applied()) and saves; Cancel
// changes nothing.
#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace gandrel {

class QtEntryList;

class frmDefine : public QDialog {
  Q_OBJECT

 public:
  explicit frmDefine(QWidget* parent = nullptr);

  // Okay: rebuilds the tables and saves.
  void Apply();

  QtEntryList* lstTypes;
  QLabel* lblStored;  // how the typed entry will be stored
  QPushButton* btnOkay;
  QPushButton* btnCancel;

 signals:
  // The die types have been rebuilt; they are saved right after.
  void applied();
};

}  // namespace gandrel
