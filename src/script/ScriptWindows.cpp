#include "script/ScriptWindows.h"

#include "calc/NumberText.h"
#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"

namespace gandrel {

namespace {

class DiscardingWindow final : public OutputWindow {
 public:
  void Print(const std::string&) override {}
  void Clear() override {}
  void Close() override { open_ = false; }
  void Raise() override {}
  bool IsOpen() const override { return open_; }

 private:
  bool open_ = true;
};

// Every prompt answered as Okay on what it offers; nothing shown.
class DefaultAnswers final : public ScriptWindows {
 public:
  void GetNumber(const std::string&, const std::string& defaultText) override {
    runFlags.InputValue = EnteredNumber(defaultText);
  }
  void PickItem(const std::string&, const std::vector<std::string>&, int16_t selected) override {
    runFlags.PickIndex = selected;
  }
  void ShowPause() override {
    runFlags.Paused = false;
    runFlags.PauseEnded = true;
  }
  std::unique_ptr<OutputWindow> OpenOutputWindow(const std::string&, const std::string&) override {
    return DiscardingOutputWindow();
  }
  void Display(const std::string&, const std::string&) override {}
};

DefaultAnswers defaults;
ScriptWindows* current = &defaults;

}  // namespace

double EnteredNumber(const std::string& text) {
  double value = 0;
  if (TrapRuntimeError([&] { value = ReadNumber(text); })) value = 0;
  return value;
}

std::unique_ptr<OutputWindow> DiscardingOutputWindow() {
  return std::make_unique<DiscardingWindow>();
}

ScriptWindows& Windows() {
  return *current;
}

void SetScriptWindows(ScriptWindows* windows) {
  current = windows ? windows : &defaults;
}

}  // namespace gandrel
