#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ShellFixture.h"
#include "app/Settings.h"
#include "calc/Pump.h"
#include "dice/Random.h"
#include "script/RunFlags.h"

namespace gandrel::testing {
namespace {

using Items = std::vector<std::string>;

Items OneBased(const Items& items) {
  Items list{""};
  list.insert(list.end(), items.begin(), items.end());
  return list;
}

class HistoryTest : public ShellTest {};

TEST_F(HistoryTest, Rules) {
  struct Case {
    const char* name;
    int keepNum;
    bool newFirst, keepAlways;
    Items always, history;
    std::string value;
    Items expected;
    bool rebuilt;
  } cases[] = {
      {"moves to the bottom, new spelling",
       3,
       false,
       false,
       {},
       {"a", "b", "c"},
       "B",
       {"a", "c", "B"},
       true},
      {"new first drops the last", 3, true, false, {}, {"a", "b", "c"}, "d", {"d", "a", "b"}, true},
      {"moves to the top", 3, true, false, {}, {"a", "b", "c"}, "C", {"C", "a", "b"}, true},
      {"room left, at the bottom", 5, false, false, {}, {"a"}, "b", {"a", "b"}, true},
      {"room left, at the top", 5, true, false, {}, {"a", "b"}, "c", {"c", "a", "b"}, true},
      {"full drops the first", 3, false, false, {}, {"a", "b", "c"}, "d", {"b", "c", "d"}, true},
      {"always-add item ignored",
       3,
       false,
       true,
       {"3d6"},
       {"3d6", "x"},
       "3D6",
       {"3d6", "x"},
       false},
      {"no history kept", 0, false, false, {}, {"a"}, "b", {"a"}, false},
      {"always-add at the top stays",
       3,
       false,
       true,
       {"x"},
       {"x", "a", "b"},
       "c",
       {"x", "b", "c"},
       true},
      {"always-add at the bottom stays",
       3,
       true,
       true,
       {"x"},
       {"a", "b", "x"},
       "c",
       {"c", "a", "x"},
       true},
      {"always-add written back below", 3, true, true, {"x"}, {"x"}, "a", {"a", "x"}, true},
      {"entries past a lowered KeepNum stay",
       2,
       false,
       false,
       {},
       {"a", "b", "c", "d"},
       "e",
       {"b", "e", "c", "d"},
       true},
      {"always-add items ordinary without KeepAlways",
       3,
       false,
       false,
       {"x"},
       {"x", "a"},
       "X",
       {"a", "X"},
       true},
      {"more always-add items than places", 1, false, true, {"x", "y"}, {}, "a", {"x"}, true},
  };
  for (const Case& c : cases) {
    settings.KeepNum = static_cast<int16_t>(c.keepNum);
    settings.NewFirst = c.newFirst;
    settings.KeepAlways = c.keepAlways;
    AlwaysAddItems = OneBased(c.always);
    DieHistory = OneBased(c.history);
    view = FakeView{};
    std::string value = c.value;
    AddToHistory(value);
    EXPECT_EQ(Entries(DieHistory), c.expected) << c.name;
    EXPECT_EQ(view.listClears, c.rebuilt ? 1 : 0) << c.name;
    if (c.rebuilt) {
      EXPECT_EQ(view.list, c.expected) << c.name;
      EXPECT_EQ(view.dieValue, c.value) << c.name;
    }
  }
}

class RollRequestTest : public ShellTest {
 protected:
  void Roll(const std::string& dieValue) {
    view.dieValue = dieValue;
    RollDieValue();
  }
};

TEST_F(RollRequestTest, Outcomes) {
  struct Case {
    std::string typed;
    std::string dieValue, result, eachResult;
    Items history;
  } cases[] = {
      {"", "", "0", "", {}},
      {"  2+3 ", "2+3", "5", "Calc: 2+3=5", {"2+3"}},
      {"1/4", "1/4", ".25", "Calc: 1/4=.25", {"1/4"}},
      {"2+", "2+", "<calc error>", "<calc error>", {"2+"}},
      {"@best(2,4d6)",
       "=@best(2,4d6)",
       "<script error>",
       "Scripts are not available in this build.",
       {"=@best(2,4d6)"}},
      {"FOO.DIE",
       "FOO.DIE",
       "<script error>",
       "Scripts are not available in this build.",
       {"FOO.DIE"}},
      {"<current script>",
       "<current script>",
       "<script error>",
       "Scripts are not available in this build.",
       {}},
      {"=2", "=2", "<script error>", "Scripts are not available in this build.", {"=2"}},
  };
  for (const Case& c : cases) {
    DieHistory.assign(1, "");
    Roll(c.typed);
    EXPECT_EQ(view.dieValue, c.dieValue) << c.typed;
    EXPECT_EQ(view.result, c.result) << c.typed;
    EXPECT_EQ(view.eachResult, c.eachResult) << c.typed;
    EXPECT_EQ(view.clipboard, " rolls " + c.result + " on " + c.dieValue) << c.typed;
    EXPECT_EQ(Entries(DieHistory), c.history) << c.typed;
  }
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(RollRequestTest, BareDieTakesTheDefaultDie) {
  settings.DieType = "6";
  ScriptRandom({FaceToRnd(4, 6)});
  Roll("d");
  EXPECT_EQ(view.dieValue, "d6");
  EXPECT_EQ(view.result, "4");
  EXPECT_EQ(view.eachResult, "d6= +4= 4\r\nCalc: 4=4");
  EXPECT_EQ(view.clipboard, " rolls 4 on d6");
  EXPECT_EQ(Entries(DieHistory), Items{"d6"});
  EXPECT_EQ(view.selectAlls, 1);
  EXPECT_EQ(ui.busyChanges, (std::vector<bool>{true, false}));
}

TEST_F(RollRequestTest, AddDiceOffKeepsTheHistory) {
  settings.AddDice = false;
  Roll("3d6");
  Roll("=1");
  EXPECT_EQ(Entries(DieHistory), Items{});
}

TEST_F(RollRequestTest, BreakShowsBreakWithoutMessage) {
  SetPumpEveryCall(true);
  ui.onPump = [](long) { runFlags.BreakRequested = true; };
  Roll("100d6");
  EXPECT_EQ(view.result, "<break>");
  EXPECT_EQ(view.eachResult, "<break>");
  EXPECT_EQ(view.clipboard, " rolls <break> on 100d6");
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(RollRequestTest, EarlierBreakIsForgotten) {
  runFlags.BreakRequested = true;
  Roll("2+2");
  EXPECT_EQ(view.result, "4");
}

TEST_F(RollRequestTest, TooLongDieValueIsAnError) {
  std::string huge(40000, '1');
  Roll(huge);
  EXPECT_EQ(view.result, "<error>");
  EXPECT_EQ(view.eachResult, "<error>");
  EXPECT_EQ(ui.Texts(),
            Items{"I'm sorry, but the die result generated is too big for me to handle."});
  EXPECT_EQ(ui.busyChanges, (std::vector<bool>{true, false}));
}

}  // namespace
}  // namespace gandrel::testing
