// Runs every script of tests/script/cases. Each .die file carries its own
// expectations in comment lines of the form "; key: value":
//
//   ; expect result: 11            the result text ("" when absent)
//   ; expect log: Calc: 3=3\r\n    a piece of the log; the pieces join with
//                                  nothing between them ("" when absent)
//   ; expect error: <error>        what TokenizeScript left in errorText
//   ; expect stop line: 4          the line the tokenizer refused, or whose
//                                  failure stopped the run (0 when absent)
//   ; expect message: text         each message box, in order
//   ; expect shown: get: p [5]     each prompt, pause and DISPLAY, in order
//   ; expect window w: text        a piece of output window w's text
//   ; expect caption w: text       its caption
//   ; expect open w: no            whether it is still open ("yes"/"no")
//   ; expect file out.txt: text    a piece of a file's contents
//   ; expect die: d8               the default die after the run
//   ; dice: 4 1 6 3/20             forced faces: face, or face/sides (d6)
//   ; answer get: 5                what GET is answered (<close>: close box)
//   ; answer pick: 2               PICKLIST: the number (0 Cancel, -1 close box)
//   ; answer pause: cancel         PAUSE: continue or cancel
//   ; setting long results: off    the settings before the run
//   ; setting log: on
//   ; setting margin: 2
//   ; file old.txt: text           a file that exists before the run
//   ; escape at pump: 5000         Escape pressed at that event pump
//   ; insist at pump: 9000         the second Escape, answered Yes
//
// Values take the escapes \r \n \t \0 \s (a blank) and \\; the values of a key
// given more than once join (texts) or follow each other (lists). Files live
// in memory; paths under /unwritable/ cannot be opened. Every forced die must
// be used.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "ScriptRunning.h"
#include "calc/Basic.h"
#include "calc/EngineSettings.h"
#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "dice/Random.h"
#include "support/EngineFixture.h"
#include "support/MemoryFiles.h"
#include "support/TempFolder.h"

namespace gandrel::testing {
namespace {

namespace fs = std::filesystem;

// Key -> its values in the order given.
using Directives = std::map<std::string, std::vector<std::string>>;

// The keys a case may give; those that end in a blank name a window or a
// file after it.
const std::string kKeys[] = {"expect result",    "expect log",     "expect error",
                             "expect stop line", "expect message", "expect shown",
                             "expect die",       "dice",           "answer get",
                             "answer pick",      "answer pause",   "setting long results",
                             "setting log",      "setting margin", "escape at pump",
                             "insist at pump",   "expect window ", "expect caption ",
                             "expect open ",     "expect file ",   "file "};

std::string Unescape(const std::string& text) {
  static const std::string letters = "rnt0s\\", meant("\r\n\t\0 \\", 6);
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    size_t k = text[i] == '\\' && i + 1 < text.size() ? letters.find(text[i + 1]) : letters.npos;
    out += k == letters.npos ? text[i] : meant[k];
    i += k != letters.npos;
  }
  return out;
}

// A comment line "; key: value" (or "; key:" for an empty value) whose key
// begins with the first word of one of these keys is a directive; any other comment is the
// script's own.
Directives ReadDirectives(const std::string& script, const std::string& caseName) {
  Directives directives;
  std::istringstream lines(script);
  for (std::string line; std::getline(lines, line);) {
    line = Trim(line.ends_with('\r') ? line.substr(0, line.size() - 1) : line);
    size_t colon = line.find(": ");
    if (colon == std::string::npos && line.ends_with(':')) colon = line.size() - 1;
    if (!line.starts_with("; ") || colon == std::string::npos) continue;
    std::string key = line.substr(2, colon - 2);
    bool directive = false, known = false;
    for (const std::string& k : kKeys) {
      directive |= key.starts_with(k.substr(0, k.find(' ')));
      known |= k.ends_with(' ') ? key.starts_with(k) : key == k;
    }
    if (!directive) continue;
    if (!known) ADD_FAILURE() << caseName << ": unknown directive \"" << key << "\"";
    directives[key].push_back(Unescape(line.substr(std::min(colon + 2, line.size()))));
  }
  return directives;
}

std::vector<fs::path> CaseFiles() {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(GANDREL_SCRIPT_CASES))
    if (entry.path().extension() == ".die") files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

class ScriptCaseTest : public EngineTest, public ::testing::WithParamInterface<fs::path> {
 protected:
  // The values of a key joined, "" when it is not given.
  std::string Joined(const std::string& key) {
    std::string joined;
    for (const std::string& value : d[key])
      joined += value;
    return joined;
  }
  double Number(const std::string& key) { return ReadNumber(Joined(key)); }
  // What each key whose words are these names, by its name.
  std::map<std::string, std::string> Named(const std::string& words) {
    std::map<std::string, std::string> named;
    for (const auto& [key, values] : d)
      if (key.starts_with(words + " ")) named[key.substr(words.size() + 1)] = Joined(key);
    return named;
  }

