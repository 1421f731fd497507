#include "support/RecordingUI.h"

namespace gandrel::testing {

RecordingUI::RecordingUI() {
  SetUI(this);
}

RecordingUI::~RecordingUI() {
  SetUI(nullptr);
}

MsgAnswer RecordingUI::ShowMessage(const std::string& text, MsgButtons buttons, MsgIcon icon,
                                   const std::string& title) {
  messages.push_back({text, buttons, icon, title});
  return buttons == MsgButtons::Ok ? MsgAnswer::Ok : answer;
}

void RecordingUI::ProcessEvents() {
  ++pumps;
  if (onPump) onPump(pumps);
}

void RecordingUI::SetBusy(bool busy) {
  busyChanges.push_back(busy);
}

std::vector<std::string> RecordingUI::Texts() const {
  std::vector<std::string> texts;
  for (const auto& m : messages)
    texts.push_back(m.text);
  return texts;
}

}  // namespace gandrel::testing
