#include "app/QtDistributionChart.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <limits>

#include "app/Calculator.h"
#include "calc/NumberText.h"

namespace gandrel {

namespace {

constexpr int kPad = 8;
constexpr double kNoGap = std::numeric_limits<double>::infinity();

// A step of 1, 2 or 5 times a power of ten that cuts span into about count parts.
double NiceStep(double span, double count) {
  if (span <= 0 || count < 1) return 1;
  double raw = span / count;
  double power = std::pow(10.0, std::floor(std::log10(raw)));
  for (double m : {1.0, 2.0, 5.0, 10.0})
    if (raw <= m * power) return m * power;
  return 10 * power;
}

// The numeric outcomes come first, in ascending order.
size_t NumericCount(const Distribution& dist) {
  return dist.atLeast.size();
}

QString ValueLabel(double value) {
  return QString::fromStdString(FormatNumber(value));
}

QString Percent(double p) {
  return QString::fromStdString(PercentText(p));
}

}  // namespace

QColor QtDistributionChart::SeriesColor(size_t index) {
  return index == 0 ? QColor(38, 98, 176) : QColor(219, 112, 20);
}

QtDistributionChart::QtDistributionChart(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize QtDistributionChart::sizeHint() const {
  return {560, 360};
}

QSize QtDistributionChart::minimumSizeHint() const {
  return {240, 160};
}

void QtDistributionChart::SetSeries(std::vector<Series> series) {
  series_ = std::move(series);
  hovered_.reset();
  update();
}

void QtDistributionChart::SetShowBars(bool on) {
  showBars_ = on;
  update();
}

void QtDistributionChart::SetShowAtLeast(bool on) {
  showAtLeast_ = on;
  update();
}

void QtDistributionChart::SetShowAtMost(bool on) {
  showAtMost_ = on;
  update();
}

// ---- Geometry ------------------------------------------------------------------

QRect QtDistributionChart::Plot() const {
  QFontMetrics fm(font());
  int side = fm.horizontalAdvance("100.0%") + kPad + 4;
  int top = 2 * fm.height() + 2 * kPad + fm.height() / 2;
  int bottom = fm.height() + kPad + 6;
  QRect r = rect().adjusted(side, top, AnyCurve() ? -side : -kPad * 2, -bottom);
  if (r.width() < 10) r.setWidth(10);
  if (r.height() < 10) r.setHeight(10);
  return r;
}

QtDistributionChart::Scale QtDistributionChart::Scales() const {
  Scale scale;
  scale.plot = Plot();
  double low = kNoGap, high = -kNoGap, top = 0, gap = kNoGap;
  for (const Series& s : series_) {
    const Distribution& d = s.dist;
    for (size_t i = 0; i < NumericCount(d); ++i) {
      low = std::min(low, d.outcomes[i].value);
      high = std::max(high, d.outcomes[i].value);
      top = std::max(top, d.outcomes[i].probability);
      if (i > 0) gap = std::min(gap, d.outcomes[i].value - d.outcomes[i - 1].value);
    }
  }
  if (low > high) return scale;
  if (gap == kNoGap) gap = std::max(1.0, std::fabs(low));
  double margin = std::max(gap * 0.6, (high - low) * 0.01);
  scale.low = low - margin;
  scale.high = high + margin;
  double step = NiceStep(top, 5);
  scale.top = top > 0 ? std::ceil(top * 1.05 / step) * step : 1;
  return scale;
}

int QtDistributionChart::XOf(double value) const {
  return XOf(value, Scales());
}

int QtDistributionChart::XOf(double value, const Scale& scale) {
  double share = (value - scale.low) / (scale.high - scale.low);
  return scale.plot.left() + static_cast<int>(std::lround(share * scale.plot.width()));
}

int QtDistributionChart::YOfProbability(double p, const Scale& scale) {
  return scale.plot.bottom() - static_cast<int>(std::lround(p / scale.top * scale.plot.height()));
}

int QtDistributionChart::YOfShare(double p, const Scale& scale) {
  return scale.plot.bottom() - static_cast<int>(std::lround(p * scale.plot.height()));
}

double QtDistributionChart::Gap(const Scale& scale) const {
  double gap = kNoGap;
  for (const Series& s : series_)
    for (size_t i = 1; i < NumericCount(s.dist); ++i)
      gap = std::min(gap, s.dist.outcomes[i].value - s.dist.outcomes[i - 1].value);
  double width = scale.plot.width() / (scale.high - scale.low);
  return gap == kNoGap ? scale.plot.width() / 8.0 : gap * width;
}

std::optional<double> QtDistributionChart::ValueAt(QPoint point, const Scale& scale) const {
  if (!scale.plot.adjusted(-kPad, 0, kPad, 0).contains(point)) return std::nullopt;
  int x = point.x();
  std::optional<double> best;
  int bestDistance = 0;
  for (const Series& s : series_) {
    for (size_t i = 0; i < NumericCount(s.dist); ++i) {
      int distance = std::abs(XOf(s.dist.outcomes[i].value, scale) - x);
      if (!best || distance < bestDistance) {
        best = s.dist.outcomes[i].value;
        bestDistance = distance;
      }
    }
  }
  double reach = std::max(4.0, Gap(scale) / 2);
  if (best && bestDistance <= reach) return best;
  return std::nullopt;
}

// ---- Hover -----------------------------------------------------------------------

QString QtDistributionChart::TipAt(QPoint point) const {
  std::optional<double> value = ValueAt(point, Scales());
  return value ? TipFor(*value) : "";
}

QString QtDistributionChart::TipFor(double value) const {
  QString tip = ValueLabel(value);
  for (const Series& s : series_) {
    double p = 0;
    for (size_t i = 0; i < NumericCount(s.dist); ++i)
      if (s.dist.outcomes[i].value == value) p = s.dist.outcomes[i].probability;
    tip += "\n" + s.name + ": " + Percent(p) + "  (at least " +
           Percent(ProbabilityAtLeast(s.dist, value)) + ", at most " +
           Percent(ProbabilityAtMost(s.dist, value)) + ")";
  }
  return tip;
}

void QtDistributionChart::mouseMoveEvent(QMouseEvent* event) {
  std::optional<double> value = ValueAt(event->position().toPoint(), Scales());
  if (value) {
    QToolTip::showText(event->globalPosition().toPoint(), TipFor(*value), this);
  } else {
    QToolTip::hideText();
  }
  if (value != hovered_) {
    hovered_ = value;
    update();
  }
}

void QtDistributionChart::leaveEvent(QEvent*) {
  if (hovered_) {
    hovered_.reset();
    update();
  }
}

// ---- Painting ----------------------------------------------------------------------

void QtDistributionChart::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  bool anyNumber = std::any_of(series_.begin(), series_.end(),
                               [](const Series& s) { return NumericCount(s.dist) > 0; });
  if (!anyNumber) {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(rect(), Qt::AlignCenter,
                     series_.empty() ? tr("Type a die value and press Calculate.")
                                     : tr("No result is a number."));
    return;
  }
  Scale scale = Scales();
  PaintAxes(painter, scale);
  if (hovered_) {
    QColor band = palette().color(QPalette::Highlight);
    band.setAlpha(40);
    int x = XOf(*hovered_, scale), half = std::max(3, static_cast<int>(Gap(scale) / 2));
    painter.fillRect(QRect(x - half, scale.plot.top(), 2 * half, scale.plot.height()), band);
  }
  if (showBars_) PaintBars(painter, scale);
  if (AnyCurve()) PaintCurves(painter, scale);
  PaintLegend(painter, scale);
}

void QtDistributionChart::PaintAxes(QPainter& painter, const Scale& scale) const {
  const QRect& plot = scale.plot;
  QFontMetrics fm(font());
  QColor text = palette().color(QPalette::Text), grid = palette().color(QPalette::Mid);
  grid.setAlpha(90);

  // Probability: the left axis, with grid lines.
  double step = NiceStep(scale.top, 5);
  for (double p = 0; p <= scale.top + step / 1000; p += step) {
    int y = YOfProbability(p, scale);
    painter.setPen(grid);
    painter.drawLine(plot.left(), y, plot.right(), y);
    painter.setPen(text);
    QString label = QString::number(p * 100, 'g', 3) + "%";
    painter.drawText(QRect(0, y - fm.height() / 2, plot.left() - 6, fm.height()),
                     Qt::AlignRight | Qt::AlignVCenter, label);
  }
  int titleTop = plot.top() - fm.height() - fm.height() / 2 - 6;
  painter.drawText(QRect(plot.left() - 40, titleTop, 200, fm.height()), Qt::AlignLeft,
                   tr("probability"));

  // At least / at most: the right axis, 0 to 100%.
  if (AnyCurve()) {
    for (int k = 0; k <= 4; ++k) {
      int y = YOfShare(k / 4.0, scale);
      painter.drawText(QRect(plot.right() + 6, y - fm.height() / 2, 200, fm.height()),
                       Qt::AlignLeft | Qt::AlignVCenter, QString::number(k * 25) + "%");
    }
    painter.drawText(QRect(plot.right() - 160, titleTop, 200, fm.height()), Qt::AlignRight,
                     tr("at least / at most"));
  }

  // Results along the bottom; whole steps when every result is whole.
  bool whole = true;
  for (const Series& s : series_)
    for (size_t i = 0; i < NumericCount(s.dist); ++i)
      whole = whole && s.dist.outcomes[i].value == std::floor(s.dist.outcomes[i].value);
  double xStep = NiceStep(scale.high - scale.low, std::max(2.0, plot.width() / 70.0));
  if (whole) xStep = std::max(1.0, std::round(xStep));
  painter.setPen(text);
  painter.drawLine(plot.bottomLeft(), plot.bottomRight());
  for (double v = std::ceil(scale.low / xStep) * xStep; v <= scale.high; v += xStep) {
    int x = XOf(v, scale);
    painter.drawLine(x, plot.bottom(), x, plot.bottom() + 4);
    QString label = ValueLabel(std::fabs(v) < xStep / 1e9 ? 0 : v);
    int w = fm.horizontalAdvance(label);
    painter.drawText(QRect(x - w / 2 - 2, plot.bottom() + 6, w + 4, fm.height()), Qt::AlignCenter,
                     label);
  }
}

void QtDistributionChart::PaintBars(QPainter& painter, const Scale& scale) const {
  size_t drawn = std::count_if(series_.begin(), series_.end(),
                               [](const Series& s) { return NumericCount(s.dist) > 0; });
  double total = std::max(1.0, Gap(scale) * 0.8);
  double each = total / static_cast<double>(std::max<size_t>(1, drawn));
  size_t k = 0;
  for (const Series& s : series_) {
    if (NumericCount(s.dist) == 0) continue;
    QColor fill = s.color;
    fill.setAlpha(drawn > 1 ? 200 : 230);
    double offset = -total / 2 + each * static_cast<double>(k++);
    int bottom = scale.plot.bottom();
    for (size_t i = 0; i < NumericCount(s.dist); ++i) {
      const DistOutcome& o = s.dist.outcomes[i];
      double left = XOf(o.value, scale) + offset;
      int y = YOfProbability(o.probability, scale);
      painter.fillRect(QRectF(left, y, std::max(1.0, each), bottom - y), fill);
    }
  }
}

void QtDistributionChart::PaintCurves(QPainter& painter, const Scale& scale) const {
  painter.setRenderHint(QPainter::Antialiasing, true);
  for (const Series& s : series_) {
    size_t n = NumericCount(s.dist);
    if (n == 0) continue;
    for (int which = 0; which < 2; ++which) {
      if ((which == 0 && !showAtLeast_) || (which == 1 && !showAtMost_)) continue;
      const std::vector<double>& shares = which == 0 ? s.dist.atLeast : s.dist.atMost;
      QPolygonF line;
      for (size_t i = 0; i < n; ++i)
        line << QPointF(XOf(s.dist.outcomes[i].value, scale), YOfShare(shares[i], scale));
      QPen pen(s.color.darker(which == 0 ? 110 : 140), 2, which == 0 ? Qt::DashLine : Qt::DotLine);
      painter.setPen(pen);
      painter.drawPolyline(line);
      if (n <= 60) {
        painter.setBrush(s.color);
        painter.setPen(Qt::NoPen);
        for (const QPointF& point : line)
          painter.drawEllipse(point, 2.5, 2.5);
        painter.setBrush(Qt::NoBrush);
      }
    }
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
}

void QtDistributionChart::PaintLegend(QPainter& painter, const Scale& scale) const {
  QFontMetrics fm(font());
  int x = scale.plot.left(), y = kPad;
  painter.setPen(palette().color(QPalette::Text));
  for (const Series& s : series_) {
    painter.fillRect(QRect(x, y + (fm.height() - 12) / 2, 12, 12), s.color);
    QString name = fm.elidedText(s.name, Qt::ElideRight, 260);
    painter.drawText(QPoint(x + 16, y + fm.ascent()), name);
    x += 16 + fm.horizontalAdvance(name) + 18;
  }
  if (!AnyCurve()) return;
  QColor text = palette().color(QPalette::Text);
  for (int which = 0; which < 2; ++which) {
    if ((which == 0 && !showAtLeast_) || (which == 1 && !showAtMost_)) continue;
    painter.setPen(QPen(text, 2, which == 0 ? Qt::DashLine : Qt::DotLine));
    int mid = y + fm.height() / 2;
    painter.drawLine(x, mid, x + 22, mid);
    painter.setPen(text);
    QString label = which == 0 ? tr("at least") : tr("at most");
    painter.drawText(QPoint(x + 26, y + fm.ascent()), label);
    x += 26 + fm.horizontalAdvance(label) + 18;
  }
}

}  // namespace gandrel
