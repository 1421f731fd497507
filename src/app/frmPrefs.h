// frmPrefs: the Preferences dialog.
//
// The default die, the history options (AddDice, NewFirst, KeepNum,
// KeepAlways), long results and their indent width, stay-on-top, the three
// fonts and the always-add items. Okay applies everything, tells the main
// window (applied()) and saves the settings at once; Cancel changes nothing.
// Only a default die that rolls is taken. The dialog opens with the focus on
// Okay, so that a stray key changes no setting.
#pragma once

#include <QDialog>

#include "app/Settings.h"

class QCheckBox;
class QLineEdit;
class QPushButton;
class QSpinBox;

namespace gandrel {

class QtEntryList;

class frmPrefs : public QDialog {
  Q_OBJECT

 public:
  explicit frmPrefs(QWidget* parent = nullptr);

  // Okay: checks, applies, saves and closes. False (the user has been told
  // why) when an entry cannot be taken; the dialog stays open then.
  bool Apply();

  QLineEdit* txtDieType;
  QCheckBox* chkAddDice;
  QCheckBox* chkNewFirst;
  QSpinBox* spinKeepNum;
  QCheckBox* chkKeepAlways;
  QCheckBox* chkLongResults;
  QSpinBox* spinMargin;
  QCheckBox* chkOnTop;
  QPushButton* btnFont[3];
  QtEntryList* lstAlwaysAdd;
  QPushButton* btnOkay;
  QPushButton* btnCancel;

  // The fonts as chosen so far (applied on Okay).
  FontSetting fonts[3];

 signals:
  // The settings have been changed; they are saved right after.
  void applied();

 private:
  void ChooseFont(int index);
  void ShowFont(int index);
};

}  // namespace gandrel
