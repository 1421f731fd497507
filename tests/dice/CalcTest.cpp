#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "app/Settings.h"
#include "calc/Pump.h"
#include "calc/RuntimeError.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "script/RunFlags.h"
#include "support/EngineFixture.h"

namespace gandrel {
namespace {

double F(double face, double faces) {
  return FaceToRnd(face, faces);
}

class Notation : public testing::EngineTest {
 protected:
  static void Def(std::string statement) { ParseDefine(statement); }
};

TEST_F(Notation, ExpandDiceGivesBareDiceTheDefaultDie) {
  struct Case {
    std::string dieType, define, in, out;
  } cases[] = {{"6", "", "3d+D+3d6+d%", "3d6+D6+3d6+d6%"},
               {"D10", "", "d", "D10"},
               {"dd", "", "2d", "2dd"},
               {"dfudge", "define dfudge = -1 to 1", "2d+d", "2dfudge+dfudge"},
               {"6", "define dfudge = -1 to 1", "4dfudged", "4dfudged6"},
               {"6", "define dfu = 1,2", "dfudge", "dfud6ge"}};
  for (auto& c : cases) {
    ClearDieTypes();
    if (!c.define.empty()) Def(c.define);
    settings.DieType = c.dieType;
    std::string expr = c.in;
    ExpandDice(expr);
    EXPECT_EQ(expr, c.out) << c.in << " with " << c.dieType;
  }
  std::string line = "d\"d\"d\"x\"2d\"d";
  settings.DieType = "6";
  ExpandAllDice(line);
  EXPECT_EQ(line, "d6\"d\"d6\"x\"2d6\"d");
}

// A count is the run of digits right before "d" ("2.5d6", "3 d6"); a range
// type d1 (1 to 1) stands where "2d10" has its size.
TEST_F(Notation, CalcRollsEveryTermAndReportsTheEvaluation) {
  Def("define d1 = 1 to 1");
  Def("define dw = -2147483648 to 2147483647");
  const struct {
    std::string in;
    std::vector<double> rnd;
    std::string out, details;
    double value;
  } cases[] = {
      {"3d6+2", {F(4, 6), F(1, 6), F(6, 6)}, "11+2", "3d6= +4+1+6= 11\r\nCalc: 11+2=13", 13},
      {"2d6-1D4",
       {F(5, 6), F(2, 6), F(3, 4)},
       "7-3",
       "2d6= +5+2= 7\r\n1D4= +3= 3\r\nCalc: 7-3=4",
       4},
      {"2d10", {}, "20", "2d1= +1+1= 2\r\nCalc: 20=20", 20},
      {"2.5d6", {0, 0, 0, 0, 0}, "2.5", "5d6= +1+1+1+1+1= 5\r\nCalc: 2.5=2.5", 2.5},
      {"3 d6", {F(4, 6)}, "3 4", "d6= +4= 4\r\nCalc: 3 4=34", 34},
      {"d*3d", {.5, .1, .2, .3}, "1*3", "d= +1= 1\r\n3d= +1+1+1= 3\r\nCalc: 1*3=3", 3},
      {"1/0", {}, "<calc error>", "", 0},
      {"1+1dw", {}, "<calc error>", "", 0},
      {"2d6\"d\"", {F(3, 6), F(4, 6)}, "7\"d\"", "Calc: 7\"d\"=7", 7},
      {"\"x", {}, "\"x", "Calc: \"x=0", 0},
      // What follows a quoted stretch is a nested calculation of its own.
      {"1\"a\"2d1\"b\"3", {}, "1\"a\"2", "Calc: 1\"a\"2=1", 1}};
  for (const auto& c : cases) {
    ScriptRandom(c.rnd);
    std::string expr = c.in, details;
    EXPECT_EQ(Calc(expr, details), c.value) << c.in;
    EXPECT_EQ(std::pair(expr, details), std::pair(c.out, c.details)) << c.in;
  }
  // The failed roll's message, and none of the evaluator failing on "<error>".
  EXPECT_EQ(ui.Texts(),
            std::vector<std::string>{
                "I'm sorry, but the die result generated is too big for me to handle."});
}

TEST_F(Notation, GenerateAllDiceLetsTheListTypeEndTheTerm) {
  Def("define dab = 1 to 1");
  Def("define da = 5,5");
  std::string expr = "2dab", details = "old";
  GenerateAllDice(expr, details);
  EXPECT_EQ(expr, "10b");
  EXPECT_EQ(details, "old2da= +5+5= 10\r\n");
}

TEST_F(Notation, CalcOutsideQuotesCalculatesEachStretch) {
  struct Case {
    std::string in, out;
  } cases[] = {{"2+3 \"abc\"", "5\"abc\""},
               {"\"x\" 1d1 \"y\" ", "\"x\"1\"y\" "},
               {"   ", "   "},
               {"2d1*2", "4"}};
  for (auto& c : cases) {
    std::string line = c.in;
    CalcOutsideQuotes(line);
    EXPECT_EQ(line, c.out) << c.in;
  }
}

TEST_F(Notation, TextsBeyondSixteenBitPositionsOverflow) {
  std::string details;
  std::string longText(40000, '1'), bareDice(20000, 'd');
  EXPECT_THROW(ExpandDice(longText), RuntimeError);
  EXPECT_THROW(ExpandDice(bareDice), RuntimeError);  // grows past the limit
  EXPECT_THROW(ExpandAllDice(longText), RuntimeError);
  EXPECT_THROW(GenerateAllDice(longText, details), RuntimeError);
  EXPECT_THROW(Calc(longText, details), RuntimeError);
  EXPECT_THROW(CalcOutsideQuotes(longText), RuntimeError);
}

TEST_F(Notation, ABreakEndsCalcWithoutAMessage) {
  SetPumpEveryCall(true);
  ui.onPump = [](long n) {
    if (n == 3) runFlags.BreakRequested = true;
  };
  std::string expr = "2+100000000d6", details;
  EXPECT_THROW(Calc(expr, details), BreakSignal);
  EXPECT_TRUE(ui.messages.empty());
  runFlags.BreakEnabled = false;
  expr = "1000d6";
  EXPECT_GE(Calc(expr, details), 1000);
}

}  // namespace
}  // namespace gandrel
