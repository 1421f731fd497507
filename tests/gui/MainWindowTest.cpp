#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTest>
#include <QTimer>

#include "WindowFixture.h"
#include "app/Settings.h"
#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "script/RunFlags.h"

namespace gandrel::testing {
namespace {

std::string Text(const QLabel* label) {
  return label->text().toStdString();
}
std::string Text(const QPlainTextEdit* box) {
  return box->toPlainText().toStdString();
}
std::string Clipboard() {
  return QGuiApplication::clipboard()->text().toStdString();
}

std::vector<std::string> ListEntries(const QComboBox* box) {
  std::vector<std::string> entries;
  for (int i = 0; i < box->count(); ++i)
    entries.push_back(box->itemText(i).toStdString());
  return entries;
}

// Runs check while the next roll pumps events (every dice yield pumps).
void DuringNextRoll(std::function<void()> check) {
  SetPumpEveryCall(true);
  QTimer::singleShot(0, std::move(check));
}

TEST_F(WindowTest, FirstStartWithoutFilesRolls3d6) {
  frmMain& w = StartWindow();
  EXPECT_EQ(w.comboDieValue->currentText(), "3d6");
  EXPECT_EQ(w.comboDieValue->lineEdit()->selectedText(), "3d6");
  double total = ReadNumber(Text(w.lblResult));
  EXPECT_GE(total, 3);
  EXPECT_LE(total, 18);
  EXPECT_EQ(Text(w.txtEachResult).rfind("3d6= ", 0), 0u) << Text(w.txtEachResult);
  EXPECT_EQ(Clipboard(), " rolls " + Text(w.lblResult) + " on 3d6");
  EXPECT_EQ(ListEntries(w.comboDieValue), std::vector<std::string>{"3d6"});
  EXPECT_FALSE(w.txtEachResult->isVisibleTo(&w));  // See All is off at first
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(WindowTest, EnterRollsAndShowsResultDetailsAndClipboard) {
  struct Case {
    const char* typed;
    const char* shown;  // the die value after the roll
    double low, high;
    const char* detailsStart;
  } cases[] = {
      {"3d6+2", "3d6+2", 5, 20, "3d6= "},
      {"  2d4 ", "2d4", 2, 8, "2d4= "},
      {"d", "d6", 1, 6, "d6= "},
      {"1d1*7", "1d1*7", 7, 7, "1d1= "},
  };
  frmMain& w = StartWindow();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.typed);
    TypeAndEnter(c.typed);
    EXPECT_EQ(w.comboDieValue->currentText().toStdString(), c.shown);
    double total = ReadNumber(Text(w.lblResult));
    EXPECT_GE(total, c.low);
    EXPECT_LE(total, c.high);
    EXPECT_EQ(Text(w.txtEachResult).rfind(c.detailsStart, 0), 0u) << Text(w.txtEachResult);
    EXPECT_EQ(Clipboard(), " rolls " + Text(w.lblResult) + " on " + c.shown);
    // The list holds what the history holds; Qt inserted nothing of its own.
    EXPECT_EQ(ListEntries(w.comboDieValue).back(), c.shown);
    // Enter leaves the caret where one Left-arrow puts it in the selected text.
    QLineEdit scratch(c.shown);
    scratch.selectAll();
    QTest::keyClick(&scratch, Qt::Key_Left);
    EXPECT_FALSE(w.comboDieValue->lineEdit()->hasSelectedText());
    EXPECT_EQ(w.comboDieValue->lineEdit()->cursorPosition(), scratch.cursorPosition());
  }
  EXPECT_EQ(ListEntries(w.comboDieValue),
            (std::vector<std::string>{"3d6", "3d6+2", "2d4", "d6", "1d1*7"}));
}

TEST_F(WindowTest, RollButtonSelectsTheWholeDieValue) {
  frmMain& w = StartWindow();
  w.comboDieValue->setEditText("2d10");
  QTest::mouseClick(w.btnRoll, Qt::LeftButton);
  EXPECT_EQ(w.comboDieValue->lineEdit()->selectedText(), "2d10");
  EXPECT_EQ(Clipboard(), " rolls " + Text(w.lblResult) + " on 2d10");
}

TEST_F(WindowTest, MarkerTextsShowAsPlainText) {
  frmMain& w = StartWindow();
  EXPECT_EQ(w.lblResult->textFormat(), Qt::PlainText);
  EXPECT_EQ(w.lblScript->textFormat(), Qt::PlainText);
  TypeAndEnter("=1");
  EXPECT_EQ(Text(w.lblResult), "<script error>");
  EXPECT_EQ(Text(w.txtEachResult), "Scripts are not available in this build.");
  EXPECT_EQ(Clipboard(), " rolls <script error> on =1");
  w.SetResultText("<calc error>");
  EXPECT_EQ(Text(w.lblResult), "<calc error>");
}

// Qt's combo box takes Enter, and the focus leaving it, for the pick of an
// entry whose text equals the typed one; neither is a pick here.
TEST_F(WindowTest, EnterOrLeavingOnAListedValueIsNoPick) {
  frmMain& w = StartWindow();
  TypeAndEnter("2d4");
  w.txtScript->setPlainText("result = 3d6");
  TypeAndEnter("3d6");
  EXPECT_EQ(Text(w.txtScript), "result = 3d6");

  QApplication::setActiveWindow(&w);
  w.comboDieValue->setFocus();
  ASSERT_TRUE(w.comboDieValue->lineEdit()->hasFocus());
  w.comboDieValue->setCurrentIndex(w.comboDieValue->findText("2d4"));
  w.comboDieValue->setEditText("3d6");
  w.txtScript->setFocus();
  EXPECT_EQ(Text(w.txtScript), "result = 3d6");
  // Entering the editor of an unnamed script makes it the die value.
  EXPECT_EQ(w.comboDieValue->currentText(), "<current script>");
}

void WriteTo(const QString& path, const QByteArray& content) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(content);
}

