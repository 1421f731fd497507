// frmOutput: an output window of a running script (OPEN WINDOW, PRINT).
//
// A button bar (Font, Clear) over a text box that fills the rest. Text is
// appended at the end and never rewritten whole. Appended text is gathered
// and put into the box by a timer, that is when the running script next lets
// events run: at once after a quiet spell, otherwise at most about sixty
// times a second, and less often when putting it in takes long (a line that
// grows by every PRINT is laid out whole each time), so that showing the
// text never takes more than a fifth or so of a script's time and a PRINT
// loop stays linear. Text() includes what waits.
// The box starts in the output font of the settings; the Font button changes
// it for this window alone. The window deletes itself when closed.
#pragma once

#include <QElapsedTimer>
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
  // Puts the gathered text into the box now.
  void ShowPending();

  QWidget* picButtonBar;
  QPushButton* btnFont;
  QPushButton* btnClear;
  QPlainTextEdit* txtWindow;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void ChooseFont();

  QString pending_;
  QTimer* flush_;
  QElapsedTimer sinceFlush_;
  qint64 flushGap_ = 0;  // ms to leave between two insertions
  bool closed_ = false;
};

}  // namespace gandrel
