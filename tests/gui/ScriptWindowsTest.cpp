#include "WindowFixture.h"
#include "app/frmGet.h"
#include "app/frmOutput.h"
#include "app/frmPause.h"
#include "app/frmPick.h"

namespace gandrel::testing {
namespace {

// Runs act on the modal dialog of type Dialog as soon as it is up; anything
// else that is up instead is closed, so that a failing test cannot hang.
template <typename Dialog>
void WhenUp(std::function<void(Dialog&)> act) {
  QTimer::singleShot(0, [act] {
    QWidget* modal = QApplication::activeModalWidget();
    auto* dialog = qobject_cast<Dialog*>(modal);
    if (dialog == nullptr) {
      ADD_FAILURE() << "no " << Dialog::staticMetaObject.className() << " is up";
      if (modal != nullptr) modal->close();
      return;
    }
    act(*dialog);
  });
}

// The widget that keys typed into the window reach.
QWidget* KeyTarget(QWidget& window) {
  return window.focusWidget() != nullptr ? window.focusWidget() : &window;
}

Qt::CursorShape Pointer() {
  return QApplication::overrideCursor() ? QApplication::overrideCursor()->shape()
                                        : Qt::BitmapCursor;  // none set
}

QPoint CentreFor(const QWidget& window) {
  QRect screen = window.screen()->geometry();
  QSize size = window.frameGeometry().size();
  return {screen.x() + (screen.width() - size.width()) / 2,
          screen.y() + (screen.height() - size.height()) / 2};
}

enum class Way { Okay, Enter, Cancel, Escape, CloseBox, DoubleClick, MainEscape };

// Ends a script dialog the way given (a double click is the list's own).
void End(QDialog& dialog, Way way, QWidget* input, QPushButton* okay, QPushButton* cancel) {
  if (way == Way::Okay) QTest::mouseClick(okay, Qt::LeftButton);
  if (way == Way::Enter) QTest::keyClick(input, Qt::Key_Return);
  if (way == Way::Cancel) QTest::mouseClick(cancel, Qt::LeftButton);
  if (way == Way::Escape) QTest::keyClick(KeyTarget(dialog), Qt::Key_Escape);
  if (way == Way::CloseBox) dialog.close();
}

// ---- frmGet ----------------------------------------------------------------

// The dialog also comes back where the user left it; the first time, and
// after it was left in the top left corner, it is centred.
TEST_F(WindowTest, GetStoresTheLeadingNumberOnOkayOnlyAndKeepsItsPlace) {
  struct Case {
    const char* typed;
    Way way;
    double stored;
    QPoint leftAt;
  } cases[] = {
      {"12abc", Way::Okay, 12, {90, 40}},
      {" 3.5", Way::Enter, 3.5, {0, 0}},
      {"99", Way::Escape, 7, {200, 120}},
      {"99", Way::CloseBox, 7, {60, 30}},
  };
  StartWindow();
  ui.SetBusy(true);     // as a running script has it
  bool centred = true;  // the first showing
  QPoint last;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.typed);
    runFlags.InputValue = 7;
    WhenUp<frmGet>([&](frmGet& get) {
      // The default is selected: typing replaces it.
      EXPECT_EQ(std::tuple(get.pos(), get.lblPrompt->text(), get.txtGet->selectedText(), Pointer()),
                std::tuple(centred ? CentreFor(get) : last, "Hit points?", "15", Qt::ArrowCursor));
      get.move(c.leftAt);
      QTest::keyClicks(get.txtGet, c.typed);
      End(get, c.way, get.txtGet, get.cmdOkay, nullptr);
    });
    scriptWindows.GetNumber("Hit points?", "15");
    EXPECT_EQ(runFlags.InputValue, c.stored);
    EXPECT_EQ(Pointer(), Qt::WaitCursor);
    EXPECT_EQ(QPoint(scriptDialogPlaces.Get.Left, scriptDialogPlaces.Get.Top), c.leftAt);
    centred = c.leftAt.isNull();
    last = c.leftAt;
  }
  ui.SetBusy(false);
}

TEST_F(WindowTest, ThePickListKeepsItsPlaceAndSize) {
  StartWindow();
  // Its first showing is centred and records its design size.
  QSize design;
  WhenUp<frmPick>([&](frmPick& pick) {
    EXPECT_EQ(pick.pos(), CentreFor(pick));
    design = pick.size();
    pick.setGeometry(150, 100, design.width() + 60, design.height() + 40);
    pick.cmdOkay->click();
  });
  scriptWindows.PickItem("", {"a"}, 1);
  EXPECT_EQ(scriptDialogPlaces.Pick.Width, design.width() + 60);
  WhenUp<frmPick>([&](frmPick& pick) {
    EXPECT_EQ(pick.geometry(), QRect(150, 100, design.width() + 60, design.height() + 40));
    pick.cmdCancel->click();
  });
  scriptWindows.PickItem("", {"a"}, 1);
}

