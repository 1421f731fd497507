#include "app/frmDistribution.h"

#include <QApplication>
#include <QBuffer>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTableWidget>
#include <QVBoxLayout>

#include "app/QtButtons.h"
#include "app/QtDistributionChart.h"
#include "app/QtIcon.h"
#include "app/frmMain.h"
#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "calc/RunFlags.h"
#include "calc/UserInterface.h"

namespace gandrel {

namespace {

QPointer<frmDistribution> current;

// The rows of the summary, in order.
const char* const kSummaryRows[] = {"method", "mean",    "sd",        "min",   "max",
                                    "median", "failure", "truncated", "rolls", "standard error"};

QTableWidget* MakeTable(QWidget* parent, const char* name) {
  auto* table = new QTableWidget(parent);
  table->setObjectName(name);
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionMode(QAbstractItemView::NoSelection);
  table->setFocusPolicy(Qt::NoFocus);
  table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
  return table;
}

QTableWidgetItem* Cell(const std::string& text) {
  auto* item = new QTableWidgetItem(QString::fromStdString(text));
  item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  return item;
}

// The summary's column for one distribution.
std::vector<std::string> SummaryColumn(const Distribution& dist) {
  const DistSummary& s = dist.summary;
  bool worked = dist.method != DistMethod::NotExact;
  bool estimated = dist.method == DistMethod::MonteCarlo;
  auto figure = [&](double v) { return worked ? FigureText(dist, v) : std::string("-"); };
  return {dist.method == DistMethod::Exact ? "exact"
          : estimated                      ? "estimated"
                                           : "not worked out",
          figure(s.mean),
          figure(s.sd),
          figure(s.min),
          figure(s.max),
          figure(s.median),
          worked ? PercentText(s.failure) : "-",
          worked ? PercentText(dist.truncated) : "-",
          estimated ? std::to_string(dist.samples) : "-",
          estimated ? FigureText(dist, dist.standardError) : "-"};
}

}  // namespace

frmDistribution* frmDistribution::Open(frmMain* main, const QString& dieValue) {
  if (!current) current = new frmDistribution(main);
  current->show();
  current->raise();
  current->activateWindow();
  if (!current->calculating_) {
    current->txtDieValue->setText(dieValue.trimmed());
    current->Calculate();
  }
  return current;
}

frmDistribution* frmDistribution::Current() {
  return current;
}

frmDistribution::frmDistribution(frmMain* main) : main_(main) {
  setAttribute(Qt::WA_DeleteOnClose);
  BuildLayout();
  ConnectHandlers();
  current = this;
}

frmDistribution::~frmDistribution() {
  // Deleted while its windows were disabled (which a calculation never leaves).
  for (QPointer<QWidget>& window : disabled_)
    if (window) window->setEnabled(true);
}

void frmDistribution::BuildLayout() {
  setObjectName("frmDistribution");
  setWindowTitle(tr("Gandrel - Distribution"));
  setWindowIcon(GandrelIcon());

  txtDieValue = new QLineEdit(this);
  txtDieValue->setObjectName("txtDieValue");
  txtCompare = new QLineEdit(this);
  txtCompare->setObjectName("txtCompare");
  txtCompare->setPlaceholderText(tr("a second die value (optional)"));
  auto* dieValueCaption = new QLabel(tr("&Die value:"), this);
  dieValueCaption->setBuddy(txtDieValue);
  auto* compareCaption = new QLabel(tr("Compare &with:"), this);
  compareCaption->setBuddy(txtCompare);
  btnCalculate = MakeButton(tr("&Calculate"), this, "btnCalculate");
  auto* top = new QHBoxLayout;
  top->addWidget(dieValueCaption);
  top->addWidget(txtDieValue, 1);
  top->addWidget(compareCaption);
  top->addWidget(txtCompare, 1);
  top->addWidget(btnCalculate);

  chart = new QtDistributionChart(this);
  chart->setObjectName("chart");
  tblSummary = MakeTable(this, "tblSummary");
  tblSummary->setRowCount(static_cast<int>(std::size(kSummaryRows)));
  QStringList rows;
  for (const char* row : kSummaryRows)
    rows << tr(row);
  tblSummary->setVerticalHeaderLabels(rows);
  tblSummary->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  tblSummary->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  tblSummary->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  tblOther = MakeTable(this, "tblOther");
  tblOther->setColumnCount(3);
  tblOther->setHorizontalHeaderLabels({tr("die value"), tr("result"), tr("probability")});
  tblOther->verticalHeader()->hide();
  tblOther->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  auto* side = new QWidget(this);
  auto* sideLayout = new QVBoxLayout(side);
  sideLayout->setContentsMargins(0, 0, 0, 0);
  sideLayout->addWidget(tblSummary);
  sideLayout->addWidget(tblOther, 1);
  sideLayout->addStretch();
  auto* splitter = new QSplitter(Qt::Horizontal, this);
  splitter->addWidget(chart);
  splitter->addWidget(side);
  splitter->setStretchFactor(0, 1);
  splitter->setChildrenCollapsible(false);
  splitter->setSizes({620, 300});

  chkBars = new QCheckBox(tr("&Bars"), this);
  chkBars->setObjectName("chkBars");
  chkBars->setChecked(true);
  chkAtLeast = new QCheckBox(tr("At &least"), this);
  chkAtLeast->setObjectName("chkAtLeast");
  chkAtMost = new QCheckBox(tr("At m&ost"), this);
  chkAtMost->setObjectName("chkAtMost");
  btnExportPng = MakeButton(tr("Export &PNG..."), this, "btnExportPng");
  btnExportCsv = MakeButton(tr("Export CS&V..."), this, "btnExportCsv");
  btnClose = MakeButton(tr("Close"), this, "btnClose");
  auto* options = new QHBoxLayout;
  options->addWidget(chkBars);
  options->addWidget(chkAtLeast);
  options->addWidget(chkAtMost);
  options->addStretch();
  options->addWidget(btnExportPng);
  options->addWidget(btnExportCsv);
  options->addWidget(btnClose);

  lblStatus = new QLabel(this);
  lblStatus->setObjectName("lblStatus");
  lblStatus->setTextFormat(Qt::PlainText);
  lblStatus->setWordWrap(true);
  barProgress = new QProgressBar(this);
  barProgress->setObjectName("barProgress");
  barProgress->setRange(0, 1000);
  barProgress->setTextVisible(false);
  btnCancel = MakeButton(tr("Cancel"), this, "btnCancel");
  auto* status = new QHBoxLayout;
  status->addWidget(lblStatus, 1);
  status->addWidget(barProgress);
  status->addWidget(btnCancel);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addWidget(splitter, 1);
  layout->addLayout(options);
  layout->addLayout(status);

  barProgress->hide();
  btnCancel->hide();
  btnExportPng->setEnabled(false);
  btnExportCsv->setEnabled(false);
  tblOther->hide();
  ShowSummary();
  resize(960, 540);
}

void frmDistribution::ConnectHandlers() {
  connect(btnCalculate, &QPushButton::clicked, this, &frmDistribution::Calculate);
  connect(txtDieValue, &QLineEdit::returnPressed, this, &frmDistribution::Calculate);
  connect(txtCompare, &QLineEdit::returnPressed, this, &frmDistribution::Calculate);
  connect(chkBars, &QCheckBox::toggled, chart, &QtDistributionChart::SetShowBars);
  connect(chkAtLeast, &QCheckBox::toggled, chart, &QtDistributionChart::SetShowAtLeast);
  connect(chkAtMost, &QCheckBox::toggled, chart, &QtDistributionChart::SetShowAtMost);
  connect(btnExportPng, &QPushButton::clicked, this, &frmDistribution::AskExportPng);
  connect(btnExportCsv, &QPushButton::clicked, this, &frmDistribution::AskExportCsv);
  connect(btnClose, &QPushButton::clicked, this, &QWidget::close);
  connect(btnCancel, &QPushButton::clicked, this, &frmDistribution::CancelCalculation);
  auto* f9 = new QShortcut(QKeySequence(Qt::Key_F9), this);
  connect(f9, &QShortcut::activated, this, &frmDistribution::Calculate);
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(escape, &QShortcut::activated, this, [this] {
    if (calculating_) {
      CancelCalculation();
    } else {
      close();
    }
  });
}

// ---- Calculating -------------------------------------------------------------

void frmDistribution::Calculate() {
  bool rolling = main_ && main_->Rolling();
  if (calculating_ || rolling || runFlags.ScriptRunning) return;
  std::vector<std::string> values{Trim(txtDieValue->text().toStdString())};
  std::string compare = Trim(txtCompare->text().toStdString());
  if (!compare.empty()) values.push_back(compare);

  SetCalculating(true);
  std::vector<std::pair<std::string, Distribution>> found;
  for (const std::string& value : values) {
    QString name = QString::fromStdString(value);
    CalculatorOptions options;
    options.rolls = rolls;
    options.progress = [this, name](CalculatorStep step, double done) {
      return Progress(name, step, done);
    };
    found.emplace_back(value, CalculateDistribution(value, options));
    if (cancelled_) break;
  }
  bool cancelled = cancelled_;
  SetCalculating(false);

  shown_ = std::move(found);
  ShowResults();
  if (cancelled) lblStatus->setText(lblStatus->text() + " " + tr("Cancelled."));
  emit calculated();
  if (closePending_) {
    closePending_ = false;
    close();
  }
}

bool frmDistribution::Progress(const QString& dieValue, CalculatorStep step, double done) {
  barProgress->setValue(static_cast<int>(done * 1000));
  if (step == CalculatorStep::Exact) {
    lblStatus->setText(tr("Working out %1 exactly...").arg(dieValue));
  } else {
    lblStatus->setText(tr("Rolling %1: %2 of %3 rolls")
                           .arg(dieValue)
                           .arg(static_cast<long long>(done * static_cast<double>(rolls)))
                           .arg(rolls));
  }
  return !cancelled_;
}

void frmDistribution::CancelCalculation() {
  if (!calculating_) return;
  cancelled_ = true;
  // A roll of a script stops at its next line, even one that switched
  // breaking off: it is the calculation's roll, not the user's script.
  runFlags.BreakRequested = true;
  runFlags.BreakForced = true;
  lblStatus->setText(tr("Cancelling..."));
}

void frmDistribution::SetCalculating(bool on) {
  calculating_ = on;
  if (on) {
    cancelled_ = false;
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window == this || !window->isVisible() || !window->isEnabled()) continue;
      window->setEnabled(false);
      disabled_.emplace_back(window);
    }
    barProgress->setValue(0);
    lblStatus->setText(tr("Working..."));
  } else {
    for (QPointer<QWidget>& window : disabled_)
      if (window) window->setEnabled(true);
    disabled_.clear();
  }
  for (QWidget* control : std::initializer_list<QWidget*>{txtDieValue, txtCompare, btnCalculate})
    control->setEnabled(!on);
  btnExportPng->setEnabled(!on && !shown_.empty());
  btnExportCsv->setEnabled(!on && !shown_.empty());
  barProgress->setVisible(on);
  btnCancel->setVisible(on);
  if (on) {
    btnCancel->setFocus();
  } else {
    txtDieValue->setFocus();
  }
}

