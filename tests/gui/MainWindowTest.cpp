#include "WindowFixture.h"

namespace gandrel::testing {
namespace {

std::string Clipboard() {
  return QGuiApplication::clipboard()->text().toStdString();
}

// Runs check while the next roll pumps events (every dice yield pumps).
void DuringNextRoll(std::function<void()> check) {
  SetPumpEveryCall(true);
  QTimer::singleShot(0, std::move(check));
}

TEST_F(WindowTest, FirstStartAndEnterRollAndShowResultDetailsAndClipboard) {
  frmMain& w = StartWindow();
  // The first start without files rolls 3d6 and leaves it selected.
  EXPECT_EQ(w.comboDieValue->lineEdit()->selectedText(), "3d6");
  EXPECT_EQ(Clipboard(), " rolls " + Text(w.lblResult) + " on 3d6");
  TypeAndEnter("  2d4 ");
  EXPECT_EQ(w.comboDieValue->currentText(), "2d4");
  EXPECT_EQ(Text(w.txtEachResult).rfind("2d4= ", 0), 0u) << Text(w.txtEachResult);
  EXPECT_EQ(Clipboard(), " rolls " + Text(w.lblResult) + " on 2d4");
  // Enter leaves the caret where one Left-arrow puts it in the selected text.
  QLineEdit scratch("2d4");
  scratch.selectAll();
  QTest::keyClick(&scratch, Qt::Key_Left);
  EXPECT_FALSE(w.comboDieValue->lineEdit()->hasSelectedText());
  EXPECT_EQ(w.comboDieValue->lineEdit()->cursorPosition(), scratch.cursorPosition());
  // The Roll button leaves the whole die value selected instead.
  w.comboDieValue->setEditText("2d10");
  QTest::mouseClick(w.btnRoll, Qt::LeftButton);
  EXPECT_EQ(w.comboDieValue->lineEdit()->selectedText(), "2d10");
  // The list holds the three rolled values; Qt inserted nothing of its own.
  EXPECT_EQ(w.comboDieValue->count(), 3);
  EXPECT_TRUE(ui.messages.empty());
}

// Qt's combo box takes Enter, and the focus leaving it, for the pick of an
// entry whose text equals the typed one; neither is a pick here.
TEST_F(WindowTest, EnterOrLeavingOnAListedValueIsNoPick) {
  frmMain& w = StartWindow();
  TypeAndEnter("2d4");
  w.txtScript->setPlainText("result = 3d6");
  TypeAndEnter("3d6");
  EXPECT_EQ(Text(w.txtScript), "result = 3d6");

  w.comboDieValue->setFocus();
  ASSERT_TRUE(w.comboDieValue->lineEdit()->hasFocus());
  w.comboDieValue->setCurrentIndex(w.comboDieValue->findText("2d4"));
  w.comboDieValue->setEditText("3d6");
  w.txtScript->setFocus();
  EXPECT_EQ(Text(w.txtScript), "result = 3d6");
  // Entering the editor of an unnamed script makes it the die value.
  EXPECT_EQ(w.comboDieValue->currentText(), "<current script>");
}

// Picks the entry text from the list with the arrow keys, as a user can.
void PickWithKeys(QComboBox* box, const QString& text) {
  int index = box->findText(text);
  ASSERT_GE(index, 0);
  box->setCurrentIndex(index > 0 ? index - 1 : index + 1);
  QTest::keyClick(box, index > 0 ? Qt::Key_Down : Qt::Key_Up);
  ASSERT_EQ(box->currentIndex(), index);
}

TEST_F(WindowTest, PickingAnEntryNeverRolls) {
  QString script = WriteFile("combat.DIE", "a = 1\r\nresult = a\r\n\r\n");
  WriteFile("gandrel.def", ("2d8\r\n" + script + "\r\n").toStdString());
  frmMain& w = StartWindow();
  ASSERT_EQ(w.comboDieValue->currentText(), "2d8");  // the first entry, rolled
  std::string clipboard = Clipboard();
  EXPECT_EQ(w.lblResultFor->text(), "2d8");

  // A script file is loaded, not run (what loading does is ScriptFileTest's);
  // the total of 2d8 goes with 2d8.
  PickWithKeys(w.comboDieValue, script);
  EXPECT_EQ(Text(w.lblResult) + Text(w.lblResultFor), "");
  EXPECT_EQ(Clipboard(), clipboard);
  EXPECT_EQ(Text(w.txtScript), "a = 1\nresult = a\n");

  // A total with hints; picking another entry clears it, its caption, its
  // tooltip and its hints; picking the die value it belongs to keeps it.
  TypeAndEnter("2d1k");
  EXPECT_EQ(w.lblResult->toolTip(), "The result of 2d1k:\n2");
  EXPECT_TRUE(w.lblHints->isVisibleTo(&w));
  PickWithKeys(w.comboDieValue, "2d8");
  EXPECT_EQ(w.lblResult->toolTip(), "");
  EXPECT_FALSE(w.lblHints->isVisibleTo(&w));
  TypeAndEnter("1d1+6");
  PickWithKeys(w.comboDieValue, "1d1+6");
  EXPECT_EQ(Text(w.lblResult), "7");
  EXPECT_EQ(w.lblResultFor->text(), "1d1+6");
}

// Closing during a run is ClosingTheMainWindowDuringAPausedScript's.
TEST_F(WindowTest, OneRollAtATimeStoppedByEscape) {
  frmMain& w = StartWindow();
  w.comboDieValue->setEditText("200000d6");
  DuringNextRoll([&] {
    for (QPushButton* button :
         {w.btnPrefs, w.btnDefine, w.btnNewScript, w.btnLoadScript, w.btnSaveScript})
      EXPECT_FALSE(button->isEnabled()) << button->text().toStdString();
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    // A second roll is ignored: the die value stays as it is.
    w.comboDieValue->setEditText("1d1");
    QTest::keyClick(w.comboDieValue->lineEdit(), Qt::Key_Return);
    w.btnRoll->click();
    EXPECT_EQ(w.comboDieValue->currentText(), "1d1");
    // Escape reaches the window while the roll pumps events.
    QTest::keyClick(w.comboDieValue->lineEdit(), Qt::Key_Escape);
    EXPECT_TRUE(runFlags.BreakRequested);
  });
  w.btnRoll->click();
  // Only the check above could break it.
  EXPECT_EQ(std::tuple(Text(w.lblResult), w.btnPrefs->isEnabled(), QApplication::overrideCursor()),
            std::tuple("<break>", true, nullptr));
}

// Closing saves what the window shows and holds, and keeps the editor (its
// lines handed on with CR LF); a new start on the same folder brings it back.
// What the files hold is the shell's; here, what the window makes of it.
TEST_F(WindowTest, WhatTheWindowShowsSurvivesARestart) {
  frmMain& w = StartWindow();
  settings.OnTop = true;
  settings.Fonts[kResultsFont] = FontSetting{"No Such Font Family", 15.5f, true, false};
  ApplyAlwaysAddItems({"2d8", "1d1+1"});
  w.chkResults->setChecked(true);
  QTest::keyClicks(w.txtScript, "result = 3d6  ");
  QTest::keyClick(w.txtScript, Qt::Key_Return);
  EXPECT_EQ(w.ScriptText(), "result = 3d6  \r\n");

  w.close();  // which saves
  ResetSettings();
  frmMain& again = StartWindow();
  // The first entry is rolled; the editor's text is kept, with its undo history cleared.
  EXPECT_EQ(std::tuple(again.comboDieValue->currentText(), again.chkResults->isChecked(),
                       again.windowFlags().testFlag(Qt::WindowStaysOnTopHint),
                       Text(again.txtScript), again.lblScript->palette().color(QPalette::Window),
                       again.txtScript->document()->isUndoAvailable()),
            std::tuple("2d8", true, true, "result = 3d6  \n", QColor(224, 224, 224), false));
  // A missing family falls back; the setting keeps its name.
  QFont font = again.txtEachResult->font();
  EXPECT_EQ(std::tuple(font.family(), font.pointSizeF(), font.bold()),
            std::tuple(QApplication::font().family(), 15.5, true));
  EXPECT_EQ(settings.Fonts[kResultsFont].Name, "No Such Font Family");
}

// Three million dice give one line of six million characters: the box shows
// about 1 MB of it in lines short enough to lay out at once (the grab lays
// them out; a box holding the line whole would take minutes here).
TEST_F(WindowTest, EachResultBoxShowsAboutOneMegabyteInShortLines) {
  frmMain& w = StartWindow();
  w.chkResults->setChecked(true);
  std::string dice = QByteArray("+1+6").repeated(750000).toStdString();
  RollOutcome outcome;
  outcome.eachResult = "3000000d6=" + dice + "= 10500000\r\nCalc: 10500000=10500000\r\n";
  w.ShowRoll(outcome);
  w.txtEachResult->grab();
  QString shown = w.txtEachResult->toPlainText();
  EXPECT_NEAR(shown.size(), 1000000, 3000);
  QStringList lines = shown.split('\n');
  for (const QString& line : lines)
    ASSERT_LE(line.size(), 1000);
  EXPECT_TRUE(lines.back().endsWith(" more characters not shown")) << lines.back().toStdString();
}

}  // namespace
}  // namespace gandrel::testing
