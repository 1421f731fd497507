#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "calc/EngineSettings.h"
#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"
#include "dice/DiceText.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "dice/modPARSER.h"
#include "support/EngineFixture.h"

namespace gandrel {
namespace {

const std::string kTooBig = "I'm sorry, but the die result generated is too big for me to handle.";
std::string Failure(const std::string& description) {
  return "I'm sorry, but the following error has occurred:\r" + description +
         "\r\rIf rolling a huge die, or number of dice, please use something smaller.";
}
double F(double face, double faces) {
  return FaceToRnd(face, faces);
}

// Both tables in lookup order: "name:lo..hi" for ranges, "name=items" for lists.
std::string Tables() {
  std::string out;
  for (size_t i = 1; i < dieTypes.Define.size(); ++i)
    out += dieTypes.Define[i].Name + ":" + std::to_string(dieTypes.Define[i].Lo) + ".." +
           std::to_string(dieTypes.Define[i].Hi) + " ";
  for (size_t i = 1; i < dieTypes.DefSeq.size(); ++i)
    out += dieTypes.DefSeq[i].Name + "=" + dieTypes.DefSeq[i].Dice + " ";
  return out;
}

// Defined types every rolling case may meet; the die type is the default "6".
class Roll : public testing::EngineTest {
 protected:
  void SetUp() override {
    EngineTest::SetUp();
    for (std::string s :
         {"define dFate = -1 to 1", "define dfib = 1,1,2,3,5", "define dl = 2, 7,,x,1.5",
          "define dw = -2147483648 to 2147483647", "define dbad = 1,1E400", "define dab = 1 to 1",
          "define da = 5,5", "define d1 = 1 to 1"})
      ParseDefine(s);
  }
};

// Longer names sort first. The exchange sort never swaps equal lengths
// directly: [da, db, dcc] becomes [dcc, db, da] by da's exchange with dcc.
TEST_F(Roll, DefineStatements) {
  const struct {
    std::vector<std::string> statements;
    const char* tables;
  } cases[] = {
      {{"define fate = 1 to -1", "define dfib = 1,1,2,3,5", "define dx = 7", "define nothing here"},
       "dfate:-1..1 dfib=1,1,2,3,5 "},
      {{"define dFudge = -1 to 1", "define DFUDGE = -2 to 2"}, "DFUDGE:-2..2 "},
      {{"define dh = 2.5 to 3.5", "define dc = 1,2 to 3", "define = 1 to 2"},
       "dh:2..4 dc:1..3 d:1..2 "},
      {{"define d1 = 1 to 1", "define d10 = 0 to 9", "define dfudge = -1 to 1"},
       "dfudge:-1..1 d10:0..9 d1:1..1 "},
      {{"define da = 1 to 2", "define db = 1 to 2", "define dcc = 1 to 2"},
       "dcc:1..2 db:1..2 da:1..2 "}};
  for (const auto& c : cases) {
    ClearDieTypes();
    for (std::string statement : c.statements)
      ParseDefine(statement);
    EXPECT_EQ(Tables(), c.tables) << c.statements[0];
  }
  std::string tooWide = "define dbig = 1 to 3000000000";
  EXPECT_THROW(ParseDefine(tooWide), RuntimeError);
}

// A define statement with a name of a few letters that collide in other
// case, blanks that are trimmed and tabs and inner blanks that are kept, and
// a range, a list, nothing, or a bound too large.
std::string RandomStatement(std::mt19937& rng) {
  static const char* const heads[] = {"define ", "Define ", "DEFINE:", "defined"};
  static const char* const facesTexts[] = {"1 to 6", "6 TO 1",    "-1 to 1", "2.5 to 3.5",
                                           "1,2",    "1,1,2,3,5", ",",       "1,2 to 3",
                                           "7",      "",          "x,y",     "1 to 3e9"};
  static const char letters[] = "aAbBdD \t";
  auto pick = [&rng](size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(rng); };
  std::string name;
  for (size_t n = pick(4); n > 0; --n)
    name += letters[pick(sizeof letters - 1)];
  std::string statement = heads[pick(4)] + name;
  if (pick(10) > 0) statement += pick(2) ? " = " : "=";
  return statement + facesTexts[pick(std::size(facesTexts))];
}

// ParseDefines is ParseDefine on each statement in turn, only faster: the
// same tables in the same order, the same statements refused. Tables start
// empty, from earlier statements, or in an order no sort left them in.
TEST_F(Roll, ManyStatementsAtOnceAsOneByOne) {
  std::mt19937 rng(2024);
  for (int round = 0; round < 3000; ++round) {
    std::vector<std::string> statements(std::uniform_int_distribution<size_t>(0, 40)(rng));
    for (std::string& statement : statements)
      statement = RandomStatement(rng);
    ClearDieTypes();
    if (round % 3 == 1) {
      for (int k = 0; k < 8; ++k) {
        std::string statement = RandomStatement(rng);
        TrapRuntimeError([&] { ParseDefine(statement); });
      }
    } else if (round % 3 == 2) {
      dieTypes.Define = {{}, {"da", 1, 1}, {"dbbb", 2, 2}, {"dc", 3, 3}, {"dee", 4, 4}};
      dieTypes.DefSeq = {{}, {"dx", "1,2"}, {"dxyz", "3,4"}};
    }
    std::vector<RangeType> startRanges = dieTypes.Define;
    std::vector<ListType> startLists = dieTypes.DefSeq;

    std::vector<std::string> refused, refusedAtOnce;
    for (std::string statement : statements)
      if (TrapRuntimeError([&] { ParseDefine(statement); })) refused.push_back(statement);
    std::string oneByOne = Tables();

    dieTypes.Define = startRanges;
    dieTypes.DefSeq = startLists;
    ParseDefines(statements, [&](const std::string& statement, const RuntimeError& error) {
      EXPECT_EQ(error.Number(), ErrNo::Overflow);
      refusedAtOnce.push_back(statement);
    });
    ASSERT_EQ(Tables(), oneByOne) << "round " << round;
    ASSERT_EQ(refusedAtOnce, refused) << "round " << round;
  }
}

TEST_F(Roll, ExpandDiceGivesBareDiceTheDefaultDie) {
  struct Case {
    std::string dieType, define, in, out;
  } cases[] = {{"6", "", "3d+D+3d6+d%", "3d6+D6+3d6+d6%"},
               {"dd", "", "2d", "2dd"},
               {"dfudge", "define dfudge = -1 to 1", "2d+d", "2dfudge+dfudge"},
               {"6", "define dfudge = -1 to 1", "4dfudged", "4dfudged6"},
               {"6", "define dfu = 1,2", "dfudge", "dfud6ge"}};
  for (auto& c : cases) {
    ClearDieTypes();
    if (!c.define.empty()) ParseDefine(c.define);
    engineSettings.DieType = c.dieType;
    std::string expr = c.in;
    ExpandDice(expr);
    EXPECT_EQ(expr, c.out) << c.in << " with " << c.dieType;
  }
  std::string line = "d\"d\"d\"x\"2d\"d";  // with the last case's die "6"
  ExpandAllDice(line);
  EXPECT_EQ(line, "d6\"d\"d6\"x\"2d6\"d");
}

// A count is the run of digits right before "d" ("2.5d6", "3 d6"); the
// range type d1 (1 to 1) stands where "2d10" has its size.
TEST_F(Roll, CalcRollsEveryTermAndReportsTheEvaluation) {
  const struct {
    std::string in;
    std::vector<double> rnd;
    std::string out, details;
    double value;
  } cases[] = {
      {"3d6+2", {F(4, 6), F(1, 6), F(6, 6)}, "11+2", "3d6= +4+1+6= 11\r\nCalc: 11+2=13", 13},
      {"2d10", {}, "20", "2d1= +1+1= 2\r\nCalc: 20=20", 20},
      {"2.5d6", {0, 0, 0, 0, 0}, "2.5", "5d6= +1+1+1+1+1= 5\r\nCalc: 2.5=2.5", 2.5},
      {"3 d6", {F(4, 6)}, "3 4", "d6= +4= 4\r\nCalc: 3 4=34", 34},
      {"d*3d", {.5, .1, .2, .3}, "1*3", "d= +1= 1\r\n3d= +1+1+1= 3\r\nCalc: 1*3=3", 3},
      {"2dab", {}, "10b", "2da= +5+5= 10\r\nCalc: 10b=10", 10},  // the list type da ends the term
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
  EXPECT_EQ(ui.Texts(), std::vector<std::string>{kTooBig});
}

// Asking why changes nothing of the roll; a failed roll is named as such,
// not as the evaluator's failure on "<error>".
TEST_F(Roll, CalcNamesWhyItFailed) {
  const struct {
    std::string in;
    EvalFault fault;
  } cases[] = {{"3d6+2", EvalFault::None},
               {"(2d6", EvalFault::UnpairedParentheses},
               {"1+1dw", EvalFault::RollFailed},
               {"2d6\"(x\"", EvalFault::UnpairedParentheses}};
  const std::vector<double> faces = {F(4, 6), F(1, 6), F(6, 6), F(2, 6)};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.in);
    std::string plain = c.in, asked = c.in, plainDetails, askedDetails;
    ScriptRandom(faces);
    double value = Calc(plain, plainDetails);
    ScriptRandom(faces);
    EvalFailure failure;
    double askedValue = Calc(asked, askedDetails, failure);
    EXPECT_EQ(std::tuple(askedValue, asked, askedDetails, failure.fault),
              std::tuple(value, plain, plainDetails, c.fault));
  }
}

TEST_F(Roll, CalcOutsideQuotesCalculatesEachStretch) {
  for (auto [in, out] : {std::pair{"2+3 \"abc\"", "5\"abc\""},
                         {"\"x\" 1d1 \"y\" ", "\"x\"1\"y\" "},
                         {"2d1*2", "4"}}) {
    std::string line = in;
    CalcOutsideQuotes(line);
    EXPECT_EQ(line, out) << in;
  }
}

TEST_F(Roll, TextsBeyondSixteenBitPositionsOverflow) {
  std::string details, longText(40000, '1'), bareDice(20000, 'd');
  EXPECT_THROW(ExpandDice(longText), RuntimeError);
  EXPECT_THROW(ExpandDice(bareDice), RuntimeError);  // grows past the limit
  EXPECT_THROW(ExpandAllDice(longText), RuntimeError);
  EXPECT_THROW(GenerateAllDice(longText, details), RuntimeError);
  EXPECT_THROW(Calc(longText, details), RuntimeError);
  EXPECT_THROW(CalcOutsideQuotes(longText), RuntimeError);
}

TEST_F(Roll, ABreakEndsCalcWithoutAMessage) {
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

// List items are read without trimming; a range's width is only formed for a
// die, and a list item only read when rolled. Past 2^53 the sum is a double.
TEST_F(Roll, DetailLinesGoInFrontOfTheDetails) {
  const struct {
    std::string die;
    std::vector<double> rnd;
    std::string line;
    double total;
  } cases[] = {
      {" d6", {F(3, 6)}, " d6= +3= 3\r\n", 3},
      {"2.9d6", {F(2, 6), F(5, 6)}, "2.9d6= +2+5= 7\r\n", 7},
      {"2d9007199254740992",
       {.5, 0},
       "2d9007199254740992= +4.5035996273705E+15+1= 4.5035996273705E+15\r\n",
       4503599627370498},
      {"5dFate", {F(1, 3), F(2, 3), F(3, 3), F(3, 3), 0}, "5dFate= +-1+0+1+1+-1= 0\r\n", 0},
      {"5dl", {F(1, 5), F(2, 5), F(3, 5), F(4, 5), F(5, 5)}, "5dl= +2+7+0+0+1.5= 10.5\r\n", 10.5},
      {"0dw", {}, "0dw= = 0\r\n", 0},
      {"1dbad", {F(1, 2)}, "1dbad= +1= 1\r\n", 1}};
  for (const auto& c : cases) {
    ScriptRandom(c.rnd);
    std::string die = c.die, details = "old";
    double total = GetDieResult(die, details);
    EXPECT_EQ(std::tuple(total, details, die), std::tuple(c.total, c.line + "old", c.die));
  }
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(Roll, FailuresShowTheirMessageAndMarkTheTerm) {
  std::string nines(400, '9');
  const struct {
    std::string die;
    std::vector<double> rnd;
    std::string message;
  } cases[] = {
      {"1dw", {}, kTooBig},                                      // range wider than 32 bits
      {nines + "d6", {}, kTooBig},                               // count too large to read
      {"2d" + nines.substr(0, 308), {.99, .99}, kTooBig},        // total beyond a double
      {"1dbad", {F(2, 2)}, kTooBig},                             // item too large to read
      {std::string(40000, '1') + "d6", {}, kTooBig},             // beyond 16-bit positions
      {"5", {}, Failure("Invalid procedure call or argument")},  // no "d": no count to read
      {"100d6", {}, Failure("Out of memory")}};                  // dice list beyond the limit
  maxDiceText = 50;
  for (const auto& c : cases) {
    for (bool listed : {false, true}) {
      ui.messages.clear();
      ScriptRandom(c.rnd);
      std::string die = c.die, details = "old", dice = "x";
      double total = listed ? LongGetDieResults(die, dice, details) : GetDieResult(die, details);
      ASSERT_EQ(std::tuple(total, die + details, dice, ui.Texts()),
                std::tuple(0, "<error>old", listed ? "" : "x", std::vector{c.message}))
          << c.die.substr(0, 20);
    }
  }
}

TEST_F(Roll, ParseListKeepsEveryToken) {
  const struct {
    std::string text, delimiter;
    std::vector<std::string> items;
  } cases[] = {{"a,b,,c", ",", {"", "a", "b", "", "c"}},
               {"", ",", {"", ""}},
               {"a--b-c", "--", {"", "a", "b-c"}},
               {"a,b", "", {"", "a,b"}}};
  std::vector<std::string> items;
  int16_t count = 0;
  for (const auto& c : cases) {
    TokenList split = ParseList(c.text, c.delimiter, count, items);
    EXPECT_EQ(items, c.items) << c.text;
    EXPECT_EQ(GetListItem(split, count) + GetListItem(split, count + 1), c.items.back());
  }
  // A split held by its caller keeps its pieces while a list die is rolled.
  TokenList held = ParseList("x,y", ",", count, items);
  std::string statement = "define dl = 7,8,9", roll = "4dl", dropped;
  ParseDefine(statement);
  Calc(roll, dropped);
  EXPECT_EQ(std::tuple(GetListCount(held), GetListItem(held, 2)), std::tuple(2, "y"));
  EXPECT_THROW(ParseList(std::string(40000, ','), ",", count, items), RuntimeError);
}

TEST_F(Roll, DiceTextMatchesFormatNumber) {
  for (double v : {0.0, -0.0, 7.0, -12.0, 999999999999999.0, -999999999999999.0, 1e15, 2.5, -0.25,
                   1e300, 1e-7})
    EXPECT_EQ(NumberText(v), FormatNumber(v)) << v;
}

TEST_F(Roll, BoundsOfATerm) {
  struct Case {
    std::string die;
    double max, min;
  } cases[] = {{" D20 ", 20, 1},   {"3d0", 0, 3},  {"4dfate", 4, -4}, {"3dl", 21, 0},
               {"2.5d6", 15, 2.5}, {"2dab", 2, 2}, {"2da", 10, 10}};
  for (auto& c : cases) {
    std::string die = c.die;
    EXPECT_EQ(std::tuple(GetMaxResult(die), GetMinResult(die), die),
              std::tuple(c.max, c.min, c.die));
  }
  std::string noDie = "7", huge = std::string(200, '9') + "d" + std::string(200, '9');
  EXPECT_THROW(GetMinResult(noDie), RuntimeError);
  EXPECT_THROW(GetMaxResult(huge), RuntimeError);
}

TEST_F(Roll, ReplaceDiceListsEveryDie) {
  struct Case {
    std::string in;
    std::vector<double> rnd;
    std::string out, details;
  } cases[] = {
      {"7", {}, "+7", ""},
      {"+7", {}, "+7", ""},
      {"0d6", {}, "+", "0d6= = 0\r\n"},
      {"2d6+-1d4", {F(5, 6), F(2, 6), F(3, 4)}, "+5+2+-+3", "2d6= +5+2= 7\r\n1d4= +3= 3\r\n"}};
  for (auto& c : cases) {
    ScriptRandom(c.rnd);
    std::string expr = c.in, details;
    ReplaceDice(expr, details);
    EXPECT_EQ(std::pair(expr, details), std::pair(c.out, c.details)) << c.in;
  }
}

// Here a range type decides before a list type, unlike a roll; the digits
// after "d" count only where no defined name stands.
TEST_F(Roll, BreakOutDiceAndGetDieType) {
  const struct {
    std::string expr, cut, type;
  } cases[] = {{" 2 + 3d6 * 2 ", "2 +|3d6|* 2", "6"}, {"2dab", "|2dab|", "dab"},
               {"x2d10y", "x|2d1|0y", "d1"},          {"d", "|d|", ""},
               {"2DFATE", "|2DFATE|", "dFate"},       {"3dfib", "|3dfib|", "dfib"}};
  for (const auto& c : cases) {
    std::string expr = c.expr, before = "?", term = "?", after = "?";
    BreakOutDice(expr, before, term, after);
    EXPECT_EQ(before + "|" + term + "|" + after, c.cut);
    EXPECT_EQ(GetDieType(expr), c.type) << c.expr;
  }
  std::string noDie = "12", before, term, after;
  EXPECT_THROW(BreakOutDice(noDie, before, term, after), RuntimeError);
  EXPECT_THROW(GetDieType(noDie), RuntimeError);
  std::string minus = "10-2-1";
  ExpandMinusSigns(minus);
  EXPECT_EQ(minus, "10+-2+-1");
}

}  // namespace
}  // namespace gandrel
