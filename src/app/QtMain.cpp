// The window program: Gandrel's main window over the shell.
//
// With the environment variable GANDREL_TIMING set, it prints to standard
// error how long start-up took until the first roll was shown.
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QLabel>
#include <cstdio>
#include <cstdlib>

#include "app/QtIcon.h"
#include "app/QtScriptWindows.h"
#include "app/QtUserInterface.h"
#include "app/frmMain.h"
#include "app/modGandrel.h"

namespace {

// Reports the time of the first paint of the result label, the moment the
// first roll can be seen.
class FirstPaintClock : public QObject {
 public:
  explicit FirstPaintClock(const QElapsedTimer& clock) : clock_(clock) {}

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && !static_cast<QLabel*>(watched)->text().isEmpty()) {
      std::fprintf(stderr, "gandrel: first roll shown after %.1f ms\n",
                   static_cast<double>(clock_.nsecsElapsed()) / 1e6);
      watched->removeEventFilter(this);
    }
    return false;
  }

 private:
  const QElapsedTimer& clock_;
};

}  // namespace

int main(int argc, char* argv[]) {
  QElapsedTimer clock;
  clock.start();
  QApplication app(argc, argv);
  QApplication::setApplicationName("Gandrel");
  QApplication::setApplicationVersion(GANDREL_VERSION);
  QApplication::setDesktopFileName("gandrel");
  QApplication::setWindowIcon(gandrel::GandrelIcon());

  gandrel::QtUserInterface ui;
  gandrel::QtScriptWindows scriptWindows;
  gandrel::ChooseAppDirectory(QCoreApplication::applicationDirPath().toStdString());

  gandrel::frmMain window;
  scriptWindows.Attach(&window);
  FirstPaintClock firstPaint(clock);
  bool timing = std::getenv("GANDREL_TIMING") != nullptr;
  if (timing) window.lblResult->installEventFilter(&firstPaint);
  window.Start();
  if (timing)
    std::fprintf(stderr, "gandrel: start-up and first roll done after %.1f ms\n",
                 static_cast<double>(clock.nsecsElapsed()) / 1e6);
  return QApplication::exec();
}
