// A user interface for tests: records every message box and counts event
// pumps; an optional hook runs at each pump (to press "Escape" mid-roll).
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "calc/UserInterface.h"

namespace gandrel::testing {

class RecordingUI : public UserInterface {
 public:
  struct Message {
    std::string text;
    MsgButtons buttons;
    MsgIcon icon;
    std::string title;
  };

  RecordingUI();            // installs itself
  ~RecordingUI() override;  // restores the silent default

  MsgAnswer ShowMessage(const std::string& text, MsgButtons buttons, MsgIcon icon,
                        const std::string& title) override;
  void ProcessEvents() override;
  void SetBusy(bool busy) override;

  std::vector<Message> messages;
  std::vector<bool> busyChanges;
  long pumps = 0;
  std::function<void(long pumpNumber)> onPump;
  MsgAnswer answer = MsgAnswer::Ok;  // what a Yes/No/Cancel box answers

  // The texts of the messages shown so far.
  std::vector<std::string> Texts() const;
};

}  // namespace gandrel::testing
