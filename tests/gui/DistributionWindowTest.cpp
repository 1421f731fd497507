// The calculator's window: opened from the main window, one or two die
// values charted and summed up, estimates that can be cancelled while the
// window stays responsive, and the exports.
#include "WindowFixture.h"
#include "app/QtDistributionChart.h"
#include "app/frmDistribution.h"

namespace gandrel::testing {
namespace {

class DistributionWindowTest : public WindowTest {
 protected:
  // The summary's cell of the row named, for the die value in column.
  std::string Summary(const char* row, int column = 0) {
    frmDistribution* d = frmDistribution::Current();
    for (int r = 0; r < d->tblSummary->rowCount(); ++r)
      if (d->tblSummary->verticalHeaderItem(r)->text() == row)
        return d->tblSummary->item(r, column)->text().toStdString();
    return "?";
  }

  frmDistribution& Calculated(const QString& dieValue, const QString& compare = "") {
    frmDistribution* d = frmDistribution::Current();
    d->txtDieValue->setText(dieValue);
    d->txtCompare->setText(compare);
    QTest::mouseClick(d->btnCalculate, Qt::LeftButton);
    return *d;
  }
};

// F9 and the button open one window for the die value; F9 in it calculates
// again.
TEST_F(DistributionWindowTest, F9AndTheButtonOpenOneWindowForTheDieValue) {
  frmMain& w = StartWindow();
  w.comboDieValue->setEditText("3d6");
  QTest::keyClick(&w, Qt::Key_F9);
  frmDistribution* d = frmDistribution::Current();
  ASSERT_NE(d, nullptr);
  EXPECT_EQ(std::tuple(d->isVisible(), Summary("mean"), d->chart->AllSeries().size(),
                       d->lblStatus->text()),
            std::tuple(true, "10.5", 1u, "3d6: exact."));

  // The button brings the same window back with the box's die value.
  w.comboDieValue->setEditText(" 2d4 ");
  QTest::mouseClick(w.btnDistribution, Qt::LeftButton);
  EXPECT_EQ(frmDistribution::Current(), d);
  EXPECT_EQ(Summary("max"), "8");

  // Texts that are no number are listed beside the chart, not drawn.
  Calculated("1d2/(1d2-1)");
  ASSERT_EQ(d->tblOther->rowCount(), 1);
  EXPECT_TRUE(d->tblOther->isVisibleTo(d));
  EXPECT_EQ(d->tblOther->item(0, 1)->text() + " " + d->tblOther->item(0, 2)->text(),
            "<calc error> 50.000%");
  // F9 in the window calculates again.
  d->txtDieValue->setText("2d6");
  QApplication::setActiveWindow(d);
  QTest::keyClick(d, Qt::Key_F9);
  EXPECT_EQ(Summary("max"), "12");
  EXPECT_FALSE(d->tblOther->isVisibleTo(d));
  // Nothing is calculated while a roll or a script of the main window runs.
  runFlags.ScriptRunning = true;
  Calculated("3d6");
  runFlags.ScriptRunning = false;
  EXPECT_EQ(Summary("max"), "12");
  EXPECT_TRUE(ui.messages.empty());
}

// Advantage against +2: both on one chart, in their own colours, and the
// hover text gives each one's probability and cumulative percentages; both
// go into the exports.
TEST_F(DistributionWindowTest, TwoDieValuesComparedOnOneChart) {
  frmMain& w = StartWindow();
  QTest::keyClick(&w, Qt::Key_F9);
  frmDistribution& d = Calculated("1d20+2", "@best(1,2d20)");
  const auto& series = d.chart->AllSeries();
  ASSERT_EQ(series.size(), 2u);
  EXPECT_NE(series[0].color, series[1].color);
  EXPECT_EQ(Summary("mean", 1), "13.825");

  d.resize(900, 500);
  QPoint at(d.chart->XOf(15), d.chart->height() / 2);
  EXPECT_EQ(d.chart->TipAt(at).toStdString(),
            "15\n"
            "1d20+2: 5.000%  (at least 40.000%, at most 65.000%)\n"
            "@best(1,2d20): 7.250%  (at least 51.000%, at most 56.250%)");
  EXPECT_EQ(d.chart->TipAt(QPoint(2, 2)), "");
  // The chart draws with the "at least" curves on too.
  QTest::mouseClick(d.chkAtLeast, Qt::LeftButton);
  EXPECT_FALSE(d.chart->grab().isNull());

  // The exports: the chart as drawn, and both die values' outcomes a line
  // each after the header (what a line holds is the calculator's).
  QString png = PathOf("chart.png"), csv = PathOf("chart.csv");
  ASSERT_TRUE(d.ExportPng(png));
  EXPECT_EQ(QImage(png).size(), d.chart->size() * d.chart->devicePixelRatio());
  ASSERT_TRUE(d.ExportCsv(csv));
  std::string text = folder.Read("chart.csv");
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 20 + 20);
  // A file where the folder should be: the user is told.
  QString bad = csv + "/y.csv";
  EXPECT_FALSE(d.ExportCsv(bad));
  ASSERT_EQ(ui.messages.size(), 1u);
  EXPECT_EQ(ui.messages[0].rfind("Gandrel could not write " + bad.toStdString() + ": ", 0), 0u);
}

// A script is estimated; a long estimate can be cancelled by the button or
// Escape, or by closing the window.
TEST_F(DistributionWindowTest, ScriptsAreEstimatedAndTheEstimateCanBeCancelled) {
  frmMain& w = StartWindow();
  w.txtScript->setPlainText("var i\nfor i = 1 to 20\nnext\nresult = 1d6 + 1d6");
  QTest::keyClick(&w, Qt::Key_F9);
  frmDistribution& d = *frmDistribution::Current();
  d.rolls = 3000;
  Calculated("<current script>");
  EXPECT_EQ(Summary("rolls") + " " + Summary("max"), "3000 12");

  // A long estimate: the window answers, the other windows wait, Cancel stops it.
  d.rolls = 100000000;
  bool checked = false;
  QTimer::singleShot(150, [&] {
    checked = true;
    EXPECT_TRUE(d.Calculating());
    EXPECT_FALSE(w.isEnabled());
    EXPECT_FALSE(d.btnCalculate->isEnabled());
    QTest::mouseClick(d.btnCancel, Qt::LeftButton);
  });
  Calculated("<current script>");
  EXPECT_EQ(std::tuple(checked, d.Calculating(), w.isEnabled(), runFlags.ScriptRunning),
            std::tuple(true, false, true, false));
  EXPECT_LT(std::stol(Summary("rolls")), 100000000);
  EXPECT_TRUE(d.lblStatus->text().endsWith("Cancelled.")) << d.lblStatus->text().toStdString();

  // Escape cancels too; closing the window during a calculation closes it
  // once the calculation has stopped.
  QTimer::singleShot(100, [&] { QTest::keyClick(&d, Qt::Key_Escape); });
  Calculated("<current script>");
  EXPECT_TRUE(d.lblStatus->text().endsWith("Cancelled."));
  QPointer<frmDistribution> closed = &d;
  QTimer::singleShot(100, [&] { d.close(); });
  Calculated("<current script>");
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(std::tuple(closed.isNull(), frmDistribution::Current(), w.isEnabled()),
            std::tuple(true, nullptr, true));
}

}  // namespace
}  // namespace gandrel::testing
