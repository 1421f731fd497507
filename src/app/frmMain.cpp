#include "app/frmMain.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <exception>

#include "app/DialogModels.h"
#include "app/QtFonts.h"
#include "app/QtIcon.h"
#include "app/QtScriptWindows.h"
#include "app/Settings.h"
#include "app/frmAbout.h"
#include "app/frmDefine.h"
#include "app/frmDistribution.h"
#include "app/frmPrefs.h"
#include "calc/Basic.h"
#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"

namespace gandrel {

static const char* const kScriptFilter = "Script Files (*.DIE *.die *.Die);;All Files (*)";
static const QColor kModifiedBackground(224, 224, 224);

// The design size of the window, used when the stored one is unusable.
static constexpr int kDesignWidth = 760;
static constexpr int kDesignHeight = 520;

// Engine texts end their lines with CR LF; the editors want LF.
static QString ToEditorText(const std::string& text) {
  QString shown = QString::fromStdString(text);
  shown.replace("\r\n", "\n");
  shown.replace('\r', '\n');
  return shown;
}

static QPushButton* MakeButton(const QString& caption, QWidget* parent, const char* name) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(name);
  button->setAutoDefault(false);
  return button;
}

frmMain::frmMain(QWidget* parent) : QWidget(parent) {
  BuildLayout();
  ConnectHandlers();
  SetMainView(this);
  ShowScriptState("Script", false);
}

// The children outlive this part of the window: while QWidget deletes them
// (and moves the focus away) they must no longer reach its handlers.
frmMain::~frmMain() {
  for (QObject* child : findChildren<QObject*>()) {
    child->removeEventFilter(this);
    QObject::disconnect(child, nullptr, this, nullptr);
  }
  SetMainView(nullptr);
}

void frmMain::BuildLayout() {
  setObjectName("frmMain");
  setWindowTitle("Gandrel");
  setWindowIcon(GandrelIcon());

  comboDieValue = new QComboBox(this);
  comboDieValue->setObjectName("comboDieValue");
  comboDieValue->setEditable(true);
  comboDieValue->setInsertPolicy(QComboBox::NoInsert);
  comboDieValue->setCompleter(nullptr);
  comboDieValue->setMaxVisibleItems(20);
  comboDieValue->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  comboDieValue->setMinimumContentsLength(16);
  btnRoll = MakeButton(tr("&Roll"), this, "btnRoll");
  btnDistribution = MakeButton(tr("Distri&bution..."), this, "btnDistribution");
  auto* dieValueCaption = new QLabel(tr("Die value:"), this);
  dieValueCaption->setBuddy(comboDieValue);

  lblResult = new QLabel(this);
  lblResult->setObjectName("lblResult");
  lblResult->setTextFormat(Qt::PlainText);
  lblResult->setTextInteractionFlags(Qt::TextSelectableByMouse);
  lblResult->setAlignment(Qt::AlignCenter);
  lblResult->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  lblResult->setMinimumHeight(64);
  QFont big = lblResult->font();
  big.setPointSizeF(big.pointSizeF() * 2.6);
  big.setBold(true);
  lblResult->setFont(big);
  chkResults = new QCheckBox(tr("&See All"), this);
  chkResults->setObjectName("chkResults");
  txtEachResult = new QPlainTextEdit(this);
  txtEachResult->setObjectName("txtEachResult");
  txtEachResult->setReadOnly(true);
  txtEachResult->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto* results = new QWidget(this);
  auto* resultsLayout = new QVBoxLayout(results);
  resultsLayout->setContentsMargins(0, 0, 0, 0);
  resultsLayout->addWidget(lblResult);
  resultsLayout->addWidget(chkResults);
  resultsLayout->addWidget(txtEachResult, 1);

  lblScript = new QLabel(this);
  lblScript->setObjectName("lblScript");
  lblScript->setTextFormat(Qt::PlainText);
  lblScript->setAutoFillBackground(true);
  lblScript->setMargin(2);
  txtScript = new QPlainTextEdit(this);
  txtScript->setObjectName("txtScript");
  txtScript->setLineWrapMode(QPlainTextEdit::NoWrap);
  btnNewScript = MakeButton(tr("&New"), this, "btnNewScript");
  btnLoadScript = MakeButton(tr("&Load..."), this, "btnLoadScript");
  btnSaveScript = MakeButton(tr("Sa&ve..."), this, "btnSaveScript");
  auto* scriptButtons = new QHBoxLayout;
  scriptButtons->addWidget(btnNewScript);
  scriptButtons->addWidget(btnLoadScript);
  scriptButtons->addWidget(btnSaveScript);
  scriptButtons->addStretch();
  auto* script = new QWidget(this);
  auto* scriptLayout = new QVBoxLayout(script);
  scriptLayout->setContentsMargins(0, 0, 0, 0);
  scriptLayout->addWidget(lblScript);
  scriptLayout->addWidget(txtScript, 1);
  scriptLayout->addLayout(scriptButtons);

  splitter = new QSplitter(Qt::Horizontal, this);
  splitter->setObjectName("splitter");
  splitter->addWidget(results);
  splitter->addWidget(script);
  splitter->setChildrenCollapsible(false);
  // A wider window widens the script editor; the results keep their width.
  splitter->setStretchFactor(0, 0);
  splitter->setStretchFactor(1, 1);

  btnPrefs = MakeButton(tr("&Preferences..."), this, "btnPrefs");
  btnDefine = MakeButton(tr("&Define Die Types..."), this, "btnDefine");
  btnAbout = MakeButton(tr("&About..."), this, "btnAbout");
  btnExit = MakeButton(tr("E&xit"), this, "btnExit");

  auto* top = new QHBoxLayout;
  top->addWidget(dieValueCaption);
  top->addWidget(comboDieValue, 1);
  top->addWidget(btnRoll);
  top->addWidget(btnDistribution);
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(btnPrefs);
  bottom->addWidget(btnDefine);
  bottom->addWidget(btnAbout);
  bottom->addStretch();
  bottom->addWidget(btnExit);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addWidget(splitter, 1);
  layout->addLayout(bottom);

  resize(kDesignWidth, kDesignHeight);
}