// Picks the entry text from the list with the arrow keys, as a user can.
void PickWithKeys(QComboBox* box, const QString& text) {
  int index = box->findText(text);
  ASSERT_GE(index, 0);
  ASSERT_GE(box->count(), 2);
  bool fromAbove = index > 0;
  box->setCurrentIndex(fromAbove ? index - 1 : index + 1);
  QTest::keyClick(box, fromAbove ? Qt::Key_Down : Qt::Key_Up);
  ASSERT_EQ(box->currentIndex(), index);
}

TEST_F(WindowTest, PickingAnEntryNeverRolls) {
  QString script = folder.filePath("combat.DIE");
  QString gone = folder.filePath("gone.die");
  WriteTo(script, "a = 1\r\nresult = a\r\n\r\n");
  WriteTo(folder.filePath("gandrel.def"), ("2d8\r\n" + script + "\r\n" + gone + "\r\n").toUtf8());
  frmMain& w = StartWindow();
  ASSERT_EQ(w.comboDieValue->currentText(), "2d8");  // the first entry, rolled
  std::string result = Text(w.lblResult);

  // A script file is loaded, not run.
  PickWithKeys(w.comboDieValue, script);
  EXPECT_EQ(Text(w.txtScript), "a = 1\nresult = a\n");
  EXPECT_EQ(Text(w.lblScript), "Script -- " + script.toStdString());
  EXPECT_FALSE(w.ScriptModified());

  // A script file that does not exist changes nothing.
  PickWithKeys(w.comboDieValue, gone);
  EXPECT_EQ(Text(w.txtScript), "a = 1\nresult = a\n");
  EXPECT_EQ(w.ScriptFileName(), script.toStdString());

  // A die value empties the editor.
  PickWithKeys(w.comboDieValue, "2d8");
  EXPECT_EQ(Text(w.txtScript), "");
  EXPECT_EQ(Text(w.lblScript), "Script");
  EXPECT_EQ(w.ScriptFileName(), "");
  EXPECT_EQ(Text(w.lblResult), result);
}

TEST_F(WindowTest, SavingAScriptTrimsItsLinesAndEndsWithAnEmptyLine) {
  QString script = folder.filePath("combat.die");
  WriteTo(script, "old\r\n");
  WriteTo(folder.filePath("gandrel.def"), ("2d8\r\n" + script + "\r\n").toUtf8());
  frmMain& w = StartWindow();
  PickWithKeys(w.comboDieValue, script);
  ASSERT_EQ(w.ScriptFileName(), script.toStdString());
  w.txtScript->setPlainText("a  \nb");
  ASSERT_TRUE(w.SaveScriptText());
  QFile file(script);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll(), "a\r\nb\r\n\r\n");
  EXPECT_EQ(Text(w.txtScript), "a\nb\n");
}

TEST_F(WindowTest, ScriptEditorHandsCrLfLinesAndSavesTrimmed) {
  frmMain& w = StartWindow();
  w.txtScript->setPlainText("a  \nb");
  EXPECT_EQ(w.ScriptText(), "a  \r\nb");
  EXPECT_TRUE(w.ScriptModified());

  // Clicking the editor of an unnamed script makes it the die value.
  QTest::mouseClick(w.txtScript->viewport(), Qt::LeftButton);
  EXPECT_EQ(w.comboDieValue->currentText(), "<current script>");

  // New asks first; Cancel keeps the script, No drops it.
  ui.answer = MsgAnswer::Cancel;
  w.NewScript();
  EXPECT_EQ(Text(w.txtScript), "a  \nb");
  ui.answer = MsgAnswer::No;
  w.NewScript();
  EXPECT_EQ(Text(w.txtScript), "");
  EXPECT_FALSE(w.ScriptModified());
  EXPECT_EQ(ui.messages.size(), 2u);
}

