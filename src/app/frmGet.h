// frmGet: the number prompt of the script command GET.
//
// A prompt and a text box holding the default, all of it selected so that
// typing replaces it. Okay (or Enter) stores the leading number of the text
// in runFlags.InputValue: "12abc" is 12, "abc" 0, " 3.5" 3.5, "-3" -3. There
// is no Cancel: the close box and Escape leave InputValue as it was.
#pragma once

#include <string>

#include "app/QtScriptDialog.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace gandrel {

class frmGet : public QtScriptDialog {
  Q_OBJECT

 public:
  explicit frmGet(QWidget* parent = nullptr);

  // Shows prompt and the default before the dialog is shown.
  void Prepare(const std::string& prompt, const std::string& defaultText);

  QPushButton* cmdOkay;
  QLineEdit* txtGet;
  QLabel* lblPrompt;

 private:
  void OkayClicked();
};

}  // namespace gandrel
