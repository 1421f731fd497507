#include "calc/UserInterface.h"

namespace gandrel {

namespace {

class SilentInterface final : public UserInterface {
 public:
  MsgAnswer ShowMessage(const std::string&, MsgButtons buttons, MsgIcon,
                        const std::string&) override {
    return buttons == MsgButtons::Ok ? MsgAnswer::Ok : MsgAnswer::Cancel;
  }
  void ProcessEvents() override {}
};

SilentInterface silent;
UserInterface* current = &silent;

}  // namespace

UserInterface& UI() {
  return *current;
}

void SetUI(UserInterface* ui) {
  current = ui ? ui : &silent;
}

void MsgBox(const std::string& text) {
  UI().ShowMessage(text, MsgButtons::Ok, MsgIcon::None, kAppTitle);
}

void ShowErrorMessage(const RuntimeError& error, std::string_view tooBig, std::string_view advice) {
  if (error.Number() == ErrNo::Overflow) {
    MsgBox(std::string(tooBig));
    return;
  }
  ShowRuntimeErrorMessage(error, advice);
}

void ShowRuntimeErrorMessage(const RuntimeError& error, std::string_view advice) {
  MsgBox("I'm sorry, but the following error has occurred:\r" + error.Description() + "\r\r" +
         std::string(advice));
}

}  // namespace gandrel