void frmDistribution::closeEvent(QCloseEvent* event) {
  if (calculating_) {
    CancelCalculation();
    closePending_ = true;
    event->ignore();
    return;
  }
  event->accept();
}

// ---- Showing -------------------------------------------------------------------

void frmDistribution::ShowResults() {
  std::vector<QtDistributionChart::Series> series;
  QStringList status;
  for (const auto& [value, dist] : shown_) {
    QString name = QString::fromStdString(value);
    status << name + ": " + QString::fromStdString(MethodText(dist)) + ".";
    if (dist.method == DistMethod::NotExact) continue;
    series.push_back({name, dist, QtDistributionChart::SeriesColor(series.size())});
  }
  chart->SetSeries(std::move(series));
  lblStatus->setText(status.join(" "));
  ShowSummary();
  ShowOther();
  btnExportPng->setEnabled(!shown_.empty());
  btnExportCsv->setEnabled(!shown_.empty());
}

void frmDistribution::ShowSummary() {
  tblSummary->setColumnCount(static_cast<int>(shown_.size()));
  QStringList names;
  for (size_t c = 0; c < shown_.size(); ++c) {
    const auto& [value, dist] = shown_[c];
    names << QString::fromStdString(value);
    std::vector<std::string> column = SummaryColumn(dist);
    for (size_t r = 0; r < column.size(); ++r) {
      QTableWidgetItem* item = Cell(column[r]);
      if (r == 0) {
        item->setToolTip(QString::fromStdString(MethodText(dist)));
        if (c < 2) item->setForeground(QtDistributionChart::SeriesColor(c));
      }
      tblSummary->setItem(static_cast<int>(r), static_cast<int>(c), item);
    }
  }
  tblSummary->setHorizontalHeaderLabels(names);
  // Every row shows, without a scroll bar.
  tblSummary->setFixedHeight(tblSummary->horizontalHeader()->sizeHint().height() +
                             tblSummary->verticalHeader()->length() + 2 * tblSummary->frameWidth());
}