  Directives d;
  MemoryFiles files;
};

TEST_P(ScriptCaseTest, Runs) {
  const std::string script = TempFolder::ReadWhole(GetParam().string());
  d = ReadDirectives(script, GetParam().filename().string());
  if (d.count("setting long results"))
    engineSettings.LongResults = Joined("setting long results") == "on";
  runFlags.LogOn = Joined("setting log") == "on";
  if (d.count("setting margin"))
    engineSettings.MarginIncrement = static_cast<int16_t>(Number("setting margin"));
  for (const auto& [name, contents] : Named("file"))
    files.files[name] = contents;
  for (const std::string& answer : d["answer get"])
    ui.getAnswers.push_back(answer == "<close>" ? std::nullopt : std::optional(answer));
  for (const std::string& answer : d["answer pick"])
    ui.pickAnswers.push_back(static_cast<int>(ReadNumber(answer)));
  for (const std::string& answer : d["answer pause"])
    ui.pauseAnswers.push_back(answer == "cancel" ? RecordingUI::PauseAnswer::Cancel
                                                 : RecordingUI::PauseAnswer::Continue);
  // Forced faces: face, or face/sides (d6).
  std::vector<double> dice;
  for (const std::string& list : d["dice"]) {
    std::istringstream faces(list);
    for (std::string word; faces >> word;) {
      size_t slash = word.find('/');
      double sides = slash == std::string::npos ? 6 : ReadNumber(word.substr(slash + 1));
      dice.push_back(FaceToRnd(ReadNumber(word), sides));
    }
  }
  ScriptRandom(dice);
  long escapeAt = static_cast<long>(Number("escape at pump"));
  long insistAt = static_cast<long>(Number("insist at pump"));
  if (escapeAt || insistAt) {
    SetPumpEveryCall(true);
    ui.onPump = [=](long pump) {
      if (pump == escapeAt) runFlags.BreakRequested = true;
      if (pump == insistAt) runFlags.BreakForced = true;
    };
  }

  ScriptOutcome outcome = RunScriptText(script);
  EXPECT_EQ(outcome.error, Joined("expect error"));
  EXPECT_EQ(outcome.stopLine, static_cast<int32_t>(Number("expect stop line")));
  EXPECT_EQ(outcome.result, Joined("expect result"));
  EXPECT_EQ(outcome.log, Joined("expect log"));
  EXPECT_EQ(ui.Texts(), d["expect message"]);
  EXPECT_EQ(ui.shown, d["expect shown"]);
  for (std::string what : {"window", "caption", "open"}) {
    for (const auto& [name, expected] : Named("expect " + what)) {
      const RecordingUI::Output* window = ui.OutputNamed(name);
      ASSERT_NE(window, nullptr) << "no window " << name;
      std::string open = window->open ? "yes" : "no";
      EXPECT_EQ(what == "window"    ? window->text
                : what == "caption" ? window->caption
                                    : open,
                expected)
          << what << " " << name;
    }
  }
  for (const auto& [name, contents] : Named("expect file"))
    EXPECT_EQ(files.files[name], contents) << "file " << name;
  if (d.count("expect die")) {
    EXPECT_EQ(engineSettings.DieType, Joined("expect die"));
  }
  EXPECT_FALSE(random_detail::scriptedPending) << "forced dice left over";
  EXPECT_FALSE(runFlags.ScriptRunning);
  EXPECT_EQ(runFlags.LogOn, Joined("setting log") == "on") << "LogOn is restored";
}

std::string CaseName(const ::testing::TestParamInfo<fs::path>& info) {
  std::string name = info.param.stem().string();
  for (char& ch : name)
    if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Cases, ScriptCaseTest, ::testing::ValuesIn(CaseFiles()), CaseName);

}  // namespace
}  // namespace gandrel::testing