void frmMain::ConnectHandlers() {
  connect(btnRoll, &QPushButton::clicked, this, &frmMain::RollClicked);
  // Keys reach the box's line edit through the box itself (its focus proxy),
  // or directly: Enter is caught on both ways.
  comboDieValue->installEventFilter(this);
  comboDieValue->lineEdit()->installEventFilter(this);
  // A pick by the user emits activated; rebuilding the list does not. The box
  // would also emit it when the focus leaves it while its text equals an
  // entry: that is no pick, so the box no longer hears its line edit finish.
  QObject::disconnect(comboDieValue->lineEdit(), &QLineEdit::editingFinished, comboDieValue,
                      nullptr);
  connect(comboDieValue, &QComboBox::activated, this, &frmMain::DieValuePicked);

  connect(chkResults, &QCheckBox::toggled, this, [this](bool on) {
    settings.SeeAll = on;
    txtEachResult->setVisible(on);
  });

  connect(txtScript, &QPlainTextEdit::textChanged, this, [] { ScriptTextChanged(); });
  txtScript->installEventFilter(this);
  txtScript->viewport()->installEventFilter(this);
  connect(btnNewScript, &QPushButton::clicked, this, [this] { WhenIdle(NewScript); });
  connect(btnLoadScript, &QPushButton::clicked, this, [this] { WhenIdle(LoadScriptFile); });
  connect(btnSaveScript, &QPushButton::clicked, this, [this] { WhenIdle([] { SaveScriptAs(); }); });

  connect(btnPrefs, &QPushButton::clicked, this, &frmMain::ShowPrefs);
  connect(btnDefine, &QPushButton::clicked, this, &frmMain::ShowDefine);
  connect(btnAbout, &QPushButton::clicked, this, &frmMain::ShowAbout);
  connect(btnDistribution, &QPushButton::clicked, this, &frmMain::ShowDistribution);
  auto* f9 = new QShortcut(QKeySequence(Qt::Key_F9), this);
  connect(f9, &QShortcut::activated, this, &frmMain::ShowDistribution);
  connect(btnExit, &QPushButton::clicked, this, &QWidget::close);

  // Escape asks a running roll or script to stop; it reaches here while the
  // roll pumps events. A shortcut of this window alone: dialogs and message
  // boxes keep their own Escape.
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(escape, &QShortcut::activated, this, [] { EscapePressed(); });
}

// ---- Start-up and shut-down ------------------------------------------------

void frmMain::Start() {
  StartUp();
  ApplySettings();
  RestorePlacement();
  show();
  activateWindow();
  comboDieValue->setFocus();
  btnRoll->click();
}

