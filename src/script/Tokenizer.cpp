// The tokenizer: one raw line by the keyword tables, then the GOTO pass.
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/Pump.h"
#include "calc/UserInterface.h"
#include "script/ScriptKeywords.h"
#include "script/modScript.h"

namespace gandrel {

namespace {

// The labels of one script: each name's first definition wins.
using LabelTable = std::unordered_map<std::string, int32_t>;

std::string WithCode(ScriptCode code, std::string_view operand) {
  std::string line(1, static_cast<char>(code));
  if (TakesOperand(code)) line += operand;
  return line;
}

TokenizedLine Plain(std::string text) {
  TokenizedLine line;
  line.text = std::move(text);
  return line;
}

const Keyword* FindOperandKeyword(std::string_view word) {
  for (const Keyword& keyword : kOperandKeywords)
    if (keyword.word == word) return &keyword;
  return nullptr;
}

// Whether sub decides the rest; after gets the text that follows it, trimmed.
bool MatchesSub(const SubKeyword& sub, std::string_view rest, std::string_view lowerRest,
                std::string& after) {
  switch (sub.match) {
    case SubMatch::Equal:
      if (lowerRest != sub.word) return false;
      after.clear();
      return true;
    case SubMatch::Prefix:
      if (!lowerRest.starts_with(sub.word)) return false;
      after = Trim(rest.substr(sub.word.size()));
      return true;
    case SubMatch::SecondWord: {
      size_t blank = rest.find(' ');
      if (blank == std::string_view::npos || lowerRest.substr(0, blank) != sub.word) return false;
      after = Trim(rest.substr(blank + 1));
      return true;
    }
  }
  return false;
}

// A keyword's line when no sub-keyword decided it.
std::string ByRule(const Keyword& keyword, std::string_view line, const std::string& rest) {
  switch (keyword.rule) {
    case KeywordRule::Operand:
      return WithCode(keyword.code, rest);
    case KeywordRule::BareRest:
      return rest;
    case KeywordRule::AfterEquals: {
      size_t equals = line.find('=');
      if (equals == std::string_view::npos) return WithCode(keyword.otherwise, rest);
      return WithCode(keyword.code, Trim(line.substr(equals + 1)));
    }
    case KeywordRule::OpenClose: {
      size_t blank = rest.find(' ');
      if (blank == std::string::npos)
        return WithCode(ScriptCode::Other, std::string(keyword.word) + " " + rest);
      return Trim(std::string_view(rest).substr(blank + 1));
    }
  }
  return WithCode(ScriptCode::Other, line);
}

// A trimmed line that holds a blank: a keyword and its rest.
std::string StatementLine(std::string_view line) {
  size_t blank = line.find(' ');
  const Keyword* keyword = FindOperandKeyword(LCase(line.substr(0, blank)));
  if (!keyword) return WithCode(ScriptCode::Other, line);
  std::string rest = Trim(line.substr(blank + 1));
  std::string lowerRest = LCase(rest), after;
  for (const SubKeyword& sub : kSubKeywords)
    if (sub.keyword == keyword->word && MatchesSub(sub, rest, lowerRest, after))
      return WithCode(sub.code, after);
  return ByRule(*keyword, line, rest);
}

// A trimmed line of one word: a label, a command, or code 0.
TokenizedLine OneWordLine(const std::string& line) {
  if (line.front() == ':') {
    TokenizedLine label = Plain(WithCode(ScriptCode::Nothing, ""));
    label.isLabel = true;
    label.label = LCase(line.substr(1));
    return label;
  }
  std::string lower = LCase(line);
  for (const Word& prefix : kOneWordPrefixes)
    if (lower.size() > prefix.word.size() && lower.starts_with(prefix.word))
      return Plain(WithCode(prefix.code, std::string_view(line).substr(prefix.word.size())));
  for (const Word& word : kOneWordCommands)
    if (lower == word.word) return Plain(WithCode(word.code, ""));
  return Plain(WithCode(ScriptCode::Other, line));
}

GotoCheck Missing(size_t line) {
  return {static_cast<int32_t>(line), "Label for GOTO not found at line " + std::to_string(line)};
}

// Each GOTO's label becomes its line number; stops at the first label that
// does not exist.
GotoCheck ResolveGotos(std::vector<std::string>& lines, const LabelTable& labels) {
  for (size_t i = 1; i < lines.size(); ++i) {
    if (CodeOf(lines[i]) != ScriptCode::Goto) continue;
    auto label = labels.find(LCase(std::string_view(lines[i]).substr(1)));
    if (label == labels.end()) return Missing(i);
    lines[i] = WithCode(ScriptCode::Goto, std::to_string(label->second));
  }
  return {};
}

// Pass 1 over lines, collecting the labels; pumps events once per line.
LabelTable TokenizeLines(std::vector<std::string>& lines, bool pump) {
  LabelTable labels;
  for (size_t i = 1; i < lines.size(); ++i) {
    if (pump) Yield();
    TokenizedLine tokenized = TokenizeLine(lines[i], i + 1 == lines.size());
    if (tokenized.isLabel) labels.try_emplace(tokenized.label, static_cast<int32_t>(i));
    lines[i] = std::move(tokenized.text);
  }
  return labels;
}

}  // namespace

void ExpandTabs(std::string& line) {
  for (char& c : line)
    if (c == '\t') c = ' ';
}

TokenizedLine TokenizeLine(std::string_view raw, bool lastLine) {
  std::string line(raw);
  ExpandTabs(line);
  size_t comment = line.find(';');
  if (comment != std::string::npos) line.erase(comment);
  line = Trim(line);
  if (line.empty()) return Plain(WithCode(lastLine ? ScriptCode::End : ScriptCode::Nothing, ""));
  if (line.find(' ') != std::string::npos) return Plain(StatementLine(line));
  return OneWordLine(line);
}

GotoCheck CheckGotoTargets(const std::vector<std::string>& rawLines) {
  std::vector<std::string> lines = rawLines;
  if (lines.empty()) return {};
  LabelTable labels = TokenizeLines(lines, false);
  return ResolveGotos(lines, labels);
}

std::vector<GotoCheck> MissingGotoTargets(const std::vector<std::string>& rawLines) {
  std::vector<std::string> lines = rawLines;
  std::vector<GotoCheck> missing;
  if (lines.empty()) return missing;
  LabelTable labels = TokenizeLines(lines, false);
  for (size_t i = 1; i < lines.size(); ++i)
    if (CodeOf(lines[i]) == ScriptCode::Goto &&
        !labels.contains(LCase(std::string_view(lines[i]).substr(1))))
      missing.push_back(Missing(i));
  return missing;
}

std::vector<std::string> SplitScriptLines(std::string_view text) {
  std::vector<std::string> lines;
  size_t start = 0;
  for (size_t end; (end = text.find('\n', start)) != std::string_view::npos; start = end + 1) {
    std::string_view line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(RTrim(line));
  }
  std::string rest = RTrim(text.substr(start));
  if (!rest.empty()) lines.push_back(rest);
  lines.emplace_back();
  return lines;
}

int32_t TokenizeScript(std::vector<std::string>& lines, std::string& errorText) {
  if (lines.empty()) return 0;
  LabelTable labels = TokenizeLines(lines, true);
  GotoCheck check = ResolveGotos(lines, labels);
  if (check.line == 0) return 0;
  MsgBox(check.message);
  errorText = kErrorMarker;
  return check.line;
}

}  // namespace gandrel