TEST_F(WindowTest, OneRollAtATime) {
  frmMain& w = StartWindow();
  w.comboDieValue->setEditText("200000d6");
  bool checked = false;
  DuringNextRoll([&] {
    checked = true;
    EXPECT_TRUE(w.Rolling());
    EXPECT_FALSE(w.btnPrefs->isEnabled());
    EXPECT_FALSE(w.btnDefine->isEnabled());
    EXPECT_FALSE(w.btnNewScript->isEnabled());
    EXPECT_FALSE(w.btnLoadScript->isEnabled());
    EXPECT_FALSE(w.btnSaveScript->isEnabled());
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
  EXPECT_TRUE(checked);
  EXPECT_EQ(Text(w.lblResult), "<break>");
  EXPECT_FALSE(w.Rolling());
  EXPECT_TRUE(w.btnPrefs->isEnabled());
  EXPECT_TRUE(w.btnSaveScript->isEnabled());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(WindowTest, ClosingDuringARollBreaksItThenSaves) {
  frmMain& w = StartWindow();
  w.comboDieValue->setEditText("200000d6");
  DuringNextRoll([&] {
    w.close();
    EXPECT_TRUE(w.isVisible());
    EXPECT_TRUE(runFlags.BreakRequested);
    EXPECT_FALSE(FileExists("gandrel.ini"));
  });
  w.btnRoll->click();
  EXPECT_EQ(Text(w.lblResult), "<break>");
  EXPECT_FALSE(w.isVisible());
  EXPECT_TRUE(FileExists("gandrel.ini"));
}

// Ten million dice give one line of twenty million characters: the box shows
// about 1 MB of it in lines short enough to lay out at once (the grab lays
// them out; a box holding the line whole would take minutes here).
TEST_F(WindowTest, EachResultBoxShowsAboutOneMegabyteInShortLines) {
  frmMain& w = StartWindow();
  w.chkResults->setChecked(true);
  std::string dice;
  for (int i = 0; i < 1500000; ++i)
    dice += i % 2 ? "+6" : "+1";
  w.SetEachResultText("3000000d6=" + dice + "= 10500000\r\nCalc: 10500000=10500000\r\n");
  w.txtEachResult->grab();
  QStringList lines = w.txtEachResult->toPlainText().split('\n');
  qsizetype shown = 0, longest = 0;
  for (const QString& line : lines) {
    shown += line.size();
    longest = std::max(longest, line.size());
  }
  EXPECT_LE(longest, 1000);
  EXPECT_GE(shown, 999000);
  EXPECT_LE(shown, 1000100);
  EXPECT_TRUE(lines.back().startsWith("... 2,000,0")) << lines.back().toStdString();
  EXPECT_TRUE(lines.back().endsWith(" more characters not shown"));
}

TEST_F(WindowTest, PlacementRoundTrip) {
  struct Case {
    int16_t state;
    bool maximised, minimised;
  } cases[] = {{0, false, false}, {2, true, false}, {1, false, true}};
  frmMain& w = StartWindow();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.state);
    settings.Main = WindowPlacement{50, 60, 700, 480, c.state, 300};
    w.RestorePlacement();
    EXPECT_EQ(w.isMaximized(), c.maximised);
    EXPECT_EQ(w.isMinimized(), c.minimised);
    EXPECT_EQ(w.splitter->x() + w.splitter->sizes().value(0), 300);
    settings.Main = WindowPlacement{};
    w.StorePlacement();
    EXPECT_EQ(settings.Main.State, c.state);
    if (c.state == 0) {
      const WindowPlacement& p = settings.Main;
      EXPECT_EQ(std::vector<int>({p.Left, p.Top, p.Width, p.Height, p.Splitter}),
                std::vector<int>({50, 60, 700, 480, 300}));
    }
  }
}

TEST_F(WindowTest, AWindowOffEveryScreenComesBack) {
  frmMain& w = StartWindow();
  settings.Main.Left = -20000;
  settings.Main.Top = 30000;
  w.RestorePlacement();
  EXPECT_TRUE(w.screen()->availableGeometry().intersects(w.geometry()));
}

}  // namespace
}  // namespace gandrel::testing
