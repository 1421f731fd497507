// What the script tests share: script text split into lines as the editor
// splits it, tokenized and run, and tokenized lines written by hand.
#pragma once

#include <string>
#include <vector>

#include "script/ScriptKeywords.h"
#include "script/modScript.h"

namespace gandrel::testing {

// The lines of a script text, 1-based, as the editor's text is cut
// (SplitScriptLines).
inline std::vector<std::string> ScriptLinesOf(const std::string& text) {
  std::vector<std::string> lines = SplitScriptLines(text);
  lines.insert(lines.begin(), std::string());
  return lines;
}

struct ScriptOutcome {
  std::string error, result, log;
  int32_t stopLine = 0;  // the line the tokenizer refused or whose failure stopped the run
};

// Tokenizes the script and, unless a GOTO names no label, runs it.
inline ScriptOutcome RunScriptText(const std::string& text) {
  ScriptOutcome outcome;
  std::vector<std::string> lines = ScriptLinesOf(text);
  outcome.stopLine = TokenizeScript(lines, outcome.error);
  if (outcome.error.empty()) outcome.stopLine = RunScript(lines, outcome.result, outcome.log);
  return outcome;
}

// A tokenized line: the code byte and the operand.
inline std::string T(ScriptCode code, const std::string& operand = "") {
  return std::string(1, static_cast<char>(code)) + operand;
}

}  // namespace gandrel::testing
