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
//   ; setting die: d10
//   ; setting margin: 2
//   ; file old.txt: text           a file that exists before the run
//   ; escape at pump: 5000         Escape pressed at that event pump
//   ; insist at pump: 9000         the second Escape, answered Yes
//
// Values take the escapes \r \n \t \0 \s (a blank) and \\. Files live in
// memory; paths under /unwritable/ cannot be opened. Every forced die must be
// used.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <deque>
#include <filesystem>
#include <fstream>
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

namespace gandrel::testing {
namespace {

namespace fs = std::filesystem;

struct ScriptCase {
  std::string script;
  std::string result, log, error;
  std::vector<std::string> messages, shown;
  std::map<std::string, std::string> windows, captions, files, seeded;
  std::map<std::string, bool> open;
  std::optional<std::string> die;
  std::vector<double> dice;
  std::deque<std::optional<std::string>> getAnswers;
  std::deque<int> pickAnswers;
  std::deque<RecordingUI::PauseAnswer> pauseAnswers;
  std::optional<bool> longResults, logOn;
  std::optional<std::string> dieSetting;
  std::optional<int> margin;
  long escapeAt = 0, insistAt = 0;
  int32_t stopLine = 0;
};

std::string Unescape(const std::string& text) {
  static const std::map<char, char> escapes = {{'r', '\r'}, {'n', '\n'}, {'t', '\t'},
                                               {'0', '\0'}, {'s', ' '},  {'\\', '\\'}};
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    auto escape = escapes.end();
    if (text[i] == '\\' && i + 1 < text.size()) escape = escapes.find(text[i + 1]);
    if (escape == escapes.end()) {
      out += text[i];
      continue;
    }
    out += escape->second;
    ++i;
  }
  return out;
}

std::vector<double> Faces(const std::string& list) {
  std::vector<double> values;
  std::istringstream words(list);
  for (std::string word; words >> word;) {
    size_t slash = word.find('/');
    double sides = slash == std::string::npos ? 6 : ReadNumber(word.substr(slash + 1));
    values.push_back(FaceToRnd(ReadNumber(word), sides));
  }
  return values;
}

// The word after a key's first word ("expect window w" names w).
bool Named(const std::string& key, const std::string& prefix, std::string& name) {
  if (!key.starts_with(prefix + " ")) return false;
  name = key.substr(prefix.size() + 1);
  return true;
}

// Applies one "; key: value" line; false for a key that is not known.
bool ApplyDirective(ScriptCase& c, const std::string& key, const std::string& value) {
  std::string name;
  if (key == "expect result") {
    c.result += value;
  } else if (key == "expect log") {
    c.log += value;
  } else if (key == "expect error") {
    c.error = value;
  } else if (key == "expect stop line") {
    c.stopLine = static_cast<int32_t>(ReadNumber(value));
  } else if (key == "expect message") {
    c.messages.push_back(value);
  } else if (key == "expect shown") {
    c.shown.push_back(value);
  } else if (key == "expect die") {
    c.die = value;
  } else if (Named(key, "expect window", name)) {
    c.windows[name] += value;
  } else if (Named(key, "expect caption", name)) {
    c.captions[name] = value;
  } else if (Named(key, "expect open", name)) {
    c.open[name] = value == "yes";
  } else if (Named(key, "expect file", name)) {
    c.files[name] += value;
  } else if (Named(key, "file", name)) {
    c.seeded[name] += value;
  } else if (key == "dice") {
    for (double r : Faces(value))
      c.dice.push_back(r);
  } else if (key == "answer get") {
    c.getAnswers.push_back(value == "<close>" ? std::nullopt : std::optional(value));
  } else if (key == "answer pick") {
    c.pickAnswers.push_back(static_cast<int>(ReadNumber(value)));
  } else if (key == "answer pause") {
    c.pauseAnswers.push_back(value == "cancel" ? RecordingUI::PauseAnswer::Cancel
                                               : RecordingUI::PauseAnswer::Continue);
  } else if (key == "setting long results") {
    c.longResults = value == "on";
  } else if (key == "setting log") {
    c.logOn = value == "on";
  } else if (key == "setting die") {
    c.dieSetting = value;
  } else if (key == "setting margin") {
    c.margin = static_cast<int>(ReadNumber(value));
  } else if (key == "escape at pump") {
    c.escapeAt = static_cast<long>(ReadNumber(value));
  } else if (key == "insist at pump") {
    c.insistAt = static_cast<long>(ReadNumber(value));
  } else {
    return false;
  }
  return true;
}

// A comment line "; key: value" whose key begins with one of these words is
// a directive; any other comment is the script's own.
bool LooksLikeDirective(const std::string& key) {
  for (const char* word : {"expect", "answer", "setting", "dice", "file", "escape", "insist"})
    if (key.starts_with(word)) return true;
  return false;
}

ScriptCase ReadCase(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  ScriptCase c;
  c.script = text.str();
  std::istringstream lines(c.script);
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    line = Trim(line);
    // "; key: value", or "; key:" for an empty value.
    size_t colon = line.find(": ");
    if (colon == std::string::npos && line.ends_with(':')) colon = line.size() - 1;
    if (!line.starts_with("; ") || colon == std::string::npos) continue;
    std::string key = line.substr(2, colon - 2);
    if (!LooksLikeDirective(key)) continue;
    if (!ApplyDirective(c, key, Unescape(line.substr(std::min(colon + 2, line.size())))))
      ADD_FAILURE() << path.filename() << ": unknown directive \"" << key << "\"";
  }
  return c;
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
  void Prepare(const ScriptCase& c) {
    if (c.longResults) engineSettings.LongResults = *c.longResults;
    if (c.logOn) runFlags.LogOn = *c.logOn;
    if (c.dieSetting) engineSettings.DieType = *c.dieSetting;
    if (c.margin) engineSettings.MarginIncrement = static_cast<int16_t>(*c.margin);
    for (const auto& [name, contents] : c.seeded)
      files.files[name] = contents;
    ui.getAnswers = c.getAnswers;
    ui.pickAnswers = c.pickAnswers;
    ui.pauseAnswers = c.pauseAnswers;
    ScriptRandom(c.dice);
    if (c.escapeAt == 0 && c.insistAt == 0) return;
    SetPumpEveryCall(true);
    ui.onPump = [&c](long pump) {
      if (pump == c.escapeAt) runFlags.BreakRequested = true;
      if (pump == c.insistAt) runFlags.BreakForced = true;
    };
  }

