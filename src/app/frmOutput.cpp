#include "app/frmOutput.h"

#include <QCloseEvent>
#include <QFontDialog>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTextCursor>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "app/QtFonts.h"
#include "app/QtScriptWindows.h"
#include "app/Settings.h"
#include "app/modGandrel.h"

namespace gandrel {

static constexpr qint64 kMinFlushGap = 16;  // ms: about a frame
static constexpr qint64 kMaxFlushGap = 1000;

frmOutput::frmOutput(QWidget* parent) : QWidget(parent, Qt::Window) {
  setObjectName("frmOutput");
  setWindowTitle(tr("Output Window"));
  setAttribute(Qt::WA_DeleteOnClose);

  picButtonBar = new QWidget(this);
  picButtonBar->setObjectName("picButtonBar");
  btnFont = new QPushButton(tr("&Font"), picButtonBar);
  btnFont->setObjectName("btnFont");
  btnFont->setAutoDefault(false);
  btnClear = new QPushButton(tr("&Clear"), picButtonBar);
  btnClear->setObjectName("btnClear");
  btnClear->setAutoDefault(false);
  auto* bar = new QHBoxLayout(picButtonBar);
  bar->setContentsMargins(0, 0, 0, 0);
  bar->addWidget(btnFont);
  bar->addWidget(btnClear);
  bar->addStretch();

  txtWindow = new QPlainTextEdit(this);
  txtWindow->setObjectName("txtWindow");
  txtWindow->setReadOnly(true);
  txtWindow->setUndoRedoEnabled(false);
  txtWindow->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  txtWindow->setFont(ToQFont(settings.Fonts[kOutputFont]));

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(picButtonBar);
  layout->addWidget(txtWindow, 1);
  resize(480, 320);

  flush_ = new QTimer(this);
  flush_->setSingleShot(true);
  flush_->setInterval(0);
  connect(flush_, &QTimer::timeout, this, &frmOutput::ShowPending);
  connect(btnClear, &QPushButton::clicked, this, &frmOutput::Clear);
  connect(btnFont, &QPushButton::clicked, this, &frmOutput::ChooseFont);

  // Escape asks the running script to break, as on the main window.
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(escape, &QShortcut::activated, this, [] { EscapePressed(); });
}

void frmOutput::Append(const std::string& text) {
  if (text.empty()) return;
  pending_ += QString::fromStdString(UnixLines(text));
  if (flush_->isActive()) return;
  qint64 wait = 0;
  if (sinceFlush_.isValid()) wait = std::max<qint64>(0, flushGap_ - sinceFlush_.elapsed());
  flush_->start(static_cast<int>(wait));
}

void frmOutput::Clear() {
  pending_.clear();
  flush_->stop();
  txtWindow->clear();
}

QString frmOutput::Text() const {
  return txtWindow->toPlainText() + pending_;
}

// One insertion at the end for everything printed since the last one; the
// view follows the end when it was showing it. The next insertion waits four
// times as long as this one took, and at least a frame.
void frmOutput::ShowPending() {
  flush_->stop();
  if (pending_.isEmpty()) return;
  QElapsedTimer cost;
  cost.start();
  QScrollBar* bar = txtWindow->verticalScrollBar();
  bool atEnd = bar->value() >= bar->maximum();
  QTextCursor end(txtWindow->document());
  end.movePosition(QTextCursor::End);
  end.insertText(pending_);
  pending_.clear();
  if (atEnd) bar->setValue(bar->maximum());
  flushGap_ = std::clamp<qint64>(cost.elapsed() * 4, kMinFlushGap, kMaxFlushGap);
  sinceFlush_.restart();
}

void frmOutput::ChooseFont() {
  QFontDialog dialog(txtWindow->font(), this);
  dialog.setOption(QFontDialog::DontUseNativeDialog);
  dialog.setWindowTitle(tr("Font"));
  if (dialog.exec() != QDialog::Accepted) return;
  QFont chosen = txtWindow->font();
  QFont picked = dialog.selectedFont();
  chosen.setFamily(picked.family());
  if (picked.pointSizeF() > 0) chosen.setPointSizeF(picked.pointSizeF());
  chosen.setBold(picked.bold());
  chosen.setItalic(picked.italic());
  txtWindow->setFont(chosen);
}

void frmOutput::closeEvent(QCloseEvent* event) {
  closed_ = true;
  flush_->stop();
  QWidget::closeEvent(event);
}

}  // namespace gandrel
