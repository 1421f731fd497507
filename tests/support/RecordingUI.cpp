#include "support/RecordingUI.h"

#include "calc/RunFlags.h"

namespace gandrel::testing {

namespace {

class RecordedWindow final : public OutputWindow {
 public:
  explicit RecordedWindow(std::shared_ptr<RecordingUI::Output> output)
      : output_(std::move(output)) {}
  void Print(const std::string& text) override {
    if (output_->open) output_->text += text;
  }
  void Clear() override {
    if (output_->open) output_->text.clear();
  }
  void Close() override { output_->open = false; }
  void Raise() override {
    if (output_->open) ++output_->raised;
  }
  bool IsOpen() const override { return output_->open; }

 private:
  std::shared_ptr<RecordingUI::Output> output_;
};

// The next answer queued, or the one the dialog would give by itself.
template <class T>
T NextAnswer(std::deque<T>& answers, T otherwise) {
  if (answers.empty()) return otherwise;
  T next = answers.front();
  answers.pop_front();
  return next;
}

}  // namespace

RecordingUI::RecordingUI() {
  SetUI(this);
  SetScriptWindows(this);
}

RecordingUI::~RecordingUI() {
  SetScriptWindows(nullptr);
  SetUI(nullptr);
}

MsgAnswer RecordingUI::ShowMessage(const std::string& text, MsgButtons buttons, MsgIcon,
                                   const std::string&) {
  messages.push_back({text, buttons});
  return buttons == MsgButtons::Ok ? MsgAnswer::Ok : answer;
}

void RecordingUI::ProcessEvents() {
  ++pumps;
  if (onPump) onPump(pumps);
}

void RecordingUI::WaitForEvents() {
  ++waits;
  if (!pauseUp_) return;
  pauseUp_ = false;
  if (NextAnswer(pauseAnswers, PauseAnswer::Continue) == PauseAnswer::Cancel)
    runFlags.BreakRequested = true;
  runFlags.Paused = false;
  runFlags.PauseEnded = true;
}

void RecordingUI::SetBusy(bool busy) {
  busyChanges.push_back(busy);
}

void RecordingUI::GetNumber(const std::string& prompt, const std::string& defaultText) {
  shown.push_back("get: " + prompt + " [" + defaultText + "]");
  std::optional<std::string> typed = NextAnswer(getAnswers, std::optional(defaultText));
  if (typed) runFlags.InputValue = EnteredNumber(*typed);
}

void RecordingUI::PickItem(const std::string& prompt, const std::vector<std::string>& items,
                           int16_t selected) {
  std::string listed;
  for (size_t i = 0; i < items.size(); ++i)
    listed += (i ? "|" : "") + items[i];
  shown.push_back("pick: " + prompt + " [" + listed + "] " + std::to_string(selected));
  int chosen = NextAnswer(pickAnswers, static_cast<int>(selected));
  if (chosen >= 0) runFlags.PickIndex = static_cast<int16_t>(chosen);
}

void RecordingUI::ShowPause() {
  shown.push_back("pause");
  pauseUp_ = true;
}

std::unique_ptr<OutputWindow> RecordingUI::OpenOutputWindow(const std::string& name,
                                                            const std::string& caption) {
  auto output = std::make_shared<Output>();
  output->name = name;
  output->caption = caption;
  outputs.push_back(output);
  return std::make_unique<RecordedWindow>(output);
}

void RecordingUI::Display(const std::string& result, const std::string& log) {
  shown.push_back("display: " + result + " | " + log);
}

std::vector<std::string> RecordingUI::Texts() const {
  std::vector<std::string> texts;
  for (const auto& m : messages)
    texts.push_back(m.text);
  return texts;
}

RecordingUI::Output* RecordingUI::OutputNamed(const std::string& name) const {
  for (auto it = outputs.rbegin(); it != outputs.rend(); ++it)
    if ((*it)->name == name) return it->get();
  return nullptr;
}

}  // namespace gandrel::testing