void frmMain::ApplySettings() {
  txtEachResult->setFont(ToQFont(settings.Fonts[kResultsFont]));
  txtScript->setFont(ToQFont(settings.Fonts[kScriptFont]));
  {
    QSignalBlocker block(chkResults);
    chkResults->setChecked(settings.SeeAll);
  }
  txtEachResult->setVisible(settings.SeeAll);
  bool onTop = windowFlags().testFlag(Qt::WindowStaysOnTopHint);
  if (onTop != settings.OnTop) {
    bool shown = isVisible();
    // Changing a window flag hides the window: show it again.
    setWindowFlag(Qt::WindowStaysOnTopHint, settings.OnTop);
    if (shown) show();
  }
}

void frmMain::RestorePlacement() {
  const WindowPlacement& place = settings.Main;
  QRect rect(place.Left, place.Top, place.Width, place.Height);
  if (rect.width() < minimumSizeHint().width() || rect.height() < minimumSizeHint().height())
    rect.setSize(QSize(kDesignWidth, kDesignHeight));
  // A window left on a screen that is gone comes back on the primary one.
  QScreen* screen = QGuiApplication::screenAt(rect.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  if (screen != nullptr) {
    QRect available = screen->availableGeometry();
    if (!available.intersects(rect)) rect.moveTopLeft(available.topLeft() + QPoint(40, 40));
  }
  setGeometry(rect);
  layout()->activate();

  int left = std::clamp(place.Splitter - splitter->x(), 1, std::max(1, splitter->width() - 1));
  splitter->setSizes({left, std::max(1, splitter->width() - left - splitter->handleWidth())});

  Qt::WindowStates state = windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
  if (place.State == 2) state |= Qt::WindowMaximized;
  if (place.State == 1) state |= Qt::WindowMinimized;
  setWindowState(state);
}

void frmMain::StorePlacement() {
  WindowPlacement& place = settings.Main;
  place.State = isMinimized() ? 1 : isMaximized() ? 2 : 0;
  if (!isMinimized()) {
    QRect rect = geometry();
    place.Left = rect.x();
    place.Top = rect.y();
    place.Width = rect.width();
    place.Height = rect.height();
  }
  int position = splitter->x() + splitter->sizes().value(0);
  place.Splitter = static_cast<int16_t>(std::clamp(position, 0, 32767));
}

bool frmMain::SaveAll() {
  StorePlacement();
  return SaveSettings();
}

void frmMain::closeEvent(QCloseEvent* event) {
  if (rolling_) {
    // Break the roll first, a script even under BREAKOFF, and close the
    // windows it waits for; RollClicked closes this window when it has ended.
    runFlags.BreakRequested = true;
    if (runFlags.ScriptRunning) runFlags.BreakForced = true;
    closePending_ = true;
    CloseOtherWindows();
    event->ignore();
    return;
  }
  SaveAll();
  CloseOtherWindows();
  event->accept();
}

void frmMain::CloseOtherWindows() {
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window != this && window->isVisible()) window->close();
}

// ---- The roll ----------------------------------------------------------------

void frmMain::RollClicked() {
  if (rolling_ || runFlags.ScriptRunning) return;
  rolling_ = true;
  SetRollControlsEnabled(false);
  try {
    RollDieValue();
  } catch (const BreakSignal&) {
    // The shell shows a break itself; one that slips past leaves the last result.
  } catch (const std::exception& error) {
    MsgBox(std::string("Gandrel could not finish this roll: ") + error.what());
  }
  SetRollControlsEnabled(true);
  rolling_ = false;
  if (closePending_) {
    closePending_ = false;
    close();
  }
}

// Enter rolls, then moves the caret as one Left-arrow in the selected text
// would. Enter goes no further: the combo box has nothing to add (it would
// take it for the pick of an entry whose text equals the typed one).
void frmMain::RollFromEnter() {
  if (!Idle()) return;
  RollClicked();
  QKeyEvent left(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
  QCoreApplication::sendEvent(comboDieValue->lineEdit(), &left);
}

void frmMain::SetRollControlsEnabled(bool enabled) {
  for (QPushButton* button : {btnPrefs, btnDefine, btnNewScript, btnLoadScript, btnSaveScript})
    button->setEnabled(enabled);
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
  bool dieValueBox = watched == comboDieValue || watched == comboDieValue->lineEdit();
  if (dieValueBox && event->type() == QEvent::KeyPress) {
    int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      RollFromEnter();
      return true;
    }
  } else if (watched == txtScript && event->type() == QEvent::FocusIn) {
    Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason && Idle())
      ScriptEditorFocused();
  } else if (watched == txtScript->viewport() && event->type() == QEvent::MouseButtonPress) {
    if (Idle()) ScriptEditorClicked();
  }
  return QWidget::eventFilter(watched, event);
}

