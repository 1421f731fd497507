#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "calc/Pump.h"
#include "calc/RuntimeError.h"
#include "calc/modGRCalcs.h"
#include "script/RunFlags.h"
#include "support/EngineFixture.h"

namespace gandrel {
namespace {

class ReplaceVarsTest : public testing::EngineTest {
 protected:
  void Var(const std::string& name, double value) {
    store.varNames.push_back(name);
    store.varValues.push_back(value);
  }
  void List(const std::string& name, const std::vector<std::string>& items) {
    std::string joined;
    for (size_t i = 0; i < items.size(); ++i)
      joined += (i ? std::string(1, '\0') : "") + items[i];
    store.listNames.push_back(name);
    store.listItems.push_back(joined);
  }
  std::string Replaced(std::string line) {
    ReplaceVars(line, store);
    return line;
  }
  // Presses "Escape" at the given pump and makes every yield pump.
  void BreakAtPump(long pump) {
    SetPumpEveryCall(true);
    ui.onPump = [pump](long n) {
      if (n >= pump) runFlags.BreakRequested = true;
    };
  }
  VarStore store;
};

TEST_F(ReplaceVarsTest, Variables) {
  Var("x", 3);
  Var("y", -2.5);
  Var("q", 0.25);
  Var("big", 1e20);
  const struct {
    const char *in, *out;
  } cases[] = {
      {"x+X", "3+3"},   {"max", "ma3"},       {"y*2", "-2.5*2"},
      {"q", ".25"},     {"Big+1", "1E+20+1"}, {"xxYy", "33-2.5-2.5"},
      {"Z(x)", "Z(3)"}, {"none", "none"},     {"", ""},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Replaced(c.in), c.out) << c.in;
}

TEST_F(ReplaceVarsTest, StoreOrderDecidesOverLongerNames) {
  Var("a", 1);
  Var("ab", 2);
  EXPECT_EQ(Replaced("ab+AB"), "1b+1B");
  VarStore reversed;
  reversed.varNames = {"", "ab", "a"};
  reversed.varValues = {0, 2, 1};
  std::string line = "ab+a";
  ReplaceVars(line, reversed);
  EXPECT_EQ(line, "2+1");
}

TEST_F(ReplaceVarsTest, AValueMayFormAnotherNameWithTheRest) {
  Var("x", 1);
  Var("n1", 7);  // "x" becomes "1" and "n" & "1" is a name of its own
  EXPECT_EQ(Replaced("nx"), "7");
}

TEST_F(ReplaceVarsTest, ListItems) {
  List("die", {"1", "2", "3"});
  const struct {
    const char *in, *out;
  } cases[] = {
      {"die(2)", "2"},           {"die(0)", "1"},   {"die(-3)", "1"},  {"die(7)", "3"},
      {"die(2.5)", "2"},         {"die(3.5)", "3"}, {"die(1+1)", "1"}, {"DIE(2)+die(3)", "2+3"},
      {"die((2)", "2"},          {"die(x(3)", "3"}, {"die()", "1"},    {"die (2)", "die (2)"},
      {"bigdie(2)+1", "big2+1"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Replaced(c.in), c.out) << c.in;
}

TEST_F(ReplaceVarsTest, VariablesComeBeforeListsAndSpoilThem) {
  List("die", {"10", "20"});
  Var("d", 4);
  EXPECT_EQ(Replaced("die(2)"), "4ie(2)");
}

TEST_F(ReplaceVarsTest, ListItemsKeepTheirCaseAndEmptyItemsStay) {
  List("w", {"Sword", "", "Axe"});
  EXPECT_EQ(Replaced("w(1) w(2) w(3)"), "Sword  Axe");
  List("empty", {""});
  EXPECT_EQ(Replaced("[empty(4)]"), "[]");
}

TEST_F(ReplaceVarsTest, AnIndexTooLargeForSixteenBitsIsAnOverflow) {
  List("die", {"1"});
  for (const char* line : {"die(40000)", "die(1E400)"}) {
    std::string text = line;
    try {
      ReplaceVars(text, store);
      ADD_FAILURE() << line;
    } catch (const RuntimeError& e) {
      EXPECT_EQ(e.Number(), ErrNo::Overflow) << line;
    }
  }
}

TEST_F(ReplaceVarsTest, EndlessSubstitutionsEndWhenTheUserBreaks) {
  struct Case {
    const char* line;
    bool variable;  // a variable "e" holding 1E+20, else a list "die"
  } cases[] = {{"die(2", false}, {"die(1)", false}, {"e+1", true}};
  for (const Case& c : cases) {
    store = VarStore{};
    runFlags.BreakRequested = false;
    ui.pumps = 0;
    if (c.variable)
      Var("e", 1e20);
    else
      List("die", {"die(1)", "2"});
    BreakAtPump(50);
    std::string line = c.line;
    EXPECT_THROW(ReplaceVars(line, store), BreakSignal) << c.line;
    EXPECT_EQ(ui.pumps, 50) << c.line;
  }
}

TEST_F(ReplaceVarsTest, WithBreakingOffTheEndlessLoopGoesOn) {
  List("die", {"1"});
  runFlags.BreakEnabled = false;
  SetPumpEveryCall(true);
  ui.onPump = [](long n) {
    runFlags.BreakRequested = true;
    if (n == 200) runFlags.BreakEnabled = true;
  };
  std::string line = "die(";
  EXPECT_THROW(ReplaceVars(line, store), BreakSignal);
  EXPECT_EQ(ui.pumps, 200);
}

TEST(TextHelpers, SplitAssignment) {
  const struct {
    const char *line, *left, *rest;
  } cases[] = {
      {" total = 3d6 + 2 ", "total", "3d6 + 2"},
      {"a=b=c", "a", "b=c"},
      {"=5", "", "5"},
      {"x=", "x", ""},
  };
  for (const auto& c : cases) {
    std::string line = c.line, left;
    SplitAssignment(line, left);
    EXPECT_EQ(left, c.left) << c.line;
    EXPECT_EQ(line, c.rest) << c.line;
  }
  std::string noEquals = "abc", left;
  EXPECT_THROW(SplitAssignment(noEquals, left), RuntimeError);
}

TEST(TextHelpers, StripWhitespace) {
  EXPECT_EQ(StripWhitespace(" 1 +\t2\r\n"), "1+2");
  EXPECT_EQ(StripWhitespace(" \t\r\n "), "");
  EXPECT_EQ(StripWhitespace(std::string("a\0b\xFF", 4)), std::string("a\0b\xFF", 4));
}

TEST(TextHelpers, SplitText) {
  const struct {
    std::string text;
    char delimiter;
    std::vector<std::string> fields;
  } cases[] = {
      {"a,b,,c", ',', {"", "a", "b", "", "c"}},
      {"", ',', {"", ""}},
      {"a,", ',', {"", "a", ""}},
      {",", ',', {"", "", ""}},
      {"abc", ',', {"", "abc"}},
      {std::string("1\0"
                   "22\0",
                   5),
       '\0',
       {"", "1", "22", ""}},
  };
  for (const auto& c : cases) {
    std::vector<std::string> fields = {"stale", "stale"};
    SplitText(c.text, c.delimiter, fields);
    EXPECT_EQ(fields, c.fields) << c.text;
  }
}

TEST(TextHelpers, CountOccurrencesAndInStrLast) {
  const struct {
    const char *text, *needle;
    int count;
  } counts[] = {{"aaa", "aa", 2}, {"(1)(2)", "(", 2}, {"abc", "x", 0}, {"", "a", 0}, {"ab", "", 3}};
  for (const auto& c : counts)
    EXPECT_EQ(CountOccurrences(c.text, c.needle), c.count) << c.text;

  const struct {
    int start;
    const char *text, *needle;
    int position;
  } lasts[] = {
      {4, "a(b(x)", "(", 4}, {3, "a(b(x)", "(", 2}, {-1, "abc", "(", 0}, {-1, "aaa", "aa", 2},
      {2, "aaa", "aa", 1},   {1, "aaa", "aa", 0},   {0, "abc", "a", 0},  {99, "a(", "(", 2},
  };
  for (const auto& c : lasts)
    EXPECT_EQ(InStrLast(static_cast<int16_t>(c.start), c.text, c.needle), c.position)
        << c.start << " " << c.text;
  EXPECT_THROW(InStrLast(-2, "abc", "a"), RuntimeError);
}

TEST(TextHelpers, CountsPastSixteenBitsOverflow) {
  EXPECT_THROW(CountOccurrences(std::string(40000, '('), "("), RuntimeError);
}

}  // namespace
}  // namespace gandrel
