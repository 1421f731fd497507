#include "app/QtResultLabels.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

namespace gandrel {

namespace {

// Sizes are tried in steps of this many points.
constexpr qreal kStep = 0.5;
// A wrapped text asks for room for at most this many lines.
constexpr int kMostLinesAsked = 4;

// Of a longer text only so much is laid out: more would never be seen
// whole, and laying it out at every resize would take long.
constexpr qsizetype kLongestLaidOut = 4000;

// Line breaks of any kind as the layout's own line separator; a text cut
// short ends in "...".
QString LayoutText(QString text) {
  if (text.size() > kLongestLaidOut) text = text.left(kLongestLaidOut) + QChar(0x2026);
  text.replace("\r\n", "\n");
  text.replace('\r', '\n');
  text.replace('\n', QChar::LineSeparator);
  return text;
}

}  // namespace

ResultLabel::ResultLabel(qreal minimumPointSize, QWidget* parent)
    : QLabel(parent), minimumPointSize_(minimumPointSize) {
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignCenter);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  auto* copy = new QAction(tr("&Copy"), this);
  connect(copy, &QAction::triggered, this,
          [this] { QGuiApplication::clipboard()->setText(text()); });
  addAction(copy);
}

QFont ResultLabel::FontAt(qreal pointSize) const {
  QFont shown = font();
  shown.setPointSizeF(pointSize);
  return shown;
}

qreal ResultLabel::TextHeight(qreal pointSize, int width, bool wrap) const {
  QTextLayout layout(LayoutText(text()), FontAt(pointSize));
  QTextOption option;
  option.setWrapMode(wrap ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
  layout.setTextOption(option);
  qreal height = 0;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(std::max(width, 1));
    height += line.height();
  }
  layout.endLayout();
  return height;
}

ResultLabel::Fit ResultLabel::FitText(int width, int height) const {
  qreal largest = std::max(font().pointSizeF(), minimumPointSize_);
  QStringList lines = LayoutText(text()).split(QChar::LineSeparator);
  // The widest line at the largest size; the advance shrinks with the size.
  qreal widest = 0;
  QFontMetricsF metrics(FontAt(largest));
  for (const QString& line : lines)
    widest = std::max(widest, metrics.horizontalAdvance(line));
  qreal size = largest;
  if (widest > width) size = std::floor(largest * width / widest / kStep) * kStep;
  for (; size >= minimumPointSize_; size -= kStep) {
    QFontMetricsF at(FontAt(size));
    bool fits = at.lineSpacing() * static_cast<qreal>(lines.size()) <= std::max(height, 1);
    for (const QString& line : lines)
      fits = fits && at.horizontalAdvance(line) <= width;
    if (fits) return {size, false};
  }
  return {minimumPointSize_, true};
}

ResultLabel::Fit ResultLabel::ShownFit() const {
  QRect room = contentsRect();
  return FitText(room.width(), room.height());
}

QSize ResultLabel::sizeHint() const {
  QFontMetrics metrics(font());
  return QSize(metrics.horizontalAdvance("0000000") + 2 * margin(),
               metrics.lineSpacing() + 2 * margin());
}

QSize ResultLabel::minimumSizeHint() const {
  QFontMetrics metrics(FontAt(minimumPointSize_));
  return QSize(metrics.horizontalAdvance("000"), metrics.lineSpacing() + 2 * margin());
}

// One line at the largest size, or the lines the wrapped text needs at the
// smallest, up to a few.
int ResultLabel::heightForWidth(int width) const {
  int inner = width - 2 * margin();
  int oneLine = QFontMetrics(font()).lineSpacing();
  Fit fit = FitText(inner, QWIDGETSIZE_MAX);
  if (!fit.wrapped) return std::max(oneLine, sizeHint().height());
  qreal most = QFontMetricsF(FontAt(minimumPointSize_)).lineSpacing() * kMostLinesAsked;
  int wrapped = static_cast<int>(std::ceil(std::min(TextHeight(fit.pointSize, inner, true), most)));
  return std::max(oneLine, wrapped) + 2 * margin();
}

void ResultLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QRect room = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
  Fit fit = FitText(room.width(), room.height());
  QFont shown = FontAt(fit.pointSize);
  painter.setFont(shown);
  painter.setPen(palette().color(foregroundRole()));
  if (!fit.wrapped) {
    painter.drawText(room, static_cast<int>(alignment()), text());
    return;
  }
  // Lays out the lines that fit; the last one shown holds the rest, cut.
  QString laid = LayoutText(text());
  QTextLayout layout(laid, shown);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  QFontMetricsF metrics(shown);
  int most = std::max(1, static_cast<int>(room.height() / metrics.lineSpacing()));
  QStringList shownLines;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(room.width());
    if (shownLines.size() + 1 == most) {
      QString rest = laid.mid(line.textStart());
      rest.replace(QChar::LineSeparator, ' ');
      shownLines.append(metrics.elidedText(rest, Qt::ElideRight, room.width()));
      break;
    }
    shownLines.append(laid.mid(line.textStart(), line.textLength()));
  }
  layout.endLayout();
  qreal top = room.top() + (room.height() - metrics.lineSpacing() * shownLines.size()) / 2;
  top = std::max<qreal>(top, room.top());
  for (const QString& line : shownLines) {
    QRectF band(room.left(), top, room.width(), metrics.lineSpacing());
    painter.drawText(band, Qt::AlignHCenter | Qt::AlignVCenter, line.trimmed());
    top += metrics.lineSpacing();
  }
}

// ---- ElidedLabel ----------------------------------------------------------------

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize ElidedLabel::minimumSizeHint() const {
  return QSize(fontMetrics().horizontalAdvance("..."), fontMetrics().height());
}

QString ElidedLabel::ShownText() const {
  QString oneLine = text();
  oneLine.replace('\n', ' ').replace('\r', ' ');
  return fontMetrics().elidedText(oneLine, Qt::ElideMiddle, contentsRect().width());
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(contentsRect(), static_cast<int>(alignment()), ShownText());
}

}  // namespace gandrel
