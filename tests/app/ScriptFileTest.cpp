#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>
#include <utility>

#include "ShellFixture.h"
#include "app/Settings.h"
#include "app/TextEncoding.h"

namespace gandrel::testing {
namespace {

// The script editor's files through the shell, with the file dialogs
// answered by the fake view. Dialogs make the chosen folder the current
// one: each test starts and ends in the folder it found.
class ScriptFileTest : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    start = std::filesystem::current_path();
    StartUp();
  }
  void TearDown() override {
    std::filesystem::current_path(start);
    ShellTest::TearDown();
  }
  void Type(const std::string& text) { view.SetScriptText(text); }
  // A new start of the window on the same folder, in the current folder.
  void Restart() {
    StartUp();
    view = FakeView{};
    RestoreScriptEditor();
  }
  std::filesystem::path start;
};

TEST_F(ScriptFileTest, ScriptNamesAndExtension) {
  // The path chosen, the current folder, the name the script is known by.
  const char* const cases[][3] = {
      {"/home/me/combat.DIE", "/home/me/", "combat.DIE"},
      {"/home/me/dice/combat.die", "/home/me", "/home/me/dice/combat.die"},
      {"/combat.die", "/", "combat.die"},
      {" combat.die ", "/home/me", "combat.die"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ScriptNameFor(c[0], c[1]), c[2]) << c[0];
  // Only the file name's own "." counts, wherever it stands.
  const char* const extended[][2] = {
      {"combat", "combat.DIE"},
      {"/home/m.e/combat", "/home/m.e/combat.DIE"},
      {"/home/me/.combat", "/home/me/.combat"},
  };
  for (const auto& c : extended)
    EXPECT_EQ(WithScriptExtension(c[0]), c[1]) << c[0];
}

TEST_F(ScriptFileTest, ReadingTextEncodings) {
  EXPECT_TRUE(IsUtf8("caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8E\xB2"));
  // A stray byte and a two-byte overlong form; the other faults of the one
  // UTF-8 reader are JsonString's cases (CliJson).
  for (const char* bad : {"\x80", "\xC0\xAF", "\xC3"})
    EXPECT_FALSE(IsUtf8(bad)) << ::testing::PrintToString(bad);
  EXPECT_EQ(Windows1252ToUtf8("caf\xE9 \x80\x9F\x81 \xFF"),
            "caf\xC3\xA9 \xE2\x82\xAC\xC5\xB8\xC2\x81 \xC3\xBF");
}

// What a file holds, and what the editor shows once it is loaded: its lines
// exactly as they stand, joined by CR LF.
TEST_F(ScriptFileTest, LoadingTakesAnyLineEndsAndTheWindowsCodePage) {
  const char* const cases[][2] = {
      {"a  \r\n\r\nb\r\n", "a  \r\n\r\nb"},
      {"a  \n\nb\n", "a  \r\n\r\nb"},
      {"a\rb\r\nc", "a\r\nb\r\nc"},
      {"a\r\n\r\n", "a\r\n"},
      {"\xEF\xBB\xBFprint w, \"caf\xC3\xA9\"\r\n", "print w, \"caf\xC3\xA9\""},
      {"\xEF\xBB\xBF\xE9", "\xC3\xA9"},
  };
  for (const auto& [content, editor] : cases) {
    SCOPED_TRACE(::testing::PrintToString(content));
    dir.Write("read.die", content);
    scriptEditor.ScriptFileName = dir.Path("read.die");
    ASSERT_TRUE(LoadScriptText());
    EXPECT_EQ(view.script, editor);
  }
}

// Saving and loading again gives the editor text that the save showed, and
// the file ends with one empty line. Blanks at line ends go (TABs stay), a
// blank rest after the last line end is left out.
TEST_F(ScriptFileTest, SaveThenLoadRoundTrip) {
  const char* const cases[][3] = {
      // typed, shown after the save, the file
      {"  x  \r\n\r\ny\t ", "  x\r\n\r\ny\t\r\n", "  x\r\n\r\ny\t\r\n\r\n"},
      {"a\r\n\r\n  \r\n", "a\r\n\r\n\r\n", "a\r\n\r\n\r\n\r\n"},
      {"", "", "\r\n"},
      {"  ; \xE2\x82\xAC", "  ; \xE2\x82\xAC\r\n", "  ; \xE2\x82\xAC\r\n\r\n"},
  };
  for (const auto& [typed, shown, file] : cases) {
    SCOPED_TRACE(::testing::PrintToString(typed));
    Type(typed);
    scriptEditor.ScriptFileName = dir.Path("trip.die");
    ASSERT_TRUE(SaveScriptText());
    EXPECT_EQ(view.script, shown);
    EXPECT_EQ(dir.Read("trip.die"), file);
    Type("something else");
    ASSERT_TRUE(LoadScriptText());
    EXPECT_EQ(view.script, shown);
  }
  // The last line's CR and LF become blanks, and it is trimmed.
  EXPECT_EQ(ScriptFileContents({"a", " x\ry\n "}), "a\r\nx y\r\n");
}

TEST_F(ScriptFileTest, SaveAsksBeforeReplacingAFileThatHoldsSomething) {
  Type("a  \r\nb");
  view.fileAnswers = {dir.Path("combat")};
  ASSERT_TRUE(SaveScriptAs());
  // Saved under the name with ".DIE", known by its bare name in its folder.
  EXPECT_EQ(dir.Read("combat.DIE"), "a\r\nb\r\n\r\n");
  EXPECT_EQ(std::make_tuple(view.caption, view.modified, DieHistory),
            std::make_tuple("Script -- combat.DIE", false, OneBased("combat.DIE")));
  EXPECT_EQ(std::filesystem::current_path(), std::filesystem::path(dir.path()));
  // The dialogs start at the editor's file in the current folder; a
  // cancelled one changes nothing.
  LoadScriptFile();
  EXPECT_EQ(view.fileQuestions.back(), "Load Script " + dir.Path("combat.DIE"));
  EXPECT_FALSE(SaveScriptAs());
  EXPECT_EQ(view.fileQuestions.back(), "Save Script As " + dir.Path("combat.DIE"));

  Type("changed");
  const std::string question =
      dir.Path("combat.DIE") + "\nThis script already exists. Overwrite it?";
  for (MsgAnswer answer : {MsgAnswer::No, MsgAnswer::Cancel, MsgAnswer::Yes}) {
    ui.answer = answer;
    view.fileAnswers = {dir.Path("combat.DIE")};
    EXPECT_EQ(SaveScriptAs(), answer == MsgAnswer::Yes);
    EXPECT_EQ(std::make_pair(ui.messages.back().text, ui.messages.back().buttons),
              std::make_pair(question, MsgButtons::YesNoCancel));
  }
  EXPECT_EQ(dir.Read("combat.DIE"), "changed\r\n\r\n");
  // An empty file is no script: nothing to ask about.
  dir.Write("empty.die", "");
  ui.messages.clear();
  view.fileAnswers = {dir.Path("empty.die")};
  EXPECT_TRUE(SaveScriptAs());
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(ScriptFileTest, NewAndLoadAskAboutAChangedScriptFirst) {
  Type("x = 1");
  ui.answer = MsgAnswer::Cancel;
  NewScript();
  EXPECT_EQ(view.script, "x = 1");
  // Yes, then a cancelled save dialog: the editor is cleared all the same.
  ui.answer = MsgAnswer::Yes;
  NewScript();
  EXPECT_EQ(std::make_tuple(view.script, view.fileQuestions.size(), ui.Texts()),
            std::make_tuple(
                "", 1u, Items(2, "Do you want to save the current script before clearing it?")));

  dir.Write("fight.die", "result = 2d6\r\n");
  Type("y = 2");
  ui.answer = MsgAnswer::No;
  view.fileAnswers = {dir.Path("fight.die")};
  LoadScriptFile();
  // Loaded clean, listed and picked.
  EXPECT_EQ(std::make_tuple(view.script, view.modified, view.dieValue),
            std::make_tuple("result = 2d6", false, "fight.die"));
  EXPECT_EQ(ui.messages.back().text,
            "Do you want to save the current script before loading a new one?");
}

TEST_F(ScriptFileTest, AFileThatCannotBeReadOrWrittenChangesNothing) {
  Type("keep me");
  ui.answer = MsgAnswer::No;
  view.fileAnswers = {dir.Path("missing.die")};
  LoadScriptFile();
  dir.Write("taken", "x");
  view.fileAnswers = {dir.Path("taken/inner.die")};  // a file where a folder should be
  EXPECT_FALSE(SaveScriptAs());
  EXPECT_EQ(std::make_tuple(view.script, view.modified, scriptEditor.ScriptFileName),
            std::make_tuple("keep me", true, ""));
  ASSERT_EQ(ui.messages.size(), 3u);  // the question, then one message per file
  EXPECT_EQ(ui.messages[1].text.rfind("Gandrel could not read the script missing.die: ", 0), 0u);
  EXPECT_EQ(ui.messages[2].text.rfind(
                "Gandrel could not save the script " + dir.Path("taken/inner.die") + ": ", 0),
            0u);
}

TEST_F(ScriptFileTest, PickingAndTheEditorsEvents) {
  dir.Write("fight.DIE", "a\r\nb");
  PickDieValue(" " + dir.Path("fight.DIE") + " ");
  PickDieValue(dir.Path("FIGHT.die"));  // letter case counts on Linux: no such file
  EXPECT_EQ(std::make_pair(view.script, scriptEditor.ScriptFileName),
            std::make_pair(std::string("a\r\nb"), dir.Path("fight.DIE")));
  ScriptEditorFocused();
  EXPECT_EQ(view.dieValue, "3d6");  // a script with a file runs as its file
  PickDieValue("2d6");
  EXPECT_EQ(view.script, "");
  ScriptEditorFocused();
  EXPECT_EQ(view.dieValue, "<current script>");
  view.dieValue = "2d6";
  ScriptEditorClicked();
  EXPECT_EQ(view.dieValue, "<current script>");
}

// Closing keeps the editor; the next start brings it back as it was left.
TEST_F(ScriptFileTest, TheEditorComesBackAfterARestart) {
  // Nothing kept yet: an empty, clean editor.
  Restart();
  EXPECT_EQ(std::make_pair(view.script, view.modified), std::make_pair(std::string(), false));

  // An unnamed, changed script.
  Type("var x\r\nresult = \"\xE2\x82\xAC\"  \r\n");
  ASSERT_TRUE(KeepScriptEditor());
  Restart();
  EXPECT_EQ(std::make_tuple(view.script, view.modified, scriptEditor.ScriptFileName),
            std::make_tuple("var x\r\nresult = \"\xE2\x82\xAC\"  \r\n", true, ""));

  // A saved script, clean, in the current folder: known by its bare name.
  view.fileAnswers = {dir.Path("fight")};
  ASSERT_TRUE(SaveScriptAs());
  ASSERT_TRUE(KeepScriptEditor());
  Restart();
  const std::string saved = "var x\r\nresult = \"\xE2\x82\xAC\"\r\n";
  EXPECT_EQ(std::make_tuple(view.script, view.modified, scriptEditor.ScriptFileName),
            std::make_tuple(saved, false, "fight.DIE"));

  // Started elsewhere: the full name. A file that changed meanwhile makes
  // the kept text a change of its own.
  ASSERT_TRUE(KeepScriptEditor());
  std::filesystem::current_path(start);
  Restart();
  EXPECT_EQ(std::make_pair(scriptEditor.ScriptFileName, view.modified),
            std::make_pair(dir.Path("fight.DIE"), false));
  dir.Write("fight.DIE", "result = 2\r\n");
  Restart();
  EXPECT_EQ(std::make_pair(view.script, view.modified), std::make_pair(saved, true));
  EXPECT_TRUE(ui.messages.empty());
}

// A kept editor that cannot be read is left as it is, and so is one that
// Gandrel did not write; the editor of that run is kept in a file of its own
// beside it, never over one, and comes back from there once it is put in
// the place of gandrel.script.
TEST_F(ScriptFileTest, AKeptEditorThatCannotBeReadIsNeverWrittenOver) {
  const std::string kept = dir.Path("gandrel.script");
  for (int run = 1; run <= 2; ++run) {  // a folder, then a file of the user's
    std::filesystem::remove_all(kept);
    if (run == 1) std::filesystem::create_directory(kept);
    if (run == 2) dir.Write("gandrel.script", "result = 1\r\n");
    ui.messages.clear();
    StartUp();
    const std::string typed = "typed " + std::to_string(run);
    Type(typed);
    RestoreScriptEditor();
    EXPECT_EQ(view.script, typed);
    EXPECT_TRUE(KeepScriptEditor());
    // The user is told where it went: the first free name.
    const std::string beside = dir.Path("gandrel-" + std::to_string(run) + ".script");
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(ui.messages[0].text.rfind("Gandrel could not read its script editor from " + kept, 0),
              0u);
    EXPECT_NE(ui.messages[1].text.find(beside), std::string::npos) << ui.messages[1].text;
    EXPECT_NE(TempFolder::ReadWhole(beside).find(typed), std::string::npos);
  }
  EXPECT_EQ(dir.Read("gandrel.script"), "result = 1\r\n");
  // The first run's editor, put in its place, comes back.
  std::filesystem::rename(dir.Path("gandrel-1.script"), kept);
  ui.messages.clear();
  Restart();
  EXPECT_EQ(std::make_pair(view.script, view.modified),
            std::make_pair(std::string("typed 1"), true));
  EXPECT_TRUE(ui.messages.empty());
}

}  // namespace
}  // namespace gandrel::testing
