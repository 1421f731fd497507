#include "app/QtScriptEditor.h"

#include <QApplication>
#include <QFrame>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTimer>
#include <QToolButton>
#include <QToolTip>
#include <algorithm>
#include <string>
#include <vector>

#include "app/QtScriptHighlighter.h"
#include "script/ScriptKeywords.h"

namespace gandrel {

namespace {

// How long typing pauses before the GOTOs are checked again.
constexpr int kGotoCheckDelayMs = 300;

const QColor kErrorLineBackground(255, 215, 215);
const QColor kNotFoundBackground(255, 220, 220);

// The margin beside the text that shows the line numbers.
class LineNumberArea : public QWidget {
 public:
  explicit LineNumberArea(QtScriptEditor* editor) : QWidget(editor), editor_(editor) {}
  QSize sizeHint() const override { return {editor_->LineNumberWidth(), 0}; }

 protected:
  void paintEvent(QPaintEvent* event) override { editor_->PaintLineNumbers(event); }

 private:
  QtScriptEditor* editor_;
};

bool IsKey(const QKeyEvent* key, Qt::Key code, Qt::KeyboardModifiers modifiers) {
  return key->key() == code && (key->modifiers() & ~Qt::KeypadModifier) == modifiers;
}

}  // namespace

QtScriptEditor::QtScriptEditor(QWidget* parent) : QPlainTextEdit(parent) {
  setLineWrapMode(QPlainTextEdit::NoWrap);
  highlighter_ = new QtScriptHighlighter(document());
  lineNumbers_ = new LineNumberArea(this);
  gotoTimer_ = new QTimer(this);
  gotoTimer_->setSingleShot(true);
  gotoTimer_->setInterval(kGotoCheckDelayMs);
  connect(gotoTimer_, &QTimer::timeout, this, &QtScriptEditor::CheckGotos);
  connect(document(), &QTextDocument::contentsChanged, gotoTimer_, qOverload<>(&QTimer::start));
  connect(this, &QPlainTextEdit::blockCountChanged, this, &QtScriptEditor::UpdateMargin);
  connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& rect, int dy) {
    if (dy != 0) {
      lineNumbers_->scroll(0, dy);
    } else {
      lineNumbers_->update(0, rect.y(), lineNumbers_->width(), rect.height());
    }
  });
  BuildFindBar();
  UpdateMargin();
}

// ---- The text --------------------------------------------------------------

void QtScriptEditor::ReplaceText(const QString& text) {
  ShowErrorLine(0);
  if (text == toPlainText()) return;
  int caret = textCursor().position();
  QTextCursor cursor(document());
  cursor.beginEditBlock();
  cursor.select(QTextCursor::Document);
  if (text.isEmpty()) {
    cursor.removeSelectedText();
  } else {
    cursor.insertText(text);
  }
  cursor.endEditBlock();
  QTextCursor moved = textCursor();
  moved.setPosition(std::min(caret, document()->characterCount() - 1));
  setTextCursor(moved);
}

// ---- Marks -------------------------------------------------------------------

void QtScriptEditor::ShowErrorLine(int line, const QString& why) {
  QTextBlock block = document()->findBlockByNumber(line - 1);
  if (line >= 1 && block.isValid()) {
    errorLine_ = QTextCursor(block);
    errorWhy_ = why;
    setTextCursor(QTextCursor(block));
    ensureCursorVisible();
  } else {
    errorLine_ = QTextCursor();
    errorWhy_.clear();
  }
  UpdateMarks();
  lineNumbers_->update();
}

int QtScriptEditor::ErrorLine() const {
  return errorLine_.isNull() ? 0 : errorLine_.blockNumber() + 1;
}

void QtScriptEditor::CheckGotos() {
  gotoTimer_->stop();
  std::vector<std::string> lines{""};
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
    lines.push_back(block.text().toStdString());
  gotoProblems_.clear();
  for (const GotoCheck& missing : MissingGotoTargets(lines))
    gotoProblems_[missing.line] = QString::fromStdString(missing.message);
  UpdateMarks();
}

