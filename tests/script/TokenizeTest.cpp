#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "ScriptRunning.h"
#include "calc/Pump.h"
#include "script/ScriptKeywords.h"
#include "script/modScript.h"
#include "support/EngineFixture.h"

namespace gandrel::testing {
namespace {

using Lines = std::vector<std::string>;
using C = ScriptCode;

using TokenizeTest = EngineTest;

TEST_F(TokenizeTest, KeywordForms) {
  struct Case {
    std::string raw, tokenized;
  } cases[] = {
      // clang-format off
      // Comments, blanks and TABs.
      {"x = 1 ; set x",          T(C::Other, "x = 1")},
      {"; comment",              T(C::Nothing)},
      {"print \"a;b\"",          T(C::Print, "\"a")},  // quotes do not protect ";"
      {"\tprint\thello\t",       T(C::Print, "hello")},
      // Keywords are whole words, in any case; misspelt ones are code 0. The
      // keyword tables' other entries are read the same way (the script cases
      // use each of them).
      {"IF x = 1",               T(C::If, "x = 1")},
      {"iffy = 2",               T(C::Other, "iffy = 2")},
      {"dis",                    T(C::Other, "dis")},
      {"NEXT",                   T(C::Next)},
      // Labels: one word after ":".
      {":Top",                   T(C::Nothing)},
      // DIE and ITEM with and without "=".
      {"die = d8",               T(C::Die, "d8")},
      {"die=",                   T(C::Other, "die=")},
      {"item=sword",             T(C::Item, "sword")},
      {"item sword",             T(C::Item, "sword")},
      // END: a rest it does not know stands alone, without a code.
      {"end if",                 T(C::EndIf)},
      {"end loop",               "loop"},
      // Sub-keywords compare the leading characters of the rest.
      {"case island",            T(C::CaseIs, "land")},
      // OPEN and CLOSE: the second word decides.
      {"open window my win",     T(C::OpenWindow, "my win")},
      {"open window",            T(C::Other, "open window")},
      {"open door now",          "now"},
      // clang-format on
  };
  for (const Case& c : cases) {
    TokenizedLine line = TokenizeLine(c.raw, false);
    EXPECT_EQ(std::pair(line.text, line.isLabel), std::pair(c.tokenized, c.raw == ":Top")) << c.raw;
  }
  EXPECT_EQ(TokenizeLine(":Top", false).label, "top");
  // The script's last line, empty (or only a comment), is END.
  EXPECT_EQ(TokenizeLine(" ; done", true).text, T(C::End));
}

TEST_F(TokenizeTest, GotoTargetsBecomeLineNumbers) {
  Lines lines = ScriptLinesOf("goto END\n:top\nx = 1\n:end\n:TOP\ngoto top\n");
  std::string error;
  SetPumpEveryCall(true);
  TokenizeScript(lines, error);
  EXPECT_EQ(error, "");
  EXPECT_EQ(lines, (Lines{"", T(C::Goto, "4"), T(C::Nothing), T(C::Other, "x = 1"), T(C::Nothing),
                          T(C::Nothing), T(C::Goto, "2"), T(C::End)}));
  EXPECT_EQ(ui.pumps, 7);  // once per line
  EXPECT_TRUE(ui.messages.empty());
}

// What the tokenizer then reports is in the script case goto_missing_label.
TEST_F(TokenizeTest, MissingLabels) {
  Lines lines = ScriptLinesOf("x = 1\ngoto nowhere\ngoto also\n:top");
  auto text = [](const GotoCheck& c) { return std::to_string(c.line) + " " + c.message; };
  EXPECT_EQ(text(CheckGotoTargets(lines)), "2 Label for GOTO not found at line 2");
  // The editor marks every such GOTO, each with the tokenizer's message.
  std::vector<GotoCheck> missing = MissingGotoTargets(lines);
  ASSERT_EQ(missing.size(), 2u);
  EXPECT_EQ(text(missing[1]), "3 Label for GOTO not found at line 3");
  EXPECT_TRUE(ui.messages.empty());  // the checks show nothing
  std::string error;
  EXPECT_EQ(TokenizeScript(lines, error), 2);
  EXPECT_EQ(lines[3], T(C::Goto, "also"));  // the lines after it stay as pass 1 left them
  Lines found = ScriptLinesOf("goto a\n:A");
  EXPECT_EQ(CheckGotoTargets(found).line, 0);
  EXPECT_TRUE(MissingGotoTargets(found).empty());
}

}  // namespace
}  // namespace gandrel::testing
