// What the main window shows around a result, and how the window sits on
// its screen and takes the Tab key.
#include "WindowFixture.h"

namespace gandrel::testing {
namespace {

// The hints go under the result, one a line, not in a message box (their
// texts are RollHintsTest's); marker texts show as plain text.
TEST_F(WindowTest, HintsAndMarkersUnderTheResult) {
  frmMain& w = StartWindow();
  w.chkResults->setChecked(true);
  TypeAndEnter("4d1k3");
  EXPECT_TRUE(w.lblHints->isVisibleTo(&w));
  EXPECT_EQ(Text(w.lblHints),
            "\"k3\" was ignored: it is not a die, a number or an operator.\n"
            "To keep the best 3 of 4d1, write @best(3,4d1).");
  TypeAndEnter("=@foo(<b>)");
  EXPECT_EQ(std::tuple(Text(w.lblResult), w.lblHints->isVisibleTo(&w), w.lblResult->textFormat(),
                       w.lblScript->textFormat(), Text(w.txtEachResult), ui.messages.size()),
            std::tuple("<script error>", false, Qt::PlainText, Qt::PlainText,
                       "Error: function not found in line:\nresult=@foo(<b>)", 0u));
}

// The total is drawn as large as the label's width allows, down to the
// window's own font size, and wrapped below that.
TEST_F(WindowTest, TheTotalShrinksToFitItsLabel) {
  frmMain& w = StartWindow();
  ResultLabel& label = *w.lblResult;
  qreal largest = label.font().pointSizeF(), smallest = w.font().pointSizeF();
  const struct {
    QString text;
    int width;
    bool atLargest, wrapped;
  } cases[] = {
      {"17", 300, true, false},
      {"<script error>", 150, false, false},
      {QString(5000, 'x'), 400, false, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text.left(40).toStdString() + " at " + std::to_string(c.width));
    label.setText(c.text);
    ResultLabel::Fit fit = label.FitText(c.width, 200);
    EXPECT_EQ(fit.pointSize == largest, c.atLargest);
    EXPECT_EQ(fit.wrapped, c.wrapped);
    EXPECT_GE(fit.pointSize, smallest);
    QFont at = label.font();
    at.setPointSizeF(fit.pointSize);
    if (fit.wrapped) {
      // A wrapped text asks for more than one line of height.
      EXPECT_GT(label.heightForWidth(c.width), QFontMetrics(at).lineSpacing());
    } else {
      EXPECT_LE(QFontMetricsF(at).horizontalAdvance(c.text), c.width);
    }
  }
  EXPECT_EQ(label.text(), QString(5000, 'x'));  // the whole text, whatever is drawn
  label.grab();                                 // and drawing a long one works
}

// Tab from the die-value box reaches Roll, Distribution, See All, the details
// and every button before the script editor; in the editor Tab is a TAB, and
// Ctrl+Tab leaves it.
TEST_F(WindowTest, TabReachesTheButtonsBeforeTheEditor) {
  frmMain& w = StartWindow();
  w.chkResults->setChecked(true);
  w.comboDieValue->setFocus();
  QWidget* expected[] = {w.btnRoll,      w.btnDistribution, w.chkResults,    w.txtEachResult,
                         w.btnNewScript, w.btnLoadScript,   w.btnSaveScript, w.btnPrefs,
                         w.btnDefine,    w.btnAbout,        w.btnHelp,       w.btnExit,
                         w.txtScript};
  for (QWidget* next : expected) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), next) << next->objectName().toStdString();
  }
  QTest::keyClick(w.txtScript, Qt::Key_Tab);
  QTest::keyClicks(w.txtScript, "print");
  EXPECT_EQ(w.txtScript->toPlainText(), "\tprint");
  EXPECT_EQ(QApplication::focusWidget(), w.txtScript);
  // Ctrl+Tab and Ctrl+Shift+Tab leave it.
  QTest::keyClick(w.txtScript, Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_NE(QApplication::focusWidget(), w.txtScript);
  w.txtScript->setFocus();
  QTest::keyClick(w.txtScript, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_NE(QApplication::focusWidget(), w.txtScript);
  EXPECT_EQ(w.txtScript->toPlainText(), "\tprint");
}

// A saved place comes back maximised, minimised or normal, with its
// splitter where it was; one larger than the screen comes back whole on its
// available area (how a place is fitted is WindowFitTest's).
TEST_F(WindowTest, SavedPlacementsComeBackOnTheScreen) {
  frmMain& w = StartWindow();
  QRect area = w.screen()->availableGeometry();
  const WindowPlacement cases[] = {
      {area.x() - 5000, 0, 5000, 5000, 2, 300},
      {50, 60, 700, 480, 1, 250},
      {area.x() - 500, area.y() + 10, area.width() + 400, 300, 0, 300},
  };
  for (const WindowPlacement& place : cases) {
    SCOPED_TRACE(std::to_string(place.Left) + "," + std::to_string(place.Top) + " " +
                 std::to_string(place.Width) + "x" + std::to_string(place.Height));
    settings.Main = place;
    w.RestorePlacement();
    EXPECT_EQ(w.isMaximized(), place.State == 2);
    EXPECT_EQ(w.isMinimized(), place.State == 1);
    EXPECT_EQ(w.splitter->x() + w.splitter->sizes().value(0), place.Splitter);
    settings.Main = WindowPlacement{};
    w.StorePlacement();
    EXPECT_EQ(settings.Main.State, place.State);
    if (place.State != 0) continue;
    EXPECT_TRUE(area.contains(w.frameGeometry()))
        << w.frameGeometry().x() << "," << w.frameGeometry().y();
    QSize frame = w.frameGeometry().size() - w.size();
    EXPECT_EQ(w.width(), std::min(place.Width, area.width() - frame.width()));
    EXPECT_EQ(w.height(), std::min(place.Height, area.height() - frame.height()));
  }
}

}  // namespace
}  // namespace gandrel::testing
