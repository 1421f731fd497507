// QtUserInterface: the engine's way to the user inside the window program.
//
// Message boxes are Qt message boxes (plain text, never markup), event
// processing is Qt's own, and the busy pointer is the application's override
// cursor.
#pragma once

#include "calc/UserInterface.h"

namespace gandrel {

class QtUserInterface : public UserInterface {
 public:
  QtUserInterface();            // installs itself
  ~QtUserInterface() override;  // restores the silent default

  MsgAnswer ShowMessage(const std::string& text, MsgButtons buttons, MsgIcon icon,
                        const std::string& title) override;
  void ProcessEvents() override;
  void WaitForEvents() override;
  // Busy pointers nest: the pointer comes back when every SetBusy(true) has
  // had its SetBusy(false).
  void SetBusy(bool busy) override;

 private:
  int busyDepth_ = 0;
};

}  // namespace gandrel
