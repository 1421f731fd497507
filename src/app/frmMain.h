// frmMain: Gandrel's main window.
//
// The die-value box with its history, the Roll button, the result and the
// each-result text, the script editor (QtScriptEditor) with its New, Load and
// Save buttons, and the buttons for Preferences, Define Die Types, About,
// Help (also F1: the guide to scripts, frmHelp) and Exit. It is
// the MainView through which the shell makes a roll, and it keeps one roll at
// a time: while a roll or a script runs (and pumps events) Roll, Enter,
// picking an entry of the list, New, Load, Save and the rewriting of the die
// value by the script editor do nothing, and the buttons that would start
// something else are disabled. Escape asks the roll or script to break.
// Closing the window breaks a running roll or script first (even one that
// switched breaking off) and closes its windows, then saves the settings,
// keeps the script editor for the next start and closes every other window
// of Gandrel.
#pragma once

#include <QPointer>
#include <QWidget>
#include <string>
#include <vector>

#include "app/QtResultLabels.h"
#include "app/QtScriptEditor.h"
#include "app/modGandrel.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QScreen;
class QSplitter;

namespace gandrel {

class frmHelp;

class frmMain : public QWidget, public MainView {
  Q_OBJECT

 public:
  explicit frmMain(QWidget* parent = nullptr);
  ~frmMain() override;

  // Start-up: StartUp(), the script editor as it was left, the settings
  // applied to the window, the window shown where it was left, the first
  // roll, the die-value box focused.
  void Start();

  // ---- MainView ----
  std::string DieValueText() const override;
  void SetDieValueText(const std::string& text) override;
  void ShowDieList(const std::vector<std::string>& entries, const std::string& text) override;
  // The each-result box shows at most about 1 MB of the text, long lines
  // broken (see LimitShownText and BreakLongLines).
  void ShowRoll(const RollOutcome& outcome) override;
  std::string ScriptText() const override;
  void SetScriptText(const std::string& text) override;
  void ShowScriptState(const std::string& caption, bool modified) override;
  std::string AskScriptFile(FileQuestion question, const std::string& title,
                            const std::string& initialPath) override;

  // The Roll button's handler: one roll, unless one is running already.
  void RollClicked();
  bool Rolling() const { return rolling_; }

  // DISPLAY of a running script: result in the result label, log in the
  // each-result box; nothing else changes.
  void ShowDisplay(const std::string& result, const std::string& log);

  // The fonts, See All and stay-on-top of the settings, applied.
  void ApplySettings();
  // The window's place, size, state and splitter into settings.Main, and back.
  // Restoring fits the window into the available area of the screen that
  // holds the centre of the place (else the primary screen): smaller first,
  // then moved inside; a maximised window stays maximised.
  void StorePlacement();
  void RestorePlacement();
  // Fits the window, as it stands, into its screen's available area, frame
  // included once the window manager has framed it.
  void FitIntoScreen(QScreen* screen);
  // StorePlacement, SaveSettings, then KeepScriptEditor.
  bool SaveAll();

  // The guide to scripts, in its window (made on first use).
  void ShowHelp();

  // Controls, named as the rest of Gandrel names them.
  QComboBox* comboDieValue;
  QPushButton* btnRoll;
  QPushButton* btnDistribution;  // and F9: the calculator's window for the die value
  // The total, as large as its room allows; under it the die value it
  // belongs to, and the hints about it (hidden when there are none).
  ResultLabel* lblResult;
  ElidedLabel* lblResultFor;
  QLabel* lblHints;
  QCheckBox* chkResults;
  QPlainTextEdit* txtEachResult;
  QLabel* lblScript;
  QtScriptEditor* txtScript;
  QPushButton* btnNewScript;
  QPushButton* btnLoadScript;
  QPushButton* btnSaveScript;
  QPushButton* btnPrefs;
  QPushButton* btnDefine;
  QPushButton* btnAbout;
  QPushButton* btnHelp;
  QPushButton* btnExit;
  QSplitter* splitter;

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BuildLayout();
  // Tab goes from the die-value box to Roll, See All, the details and the
  // buttons, and only then into the script editor (where Tab types a TAB).
  void SetTabOrder();
  // The result, its caption and its hints emptied: nothing rolled yet on
  // the die value in the box.
  void ClearResult();
  void ShowResultFor(const std::string& result, const std::string& dieValue);
  void ShowHints(const std::vector<std::string>& hints);
  void ConnectHandlers();
  void DieValuePicked(int index);
  void ShowPrefs();
  void ShowDefine();
  void ShowAbout();
  void ShowDistribution();
  void SetRollControlsEnabled(bool enabled);
  void RollFromEnter();
  // No roll and no script under way.
  bool Idle() const;
  // Runs a shell operation of the script editor when idle.
  void WhenIdle(void (*operation)());
  void CloseOtherWindows();

  bool rolling_ = false;
  bool closePending_ = false;
  QPointer<frmHelp> help_;
};

}  // namespace gandrel
