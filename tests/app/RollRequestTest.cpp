#include <gtest/gtest.h>

#include <utility>

#include "ShellFixture.h"
#include "app/Settings.h"
#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"

namespace gandrel::testing {
namespace {

using HistoryTest = ShellTest;

TEST_F(HistoryTest, Rules) {
  // Lists are written as blank-separated entries.
  struct Case {
    int keepNum;
    bool newFirst, keepAlways;
    const char *always, *history, *value, *expected;
    bool rebuilt;
  } cases[] = {
      // clang-format off
      {3, false, false, "b",   "a b c",   "B",   "a c B",   true},   // moves (KeepAlways off)
      {3, true,  false, "",    "a b c",   "C",   "C a b",   true},
      {5, false, false, "",    "a",       "b",   "a b",     true},
      {2, false, false, "",    "a b c d", "e",   "b e c d", true},   // past a lowered KeepNum
      {3, false, true,  "3d6", "3d6 x",   "3D6", "3d6 x",   false},  // always-add item
      {0, false, false, "",    "a",       "b",   "a",       false},  // no history kept
      {3, false, true,  "x",   "x a b",   "c",   "x b c",   true},   // always-add stays on top
      {2, true,  true,  "x",   "a b x",   "c",   "c a x",   true},   // ... or at the bottom
      {3, true,  true,  "x",   "x",       "a",   "a x",     true},
      {1, false, true,  "x y", "",        "a",   "x",       true},   // more items than places
      // clang-format on
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.history) + " + " + c.value);
    settings.KeepNum = static_cast<int16_t>(c.keepNum);
    settings.NewFirst = c.newFirst;
    settings.KeepAlways = c.keepAlways;
    AlwaysAddItems = OneBased(c.always);
    DieHistory = OneBased(c.history);
    Items expected = OneBased(c.expected);
    view = FakeView{};
    std::string value = c.value;
    AddToHistory(value);
    EXPECT_EQ(DieHistory, expected);
    EXPECT_EQ(view.list, c.rebuilt ? Items(expected.begin() + 1, expected.end()) : Items{});
    EXPECT_EQ(view.dieValue, c.rebuilt ? c.value : "");
  }
}

using RollRequestTest = ShellTest;

TEST_F(RollRequestTest, Outcomes) {
  // The editor is empty: a script file's name and "<current script>" run it.
  const std::string best = "4d6= +6+1+3+2= 12\r\nBest(2,+6+1+3+2)=(+6+3)\r\n";
  struct Case {
    std::string typed, dieValue, result, eachResult, history;
  } cases[] = {
      // clang-format off
      {"  2+3 ",           "2+3",              "5",              "Calc: 2+3=5",   "2+3"},
      {"",                 "",                 "0",              "",              ""},
      {"d",                "d6",               "4",              "d6= +4= 4\r\nCalc: 4=4", "d6"},
      {"2+",               "2+",               "<calc error>",   "<calc error>",  "2+"},
      {"@best(2,4d6)",     "=@best(2,4d6)",    "9",              best,            "=@best(2,4d6)"},
      {"FOO.DIE",          "FOO.DIE",          "",               "",              "FOO.DIE"},
      {"<current script>", "<current script>", "",               "",              ""},
      // clang-format on
  };
  runFlags.BreakRequested = true;  // a break of an earlier roll is forgotten
  ScriptRandom({FaceToRnd(4, 6), FaceToRnd(6, 6), FaceToRnd(1, 6), FaceToRnd(3, 6),
                FaceToRnd(2, 6)});  // the bare die, then @best's four
  for (const Case& c : cases) {
    SCOPED_TRACE(c.typed);
    DieHistory.assign(1, "");
    Roll(c.typed);
    EXPECT_EQ(view.dieValue, c.dieValue);
    EXPECT_EQ(view.result, c.result);
    EXPECT_EQ(view.eachResult, c.eachResult);
    EXPECT_EQ(view.clipboard, " rolls " + c.result + " on " + c.dieValue);
    EXPECT_EQ(DieHistory, OneBased(c.history));
  }
  EXPECT_TRUE(ui.messages.empty());
  EXPECT_EQ(view.rolls, 7);  // each outcome shown once
  settings.AddDice = false;
  Roll("3d6");
  Roll("=1");
  Roll("x.die");
  EXPECT_EQ(DieHistory, Items{""});  // none of the three kinds added
}

std::string Repeated(const std::string& text, int times) {
  std::string out;
  for (int i = 0; i < times; ++i)
    out += text;
  return out;
}

// A die value too long to work on fails before any die is rolled: no die
// result was too big, and the message names the error. One that a rolled
// total makes too long fails after the dice, as a roll too big.
TEST_F(RollRequestTest, ErrorsBeforeAndAfterTheDice) {
  std::string define = "define dx = 100000000 to 100000000";
  ParseDefine(define);
  const std::pair<std::string, std::string> cases[] = {
      {std::string(40000, '1'),
       "I'm sorry, but the following error has occurred:\rOverflow\r\r"
       "If entering a very long die value, please shorten it or roll it in parts."},
      {Repeated("d+", 10923) + "1",  // each bare "d" grows to "d6" before anything is rolled
       "I'm sorry, but the following error has occurred:\rOverflow\r\r"
       "If entering a very long die value, please shorten it or roll it in parts."},
      {"dx+" + std::string(32764, '1'),  // 32,767 characters before the roll
       "I'm sorry, but the die result generated is too big for me to handle."},
  };
  for (const auto& [typed, message] : cases) {
    SCOPED_TRACE(typed.substr(0, 8));
    ui.messages.clear();
    ui.busyChanges.clear();
    Roll(typed);
    EXPECT_EQ(view.result, "<error>");
    EXPECT_EQ(view.eachResult, "<error>");
    EXPECT_EQ(ui.Texts(), Items{message});
    EXPECT_EQ(ui.busyChanges, (std::vector<bool>{true, false}));  // the busy pointer goes
  }
}

}  // namespace
}  // namespace gandrel::testing
