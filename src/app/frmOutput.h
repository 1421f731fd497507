// frmOutput: an output window of a running script (OPEN WINDOW, PRINT).
//
// A button bar (Font, Clear) over a text box that fills the rest. Text is
// appended at the end and never rewritten whole, so a script that prints in
// a loop of many passes costs time in proportion to what it prints. Appended
// text is gathered and put into the box when the events are next processed
// (which the running script does between lines); Text() includes what waits.
// The box starts in the output font of the settings; the Font button changes
// it for this window alone. The window deletes itself when closed.
#pragma once

#include <QString>
#include <QWidget>

class QPlainTextEdit;
class QPushButton;
class QTimer;

namespace gandrel {

class frmOutput : public QWidget {
  Q_OBJECT

 public:
  explicit frmOutput(QWidget* parent = nullptr);

  // Appends text at the end; CR LF (or a lone CR) is a line break.
  void Append(const std::string& text);
  // Empties the window.
  void Clear();
  // The window's whole text, lines ended by LF.
  QString Text() const;
  // True once the window has been closed (it is about to be deleted).
  bool Closed() const { return closed_; }

  QWidget* picButtonBar;
  QPushButton* btnFont;
  QPushButton* btnClear;
  QPlainTextEdit* txtWindow;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void FlushPending();
  void ChooseFont();

  QString pending_;
  QTimer* flush_;
  bool closed_ = false;
};

}  // namespace gandrel
