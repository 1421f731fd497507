#include "cli/CliInteractive.h"

#include <histedit.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cwchar>

#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "cli/CliRun.h"

namespace gandrel::cli {

namespace {

const char* Prompt(EditLine*) {
  return "gandrel> ";
}

// How often the wait for a key looks for a Ctrl-C that came before it began.
constexpr int kKeyWaitMs = 100;

// Reads one character of the line for the editor. A Ctrl-C that comes just
// before the read begins would not interrupt it: the wait for a key looks
// at the flag every so often. Bytes that make no character of the locale
// are taken one by one, as they are.
int ReadCharacter(EditLine* editor, wchar_t* character) {
  void* data = nullptr;
  el_get(editor, EL_CLIENTDATA, &data);
  int fd = *static_cast<int*>(data);
  std::mbstate_t state{};
  for (;;) {
    pollfd wait{fd, POLLIN, 0};
    int ready = Interrupted() ? -1 : poll(&wait, 1, kKeyWaitMs);
    if (Interrupted()) {
      errno = EINTR;
      return -1;
    }
    if (ready < 0 && errno != EINTR) return -1;
    if (ready <= 0) continue;
    char byte = 0;
    ssize_t n = read(fd, &byte, 1);
    if (n == 0) return 0;
    if (n < 0) {
      if (errno == EINTR || errno == EAGAIN) continue;
      return -1;
    }
    wchar_t decoded = 0;
    size_t used = std::mbrtowc(&decoded, &byte, 1, &state);
    if (used == static_cast<size_t>(-2)) continue;  // more bytes to come
    *character = used == static_cast<size_t>(-1) ? static_cast<unsigned char>(byte) : decoded;
    return 1;
  }
}

// The lines typed, kept in libedit's history for recall and in the history
// file for the next session.
class LineHistory {
 public:
  LineHistory(std::string file, FILE* err) : file_(std::move(file)), err_(err) {
    history_ = history_init();
    HistEvent event;
    history(history_, &event, H_SETSIZE, kMostHistoryLines);
    history(history_, &event, H_SETUNIQUE, 1);
    Load();
  }
  ~LineHistory() { history_end(history_); }
  LineHistory(const LineHistory&) = delete;
  LineHistory& operator=(const LineHistory&) = delete;

  History* Handle() { return history_; }

  // A line typed: recalled from now on, and kept in the file.
  void Add(const std::string& line) {
    if (Trim(line).empty()) return;
    HistEvent event;
    history(history_, &event, H_ENTER, line.c_str());
    if (!lines_.empty() && lines_.back() == line) return;
    lines_.push_back(line);
    if (lines_.size() > static_cast<size_t>(kMostHistoryLines)) lines_.erase(lines_.begin());
    Save();
  }

 private:
  void Load() {
    if (file_.empty() || FileIsMissing(file_)) return;
    std::string text, reason;
    if (!ReadTextFile(file_, text, reason)) {
      // What it holds is not known: it is not written over either.
      Tell("cannot read the history " + file_ + ": " + reason);
      file_.clear();
      return;
    }
    lines_ = HistoryLines(text);
    HistEvent event;
    for (const std::string& line : lines_)
      history(history_, &event, H_ENTER, line.c_str());
  }

  void Save() {
    if (file_.empty()) return;
    std::string reason;
    if (WriteTextFileAtomic(file_, HistoryText(lines_), reason)) return;
    Tell("cannot keep the history in " + file_ + ": " + reason);
    file_.clear();
  }

  void Tell(const std::string& problem) {
    std::fprintf(err_, "gandrel-cli: %s\n", problem.c_str());
    std::fflush(err_);
  }

