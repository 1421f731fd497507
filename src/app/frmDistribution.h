// frmDistribution: the dice calculator's window.
//
// A die value (taken from the main window) and a second one to compare,
// Calculate, the chart of their distributions (QtDistributionChart) with the
// bars and the at-least and at-most curves toggled, beside it the summary of
// each (how it was found, mean, sd, min, max, median, failure, truncated,
// and for an estimate its rolls and standard error) and the results that are
// no number; Export PNG and Export CSV. Enter or F9 calculates again.
//
// One window at a time: Open() brings it up, or back, for a die value. While
// it calculates, the window stays responsive (the calculator lets events run)
// and the other windows are disabled, so that nothing rolls or changes the
// die types meanwhile; a progress bar and Cancel show, and Escape cancels.
// Otherwise Escape closes the window. Closing it during a calculation
// cancels the calculation, and the window closes when it has stopped. It
// deletes itself when closed.
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <string>
#include <utility>
#include <vector>

#include "app/Calculator.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTableWidget;

namespace gandrel {

class QtDistributionChart;
class frmMain;

class frmDistribution : public QWidget {
  Q_OBJECT

 public:
  // The window, made when there is none, shown with dieValue and calculated
  // (unless it is calculating already: then it is only raised).
  static frmDistribution* Open(frmMain* main, const QString& dieValue);
  // The window when one is open.
  static frmDistribution* Current();

  explicit frmDistribution(frmMain* main);
  ~frmDistribution() override;

  // Works out the distributions of the die value and, when one is typed, the
  // one to compare; shows them. Does nothing while a roll, a script or a
  // calculation runs.
  void Calculate();
  bool Calculating() const { return calculating_; }
  // Asks the calculation under way to stop (Cancel, Escape).
  void CancelCalculation();

  // Export PNG / CSV to path; false (the user told) when it cannot be written.
  bool ExportPng(const QString& path);
  bool ExportCsv(const QString& path);

  // The most rolls an estimate makes.
  long rolls = kEstimateRolls;

  QLineEdit* txtDieValue;
  QLineEdit* txtCompare;
  QPushButton* btnCalculate;
  QtDistributionChart* chart;
  QCheckBox* chkBars;
  QCheckBox* chkAtLeast;
  QCheckBox* chkAtMost;
  QTableWidget* tblSummary;
  QTableWidget* tblOther;  // results that are no number
  QLabel* lblStatus;
  QProgressBar* barProgress;
  QPushButton* btnCancel;
  QPushButton* btnExportPng;
  QPushButton* btnExportCsv;
  QPushButton* btnClose;

 signals:
  // A calculation has ended (shown, or cancelled).
  void calculated();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildLayout();
  void ConnectHandlers();
  bool Progress(const QString& dieValue, CalculatorStep step, double done);
  void ShowResults();
  void ShowSummary();
  void ShowOther();
  void SetCalculating(bool on);
  void AskExportPng();
  void AskExportCsv();

  QPointer<frmMain> main_;
  std::vector<std::pair<std::string, Distribution>> shown_;
  bool calculating_ = false;
  bool cancelled_ = false;
  bool closePending_ = false;
  std::vector<QPointer<QWidget>> disabled_;
};

}  // namespace gandrel
