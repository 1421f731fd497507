// QtScriptEditor: the main window's script editor.
//
// A plain-text editor for scripts with what people expect of one: line
// numbers in a margin, the colours of QtScriptHighlighter, undo and redo,
// and a find bar (Ctrl+F; F3 and Shift+F3 find the next and the previous
// match, Escape closes it). Tab types a TAB, which scripts use like a blank;
// Ctrl+Tab and Ctrl+Shift+Tab move the focus on and back.
//
// A GOTO whose label does not exist is underlined while the script is typed,
// with the tokenizer's message as its tooltip. After a run that stopped on a
// line, that line is shown in red and the caret put there, until the next
// roll or a new text.
//
// The program replaces the whole text with ReplaceText, one step of the undo
// history: clearing the editor by picking a die value, New or Load can be
// undone like a change typed by hand.
#pragma once

#include <QPlainTextEdit>
#include <QTextCursor>
#include <map>

class QLineEdit;
class QTimer;
class QWidget;

namespace gandrel {

class QtScriptHighlighter;

class QtScriptEditor : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit QtScriptEditor(QWidget* parent = nullptr);

  // The whole text becomes text as one step of the undo history; the caret
  // stays where it was, as near as the new text allows. An equal text
  // changes nothing. The error line is cleared.
  void ReplaceText(const QString& text);

  // Line (1-based) is where the last run stopped: shown in red, the caret put
  // at its start and scrolled into view; why is its tooltip. 0 (or a line the
  // text does not have) clears it.
  void ShowErrorLine(int line, const QString& why = QString());
  // The line shown as the run's error line, 0 when none.
  int ErrorLine() const;

  // The lines (1-based) underlined as GOTOs without their label, with the
  // tokenizer's message for each. Worked out shortly after each change;
  // CheckGotos works it out at once.
  const std::map<int, QString>& GotoProblems() const { return gotoProblems_; }
  void CheckGotos();

  // The find bar: shown with the selected text (or the last one looked for).
  void ShowFindBar();
  // Selects the next (previous) match of the find bar's text after (before)
  // the caret, going round the end; false when the text holds none.
  bool FindNext(bool backwards = false);
  QLineEdit* findText() const { return findText_; }
  QWidget* findBar() const { return findBar_; }

  // The margin's width for the current number of lines; paints the margin.
  int LineNumberWidth() const;
  void PaintLineNumbers(QPaintEvent* event);

 protected:
  bool event(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void BuildFindBar();
  void PlaceFindBar();
  void UpdateMargin();
  void UpdateMarks();
  bool ShowProblemTip(const QPoint& at, const QPoint& globalAt);

  QtScriptHighlighter* highlighter_;
  QWidget* lineNumbers_;
  QWidget* findBar_ = nullptr;
  QLineEdit* findText_ = nullptr;
  QTimer* gotoTimer_;
  std::map<int, QString> gotoProblems_;
  // The error line's start, kept by a cursor so that it moves with edits.
  QTextCursor errorLine_;
  QString errorWhy_;
};

}  // namespace gandrel