void frmDistribution::ShowOther() {
  tblOther->setRowCount(0);
  for (const auto& [value, dist] : shown_) {
    for (size_t i = dist.atLeast.size(); i < dist.outcomes.size(); ++i) {
      int row = tblOther->rowCount();
      tblOther->insertRow(row);
      tblOther->setItem(row, 0, Cell(value));
      tblOther->setItem(row, 1, Cell(dist.outcomes[i].text));
      tblOther->setItem(row, 2, Cell(PercentText(dist.outcomes[i].probability)));
    }
  }
  tblOther->setVisible(tblOther->rowCount() > 0);
}

// ---- Export ----------------------------------------------------------------------

static bool WriteExport(const QString& path, const std::string& content) {
  std::string reason;
  if (WriteTextFileAtomic(path.toStdString(), content, reason)) return true;
  MsgBox("Gandrel could not write " + path.toStdString() + ": " + reason);
  return false;
}

bool frmDistribution::ExportPng(const QString& path) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  chart->grab().save(&buffer, "PNG");
  return WriteExport(path, bytes.toStdString());
}

bool frmDistribution::ExportCsv(const QString& path) {
  return WriteExport(path, DistributionCsv(shown_));
}

void frmDistribution::AskExportPng() {
  QString path = QFileDialog::getSaveFileName(this, tr("Export PNG"),
                                              QDir::home().filePath("distribution.png"),
                                              tr("PNG images (*.png);;All Files (*)"));
  if (!path.isEmpty()) ExportPng(path);
}

void frmDistribution::AskExportCsv() {
  QString path = QFileDialog::getSaveFileName(this, tr("Export CSV"),
                                              QDir::home().filePath("distribution.csv"),
                                              tr("CSV files (*.csv);;All Files (*)"));
  if (!path.isEmpty()) ExportCsv(path);
}

}  // namespace gandrel