// ---- frmPick ---------------------------------------------------------------

TEST_F(WindowTest, PickListHandsBackTheItemNumber) {
  struct Case {
    int16_t preselected;
    int choose;  // the row the user selects, -1: as preselected
    Way way;
    int16_t stored;
  } cases[] = {
      {2, -1, Way::Enter, 2},  {1, 2, Way::Okay, 3},    {1, 1, Way::DoubleClick, 2},
      {3, -1, Way::Cancel, 0}, {3, -1, Way::Escape, 0}, {3, -1, Way::CloseBox, 9},
      {4, -1, Way::Okay, 0},
  };
  StartWindow();
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message()
                 << "preselected " << c.preselected << ", way " << static_cast<int>(c.way));
    runFlags.PickIndex = 9;
    WhenUp<frmPick>([&](frmPick& pick) {
      bool valid = c.preselected >= 1 && c.preselected <= 3;
      EXPECT_EQ(pick.lstItems->selectedItems().size(), valid ? 1 : 0);
      if (c.choose >= 0) pick.lstItems->setCurrentRow(c.choose);
      QWidget* viewport = pick.lstItems->viewport();
      QPoint at = pick.lstItems->visualItemRect(pick.lstItems->currentItem()).center();
      End(pick, c.way, pick.lstItems, pick.cmdOkay, pick.cmdCancel);
      if (c.way == Way::DoubleClick) {  // after the press and release of a first click
        QTest::mouseClick(viewport, Qt::LeftButton, {}, at);
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, at);
      }
    });
    scriptWindows.PickItem("", {"sword", "dagger", "long bow"}, c.preselected);
    EXPECT_EQ(runFlags.PickIndex, c.stored);
  }
}

// ---- frmPause --------------------------------------------------------------

// The main window closing closes the pause as its close box does.
TEST_F(WindowTest, EveryWayThePauseEndsClearsPaused) {
  struct Case {
    Way way;  // Okay is Continue
    bool breaks;
  } cases[] = {{Way::Okay, false},
               {Way::Cancel, true},
               {Way::Escape, true},
               {Way::CloseBox, false},
               {Way::MainEscape, true}};
  frmMain& w = StartWindow();
  for (const Case& c : cases) {
    SCOPED_TRACE(static_cast<int>(c.way));
    runFlags.Paused = true;  // as PAUSE sets it before showing the window
    runFlags.PauseEnded = runFlags.BreakRequested = false;
    scriptWindows.ShowPause();
    std::vector<frmPause*> shown = Shown<frmPause>();
    ASSERT_EQ(shown.size(), 1u);
    frmPause& pause = *shown.front();
    End(pause, c.way, nullptr, pause.Command1, pause.btnCancel);
    if (c.way == Way::MainEscape) {
      QApplication::setActiveWindow(&w);  // the pause had taken it
      QTest::keyClick(w.comboDieValue->lineEdit(), Qt::Key_Escape);
    }
    Settle();
    EXPECT_EQ(std::tuple(Shown<frmPause>().empty(), runFlags.Paused, runFlags.PauseEnded,
                         runFlags.BreakRequested),
              std::tuple(true, false, true, c.breaks));
  }
}

// A run the user insists on stopping asks nothing more.
TEST_F(WindowTest, NoPromptOnceTheUserInsistsOnStopping) {
  StartWindow();
  runFlags.BreakForced = true;
  runFlags.InputValue = 7;
  runFlags.PickIndex = 9;
  runFlags.Paused = true;
  // Should a prompt come up after all, it is closed and the test fails.
  QTimer guard;
  guard.setInterval(200);
  QObject::connect(&guard, &QTimer::timeout, [] {
    if (QWidget* modal = QApplication::activeModalWidget()) {
      ADD_FAILURE() << modal->windowTitle().toStdString() << " came up";
      modal->close();
    }
  });
  guard.start();
  scriptWindows.GetNumber("Hit points?", "15");
  scriptWindows.PickItem("", {"a", "b"}, 2);
  scriptWindows.ShowPause();
  EXPECT_EQ(std::tuple(runFlags.InputValue, runFlags.PickIndex, runFlags.Paused,
                       runFlags.PauseEnded, Shown<frmPause>().empty()),
            std::tuple(7.0, int16_t{9}, false, true, true));
}

// ---- frmOutput -------------------------------------------------------------

