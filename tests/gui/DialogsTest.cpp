#include "WindowFixture.h"
#include "app/QtEntryList.h"
#include "app/frmDefine.h"
#include "app/frmPrefs.h"

namespace gandrel::testing {
namespace {

using Entries = std::vector<std::string>;

void Type(QtEntryList* list, const QString& text) {
  list->txtEntry->setText(text);
  QTest::keyClick(list->txtEntry, Qt::Key_Return);
}

// Okay with a default die that does not roll is refused and saves nothing
// either; the field shows the die with its "d", the setting keeps the size.
TEST_F(WindowTest, PreferencesOkaySavesAndCancelDoesNot) {
  struct Case {
    const char* dieType;
    bool okay, saved;
  } cases[] = {{"d8", false, false}, {"  ", true, false}, {"6w", true, false}, {"d8", true, true}};
  frmMain& w = StartWindow();
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.okay ? "Okay, die '" : "Cancel, die '") + c.dieType + "'");
    frmPrefs dialog(&w);
    EXPECT_EQ(dialog.focusWidget(), dialog.btnOkay);  // a stray key changes nothing
    dialog.txtDieType->setText(c.dieType);
    Type(dialog.lstAlwaysAdd, "4d6");
    QTest::mouseClick(c.okay ? dialog.btnOkay : dialog.btnCancel, Qt::LeftButton);
    // The always-add items are counted from 1.
    EXPECT_EQ(std::tuple(engineSettings.DieType, AlwaysAddItems.size(), FileExists("gandrel.ini")),
              std::tuple(c.saved ? "8" : "6", c.saved ? 2u : 1u, c.saved));
  }
  EXPECT_EQ(ui.messages,
            (Entries{"Please give a default die, such as d6.",
                     "\"6w\" is not a die: give \"d\" and a whole number of sides, such as d6, "
                     "or the name of one of your die types (Define Die Types)."}));
}

// The typed entry shows how it will be stored, goes in that way, replaces a
// type of its name only after a Yes; a removed one is gone; Okay saves. The
// texts of the refusals and the question, and the order the list is shown in
// again, are DialogModelsTest's.
TEST_F(WindowTest, DefineDieTypesShowsWhatItStores) {
  StartWindow();
  RebuildDieTypes({"dfate = -1 to 1", "dfib = 1,1,2,3,5"});
  {
    frmDefine dialog(window.get());
    QtEntryList* list = dialog.lstTypes;
    list->lstEntries->setCurrentRow(1);
    QTest::mouseClick(list->btnRemove, Qt::LeftButton);
    list->txtEntry->setText("x = 1 to 3");
    EXPECT_EQ(dialog.lblStored->text(), "Stored as: dx = 1 to 3");
    QTest::keyClick(list->txtEntry, Qt::Key_Return);
    Type(list, "dy = 2,4");
    Type(list, "d = 1 to 2");  // refused
    EXPECT_EQ(list->txtEntry->text(), "d = 1 to 2");
    for (MsgAnswer answer : {MsgAnswer::No, MsgAnswer::Yes}) {
      ui.answer = answer;
      Type(list, "X = 2 to 4");
    }
    EXPECT_EQ(ui.messages.size(), 3u);  // the refusal, then a question each time
    EXPECT_EQ(list->Entries(), (Entries{"dfate = -1 to 1", "dX = 2 to 4", "dy = 2,4"}));
    QTest::mouseClick(dialog.btnOkay, Qt::LeftButton);
  }
  EXPECT_NE(folder.Read("gandrel.def").find("define dX = 2 to 4\r\n"), std::string::npos);
}

// A refused entry is DefineDieTypesShowsWhatItStores'.
TEST_F(WindowTest, EntryListsKeepOrder) {
  StartWindow();
  frmPrefs dialog(window.get());
  QtEntryList* list = dialog.lstAlwaysAdd;
  for (const char* typed : {"3d6", "1d20"})
    Type(list, typed);
  list->lstEntries->setCurrentRow(1);
  QTest::mouseClick(list->btnUp, Qt::LeftButton);
  EXPECT_FALSE(list->btnUp->isEnabled());
  list->txtEntry->setText("2d10");
  QTest::mouseClick(list->btnChange, Qt::LeftButton);
  EXPECT_EQ(list->Entries(), (Entries{"2d10", "3d6"}));
}

// A real Qt message box: plain text, and the answer of the button pressed.
TEST_F(WindowTest, MessageBoxesArePlainTextWithTheirAnswer) {
  struct Case {
    MsgButtons buttons;
    int press;  // a standard button, or 0 for Escape
    MsgAnswer answer;
  } cases[] = {
      {MsgButtons::Ok, QMessageBox::Ok, MsgAnswer::Ok},
      {MsgButtons::YesNoCancel, QMessageBox::No, MsgAnswer::No},
      {MsgButtons::YesNoCancel, 0, MsgAnswer::Cancel},
  };
  for (const Case& c : cases) {
    QTimer::singleShot(0, [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      EXPECT_EQ(box->textFormat(), Qt::PlainText);
      EXPECT_EQ(box->text(), "<script error>");
      if (c.press == 0)
        QTest::keyClick(box, Qt::Key_Escape);
      else
        box->button(static_cast<QMessageBox::StandardButton>(c.press))->click();
    });
    MsgAnswer answer =
        ui.QtUserInterface::ShowMessage("<script error>", c.buttons, MsgIcon::Critical, "Gandrel");
    EXPECT_EQ(answer, c.answer);
  }
}

}  // namespace
}  // namespace gandrel::testing
