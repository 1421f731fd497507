#include "app/QtIcon.h"

#include <QPainter>
#include <QPixmap>

namespace gandrel {

// The drawing on its 64 x 64 grid, scaled to size.
static QPixmap DrawDie(int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size / 64.0, size / 64.0);
  painter.setPen(QPen(QColor(0x5c, 0x10, 0x15), 3));
  painter.setBrush(QColor(0xb3, 0x26, 0x2e));
  painter.drawRoundedRect(QRectF(6, 6, 52, 52), 10, 10);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::white);
  const QPointF pips[] = {{20, 20}, {44, 20}, {32, 32}, {20, 44}, {44, 44}};
  for (const QPointF& pip : pips)
    painter.drawEllipse(pip, 5, 5);
  return pixmap;
}

QIcon GandrelIcon() {
  QIcon icon;
  for (int size : {16, 24, 32, 48, 64, 128})
    icon.addPixmap(DrawDie(size));
  return icon;
}

}  // namespace gandrel
