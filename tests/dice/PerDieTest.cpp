#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/Settings.h"
#include "calc/RuntimeError.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "support/EngineFixture.h"

namespace gandrel {
namespace {

double F(double face, double faces) {
  return FaceToRnd(face, faces);
}

class PerDie : public testing::EngineTest {
 protected:
  void SetUp() override {
    EngineTest::SetUp();
    for (std::string s : {"define dFate = -1 to 1", "define dfib = 1,1,2,3,5", "define dq = 5,x,7",
                          "define dab = 1 to 1", "define da = 5,5", "define d1 = 1 to 1"})
      ParseDefine(s);
  }
};

TEST_F(PerDie, BoundsOfATerm) {
  struct Case {
    std::string die;
    double max, min;
  } cases[] = {{"3d6", 18, 3},    {" D20 ", 20, 1}, {"0d6", 0, 0},  {"3d0", 0, 3},
               {"4dfate", 4, -4}, {"2dfib", 10, 2}, {"3dq", 21, 0}, {"2.5d6", 15, 2.5},
               {"2dab", 2, 2},    {"2da", 10, 10}};
  for (auto& c : cases) {
    std::string die = c.die;
    EXPECT_EQ(GetMaxResult(die), c.max) << c.die;
    EXPECT_EQ(GetMinResult(die), c.min) << c.die;
    EXPECT_EQ(die, c.die);
  }
  std::string noDie = "7", huge = std::string(200, '9') + "d" + std::string(200, '9');
  EXPECT_THROW(GetMaxResult(noDie), RuntimeError);
  EXPECT_THROW(GetMinResult(noDie), RuntimeError);
  EXPECT_THROW(GetMaxResult(huge), RuntimeError);
}

TEST_F(PerDie, BreakOutDiceLetsTheRangeTypeDecide) {
  struct Case {
    std::string expr, before, term, after;
  } cases[] = {{" 2 + 3d6 * 2 ", "2 +", "3d6", "* 2"},
               {"2dab", "", "2dab", ""},  // Define first, unlike a roll
               {"x2d10y", "x", "2d1", "0y"},
               {"d", "", "d", ""}};
  for (auto& c : cases) {
    std::string before = "?", term = "?", after = "?";
    BreakOutDice(c.expr, before, term, after);
    EXPECT_EQ(before + "|" + term + "|" + after, c.before + "|" + c.term + "|" + c.after);
  }
  std::string expr = "12", before, term, after;
  EXPECT_THROW(BreakOutDice(expr, before, term, after), RuntimeError);
}

TEST_F(PerDie, ReplaceDiceListsEveryDie) {
  struct Case {
    std::string in;
    std::vector<double> rnd;
    std::string out, details;
  } cases[] = {
      {"7", {}, "+7", ""},
      {"+7", {}, "+7", ""},
      {"0d6", {}, "+", "0d6= = 0\r\n"},
      {"2d6+3", {F(5, 6), F(2, 6)}, "+5+2+3", "2d6= +5+2= 7\r\n"},
      {"2d6+-1d4", {F(5, 6), F(2, 6), F(3, 4)}, "+5+2+-+3", "2d6= +5+2= 7\r\n1d4= +3= 3\r\n"},
      {"3*2d6", {F(5, 6), F(2, 6)}, "+3*+5+2", "2d6= +5+2= 7\r\n"}};
  for (auto& c : cases) {
    ScriptRandom(c.rnd);
    std::string expr = c.in, details;
    ReplaceDice(expr, details);
    EXPECT_EQ(expr, c.out) << c.in;
    EXPECT_EQ(details, c.details) << c.in;
  }
}

TEST_F(PerDie, MinusSignsAndDieTypes) {
  for (auto [in, out] : std::vector<std::pair<std::string, std::string>>{
           {"10-2-1", "10+-2+-1"}, {"-5", "+-5"}, {"7", "7"}}) {
    ExpandMinusSigns(in);
    EXPECT_EQ(in, out);
  }
  for (auto [in, out] : std::vector<std::pair<std::string, std::string>>{
           {"2DFATE", "dFate"}, {"3dfib", "dfib"}, {"3d6", "6"}, {"3d", ""}, {"2d10", "d1"}}) {
    EXPECT_EQ(GetDieType(in), out) << in;
  }
  std::string noDie = "12";
  EXPECT_THROW(GetDieType(noDie), RuntimeError);
}

}  // namespace
}  // namespace gandrel
