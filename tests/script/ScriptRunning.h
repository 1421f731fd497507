// What the script tests share: script text split into lines as the editor
// splits it, tokenized and run, and tokenized lines written by hand.
#pragma once

#include <string>
#include <vector>

#include "calc/Basic.h"
#include "script/ScriptKeywords.h"
#include "script/modScript.h"

namespace gandrel::testing {

// The lines of a script text, 1-based: cut at every LF (a CR before it
// dropped), trailing blanks removed, a blank rest after the last line left
// out, one empty line last.
inline std::vector<std::string> ScriptLinesOf(const std::string& text) {
  std::vector<std::string> lines{""};
  size_t start = 0;
  for (size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(RTrim(line));
  }
  std::string rest = RTrim(text.substr(start));
  if (!rest.empty()) lines.push_back(rest);
  lines.emplace_back();
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
