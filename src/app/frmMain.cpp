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
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <exception>

#include "app/DialogModels.h"
#include "app/QtButtons.h"
#include "app/QtFonts.h"
#include "app/QtIcon.h"
#include "app/QtResultLabels.h"
#include "app/QtScriptWindows.h"
#include "app/Settings.h"
#include "app/WindowFit.h"
#include "app/frmAbout.h"
#include "app/frmDefine.h"
#include "app/frmDistribution.h"
#include "app/frmHelp.h"
#include "app/frmPrefs.h"
#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"

namespace gandrel {

static const char* const kScriptFilter = "Script Files (*.DIE *.die *.Die);;All Files (*)";
static const QColor kModifiedBackground(224, 224, 224);

// How long after showing the window its frame is sure to be known.
static constexpr int kFramedAfterMs = 250;

// Of a long result the tooltip shows this many characters.
static constexpr qsizetype kLongestToolTip = 2000;

// The total's font, against the window's.
static constexpr qreal kResultScale = 2.6;

// The design size of the window, used when the stored one is unusable.
static constexpr int kDesignWidth = 760;
static constexpr int kDesignHeight = 520;

// Engine texts end their lines with CR LF; the editors want LF.
static QString ToEditorText(const std::string& text) {
  return QString::fromStdString(UnixLines(text));
}

// The end of a script's log, for the tooltip of the line it stopped on.
static QString LastLines(const std::string& log) {
  QStringList lines = ToEditorText(log).split('\n', Qt::SkipEmptyParts);
  QString last = lines.mid(std::max<qsizetype>(0, lines.size() - 3)).join('\n');
  return last.size() > 400 ? last.right(400) : last;
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

  // The total is large, and shrinks to the window's font size for a text
  // that would not fit otherwise.
  QFont big = font();
  qreal normalSize = big.pointSizeF();
  big.setPointSizeF(normalSize * kResultScale);
  big.setBold(true);
  lblResult = new ResultLabel(normalSize, this);
  lblResult->setObjectName("lblResult");
  lblResult->setFont(big);
  lblResultFor = new ElidedLabel(this);
  lblResultFor->setObjectName("lblResultFor");
  lblResultFor->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  lblResultFor->setForegroundRole(QPalette::PlaceholderText);
  lblHints = new QLabel(this);
  lblHints->setObjectName("lblHints");
  lblHints->setTextFormat(Qt::PlainText);
  lblHints->setWordWrap(true);
  lblHints->setTextInteractionFlags(Qt::TextSelectableByMouse);
  lblHints->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
  lblHints->setMargin(2);
  lblHints->hide();
  chkResults = new QCheckBox(tr("&See All"), this);
  chkResults->setObjectName("chkResults");
  txtEachResult = new QPlainTextEdit(this);
  txtEachResult->setObjectName("txtEachResult");
  txtEachResult->setReadOnly(true);
  txtEachResult->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto* results = new QWidget(this);
  auto* resultsLayout = new QVBoxLayout(results);
  resultsLayout->setContentsMargins(0, 0, 0, 0);
  // The total, its caption and its hints stay together, in the middle of
  // the room the details leave.
  auto* resultBox = new QVBoxLayout;
  resultBox->addStretch(1);
  resultBox->addWidget(lblResult);
  resultBox->addWidget(lblResultFor);
  resultBox->addWidget(lblHints);
  resultBox->addStretch(1);
  resultsLayout->addLayout(resultBox);
  resultsLayout->addWidget(chkResults);
  resultsLayout->addWidget(txtEachResult, 1);

  lblScript = new QLabel(this);
  lblScript->setObjectName("lblScript");
  lblScript->setTextFormat(Qt::PlainText);
  lblScript->setAutoFillBackground(true);
  lblScript->setMargin(2);
  txtScript = new QtScriptEditor(this);
  txtScript->setObjectName("txtScript");
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
  btnHelp = MakeButton(tr("&Help"), this, "btnHelp");
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
  bottom->addWidget(btnHelp);
  bottom->addStretch();
  bottom->addWidget(btnExit);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addWidget(splitter, 1);
  layout->addLayout(bottom);

  resize(kDesignWidth, kDesignHeight);
  SetTabOrder();
}

void frmMain::SetTabOrder() {
  QWidget* order[] = {comboDieValue, btnRoll,       btnDistribution, chkResults, txtEachResult,
                      btnNewScript,  btnLoadScript, btnSaveScript,   btnPrefs,   btnDefine,
                      btnAbout,      btnHelp,       btnExit,         txtScript};
  for (size_t i = 1; i < std::size(order); ++i)
    setTabOrder(order[i - 1], order[i]);
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
  connect(btnHelp, &QPushButton::clicked, this, &frmMain::ShowHelp);
  auto* help = new QShortcut(QKeySequence::HelpContents, this);
  connect(help, &QShortcut::activated, this, &frmMain::ShowHelp);
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
  RestoreScriptEditor();
  // Undo does not go back past the text the window started with.
  txtScript->document()->clearUndoRedoStacks();
  ApplySettings();
  RestorePlacement();
  show();
  // The frame the window manager puts around the window is known only once
  // it is shown: the window is fitted again with it.
  QTimer::singleShot(kFramedAfterMs, this, [this] { FitIntoScreen(screen()); });
  activateWindow();
  comboDieValue->setFocus();
  btnRoll->click();
}

void frmMain::ApplySettings() {
  txtEachResult->setFont(ToQFont(settings.Fonts[kResultsFont]));
  txtScript->setFont(ShownFont(kScriptFont, settings.Fonts[kScriptFont]));
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
  Qt::WindowStates state = windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
  setWindowState(state);
  setGeometry(rect);
  FitIntoScreen(screen);
  layout()->activate();

  int left = std::clamp(place.Splitter - splitter->x(), 1, std::max(1, splitter->width() - 1));
  splitter->setSizes({left, std::max(1, splitter->width() - left - splitter->handleWidth())});

  if (place.State == 2) state |= Qt::WindowMaximized;
  if (place.State == 1) state |= Qt::WindowMinimized;
  setWindowState(state);
}

void frmMain::FitIntoScreen(QScreen* screen) {
  Qt::WindowStates placed = Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen;
  if (screen == nullptr || (windowState() & placed)) return;
  QRect inside = geometry(), outside = frameGeometry();
  // Before the window manager has framed the window both are the same.
  FrameMargins frame{inside.left() - outside.left(), inside.top() - outside.top(),
                     outside.right() - inside.right(), outside.bottom() - inside.bottom()};
  QRect area = screen->availableGeometry();
  QSize least = minimumSizeHint().expandedTo(minimumSize());
  ScreenRect fitted = FitWindowRect({inside.x(), inside.y(), inside.width(), inside.height()},
                                    frame, {area.x(), area.y(), area.width(), area.height()},
                                    least.width(), least.height());
  QRect target(fitted.left, fitted.top, fitted.width, fitted.height);
  if (target != inside) setGeometry(target);
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
  bool saved = SaveSettings();
  return KeepScriptEditor() && saved;
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
  ShowResultFor(result, Trim(DieValueText()));
  ShowHints({});
  txtEachResult->setPlainText(ToEditorText(BreakLongLines(LimitShownText(log))));
}

void frmMain::ShowRoll(const RollOutcome& outcome) {
  if (outcome.listChanged) {
    ShowDieList(outcome.dieList, outcome.dieValueText);
  } else {
    SetDieValueText(outcome.dieValueText);
  }
  comboDieValue->lineEdit()->selectAll();
  ShowResultFor(outcome.result, outcome.dieValueText);
  ShowHints(outcome.hints);
  txtEachResult->setPlainText(ToEditorText(BreakLongLines(LimitShownText(outcome.eachResult))));
  QGuiApplication::clipboard()->setText(QString::fromStdString(outcome.clipboard));
  txtScript->ShowErrorLine(outcome.scriptErrorLine, LastLines(outcome.eachResult));
}

void frmMain::ShowResultFor(const std::string& result, const std::string& dieValue) {
  QString of = QString::fromStdString(dieValue);
  lblResult->setText(QString::fromStdString(result));
  // The tooltip holds the whole result too, for one too long to show whole.
  QString shown = QString::fromStdString(result).left(kLongestToolTip);
  lblResult->setToolTip(of.isEmpty() ? QString() : tr("The result of %1:\n%2").arg(of, shown));
  lblResultFor->setText(of);
  lblResultFor->setToolTip(of);
}

void frmMain::ShowHints(const std::vector<std::string>& hints) {
  QStringList lines;
  for (const std::string& hint : hints)
    lines.append(QString::fromStdString(hint));
  lblHints->setText(lines.join('\n'));
  lblHints->setVisible(!lines.isEmpty());
}

void frmMain::ClearResult() {
  ShowResultFor("", "");
  ShowHints({});
}

std::string frmMain::ScriptText() const {
  return txtScript->toPlainText().replace("\n", "\r\n").toStdString();
}

// One step of the editor's undo history: a script the program replaced can
// be brought back.
void frmMain::SetScriptText(const std::string& text) {
  txtScript->ReplaceText(ToEditorText(text));
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

// A result left beside another die value would read as that value's: it
// goes, and the box waits for the roll of the picked value.
void frmMain::DieValuePicked(int index) {
  if (!Idle()) return;
  QString picked = comboDieValue->itemText(index);
  PickDieValue(picked.toStdString());
  if (picked != lblResultFor->text()) ClearResult();
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

void frmMain::ShowHelp() {
  if (help_ == nullptr) help_ = new frmHelp(this);
  help_->show();
  help_->raise();
  help_->activateWindow();
}

}  // namespace gandrel
