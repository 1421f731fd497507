// LIST NAME, LISTBEGIN, ITEM, LISTEND and PICKLIST.
#include <string>
#include <vector>

#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/RunFlags.h"
#include "calc/modGRCalcs.h"
#include "dice/modDiceCalc.h"
#include "script/ScriptRun.h"
#include "script/ScriptWindows.h"

namespace gandrel {

namespace {

size_t FindList(const VarStore& store, std::string_view name) {
  for (size_t i = 1; i < store.listNames.size(); ++i)
    if (store.listNames[i] == name) return i;
  return 0;
}

// The prompt written after the variable: trimmed, one pair of surrounding
// quotes removed, variables substituted.
std::string PickPrompt(std::string_view written, const VarStore& store) {
  std::string prompt = Trim(written);
  if (prompt.size() >= 2 && prompt.front() == '"' && prompt.back() == '"')
    prompt = prompt.substr(1, prompt.size() - 2);
  ReplaceVars(prompt, store);
  return prompt.empty() ? std::string(kPickPrompt) : prompt;
}

// The item that the variable's value numbers, else the first.
int16_t Preselected(double value, size_t count) {
  Int16(static_cast<long>(count));
  if (value >= 1 && value <= static_cast<double>(count) && value == static_cast<long>(value))
    return static_cast<int16_t>(value);
  return 1;
}

}  // namespace

void RunListName(ScriptRun& run, std::string& text) {
  ReplaceVars(text, run.store);
  std::string name = LCase(text);
  if (size_t list = FindList(run.store, name)) {
    run.store.listItems[list].clear();
    return;
  }
  run.store.listNames.push_back(std::move(name));
  run.store.listItems.emplace_back();
}

void RunListBegin(ScriptRun& run, std::string& text) {
  ReplaceVars(text, run.store);
  size_t list = FindList(run.store, LCase(Trim(text)));
  if (list == 0) return Fail(run, text);
  run.currentList = Int16(static_cast<long>(list));
}

void RunItem(ScriptRun& run, std::string& text) {
  if (run.currentList == 0) return;
  ReplaceVars(text, run.store);
  ExpandAllDice(text);
  if (!text.empty() && text.front() == '"') text.erase(0, 1);
  if (!text.empty() && text.back() == '"') text.pop_back();
  std::string& items = run.store.listItems[static_cast<size_t>(run.currentList)];
  if (!items.empty()) items += '\0';
  items += text;
}

void RunListEnd(ScriptRun& run) {
  run.currentList = 0;
}

void RunPickList(ScriptRun& run, std::string& text) {
  size_t comma = text.find(',');
  if (comma == std::string::npos) return Fail(run, text);
  std::string listName = text.substr(0, comma), variableName = text.substr(comma + 1);
  std::string prompt(kPickPrompt);
  size_t second = variableName.find(',');
  if (second != std::string::npos) {
    prompt = PickPrompt(std::string_view(variableName).substr(second + 1), run.store);
    variableName.erase(second);
  }
  ReplaceVars(listName, run.store);
  size_t list = FindList(run.store, LCase(Trim(listName)));
  size_t variable = FindPromptVariable(run, variableName);
  if (list == 0 || variable == 0) return Fail(run, text);
  std::vector<std::string> items;
  SplitText(run.store.listItems[list], '\0', items);
  items.erase(items.begin());
  int16_t selected = Preselected(run.store.varValues[variable], items.size());
  runFlags.PickIndex = 0;
  Windows().PickItem(prompt, items, selected);
  run.store.varValues[variable] = runFlags.PickIndex;
}

}  // namespace gandrel
