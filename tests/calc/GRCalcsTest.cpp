#include <gtest/gtest.h>

#include <initializer_list>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"
#include "calc/modGRCalcs.h"
#include "support/EngineFixture.h"

namespace gandrel {
namespace {

struct LineCase {
  const char *in, *out;
};

class ReplaceVarsTest : public testing::EngineTest {
 protected:
  void Vars(std::initializer_list<std::pair<std::string, double>> vars) {
    for (const auto& [name, value] : vars) {
      store.varNames.push_back(name);
      store.varValues.push_back(value);
    }
  }
  void List(const std::string& name, const std::vector<std::string>& items) {
    std::string joined;
    for (const std::string& item : items)
      joined += (joined.empty() ? "" : std::string(1, '\0')) + item;
    store.listNames.push_back(name);
    store.listItems.push_back(joined);
  }
  void ExpectLines(std::span<const LineCase> cases) {
    for (const LineCase& c : cases) {
      std::string line = c.in;
      ReplaceVars(line, store);
      EXPECT_EQ(line, c.out) << c.in;
    }
  }
  VarStore store;
};

TEST_F(ReplaceVarsTest, VariablesMatchAnywhereInTheLowerCasedLine) {
  Vars({{"x", 3}, {"y", -2.5}, {"big", 1e20}});
  const LineCase cases[] = {
      {"x+X", "3+3"}, {"max", "ma3"}, {"xxYy", "33-2.5-2.5"}, {"Big+1", "1E+20+1"}};
  ExpectLines(cases);
}

// "na" becomes "n1", a name of its own.
TEST_F(ReplaceVarsTest, StoreOrderDecidesOverLongerNames) {
  Vars({{"a", 1}, {"ab", 2}, {"n1", 7}});
  const LineCase cases[] = {{"ab+AB", "1b+1B"}, {"na", "7"}};
  ExpectLines(cases);
}

// An index picks the first item below 1 and the last past the end, and is
// read from the last "(" before the ")"; one too large for 16 bits is an
// overflow.
TEST_F(ReplaceVarsTest, ListItems) {
  List("die", {"1", "2", "3"});
  const LineCase cases[] = {{"die(0)", "1"},          {"die(7)", "3"},   {"die(1+1)", "1"},
                            {"DIE(2)+die(3)", "2+3"}, {"die(x(3)", "3"}, {"die (2)", "die (2)"},
                            {"bigdie(2)+1", "big2+1"}};
  ExpectLines(cases);
  for (std::string line : {"die(40000)", "die(1E400)"}) {
    auto error = TrapRuntimeError([&] { ReplaceVars(line, store); });
    EXPECT_EQ(error ? error->Number() : ErrNo{}, ErrNo::Overflow) << line;
  }
}

TEST_F(ReplaceVarsTest, ItemsKeepTheirTextAndVariablesSpoilListNames) {
  List("w", {"Sword", "", "Axe"});
  List("empty", {""});
  List("dice", {"10", "20"});
  Vars({{"d", 4}});
  const LineCase cases[] = {
      {"w(1) w(2) w(3)", "Sword  Axe"}, {"[empty(4)]", "[]"}, {"dice(2)", "4ice(2)"}};
  ExpectLines(cases);
}

// A list reference without ")", an item holding its own reference, and a
// variable "e" whose value's text "1E+20" holds its name: each pass pumps.
TEST_F(ReplaceVarsTest, EndlessSubstitutionsEndWhenTheUserBreaks) {
  for (const char* line : {"die(2", "die(1)", "e+1"}) {
    store = VarStore{};
    line[0] == 'e' ? Vars({{"e", 1e20}}) : List("die", {"die(1)", "2"});
    runFlags.BreakRequested = false;
    ui.pumps = 0;
    SetPumpEveryCall(true);
    ui.onPump = [](long n) { runFlags.BreakRequested = n >= 50; };
    std::string text = line;
    EXPECT_THROW(ReplaceVars(text, store), BreakSignal) << line;
    EXPECT_EQ(ui.pumps, 50) << line;
  }
}

// An assignment splits at its first "=" (the sides trimmed); SplitText keeps
// every field, 1-based, and forgets what the array held.
TEST(TextHelpers, SplittingAndStripWhitespace) {
  for (auto [line, split] :
       {std::pair{" total = 3d6 + 2 ", "total|3d6 + 2"}, {"a=b=c", "a|b=c"}, {"=5", "|5"}}) {
    std::string rest = line, left;
    SplitAssignment(rest, left);
    EXPECT_EQ(left + "|" + rest, split) << line;
  }
  std::string noEquals = "abc", left;
  EXPECT_THROW(SplitAssignment(noEquals, left), RuntimeError);
  const std::pair<const char*, std::vector<std::string>> fields[] = {
      {"a,b,,c", {"", "a", "b", "", "c"}}, {"", {"", ""}}};
  for (const auto& [text, expected] : fields) {
    std::vector<std::string> split = {"stale", "stale"};
    SplitText(text, ',', split);
    EXPECT_EQ(split, expected) << text;
  }
  EXPECT_EQ(StripWhitespace(" 1 +\t2\r\n"), "1+2");
  EXPECT_EQ(StripWhitespace(std::string("a\0b\xFF", 4)), std::string("a\0b\xFF", 4));
}

TEST(TextHelpers, CountOccurrencesAndInStrLast) {
  // Overlapping matches count; an empty needle is found at every position.
  for (auto [text, needle, count] : {std::tuple{"aaa", "aa", 2}, {"ab", "", 3}})
    EXPECT_EQ(CountOccurrences(text, needle), count) << text;
  EXPECT_THROW(CountOccurrences(std::string(40000, '('), "("), RuntimeError);

  const struct {
    int start;
    const char *text, *needle;
    int position;
  } lasts[] = {{4, "a(b(x)", "(", 4}, {3, "a(b(x)", "(", 2}, {-1, "abc", "(", 0},
               {-1, "aaa", "aa", 2},  {2, "aaa", "aa", 1},   {0, "abc", "a", 0}};
  for (const auto& c : lasts)
    EXPECT_EQ(InStrLast(static_cast<int16_t>(c.start), c.text, c.needle), c.position) << c.text;
  EXPECT_THROW(InStrLast(-2, "abc", "a"), RuntimeError);
}

}  // namespace
}  // namespace gandrel