void QtScriptEditor::UpdateMarks() {
  QList<QTextEdit::ExtraSelection> marks;
  if (int line = ErrorLine()) {
    QTextEdit::ExtraSelection mark;
    mark.cursor = QTextCursor(document()->findBlockByNumber(line - 1));
    mark.format.setBackground(kErrorLineBackground);
    mark.format.setProperty(QTextFormat::FullWidthSelection, true);
    marks.append(mark);
  }
  for (const auto& [line, message] : gotoProblems_) {
    QTextBlock block = document()->findBlockByNumber(line - 1);
    if (!block.isValid()) continue;
    QTextEdit::ExtraSelection mark;
    mark.cursor = QTextCursor(block);
    mark.cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    mark.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    mark.format.setUnderlineColor(Qt::red);
    marks.append(mark);
  }
  setExtraSelections(marks);
}

bool QtScriptEditor::ShowProblemTip(const QPoint& at, const QPoint& globalAt) {
  int line = cursorForPosition(at).blockNumber() + 1;
  QString tip;
  if (auto problem = gotoProblems_.find(line); problem != gotoProblems_.end()) {
    tip = problem->second;
  } else if (line == ErrorLine()) {
    tip = errorWhy_;
  }
  if (tip.isEmpty()) {
    QToolTip::hideText();
    return false;
  }
  QToolTip::showText(globalAt, tip, viewport());
  return true;
}

// ---- Line numbers --------------------------------------------------------------

int QtScriptEditor::LineNumberWidth() const {
  int digits = std::max(2, static_cast<int>(QString::number(blockCount()).size()));
  return 10 + fontMetrics().horizontalAdvance(QLatin1Char('9')) * digits;
}

void QtScriptEditor::UpdateMargin() {
  setViewportMargins(LineNumberWidth(), 0, 0, 0);
  QRect inside = contentsRect();
  lineNumbers_->setGeometry(inside.left(), inside.top(), LineNumberWidth(), inside.height());
}

void QtScriptEditor::PaintLineNumbers(QPaintEvent* event) {
  QPainter painter(lineNumbers_);
  painter.fillRect(event->rect(), palette().color(QPalette::Window));
  int errorBlock = ErrorLine() - 1;
  QTextBlock block = firstVisibleBlock();
  int top = qRound(blockBoundingGeometry(block).translated(contentOffset()).top());
  int right = lineNumbers_->width() - 5;
  while (block.isValid() && top <= event->rect().bottom()) {
    int height = qRound(blockBoundingRect(block).height());
    if (block.isVisible() && top + height >= event->rect().top()) {
      bool error = block.blockNumber() == errorBlock;
      painter.setPen(error ? QColor(200, 0, 0) : palette().color(QPalette::PlaceholderText));
      QFont font = this->font();
      font.setBold(error);
      painter.setFont(font);
      painter.drawText(0, top, right, fontMetrics().height(), Qt::AlignRight,
                       QString::number(block.blockNumber() + 1));
    }
    block = block.next();
    top += height;
  }
}

// ---- Find ------------------------------------------------------------------------

void QtScriptEditor::BuildFindBar() {
  auto* bar = new QFrame(this);
  bar->setObjectName("findBar");
  bar->setFrameShape(QFrame::StyledPanel);
  bar->setAutoFillBackground(true);
  findText_ = new QLineEdit(bar);
  findText_->setObjectName("findText");
  findText_->setPlaceholderText(tr("Find"));
  findText_->setClearButtonEnabled(true);
  findText_->installEventFilter(this);
  auto button = [bar](const QString& text, const QString& tip) {
    auto* b = new QToolButton(bar);
    b->setText(text);
    b->setToolTip(tip);
    b->setAutoRaise(true);
    return b;
  };
  QToolButton* previous = button(QStringLiteral("\u25B2"), tr("Previous match (Shift+F3)"));
  QToolButton* next = button(QStringLiteral("\u25BC"), tr("Next match (F3)"));
  QToolButton* close = button(QStringLiteral("\u2715"), tr("Close (Escape)"));
  connect(previous, &QToolButton::clicked, this, [this] { FindNext(true); });
  connect(next, &QToolButton::clicked, this, [this] { FindNext(false); });
  connect(close, &QToolButton::clicked, this, [this] {
    findBar_->hide();
    setFocus();
  });
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(4, 2, 2, 2);
  layout->setSpacing(2);
  layout->addWidget(findText_);
  layout->addWidget(previous);
  layout->addWidget(next);
  layout->addWidget(close);
  findBar_ = bar;
  findBar_->hide();
}

