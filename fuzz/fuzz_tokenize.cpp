// Fuzzes the tokenizer: TokenizeScript on the input's lines.
//
// Checks: nothing crashes; every tokenized line holds at least its code;
// the last line is END when it was empty; TokenizeScript fails exactly when
// CheckGotoTargets names a line, with the message it names; after a
// success every GOTO holds decimal digits naming a label line, and every
// line is what TokenizeLine makes of its raw line (GOTOs aside).
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "ScriptInput.h"
#include "calc/Basic.h"
#include "calc/UserInterface.h"
#include "script/ScriptKeywords.h"
#include "script/modScript.h"

namespace {

using namespace gandrel;

class RecordingMessages : public UserInterface {
 public:
  MsgAnswer ShowMessage(const std::string& text, MsgButtons, MsgIcon, const std::string&) override {
    messages.push_back(text);
    return MsgAnswer::Ok;
  }
  void ProcessEvents() override {}
  std::vector<std::string> messages;
};

bool AllDigits(const std::string& text) {
  if (text.empty()) return false;
  for (char c : text)
    if (!IsDigit(c)) return false;
  return true;
}

void CheckGoto(const std::vector<std::string>& lines, size_t i) {
  const std::string target = lines[i].substr(1);
  if (!AllDigits(target) || target.size() > 9) std::abort();
  size_t label = std::stoul(target);
  if (label < 1 || label >= lines.size() || CodeOf(lines[label]) != ScriptCode::Nothing)
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 8192) return 0;
  RecordingMessages ui;
  SetUI(&ui);
  const std::vector<std::string> raw = fuzzing::RawLines(data, size);
  std::vector<std::string> lines = raw;
  std::string error;
  TokenizeScript(lines, error);
  const GotoCheck check = CheckGotoTargets(raw);
  SetUI(nullptr);

  if (lines.size() != raw.size()) std::abort();
  if (check.line == 0) {
    if (!error.empty() || !ui.messages.empty()) std::abort();
  } else if (error != "<error>" || ui.messages != std::vector<std::string>{check.message}) {
    std::abort();
  }
  for (size_t i = 1; i < lines.size(); ++i)
    if (lines[i].empty()) std::abort();
  if (lines.back() != std::string(1, static_cast<char>(ScriptCode::End))) std::abort();
  if (check.line != 0) return 0;
  for (size_t i = 1; i < lines.size(); ++i) {
    if (CodeOf(lines[i]) == ScriptCode::Goto) {
      CheckGoto(lines, i);
    } else if (lines[i] != TokenizeLine(raw[i], i + 1 == lines.size()).text) {
      std::abort();
    }
  }
  return 0;
}
