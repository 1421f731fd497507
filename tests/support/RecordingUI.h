// A user interface for tests: records every message box and counts event
// pumps; an optional hook runs at each pump (to press "Escape" mid-roll).
// It stands in for the script windows too: GET, PICKLIST and PAUSE are
// answered from queues, output windows keep their text by name, and every
// prompt, pause and DISPLAY is written to a transcript.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "calc/UserInterface.h"
#include "script/ScriptWindows.h"

namespace gandrel::testing {

class RecordingUI : public UserInterface, public ScriptWindows {
 public:
  struct Message {
    std::string text;
    MsgButtons buttons;
  };

  // One output window as a script left it.
  struct Output {
    std::string name, caption, text;
    bool open = true;  // false once closed, by the run or (set by a test) by the user
    int raised = 0;
  };

  enum class PauseAnswer { Continue, Cancel };

  RecordingUI();            // installs itself as the interface and the script windows
  ~RecordingUI() override;  // restores the defaults

  MsgAnswer ShowMessage(const std::string& text, MsgButtons buttons, MsgIcon icon,
                        const std::string& title) override;
  void ProcessEvents() override;
  // Counts the wait; a pause window that is up gets its answer here.
  void WaitForEvents() override;
  void SetBusy(bool busy) override;

  // Transcript "get: <prompt> [<default>]"; the next answer typed, or the
  // default when none is queued; nullopt closes the prompt by its close box.
  void GetNumber(const std::string& prompt, const std::string& defaultText) override;
  // Transcript "pick: <prompt> [a|b|c] <selected>"; the next number answered
  // (0 Cancel, -1 the close box), the preselected one when none is queued.
  void PickItem(const std::string& prompt, const std::vector<std::string>& items,
                int16_t selected) override;
  // Transcript "pause"; the window stays up until the next wait.
  void ShowPause() override;
  std::unique_ptr<OutputWindow> OpenOutputWindow(const std::string& name,
                                                 const std::string& caption) override;
  // Transcript "display: <result> | <log>".
  void Display(const std::string& result, const std::string& log) override;

  std::vector<Message> messages;
  std::vector<bool> busyChanges;
  long pumps = 0;
  long waits = 0;
  std::function<void(long pumpNumber)> onPump;
  MsgAnswer answer = MsgAnswer::Ok;  // what a Yes/No/Cancel box answers

  std::deque<std::optional<std::string>> getAnswers;
  std::deque<int> pickAnswers;
  std::deque<PauseAnswer> pauseAnswers;
  std::vector<std::string> shown;                // the transcript
  std::vector<std::shared_ptr<Output>> outputs;  // in the order opened

  // The texts of the messages shown so far.
  std::vector<std::string> Texts() const;
  // The last window opened under name; nullptr when none was.
  Output* OutputNamed(const std::string& name) const;

 private:
  bool pauseUp_ = false;
};

}  // namespace gandrel::testing
