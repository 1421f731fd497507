// The script editor: colours by the tokenizer's rules, marks for GOTOs
// without their label and for the line a run stopped on, undo of the
// program's own replacements, find and its font. Help shows the guide to
// scripts.
#include <QTextBrowser>

#include "WindowFixture.h"
#include "app/QtFonts.h"
#include "app/QtScriptHighlighter.h"
#include "app/frmHelp.h"

namespace gandrel::testing {
namespace {

// The spans of a line written as "kind:text" pieces, for readable tables.
std::vector<std::string> Pieces(const QString& line) {
  static const char* const names[] = {"key", "label", "comment", "quoted", "fn", "num", "ignored"};
  std::vector<std::string> pieces;
  for (const ScriptSpan& span : ScriptSpans(line))
    pieces.push_back(std::string(names[static_cast<int>(span.kind)]) + ":" +
                     line.mid(span.start, span.length).toStdString());
  return pieces;
}

TEST(ScriptHighlighter, ColoursFollowTheTokenizer) {
  const struct {
    const char* line;
    std::vector<std::string> pieces;
  } cases[] = {
      {"var roll   ; the d20", {"key:var", "comment:; the d20"}},
      {"roll = 1d20 + 2", {"num:1", "num:20", "num:2"}},
      {"  :Again", {"label::Again"}},
      {"\tGoTo again", {"key:GoTo", "label:again"}},
      {"die 2d6", {"ignored:die 2d6"}},
      {"pick x = 1", {"ignored:pick", "num:1"}},  // no command: an assignment to x
      {"open   window", {}},
      {"for i = 1 TO 10 step 2", {"key:for", "num:1", "key:TO", "num:10", "key:step", "num:2"}},
      {"case 1 to 3, 6", {"key:case", "num:1", "key:to", "num:3", "num:6"}},
      {"case else", {"key:case", "key:else"}},
      {"echo a note 3", {"key:echo", "comment:a note 3"}},
      {"print w, \"sword; 3\" @Best (3, 4d6) @foo(1) sword6",
       {"key:print", "quoted:\"sword", "comment:; 3\" @Best (3, 4d6) @foo(1) sword6"}},
      {"print w, \"sword 3\" @Best (3, 4d6) @foo(1) sword6",
       {"key:print", "quoted:\"sword 3\"", "fn:@Best", "num:3", "num:4", "num:6", "num:1"}},
      {"result = \"caf\u00e9 2\" 3", {"quoted:\"caf\u00e9 2\"", "num:3"}},
      {"; only a comment", {"comment:; only a comment"}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Pieces(QString::fromUtf8(c.line)), c.pieces) << c.line;
}

TEST_F(WindowTest, GotosWithoutTheirLabelAreMarkedWhileTyping) {
  frmMain& w = StartWindow();
  w.txtScript->setPlainText("goto top\n:TOP\ngoto nowhere\ngoto also");
  w.txtScript->CheckGotos();
  EXPECT_EQ(w.txtScript->GotoProblems(),
            (std::map<int, QString>{{3, "Label for GOTO not found at line 3"},
                                    {4, "Label for GOTO not found at line 4"}}));
  // The message is the marked line's tooltip.
  QPoint onLine3 =
      w.txtScript->cursorRect(QTextCursor(w.txtScript->document()->findBlockByNumber(2))).center();
  QHelpEvent tip(QEvent::ToolTip, onLine3, w.txtScript->viewport()->mapToGlobal(onLine3));
  QApplication::sendEvent(w.txtScript->viewport(), &tip);
  EXPECT_EQ(QToolTip::text(), "Label for GOTO not found at line 3");
  // The check runs by itself shortly after typing stops.
  w.txtScript->moveCursor(QTextCursor::End);
  QTest::keyClick(w.txtScript, Qt::Key_Return);
  QTest::keyClicks(w.txtScript, ":nowhere");
  QTRY_COMPARE(w.txtScript->GotoProblems().size(), 1u);
  EXPECT_EQ(w.txtScript->extraSelections().size(), 1);
}

TEST_F(WindowTest, TheLineARunStoppedOnIsShownUntilTheNextRoll) {
  frmMain& w = StartWindow();
  w.txtScript->setPlainText("var i\nresult = 5\n\nfor i = 1 to 1E20\nnext");
  TypeAndEnter("<current script>");
  EXPECT_EQ(w.lblResult->text(), "5");
  EXPECT_EQ(w.txtScript->ErrorLine(), 4);
  EXPECT_EQ(w.txtScript->textCursor().blockNumber(), 3);  // the caret is there
  // The mark moves with the line when lines are added above it.
  QTextCursor top(w.txtScript->document());
  top.insertText("; a comment\n");
  EXPECT_EQ(w.txtScript->ErrorLine(), 5);
  TypeAndEnter("2d6");
  EXPECT_EQ(w.txtScript->ErrorLine(), 0);
}

// Picking a script file replaces the editor's text (a die value, New and
// Load go through the same replacement); undo brings it back.
TEST_F(WindowTest, TheProgramsReplacementsCanBeUndone) {
  QString fight = WriteFile("fight.die", "result = 2d6\r\n");
  frmMain& w = StartWindow();
  QTest::keyClicks(w.txtScript, "typed by hand");
  PickDieValue(fight.toStdString());
  EXPECT_EQ(Text(w.txtScript), "result = 2d6");
  EXPECT_FALSE(scriptEditor.Modified);
  w.txtScript->undo();
  EXPECT_EQ(Text(w.txtScript), "typed by hand");
  EXPECT_TRUE(scriptEditor.Modified);
  w.txtScript->redo();
  EXPECT_EQ(Text(w.txtScript), "result = 2d6");
}

TEST_F(WindowTest, FindGoesRoundTheEnd) {
  frmMain& w = StartWindow();
  w.txtScript->setPlainText("roll = 1d20\nresult = roll\nprint w, ROLL");
  w.txtScript->setFocus();
  QTest::keyClick(w.txtScript, Qt::Key_F, Qt::ControlModifier);
  ASSERT_TRUE(w.txtScript->findBar()->isVisible());
  QTest::keyClicks(w.txtScript->findText(), "roll");
  // Enter finds the next match; letter case does not count, as in scripts.
  for (int line : {0, 1, 2, 0}) {
    QTest::keyClick(w.txtScript->findText(), Qt::Key_Return);
    EXPECT_EQ(w.txtScript->textCursor().blockNumber(), line);
    EXPECT_EQ(w.txtScript->textCursor().selectedText().toLower(), "roll");
  }
  EXPECT_TRUE(w.txtScript->FindNext(true));
  EXPECT_EQ(w.txtScript->textCursor().blockNumber(), 2);
  w.txtScript->findText()->setText("nothere");
  EXPECT_FALSE(w.txtScript->FindNext());
  // Escape closes the bar and breaks nothing.
  QTest::keyClick(w.txtScript->findText(), Qt::Key_Escape);
  EXPECT_FALSE(w.txtScript->findBar()->isVisible());
  EXPECT_FALSE(runFlags.BreakRequested);
}

// The built-in script font is a Windows font: the editor shows the system's
// fixed-width font instead, until a font is chosen.
TEST_F(WindowTest, TheEditorIsMonospacedUntilAFontIsChosen) {
  frmMain& w = StartWindow();
  QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  EXPECT_EQ(std::tuple(w.txtScript->font().family(), QFontInfo(w.txtScript->font()).fixedPitch()),
            std::tuple(fixed.family(), true));
  EXPECT_EQ(
      DescribeFont(settings.Fonts[kScriptFont], kScriptFont).toStdString(),
      "MS Sans Serif (shown as " + QFontInfo(fixed).family().toStdString() + "), 8.25 pt, bold");
  settings.Fonts[kScriptFont] =
      FontSetting{QApplication::font().family().toStdString(), 13, false, true};
  w.ApplySettings();
  EXPECT_EQ(std::tuple(w.txtScript->font().family(), w.txtScript->font().italic()),
            std::tuple(QApplication::font().family(), true));
  // The other windows' fonts fall back to the system's default family.
  EXPECT_EQ(ShownFont(kOutputFont, FontSetting{}).family(), QApplication::font().family());
}

TEST_F(WindowTest, HelpShowsTheGuideToScripts) {
  frmMain& w = StartWindow();
  ASSERT_FALSE(frmHelp::GuidePath().isEmpty());
  w.btnHelp->click();
  auto* help = w.findChild<frmHelp*>();
  ASSERT_NE(help, nullptr);
  EXPECT_EQ(
      std::tuple(help->isVisible(), help->txtGuide->toPlainText().startsWith("Writing scripts")),
      std::tuple(true, true));
  // F1 shows the same window again.
  help->close();
  QTest::keyClick(w.comboDieValue, Qt::Key_F1);
  EXPECT_EQ(std::tuple(help->isVisible(), w.findChildren<frmHelp*>().size()), std::tuple(true, 1));
}

}  // namespace
}  // namespace gandrel::testing
