// How the engine reaches the user.
//
// The engine never talks to a window or a terminal directly: it calls the
// current UserInterface. The Qt windows implement it, the terminal front end
// implements it on standard error, and the tests implement it with a recorder.
// Until a front end installs one, a silent implementation is in force.
#pragma once

#include <string>
#include <string_view>

#include "calc/Installed.h"
#include "calc/RuntimeError.h"

namespace gandrel {

inline constexpr const char* kAppTitle = "Gandrel";

enum class MsgButtons { Ok, YesNo, YesNoCancel };
enum class MsgIcon { None, Critical, Question };
enum class MsgAnswer { Ok, Yes, No, Cancel };

class UserInterface {
 public:
  virtual ~UserInterface() = default;

  // A modal message box; texts are plain text, never markup.
  virtual MsgAnswer ShowMessage(const std::string& text, MsgButtons buttons, MsgIcon icon,
                                const std::string& title) = 0;

  // Lets pending user-interface events run (keys, clicks, repaints).
  virtual void ProcessEvents() = 0;

  // Sleeps until an event arrives, then lets it run: how a script waits for
  // its pause window without spinning a core.
  virtual void WaitForEvents() { ProcessEvents(); }

  // The busy pointer during a roll or a script run.
  virtual void SetBusy(bool /*busy*/) {}
};

// The interface in force; never null.
UserInterface& UI();

// Installs ui (nullptr restores the silent default). The caller keeps ownership.
void SetUI(UserInterface* ui);
// Installs one for the length of a block.
using UIScope = Installed<UserInterface, UI, SetUI>;

// The common case: a message with an OK button, no icon, titled "Gandrel".
void MsgBox(const std::string& text);

// The message of a run-time error met while calculating or rolling: tooBig
// for an overflow; for any other error, "I'm sorry, but the following error
// has occurred:", its description, and advice.
void ShowErrorMessage(const RuntimeError& error, std::string_view tooBig, std::string_view advice);

// "I'm sorry, but the following error has occurred:", the error's
// description and advice, whatever the error (an overflow too).
void ShowRuntimeErrorMessage(const RuntimeError& error, std::string_view advice);

}  // namespace gandrel
