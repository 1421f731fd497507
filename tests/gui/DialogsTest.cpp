#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QTest>
#include <QTimer>

#include "WindowFixture.h"
#include "app/DialogModels.h"
#include "app/QtEntryList.h"
#include "app/QtFonts.h"
#include "app/Settings.h"
#include "app/frmDefine.h"
#include "app/frmPrefs.h"
#include "dice/modDiceCalc.h"

namespace gandrel::testing {
namespace {

std::vector<std::string> Items(const std::vector<std::string>& oneBased) {
  return std::vector<std::string>(oneBased.begin() + 1, oneBased.end());
}

void Type(QtEntryList* list, const QString& text) {
  list->txtEntry->setText(text);
  QTest::keyClick(list->txtEntry, Qt::Key_Return);
}

TEST_F(WindowTest, PreferencesOkaySavesAndCancelDoesNot) {
  struct Case {
    const char* button;
    bool saved;
  } cases[] = {{"Cancel", false}, {"Okay", true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.button);
    QFile::remove(folder.filePath("gandrel.ini"));
    frmMain& w = StartWindow();
    frmPrefs dialog(&w);
    dialog.txtDieType->setText("8");
    dialog.chkNewFirst->setChecked(true);
    Type(dialog.lstAlwaysAdd, "4d6");
    QPushButton* button = std::string(c.button) == "Okay" ? dialog.cmdOkay : dialog.cmdCancel;
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(settings.DieType, c.saved ? "8" : "6");
    EXPECT_EQ(settings.NewFirst, c.saved);
    EXPECT_EQ(Items(AlwaysAddItems).size(), c.saved ? 1u : 0u);
    EXPECT_EQ(FileExists("gandrel.ini"), c.saved);
    if (c.saved) {
      EXPECT_NE(ReadFile("gandrel.ini").find("DieType=8"), std::string::npos);
      EXPECT_NE(ReadFile("gandrel.def").find("4d6"), std::string::npos);
    }
  }
}

TEST_F(WindowTest, PreferencesApplyToTheWindow) {
  frmMain& w = StartWindow();
  frmPrefs dialog(&w);
  QObject::connect(&dialog, &frmPrefs::applied, &w, &frmMain::ApplySettings);
  dialog.chkOnTop->setChecked(true);
  dialog.fonts[kScriptFont] = FontSetting{"No Such Font Family", 15.5f, false, true};
  ASSERT_TRUE(dialog.Apply());
  EXPECT_TRUE(w.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
  QFont font = w.txtScript->font();
  EXPECT_EQ(font.family(), QApplication::font().family());  // a missing family falls back
  EXPECT_DOUBLE_EQ(font.pointSizeF(), 15.5);
  EXPECT_TRUE(font.italic());
  EXPECT_FALSE(font.bold());
  EXPECT_EQ(settings.Fonts[kScriptFont].Name, "No Such Font Family");  // the name is kept
}

TEST_F(WindowTest, PreferencesRefuseAnEmptyDefaultDie) {
  frmMain& w = StartWindow();
  frmPrefs dialog(&w);
  dialog.txtDieType->setText("  ");
  dialog.chkAddDice->setChecked(false);
  EXPECT_FALSE(dialog.Apply());
  EXPECT_EQ(ui.messages.size(), 1u);
  EXPECT_TRUE(settings.AddDice);
  EXPECT_FALSE(FileExists("gandrel.ini"));
}

TEST_F(WindowTest, SettingsAndDieTypesSurviveARestart) {
  frmMain& w = StartWindow();
  {
    frmPrefs dialog(&w);
    dialog.txtDieType->setText("10");
    dialog.spinKeepNum->setValue(4);
    dialog.chkLongResults->setChecked(false);
    dialog.spinMargin->setValue(7);
    dialog.fonts[kResultsFont] = FontSetting{"DejaVu Sans Mono", 10.5f, true, false};
    Type(dialog.lstAlwaysAdd, "2d8");
    Type(dialog.lstAlwaysAdd, "1d1+1");
    ASSERT_TRUE(dialog.Apply());
  }
  {
    frmDefine dialog(&w);
    Type(dialog.lstTypes, "fate = 1 to -1");
    Type(dialog.lstTypes, "dfib = 1,1,2,3,5");
    dialog.Apply();
  }
  w.chkResults->setChecked(true);
  w.setGeometry(70, 90, 640, 470);
  w.splitter->setSizes({250, 300});
  int splitterAt = w.splitter->x() + w.splitter->sizes().value(0);

  frmMain& again = Restart();
  EXPECT_EQ(settings.DieType, "10");
  EXPECT_EQ(settings.KeepNum, 4);
  EXPECT_FALSE(settings.LongResults);
  EXPECT_EQ(settings.MarginIncrement, 7);
  EXPECT_TRUE(settings.SeeAll);
  EXPECT_TRUE(again.chkResults->isChecked());
  EXPECT_EQ(settings.Fonts[kResultsFont].Name, "DejaVu Sans Mono");
  EXPECT_FLOAT_EQ(settings.Fonts[kResultsFont].Size, 10.5f);
  EXPECT_TRUE(settings.Fonts[kResultsFont].Bold);
  EXPECT_EQ(Items(AlwaysAddItems), (std::vector<std::string>{"2d8", "1d1+1"}));
  EXPECT_EQ(again.comboDieValue->currentText(), "2d8");  // the first entry, rolled
  EXPECT_EQ(again.geometry(), QRect(70, 90, 640, 470));
  EXPECT_EQ(again.splitter->x() + again.splitter->sizes().value(0), splitterAt);
  ASSERT_EQ(Define.size(), 2u);
  EXPECT_EQ(Define[1].Name, "dfate");
  EXPECT_EQ(Define[1].Lo, -1);
  EXPECT_EQ(Define[1].Hi, 1);
  ASSERT_EQ(DefSeq.size(), 2u);
  EXPECT_EQ(DefSeq[1].Dice, "1,1,2,3,5");

  // The rolled always-add item is in the history and the list.
  again.comboDieValue->setEditText("1d1+1");
  again.btnRoll->click();
  EXPECT_EQ(again.lblResult->text(), "2");
}

TEST_F(WindowTest, DefineDieTypesRemovesWhatIsLeftOut) {
  StartWindow();
  RebuildDieTypes({"dfate = -1 to 1", "dfib = 1,1,2,3,5"});
  frmDefine dialog(window.get());
  ASSERT_EQ(dialog.lstTypes->Entries(),
            (std::vector<std::string>{"dfate = -1 to 1", "dfib = 1,1,2,3,5"}));
  dialog.lstTypes->lstEntries->setCurrentRow(0);
  QTest::mouseClick(dialog.lstTypes->btnRemove, Qt::LeftButton);
  QTest::mouseClick(dialog.cmdOkay, Qt::LeftButton);
  EXPECT_EQ(Define.size(), 1u);
  EXPECT_EQ(DefSeq.size(), 2u);
  std::string def = ReadFile("gandrel.def");
  EXPECT_EQ(def.find("dfate"), std::string::npos);
  EXPECT_NE(def.find("define dfib = 1,1,2,3,5"), std::string::npos);
}

TEST_F(WindowTest, EntryListsRefuseBadEntriesAndKeepOrder) {
  StartWindow();
  frmPrefs dialog(window.get());
  QtEntryList* list = dialog.lstAlwaysAdd;
  struct Step {
    const char* typed;
    bool added;
  } steps[] = {{"3d6", true}, {"1d20", true}, {"3D6", false}, {"x ; y", false}, {"4dF", true}};
  for (const Step& step : steps) {
    SCOPED_TRACE(step.typed);
    size_t before = list->Entries().size();
    size_t messages = ui.messages.size();
    Type(list, step.typed);
    EXPECT_EQ(list->Entries().size(), before + (step.added ? 1 : 0));
    EXPECT_EQ(ui.messages.size(), messages + (step.added ? 0 : 1));
  }
  list->lstEntries->setCurrentRow(2);
  QTest::mouseClick(list->btnUp, Qt::LeftButton);
  QTest::mouseClick(list->btnUp, Qt::LeftButton);
  EXPECT_FALSE(list->btnUp->isEnabled());
  list->txtEntry->setText("2d10");
  QTest::mouseClick(list->btnChange, Qt::LeftButton);
  EXPECT_EQ(list->Entries(), (std::vector<std::string>{"2d10", "3d6", "1d20"}));
  EXPECT_FALSE(dialog.isVisible());  // Enter in the entry box never pressed Okay
}

// A real Qt message box: plain text, the title, the icon, and the answer of
// the button pressed.
TEST_F(WindowTest, MessageBoxesArePlainTextWithTheirAnswer) {
  struct Case {
    MsgButtons buttons;
    MsgIcon icon;
    int press;  // a standard button, or 0 for Escape
    MsgAnswer answer;
  } cases[] = {
      {MsgButtons::Ok, MsgIcon::None, QMessageBox::Ok, MsgAnswer::Ok},
      {MsgButtons::YesNoCancel, MsgIcon::Critical, QMessageBox::Yes, MsgAnswer::Yes},
      {MsgButtons::YesNoCancel, MsgIcon::Critical, QMessageBox::No, MsgAnswer::No},
      {MsgButtons::YesNoCancel, MsgIcon::None, 0, MsgAnswer::Cancel},
  };
  for (const Case& c : cases) {
    bool seen = false;
    QTimer::singleShot(0, [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      seen = true;
      EXPECT_EQ(box->windowTitle(), "Gandrel");
      EXPECT_EQ(box->textFormat(), Qt::PlainText);
      EXPECT_EQ(box->text(), "<script error>");
      EXPECT_EQ(box->icon(),
                c.icon == MsgIcon::Critical ? QMessageBox::Critical : QMessageBox::NoIcon);
      if (c.press == 0)
        QTest::keyClick(box, Qt::Key_Escape);
      else
        box->button(static_cast<QMessageBox::StandardButton>(c.press))->click();
    });
    MsgAnswer answer =
        ui.QtUserInterface::ShowMessage("<script error>", c.buttons, c.icon, "Gandrel");
    EXPECT_TRUE(seen);
    EXPECT_EQ(answer, c.answer);
  }
}

}  // namespace
}  // namespace gandrel::testing
