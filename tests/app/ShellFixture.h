// A clean shell for each test: the engine fixture, a recording main view, an
// empty history and a fresh temporary folder as the application's folder.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "app/modGandrel.h"
#include "app/modINI.h"
#include "support/EngineFixture.h"
#include "support/TempFolder.h"

namespace gandrel::testing {

using Items = std::vector<std::string>;

// "a b c" as the 1-based list {"", "a", "b", "c"}.
inline Items OneBased(const std::string& entries) {
  Items list{""};
  std::istringstream words(entries);
  for (std::string w; words >> w;)
    list.push_back(w);
  return list;
}

// The main window as a record of what the shell showed, with file dialogs
// answered from a list.
class FakeView : public MainView {
 public:
  std::string dieValue, result, eachResult, clipboard;
  std::vector<std::string> list;
  int rolls = 0;
  int32_t errorLine = 0;
  std::string script, caption = "Script";
  bool modified = false;
  std::vector<std::string> fileAnswers;    // what the file dialogs answer, in turn
  std::vector<std::string> fileQuestions;  // their titles and starting places

  std::string DieValueText() const override { return dieValue; }
  void SetDieValueText(const std::string& text) override { dieValue = text; }
  void ShowDieList(const std::vector<std::string>& entries, const std::string& text) override {
    list = entries;
    dieValue = text;
  }
  void ShowRoll(const RollOutcome& outcome) override {
    ++rolls;
    if (outcome.listChanged) ShowDieList(outcome.dieList, outcome.dieValueText);
    dieValue = outcome.dieValueText;
    result = outcome.result;
    eachResult = outcome.eachResult;
    clipboard = outcome.clipboard;
    errorLine = outcome.scriptErrorLine;
  }
  std::string ScriptText() const override { return script; }
  void SetScriptText(const std::string& text) override {
    script = text;
    ScriptTextChanged();
  }
  void ShowScriptState(const std::string& shownCaption, bool isModified) override {
    caption = shownCaption;
    modified = isModified;
  }
  std::string AskScriptFile(FileQuestion, const std::string& title,
                            const std::string& initialPath) override {
    fileQuestions.push_back(title + " " + initialPath);
    if (fileAnswers.empty()) return "";
    std::string answer = fileAnswers.front();
    fileAnswers.erase(fileAnswers.begin());
    return answer;
  }
};

class ShellTest : public EngineTest {
 protected:
  void SetUp() override {
    EngineTest::SetUp();
    SetAppDirectory(dir.path());
    SetMainView(&view);
    ResetSettings();
    ResetIni();
    DieHistory.assign(1, "");
    AlwaysAddItems.assign(1, "");
  }
  void TearDown() override {
    SetMainView(nullptr);
    ResetIni();
    EngineTest::TearDown();
  }
  void Roll(const std::string& typed) {
    view.dieValue = typed;
    RollDieValue();
  }
  // The lists a history case starts from (blank-separated entries), in a
  // fresh view.
  void StartLists(int keepNum, bool newFirst, const char* always, const char* history) {
    settings.KeepNum = static_cast<int16_t>(keepNum);
    settings.NewFirst = newFirst;
    AlwaysAddItems = OneBased(always);
    DieHistory = OneBased(history);
    view = FakeView{};
  }
  // What the view lists once the 1-based history is shown (nothing if not).
  static Items Listed(bool shown, const Items& history) {
    return shown ? Items(history.begin() + 1, history.end()) : Items{};
  }

  FakeView view;
  TempFolder dir;  // the application's folder
};

}  // namespace gandrel::testing
