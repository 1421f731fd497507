#include "cli/CliScripts.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "calc/RunFlags.h"
#include "cli/CliRun.h"

namespace gandrel::cli {

bool ReadLine(FILE* in, std::string& line) {
  line.clear();
  char* buffer = nullptr;
  size_t capacity = 0;
  ssize_t n = getline(&buffer, &capacity, in);
  int error = errno;
  if (n >= 0) line.assign(buffer, static_cast<size_t>(n));
  std::free(buffer);
  errno = error;
  if (n < 0) return false;
  if (!line.empty() && line.back() == '\n') line.pop_back();
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

bool ReadScriptFile(const std::string& name, std::string& scriptText, std::string& reason) {
  std::string content;
  if (!ReadTextFile(name, content, reason)) return false;
  scriptText = JoinScriptLines(ScriptFileLines(content));
  return true;
}

// ---- Output windows ----------------------------------------------------------

struct TerminalWindows::Window {
  std::string name;
  std::string text;
  bool closed = false;
};

class TerminalWindows::Handle final : public OutputWindow {
 public:
  Handle(TerminalWindows& owner, std::shared_ptr<Window> window)
      : owner_(owner), window_(std::move(window)) {}

  void Print(const std::string& text) override {
    if (window_->closed || text.empty()) return;
    window_->text += text;
    if (owner_.setup_.echoWindows) owner_.Echo(UnixLines(text));
  }
  void Clear() override {
    if (!window_->closed) window_->text.clear();
  }
  void Close() override { window_->closed = true; }
  void Raise() override {}
  bool IsOpen() const override { return !window_->closed; }

 private:
  TerminalWindows& owner_;
  std::shared_ptr<Window> window_;
};

TerminalWindows::TerminalWindows(const TerminalWindowsSetup& setup)
    : setup_(setup), outIsTerminal_(isatty(fileno(setup.out)) == 1) {}

std::unique_ptr<OutputWindow> TerminalWindows::OpenOutputWindow(const std::string& name,
                                                                const std::string&) {
  auto window = std::make_shared<Window>();
  window->name = name;
  bool replaced = false;
  for (std::shared_ptr<Window>& known : windows_) {
    if (known->name == name) {
      known = window;
      replaced = true;
    }
  }
  if (!replaced) windows_.push_back(window);
  return std::make_unique<Handle>(*this, window);
}

void TerminalWindows::StartRoll() {
  windows_.clear();
}

TerminalWindows::WindowTexts TerminalWindows::WindowsOfRoll() const {
  WindowTexts texts;
  for (const std::shared_ptr<Window>& window : windows_)
    texts.emplace_back(window->name, window->text);
  return texts;
}

void TerminalWindows::Echo(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), setup_.out);
  outAtLineStart_ = text.back() == '\n';
  if (outIsTerminal_) std::fflush(setup_.out);
}

void TerminalWindows::FinishLine() {
  if (!outAtLineStart_) Echo("\n");
}

void TerminalWindows::Display(const std::string& result, const std::string&) {
  if (!setup_.echoDisplay) return;
  FinishLine();
  Echo(UnixLines(result) + "\n");
}

// ---- Prompts -------------------------------------------------------------

void TerminalWindows::Prompt(const std::string& text) {
  std::fflush(setup_.out);
  std::fputs(text.c_str(), setup_.err);
  std::fflush(setup_.err);
}

TerminalWindows::Read TerminalWindows::ReadAnswer(std::string& answer) {
  errno = 0;
  if (ReadLine(setup_.in, answer)) return Read::Line;
  if (errno != EINTR || !Interrupted()) return Read::End;
  runFlags.BreakRequested = true;
  std::clearerr(setup_.in);
  return Read::Break;
}

// A terminal shows the answer and its Enter itself. From a pipe the answer
// is not seen: it is repeated after the prompt, so that the error stream
// reads as a terminal would show it. Without an answer (the end of the input,
// Ctrl-C) the prompt's line is ended.
void TerminalWindows::EndPromptLine(Read read, const std::string& answer) {
  if (read == Read::Line && setup_.interactive) return;
  std::string line = (read == Read::Line ? answer : "") + "\n";
  std::fputs(line.c_str(), setup_.err);
  std::fflush(setup_.err);
}

void TerminalWindows::GetNumber(const std::string& prompt, const std::string& defaultText) {
  Prompt(UnixLines(prompt) + " [" + defaultText + "]: ");
  std::string answer;
  Read read = ReadAnswer(answer);
  EndPromptLine(read, answer);
  if (read == Read::Break) return;
  runFlags.InputValue = EnteredNumber(Trim(answer).empty() ? defaultText : answer);
}

// A whole number from 0 to last, blanks around it allowed; -1 otherwise.
static long ChoiceNumber(const std::string& answer, size_t last) {
  std::string text = Trim(answer);
  if (text.empty() || text.size() > 9) return -1;
  for (char c : text)
    if (c < '0' || c > '9') return -1;
  long number = std::strtol(text.c_str(), nullptr, 10);
  return static_cast<size_t>(number) <= last ? number : -1;
}

void TerminalWindows::PickItem(const std::string& prompt, const std::vector<std::string>& items,
                               int16_t selected) {
  int16_t preselected =
      selected >= 1 && static_cast<size_t>(selected) <= items.size() ? selected : 0;
  size_t width = std::to_string(items.size()).size();
  std::string list = UnixLines(prompt) + "\n";
  auto numbered = [&](size_t number, const std::string& text) {
    std::string digits = std::to_string(number);
    list += std::string(2 + width - digits.size(), ' ') + digits + ". " + UnixLines(text) + "\n";
  };
  for (size_t i = 0; i < items.size(); ++i)
    numbered(i + 1, items[i]);
  numbered(0, "Cancel");
  std::string choice = "Choice [" + std::to_string(preselected) + "]: ";
  Prompt(list + choice);
  for (;;) {
    std::string answer;
    Read read = ReadAnswer(answer);
    EndPromptLine(read, answer);
    if (read == Read::Break) return;
    long number = Trim(answer).empty() ? preselected : ChoiceNumber(answer, items.size());
    if (number >= 0) {
      runFlags.PickIndex = static_cast<int16_t>(number);
      return;
    }
    if (!setup_.interactive) {
      runFlags.PickIndex = 0;
      return;
    }
    Prompt(choice);
  }
}

void TerminalWindows::ShowPause() {
  if (setup_.interactive) {
    Prompt("Paused, please press Enter to continue with the script...");
    std::string answer;
    Read read = ReadAnswer(answer);
    if (read != Read::Line) EndPromptLine(read, answer);
  }
  runFlags.Paused = false;
  runFlags.PauseEnded = true;
}

}  // namespace gandrel::cli