// ---- MainView ----------------------------------------------------------------

std::string frmMain::DieValueText() const {
  return comboDieValue->currentText().toStdString();
}

void frmMain::SetDieValueText(const std::string& text) {
  comboDieValue->setEditText(QString::fromStdString(text));
}

// Rebuilding the list must neither run the pick handler nor leave an entry's
// text in the box (adding to an empty list would put the entry there).
void frmMain::ShowDieList(const std::vector<std::string>& entries, const std::string& text) {
  QSignalBlocker block(comboDieValue);
  comboDieValue->clear();
  for (const std::string& entry : entries)
    comboDieValue->addItem(QString::fromStdString(entry));
  comboDieValue->setEditText(QString::fromStdString(text));
}

void frmMain::ShowDisplay(const std::string& result, const std::string& log) {
  lblResult->setText(QString::fromStdString(result));
  txtEachResult->setPlainText(ToEditorText(BreakLongLines(LimitShownText(log))));
}

void frmMain::ShowRoll(const RollOutcome& outcome) {
  if (outcome.listChanged) {
    ShowDieList(outcome.dieList, outcome.dieValueText);
  } else {
    SetDieValueText(outcome.dieValueText);
  }
  comboDieValue->lineEdit()->selectAll();
  lblResult->setText(QString::fromStdString(outcome.result));
  txtEachResult->setPlainText(ToEditorText(BreakLongLines(LimitShownText(outcome.eachResult))));
  QGuiApplication::clipboard()->setText(QString::fromStdString(outcome.clipboard));
}

std::string frmMain::ScriptText() const {
  return txtScript->toPlainText().replace("\n", "\r\n").toStdString();
}

// The caret stays where it was, as near as the new text allows.
void frmMain::SetScriptText(const std::string& text) {
  int caret = txtScript->textCursor().position();
  txtScript->setPlainText(ToEditorText(text));
  QTextCursor cursor = txtScript->textCursor();
  cursor.setPosition(std::min(caret, txtScript->document()->characterCount() - 1));
  txtScript->setTextCursor(cursor);
}

void frmMain::ShowScriptState(const std::string& caption, bool modified) {
  lblScript->setText(QString::fromStdString(caption));
  QPalette palette = lblScript->palette();
  palette.setColor(QPalette::Window,
                   modified ? kModifiedBackground : QApplication::palette().color(QPalette::Base));
  lblScript->setPalette(palette);
}

std::string frmMain::AskScriptFile(FileQuestion question, const std::string& title,
                                   const std::string& initialPath) {
  QString start = QString::fromStdString(initialPath);
  QString chosen =
      question == FileQuestion::Open
          ? QFileDialog::getOpenFileName(this, QString::fromStdString(title), start, kScriptFilter)
          // The shell asks before it replaces a file: the dialog must not ask too.
          : QFileDialog::getSaveFileName(this, QString::fromStdString(title), start, kScriptFilter,
                                         nullptr, QFileDialog::DontConfirmOverwrite);
  return chosen.toStdString();
}

// ---- The die-value list ------------------------------------------------------

void frmMain::DieValuePicked(int index) {
  if (Idle()) PickDieValue(comboDieValue->itemText(index).toStdString());
}

bool frmMain::Idle() const {
  return !rolling_ && !runFlags.ScriptRunning;
}

void frmMain::WhenIdle(void (*operation)()) {
  if (Idle()) operation();
}

// ---- Dialogs -----------------------------------------------------------------

void frmMain::ShowPrefs() {
  if (!Idle()) return;
  frmPrefs dialog(this);
  connect(&dialog, &frmPrefs::applied, this, [this] {
    ApplySettings();
    StorePlacement();
  });
  dialog.exec();
}

void frmMain::ShowDefine() {
  if (!Idle()) return;
  frmDefine dialog(this);
  connect(&dialog, &frmDefine::applied, this, &frmMain::StorePlacement);
  dialog.exec();
}

void frmMain::ShowDistribution() {
  if (Idle()) frmDistribution::Open(this, comboDieValue->currentText());
}

void frmMain::ShowAbout() {
  frmAbout dialog(this);
  dialog.exec();
}

}  // namespace gandrel