  std::string file_;
  FILE* err_;
  History* history_;
  std::vector<std::string> lines_;
};

// The line editor on the terminal; Ctrl-R searches the history backwards.
class LineEditor {
 public:
  LineEditor(const InteractiveSetup& setup, FILE* screen, LineHistory& history) {
    inFd_ = fileno(setup.in);
    editor_ = el_init("gandrel-cli", setup.in, screen, setup.err);
    el_set(editor_, EL_CLIENTDATA, &inFd_);
    el_set(editor_, EL_GETCFN, ReadCharacter);
    el_set(editor_, EL_EDITOR, "emacs");
    el_set(editor_, EL_PROMPT, Prompt);
    el_set(editor_, EL_HIST, ::history, history.Handle());
    el_set(editor_, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    // The user's own ~/.editrc, as every libedit program reads it.
    el_source(editor_, nullptr);
  }
  ~LineEditor() { el_end(editor_); }
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  enum class Read { Line, End, Interrupted };

  // One line, without its line end. An interrupted read tells whether the
  // line held anything.
  Read Get(std::string& line, bool& hadText) {
    int count = 0;
    errno = 0;
    const char* text = el_gets(editor_, &count);
    if (text != nullptr && count > 0) {
      line.assign(text, static_cast<size_t>(count));
      while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.pop_back();
      return Read::Line;
    }
    if (Interrupted() || (count < 0 && errno == EINTR)) {
      const LineInfo* info = el_line(editor_);
      hadText = info != nullptr && info->lastchar != info->buffer;
      return Read::Interrupted;
    }
    return Read::End;
  }

 private:
  int inFd_;
  EditLine* editor_;
};

void Write(FILE* stream, const std::string& text) {
  std::fputs(text.c_str(), stream);
  std::fflush(stream);
}

}  // namespace

PromptCommand CommandOf(const std::string& line) {
  std::string word = LCase(Trim(line));
  if (word == "help") return PromptCommand::Help;
  if (word == "quit" || word == "exit") return PromptCommand::Quit;
  return PromptCommand::None;
}

std::vector<std::string> HistoryLines(const std::string& fileText) {
  std::vector<std::string> lines;
  for (std::string& line : SplitLines(fileText))
    if (!Trim(line).empty()) lines.push_back(std::move(line));
  if (lines.size() > static_cast<size_t>(kMostHistoryLines))
    lines.erase(lines.begin(), lines.end() - kMostHistoryLines);
  return lines;
}

std::string HistoryText(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines)
    text += line + "\n";
  return text;
}

std::string InteractiveHelpText(const std::string& historyFile) {
  std::string kept = historyFile.empty() ? "" : "They are kept in " + historyFile + ".\n";
  return "Type a die value and press Enter: 3d6+2, d20, 2d10-1d4, 4dfate (a die type of\n"
         "your own), =@best(3,4d6) (a one-line script), fight.die (a script file).\n"
         "Up and Down recall earlier lines, Ctrl-R searches them. " +
         kept +
         "Ctrl-C breaks a roll, or clears the line; a second Ctrl-C at the empty\n"
         "prompt, Ctrl-D, \"quit\" or \"exit\" ends. gandrel-cli --help lists the options.\n";
}

void RunInteractive(const InteractiveSetup& setup, const RollLine& roll) {
  // The line being typed is shown where the user types: on the terminal of
  // the output, or of the messages when the output goes elsewhere.
  FILE* screen = isatty(fileno(setup.out)) == 1 ? setup.out : setup.err;
  // Characters are typed in the terminal's encoding; only their classes
  // change (numbers are written and read as ever).
  std::setlocale(LC_CTYPE, "");
  LineHistory history(setup.historyFile, setup.err);
  LineEditor editor(setup, screen, history);
  bool warned = false;  // the last thing was a Ctrl-C at the prompt
  for (;;) {
    std::fflush(setup.out);
    std::string line;
    bool hadText = false;
    LineEditor::Read read = editor.Get(line, hadText);
    if (read == LineEditor::Read::End) {
      Write(screen, "\n");  // the shell's prompt begins on a line of its own
      return;
    }
    if (read == LineEditor::Read::Interrupted) {
      ClearInterrupts();
      Write(screen, "\n");
      if (warned && !hadText) return;
      Write(screen, "(To end, press Ctrl-C again or Ctrl-D, or type quit.)\n");
      warned = true;
      continue;
    }
    warned = false;
    history.Add(line);
    PromptCommand command = CommandOf(line);
    if (command == PromptCommand::Quit) return;
    if (command == PromptCommand::Help) {
      Write(screen, InteractiveHelpText(setup.historyFile));
      continue;
    }
    bool written = roll(line);
    // The Ctrl-C that broke the roll, or came as it ended, was for the roll.
    bool interrupted = Interrupted();
    ClearInterrupts();
    if (!written && !interrupted) return;
  }
}

}  // namespace gandrel::cli