TEST_F(WindowTest, OutputWindowsAppendClearChangeFontAndOutliveTheirHandle) {
  StartWindow();
  settings.Fonts[kOutputFont] = FontSetting{"No Such Font Family", 15.5f, false, true};
  auto first = scriptWindows.OpenOutputWindow("log", "Output Window 1: Log");
  auto second = scriptWindows.OpenOutputWindow("dice", "Output Window 2: dice");
  std::vector<frmOutput*> shown = Shown<frmOutput>();
  ASSERT_EQ(shown.size(), 2u);
  frmOutput& log = *(shown[0]->windowTitle().endsWith("Log") ? shown[0] : shown[1]);
  EXPECT_DOUBLE_EQ(log.txtWindow->font().pointSizeF(), 15.5);
  EXPECT_TRUE(log.txtWindow->font().italic());

  for (const char* text : {"Round 1", ": 14\r\n", "", "\r\nend"})
    first->Print(text);
  Settle();  // the first text goes in at once
  EXPECT_EQ(log.txtWindow->toPlainText(), "Round 1: 14\n\nend");
  // Text printed right after is gathered a little longer, and then shown.
  first->Print("!");
  QElapsedTimer clock;
  clock.start();
  while (log.txtWindow->toPlainText().size() < 17 && clock.elapsed() < 3000)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
  EXPECT_EQ(log.txtWindow->toPlainText(), "Round 1: 14\n\nend!");
  first->Clear();
  first->Print("after");
  EXPECT_EQ(log.Text(), "after");  // what waits to be shown counts
  QTest::mouseClick(log.btnClear, Qt::LeftButton);
  Settle();
  EXPECT_EQ(log.txtWindow->toPlainText(), "");
  // The font button changes this window alone; Cancel changes nothing.
  for (bool accept : {false, true}) {
    WhenUp<QFontDialog>([&](QFontDialog& dialog) {
      EXPECT_TRUE(dialog.currentFont().italic());  // it offers the window's font
      QFont bigger = dialog.currentFont();
      bigger.setPointSizeF(21);
      dialog.setCurrentFont(bigger);
      accept ? dialog.accept() : dialog.reject();
    });
    QTest::mouseClick(log.btnFont, Qt::LeftButton);
    EXPECT_DOUBLE_EQ(log.txtWindow->font().pointSizeF(), accept ? 21 : 15.5);
  }
  // Dropping the handle leaves the window up; Close() closes it.
  second.reset();
  EXPECT_EQ(Shown<frmOutput>().size(), 2u);
  first->Close();
  Settle();
  EXPECT_EQ(Shown<frmOutput>().size(), 1u);
  EXPECT_EQ(settings.Fonts[kOutputFont].Size, 15.5f);
}

// A window the user closed is ignored by everything the script does later,
// whether it is already deleted or not.
TEST_F(WindowTest, AnOutputWindowTheUserClosedIsIgnored) {
  StartWindow();
  for (bool deleted : {false, true}) {
    SCOPED_TRACE(deleted ? "deleted" : "closed");
    auto handle = scriptWindows.OpenOutputWindow("w", "Output Window 1: w");
    QPointer<frmOutput> window = Shown<frmOutput>().front();
    window->close();
    if (deleted) Settle();
    EXPECT_EQ(window.isNull(), deleted);
    handle->Print("text");
    handle->Clear();
    handle->Raise();
    handle->Close();
    EXPECT_EQ(window ? window->Text() : "", "");
    EXPECT_TRUE(Shown<frmOutput>().empty());
  }
}

// Printing inserts at the end of the text and never rewrites what is there,
// so that a long PRINT loop stays linear (what it shows is the test above's).
TEST_F(WindowTest, OutputIsInsertedAtTheEndOnly) {
  StartWindow();
  auto handle = scriptWindows.OpenOutputWindow("w", "Output Window 1: w");
  frmOutput& window = *Shown<frmOutput>().front();
  QTextDocument* document = window.txtWindow->document();
  int changes = 0;
  auto watch = QObject::connect(document, &QTextDocument::contentsChange,
                                [&](int from, int removed, int added) {
                                  ++changes;
                                  EXPECT_EQ(removed, 0);
                                  EXPECT_EQ(from, document->characterCount() - 1 - added);
                                });
  for (int pass = 1; pass <= 300; ++pass) {
    handle->Print(std::to_string(pass) + (pass % 3 ? " " : "\r\n"));
    if (pass % 7 == 0) window.ShowPending();
  }
  window.ShowPending();
  QObject::disconnect(watch);
  EXPECT_GE(changes, 40);
}

// ---- The main window during a script ----------------------------------------

TEST_F(WindowTest, DisplayShowsResultAndLogOnly) {
  frmMain& w = StartWindow();
  QGuiApplication::clipboard()->setText("before");
  scriptWindows.Display("17", "3d6= +6+5+6= 17\r\nCalc: 17=17\r\n");
  // The list holds the first roll alone.
  EXPECT_EQ(std::tuple(Text(w.lblResult), Text(w.txtEachResult),
                       QGuiApplication::clipboard()->text(), w.comboDieValue->count()),
            std::tuple("17", "3d6= +6+5+6= 17\nCalc: 17=17\n", "before", 1));
}

