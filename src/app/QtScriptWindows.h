// QtScriptWindows: how a running script reaches the user in the window
// program: frmGet, frmPick, frmPause and frmOutput, and DISPLAY into the
// main window.
//
// The prompts are modal and return when answered. The pause window and the
// output windows are not: the pause window ends the pause itself, and an
// output window lives until the script or the user closes it (a window the
// user closed is ignored from then on). The dialogs belong to the main
// window once one is attached, so that closing it closes them too. Once the
// user insists on stopping the run (runFlags.BreakForced) no prompt shows:
// each is as if closed at once.
#pragma once

#include <QPointer>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "script/ScriptWindows.h"

namespace gandrel {

class frmMain;

class QtScriptWindows : public ScriptWindows {
 public:
  QtScriptWindows();            // installs itself
  ~QtScriptWindows() override;  // restores the stand-in

  // The main window that DISPLAY writes to and the windows belong to.
  void Attach(frmMain* main);

  void GetNumber(const std::string& prompt, const std::string& defaultText) override;
  void PickItem(const std::string& prompt, const std::vector<std::string>& items,
                int16_t selected) override;
  void ShowPause() override;
  std::unique_ptr<OutputWindow> OpenOutputWindow(const std::string& name,
                                                 const std::string& caption) override;
  void Display(const std::string& result, const std::string& log) override;

 private:
  QPointer<frmMain> main_;
};

// Escape on the main window or an output window: asks the roll or the script
// under way to break, and ends a pause as its Cancel would. When the script
// has switched breaking off and a break is already asked for, asks whether to
// stop it anyway; Yes sets runFlags.BreakForced.
void EscapePressed();

}  // namespace gandrel