  void ExpectOutputs(const ScriptCase& c) {
    for (const auto& [name, text] : c.windows) {
      const RecordingUI::Output* output = ui.OutputNamed(name);
      ASSERT_NE(output, nullptr) << "no window " << name;
      EXPECT_EQ(output->text, text) << "window " << name;
    }
    for (const auto& [name, caption] : c.captions) {
      ASSERT_NE(ui.OutputNamed(name), nullptr) << "no window " << name;
      EXPECT_EQ(ui.OutputNamed(name)->caption, caption);
    }
    for (const auto& [name, open] : c.open) {
      ASSERT_NE(ui.OutputNamed(name), nullptr) << "no window " << name;
      EXPECT_EQ(ui.OutputNamed(name)->open, open) << "window " << name;
    }
    for (const auto& [name, contents] : c.files)
      EXPECT_EQ(files.files[name], contents) << "file " << name;
  }

  MemoryFiles files;
};

TEST_P(ScriptCaseTest, Runs) {
  const ScriptCase c = ReadCase(GetParam());
  Prepare(c);
  ScriptOutcome outcome = RunScriptText(c.script);
  EXPECT_EQ(outcome.error, c.error);
  EXPECT_EQ(outcome.stopLine, c.stopLine);
  EXPECT_EQ(outcome.result, c.result);
  EXPECT_EQ(outcome.log, c.log);
  EXPECT_EQ(ui.Texts(), c.messages);
  EXPECT_EQ(ui.shown, c.shown);
  ExpectOutputs(c);
  if (c.die) {
    EXPECT_EQ(engineSettings.DieType, *c.die);
  }
  EXPECT_FALSE(random_detail::scriptedPending) << "forced dice left over";
  EXPECT_FALSE(runFlags.ScriptRunning);
  EXPECT_EQ(runFlags.LogOn, c.logOn.value_or(false)) << "LogOn is restored";
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