// While a script runs, its pumps may reach every handler of the main window:
// those that would roll, load or rewrite the die value do nothing.
TEST_F(WindowTest, WhileAScriptRunsTheMainWindowStartsNothing) {
  QString script = WriteFile("fight.die", "result = 1\r\n");
  frmMain& w = StartWindow();
  TypeAndEnter(script);
  w.txtScript->setPlainText("var x");
  std::string result = w.lblResult->text().toStdString();
  int entries = w.comboDieValue->count();

  runFlags.ScriptRunning = true;
  TypeAndEnter("2d4");
  QTest::mouseClick(w.btnRoll, Qt::LeftButton);
  w.comboDieValue->setCurrentIndex(w.comboDieValue->findText(script));
  emit w.comboDieValue->activated(w.comboDieValue->currentIndex());
  w.btnNewScript->click();
  w.btnLoadScript->click();
  w.btnSaveScript->click();
  w.txtScript->setFocus();
  QTest::mouseClick(w.txtScript->viewport(), Qt::LeftButton);
  runFlags.ScriptRunning = false;

  // The die value stays the script, not "<current script>".
  EXPECT_EQ(std::tuple(Text(w.lblResult), w.comboDieValue->count(), w.comboDieValue->currentText(),
                       Text(w.txtScript), ui.messages.size()),
            std::tuple(result, entries, script, "var x", 0u));
}

// ---- Scripts run in the window ----------------------------------------------

// Runs act, once, as soon as ready() holds while the roll pumps events.
void Once(std::function<bool()> ready, std::function<void()> act) {
  auto* poll = new QTimer;
  poll->setInterval(2);
  QObject::connect(poll, &QTimer::timeout, [=] {
    if (!ready()) return;
    poll->stop();
    poll->deleteLater();
    act();
  });
  poll->start();
}

// Rolls the editor's script as the user does.
void RollScript(frmMain& w, const char* script) {
  w.txtScript->setPlainText(script);
  w.comboDieValue->setEditText("<current script>");
  QTest::mouseClick(w.btnRoll, Qt::LeftButton);
}

// Under BREAKOFF a second Escape, on the main window or an output window,
// asks whether to stop the running loop (a plain Escape is
// OneRollAtATimeStoppedByEscape's).
TEST_F(WindowTest, EscapeUnderBreakOffAsks) {
  struct Case {
    bool onOutput;
    MsgAnswer answer;
    const char* result;
  } cases[] = {{true, MsgAnswer::Yes, "<break>"}, {false, MsgAnswer::No, "1000000"}};
  frmMain& w = StartWindow();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.result);
    ui.messages.clear();
    ui.answer = c.answer;
    Once([] { return runFlags.ScriptRunning && !Shown<frmOutput>().empty(); },
         [&] {
           QWidget* target = w.comboDieValue->lineEdit();
           if (c.onOutput) target = Shown<frmOutput>().front()->txtWindow;
           QApplication::setActiveWindow(target->window());
           QTest::keyClick(target, Qt::Key_Escape);
           QTest::keyClick(target, Qt::Key_Escape);
         });
    RollScript(w,
               "breakoff\nvar kk\nvar total\nopen window w\nfor kk = 1 to 1000000\n"
               "total = total + 1\nnext\nresult = total\n");
    EXPECT_EQ(std::tuple(Text(w.lblResult), ui.messages, ui.lastButtons),
              std::tuple(
                  c.result,
                  std::vector<std::string>{"The script has switched breaking off. Stop it anyway?"},
                  MsgButtons::YesNo));
  }
}

// Closing the main window during a run ends it even under BREAKOFF, closes
// its windows (the pause it waits for included), then saves and closes.
TEST_F(WindowTest, ClosingTheMainWindowDuringAPausedScript) {
  frmMain& w = StartWindow();
  Once([] { return !Shown<frmPause>().empty(); },
       [&] {
         EXPECT_EQ(Shown<frmOutput>().size(), 2u);
         w.close();
         EXPECT_EQ(std::tuple(w.isVisible(), Shown<frmPause>().size(), Shown<frmOutput>().size()),
                   std::tuple(true, 0u, 0u));
       });
  RollScript(w, "breakoff\nopen window a\nopen window b\npause\nresult = 1\n");
  EXPECT_EQ(std::tuple(Text(w.lblResult), w.isVisible(), FileExists("gandrel.ini")),
            std::tuple("<break>", false, true));
}

}  // namespace
}  // namespace gandrel::testing
