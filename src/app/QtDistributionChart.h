// QtDistributionChart: the chart of one or two distributions, painted.
//
// Bars of the probability of every numeric result (left axis), and when
// asked the curves of "at least" and "at most" each result (right axis, 0 to
// 100%). Two die values share the axes: their bars stand side by side in
// their own colours, and the legend names them. Results that are no number
// are not drawn (the window lists them). Hovering over a result shows its
// value, its probability and the cumulative percentages of each die value.
#pragma once

#include <QColor>
#include <QString>
#include <QWidget>
#include <optional>
#include <vector>

#include "dist/Distribution.h"

namespace gandrel {

class QtDistributionChart : public QWidget {
  Q_OBJECT

 public:
  struct Series {
    QString name;
    Distribution dist;
    QColor color;
  };

  // The colours of the first and the second die value.
  static QColor SeriesColor(size_t index);

  explicit QtDistributionChart(QWidget* parent = nullptr);

  void SetSeries(std::vector<Series> series);
  const std::vector<Series>& AllSeries() const { return series_; }
  void SetShowBars(bool on);
  void SetShowAtLeast(bool on);
  void SetShowAtMost(bool on);

  // The hover text for the point (widget coordinates): one line for the
  // value, then one per die value that can show it; "" away from any result.
  QString TipAt(QPoint point) const;
  // Where the result value stands across the chart (widget coordinates).
  int XOf(double value) const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  // Worked out once per paint or mouse move, as it reads every result.
  struct Scale {
    QRect plot;                // the plot's rectangle in widget coordinates
    double low = 0, high = 1;  // the values at the plot's left and right edge
    double top = 1;            // the probability at the plot's top
  };
  QRect Plot() const;
  Scale Scales() const;
  static int XOf(double value, const Scale& scale);
  static int YOfProbability(double p, const Scale& scale);
  static int YOfShare(double p, const Scale& scale);
  // The smallest distance between two neighbouring results, in pixels.
  double Gap(const Scale& scale) const;
  // The numeric result nearest to the point within reach, if any; none
  // outside the plot.
  std::optional<double> ValueAt(QPoint point, const Scale& scale) const;
  QString TipFor(double value) const;
  bool AnyCurve() const { return showAtLeast_ || showAtMost_; }

  void PaintAxes(QPainter& painter, const Scale& scale) const;
  void PaintBars(QPainter& painter, const Scale& scale) const;
  void PaintCurves(QPainter& painter, const Scale& scale) const;
  void PaintLegend(QPainter& painter, const Scale& scale) const;

  std::vector<Series> series_;
  bool showBars_ = true;
  bool showAtLeast_ = false;
  bool showAtMost_ = false;
  std::optional<double> hovered_;
};

}  // namespace gandrel
