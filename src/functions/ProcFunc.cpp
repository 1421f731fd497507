#include <algorithm>
#include <string_view>

#include "calc/Basic.h"
#include "calc/Pump.h"
#include "calc/modEvaluate.h"
#include "functions/HandlerFrame.h"
#include "functions/modScriptFunctions.h"

namespace gandrel {

namespace {

using Handler = void (*)(std::string& line, std::string& details, const VarStore& store);

struct FunctionEntry {
  std::string_view name;
  Handler handler;
  std::string_view arguments;
};

// Looked up from the top by exact equality, so "@wild" never takes a call of
// "@wilddice" and "@best" never one of "@bestlist".
constexpr FunctionEntry kFunctions[] = {
    {"@lcap", FuncLCap, "(lower capval, dieroll)"},
    {"@ucap", FuncUCap, "(capval, dieroll)"},
    {"@cap", FuncCap, "(low capval, high capval, dieroll)"},
    {"@wild", FuncWild, "(dieroll)"},
    {"@swwild", FuncSWWild, "(dieroll)"},
    {"@wilddice", FuncWildDice, "(dieroll)"},
    {"@best", FuncBest, "(num, dieroll)"},
    {"@worst", FuncWorst, "(num, dieroll)"},
    {"@llimit", FuncLLimit, "(lower limit, dieroll)"},
    {"@ulimit", FuncULimit, "(upper limit, dieroll)"},
    {"@limit", FuncLimit, "(lower limit, upper limit, dieroll)"},
    {"@bestlist", FuncBestList, "(num, listname)"},
};

const FunctionEntry* FindFunction(std::string_view name) {
  for (const FunctionEntry& entry : kFunctions)
    if (entry.name == name) return &entry;
  return nullptr;
}

void FailLine(std::string& line, std::string& details, const char* message) {
  details = std::string(message) + kCrLf + line;
  line = kScriptErrorMarker;
}

}  // namespace

bool IsScriptFunction(std::string_view name) {
  return FindFunction(name) != nullptr;
}

std::string UsageText(std::string_view name) {
  const FunctionEntry* entry = FindFunction(name);
  return UCase(name) + (entry ? std::string(entry->arguments) : std::string());
}

void ProcFunc(std::string& line, std::string& details, const VarStore& store) {
  for (;;) {
    int16_t at = Int16(InStr(line, "@"));
    if (at == 0) return;
    int16_t open = Int16(InStr(at, line, "("));
    if (open == 0) return FailLine(line, details, "Error: @ found without ( in line:");
    std::string name = LCase(Trim(Mid(line, at, open - at)));
    const FunctionEntry* entry = FindFunction(name);
    if (!entry) return FailLine(line, details, "Error: function not found in line:");
    entry->handler(line, details, store);
    if (line == kScriptErrorMarker) return;
    // A list item can bring back the call that it replaced; only the user's
    // break ends such a line.
    YieldCheckBreak();
  }
}

void SplitFunctionCall(const std::string& line, const std::string& name, std::string& left,
                       std::string& args, std::string& right) {
  int16_t at = Int16(InStr(LCase(line), name));
  left = Trim(Left(line, at - 1));
  std::string rest = Trim(Mid(line, at + Len(name)));
  int16_t close = FindCloseParen(rest);
  // An unclosed "(" leaves close at 0: the arguments' length is negative.
  args = Trim(Mid(rest, 2, close - 2));
  right = Trim(Mid(rest, close + 1));
}

void DropEmptyItems(std::vector<std::string>& items) {
  if (items.empty()) items.emplace_back();
  auto empty = [](const std::string& item) { return item.empty(); };
  items.erase(std::remove_if(items.begin() + 1, items.end(), empty), items.end());
}

}  // namespace gandrel