void QtScriptEditor::PlaceFindBar() {
  QSize size = findBar_->sizeHint();
  size.setWidth(std::min(std::max(size.width(), 260), std::max(120, viewport()->width() - 8)));
  QRect inside = viewport()->geometry();
  findBar_->setGeometry(inside.right() - size.width() - 3, inside.top() + 3, size.width(),
                        size.height());
}

void QtScriptEditor::ShowFindBar() {
  QString selected = textCursor().selectedText();
  if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator))
    findText_->setText(selected);
  PlaceFindBar();
  findBar_->show();
  findBar_->raise();
  findText_->setFocus();
  findText_->selectAll();
}

bool QtScriptEditor::FindNext(bool backwards) {
  QString needle = findText_->text();
  if (needle.isEmpty()) return false;
  QTextDocument::FindFlags flags;
  if (backwards) flags |= QTextDocument::FindBackward;
  QTextCursor found = document()->find(needle, textCursor(), flags);
  if (found.isNull()) {
    // Round the end to the other one.
    QTextCursor start(document());
    if (backwards) start.movePosition(QTextCursor::End);
    found = document()->find(needle, start, flags);
  }
  if (!found.isNull()) setTextCursor(found);
  QPalette palette = findText_->palette();
  palette.setColor(QPalette::Base, found.isNull() ? kNotFoundBackground
                                                  : QApplication::palette().color(QPalette::Base));
  findText_->setPalette(palette);
  return !found.isNull();
}

// ---- Events --------------------------------------------------------------------

bool QtScriptEditor::event(QEvent* event) {
  // Ctrl+Tab and Ctrl+Shift+Tab leave the editor, where Tab itself types.
  if (event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    bool tab = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
    if (tab && key->modifiers().testFlag(Qt::ControlModifier)) {
      bool back = key->key() == Qt::Key_Backtab || key->modifiers().testFlag(Qt::ShiftModifier);
      QWidget::focusNextPrevChild(!back);
      return true;
    }
  }
  return QPlainTextEdit::event(event);
}

bool QtScriptEditor::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    auto* help = static_cast<QHelpEvent*>(event);
    if (!ShowProblemTip(help->pos(), help->globalPos())) event->ignore();
    return true;
  }
  return QPlainTextEdit::viewportEvent(event);
}

bool QtScriptEditor::eventFilter(QObject* watched, QEvent* event) {
  if (watched == findText_) {
    if (event->type() == QEvent::ShortcutOverride) {
      // Escape closes the find bar; it must not reach the window as a break.
      auto* key = static_cast<QKeyEvent*>(event);
      if (key->key() == Qt::Key_Escape) {
        event->accept();
        return true;
      }
    } else if (event->type() == QEvent::KeyPress) {
      auto* key = static_cast<QKeyEvent*>(event);
      if (key->key() == Qt::Key_Escape) {
        findBar_->hide();
        setFocus();
        return true;
      }
      if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter || key->key() == Qt::Key_F3) {
        FindNext(key->modifiers().testFlag(Qt::ShiftModifier));
        return true;
      }
    }
  }
  return QPlainTextEdit::eventFilter(watched, event);
}

void QtScriptEditor::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Find) || IsKey(event, Qt::Key_F, Qt::ControlModifier)) {
    ShowFindBar();
  } else if (IsKey(event, Qt::Key_F3, Qt::NoModifier) ||
             IsKey(event, Qt::Key_F3, Qt::ShiftModifier)) {
    if (findText_->text().isEmpty()) {
      ShowFindBar();
    } else {
      FindNext(event->modifiers().testFlag(Qt::ShiftModifier));
    }
  } else {
    QPlainTextEdit::keyPressEvent(event);
  }
}

void QtScriptEditor::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  UpdateMargin();
  if (findBar_->isVisible()) PlaceFindBar();
}

void QtScriptEditor::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange) {
    // A TAB is one blank to the script: four columns on screen.
    setTabStopDistance(4 * fontMetrics().horizontalAdvance(QLatin1Char(' ')));
    UpdateMargin();
  }
}

}  // namespace gandrel
