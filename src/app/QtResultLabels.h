// The labels around the main window's result: the total, drawn as large as
// its room allows, and the caption that names the die value it belongs to.
#pragma once

#include <QLabel>

namespace gandrel {

// The total: its text is drawn on one line in the largest point size from
// the label's font size down to minimum point size that lets it fit the
// label. A text that does not fit on one line even at the smallest size is
// wrapped at that size, at blanks where it can and anywhere where it must;
// when the label cannot hold all its lines the last one shown ends in "...".
// text() is always the whole text, and so is "Copy" in the context menu.
class ResultLabel : public QLabel {
  Q_OBJECT

 public:
  ResultLabel(qreal minimumPointSize, QWidget* parent);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;

  // How the text is drawn at a width and height: its point size, and
  // whether it is wrapped.
  struct Fit {
    qreal pointSize = 0;
    bool wrapped = false;
  };
  Fit FitText(int width, int height) const;
  Fit ShownFit() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // The height of lines of text at a point size; wrapped at width when wrap.
  qreal TextHeight(qreal pointSize, int width, bool wrap) const;
  QFont FontAt(qreal pointSize) const;

  qreal minimumPointSize_;
};

// A one-line label that shows a long text shortened in the middle with "...",
// the whole text in text() and in its tooltip.
class ElidedLabel : public QLabel {
  Q_OBJECT

 public:
  explicit ElidedLabel(QWidget* parent);

  QSize minimumSizeHint() const override;
  // The text as it is drawn at the label's width now.
  QString ShownText() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace gandrel
