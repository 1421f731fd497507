// frmPick: the pick list of the script command PICKLIST.
//
// A prompt over a list of items, each carrying its number (1, 2, ...) as its
// item data. Okay, Enter or a double click stores the number of the selected
// item in runFlags.PickIndex (0 when none is selected); Cancel and Escape
// store 0; the close box leaves PickIndex as it was. Besides its place, the
// pick list remembers its size.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/QtScriptDialog.h"

class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace gandrel {

class frmPick : public QtScriptDialog {
  Q_OBJECT

 public:
  explicit frmPick(QWidget* parent = nullptr);

  // Shows prompt and the items, numbered from 1, with item selected
  // (counted from 1) preselected; none when it is out of range.
  void Prepare(const std::string& prompt, const std::vector<std::string>& items, int16_t selected);

  QPushButton* cmdCancel;
  QPushButton* cmdOkay;
  QListWidget* lstItems;
  QLabel* lblPrompt;

 private:
  void OkayClicked();
  void CancelClicked();
};

}  // namespace gandrel
