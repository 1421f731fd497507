#include <gtest/gtest.h>

#include <random>
#include <string>

#include "calc/Basic.h"
#include "calc/modEvaluate.h"
#include "support/EngineFixture.h"

namespace gandrel {
namespace {

const std::string kOverflow = "I'm sorry, but the result calculated is too big for me to handle.";

std::string ErrorText(const std::string& description) {
  return "I'm sorry, but the following error has occurred:\r" + description +
         "\r\rIf performing a complex calculation, please simplify or use smaller numbers.";
}

struct ValueCase {
  const char* expression;
  double value;
};

// Values are compared exactly: every result is read back from 15-digit text.
class EvaluateTest : public testing::EngineTest {
 protected:
  void ExpectValues(std::initializer_list<ValueCase> cases) {
    for (const ValueCase& c : cases) {
      std::string text = c.expression;
      EXPECT_EQ(Evaluate(text), c.value) << c.expression;
      EXPECT_EQ(text, c.expression) << "the caller's text is kept";
    }
    EXPECT_TRUE(ui.messages.empty());
  }
};

// The tables below are packed by hand, several cases to a line.
// clang-format off
TEST_F(EvaluateTest, SignsFoldAndPlusIsNeverPartOfAnOperand) {
  ExpectValues({
      {"+5", 5}, {"-5", -5}, {"--5", 5}, {"5--3", 8}, {"5-+3", 2}, {"5---3", 2}, {"5----3", 8},
      {"+--5", 5}, {"-(-2)", 2}, {"2*--3", 3}, {"2*+3", 3}});
}

TEST_F(EvaluateTest, EveryLevelIsLeftAssociativeAndTakesItsOperatorsFromTheLeft) {
  ExpectValues({
      {"2^3^2", 64}, {"-2^2", 4}, {"3^-2", 0.111111111111111}, {"3^2*2", 18}, {"2*-3", -6},
      {"8/2/2", 2}, {"10\\3/2", 1.5}, {"7MOD4*2", 6}, {"2*7MOD4", 2}, {"10-2-3", 5}, {"10-2+3", 11},
      {"3+4*2-1", 10}, {"3>2>1", 0}, {"1<2<3", -1}, {"2=2<>0", 0}, {"2<3=-1", -1}, {"1+1=2", -1},
      {"1|0&0", 0}, {"6&3|8", 10}, {"1|2=2", -1}});
}

TEST_F(EvaluateTest, Operators) {
  ExpectValues({
      {"7MOD3", 1}, {"7mod3", 7}, {"7\\2", 3}, {"-7\\2", -3}, {"7\\-2", -3}, {"-7MOD3", -1},
      {"7MOD-3", 1}, {"-2147483648MOD-1", 0}, {"-2147483648\\1", -2147483648.0}, {"3>=3", -1},
      {"3<>3", 0}, {"3<=2", 0}, {"2>1", -1}, {"5>=", -1}, {"5<>", -1}, {"5<=", 0}, {"6|1", 7},
      {"6&3", 2}, {"-1&0", 0}});
}

TEST_F(EvaluateTest, IntegerOperandsRoundHalfToEven) {
  ExpectValues({
      {"5.5\\2", 3}, {"2.5\\1", 2}, {"-2.5\\1", -2}, {"7\\2.5", 3}, {"7\\3.5", 1}, {"5.5MOD4", 2},
      {"4.5MOD3", 1}, {"2.5|1", 3}, {"3.5|0", 4}, {"2.5&3", 2}, {"3.5&3", 0}});
}

TEST_F(EvaluateTest, ParenthesesImplyNoOperator) {
  ExpectValues({
      {"(1+2)*3", 9}, {"((2))", 2}, {"2(3)", 23}, {"(2)(3)", 23}, {"(1+2)^(1+1)", 9}});
}

TEST_F(EvaluateTest, TheShortcutComparesLengthsOnly) {
  ExpectValues({
      {"1E4+1", 10000}, {"1E3+1", 1001}, {"123456789012345678+0", 123456789012345678.0}, {"&", 0},
      {"1E-3*2", -5}, {"1E15*10+1", 18}, {"1/100000+1", -3}});
}

TEST_F(EvaluateTest, ResultsPassThroughFifteenDigitText) {
  ExpectValues({
      {"1/3", 0.333333333333333}, {"2/3", 0.666666666666667}, {"1/3*3", 0.999999999999999},
      {"0.1+0.2", 0.3}, {"123456789012345678+00", 1.23456789012346E+17},
      {"123456789012345678", 123456789012345678.0}, {"1/100000", 1e-5}, {"1E15*10", 1e16},
      {"999999999999999+0", 999999999999999}, {"999999999999999+1", 1e15},
      {"-999999999999999-1", -1e15}, {"1234567890123456+0", 1.23456789012346E+15}, {"-0*1", 0},
      {"0012+1", 13}, {"12.+1", 13}, {"1D2+1", 101}, {"1D3", 1000}});
}

TEST_F(EvaluateTest, WhitespaceGoesAndTextThatIsNoNumberReadsAsZero) {
  ExpectValues({
      {" 1 + 2 ", 3}, {"1\t+\r\n2", 3}, {"1 2", 12}, {"7 MOD 3", 1}, {"abc+1", 0}, {"a-1", 0},
      {"1+abc", 1}, {"3d6", 3}, {"1e3", 1}, {"True", 0}, {"a^2", 0}});
}

TEST_F(EvaluateTest, SilentFailures) {
  const char* cases[] = {
      "", "+", " ", "1/0", "5MOD0", "5\\0", "5MOD", "(1+2", ")1+2(", "()", "(1))((2)", "^5", "5^",
      "5*", "*5", "5+", "5-", "1++", "5=", ">=5", "|1", "1|", "(5%)", "2*(1/0)", "1+(2+(3^))"};
  for (const char* expression : cases) {
    std::string text = expression;
    EXPECT_EQ(Evaluate(text), 0) << expression;
    EXPECT_EQ(text, std::string("%") + expression);
  }
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(EvaluateTest, RunTimeErrorsShowAMessageAndFail) {
  const std::string byZero = ErrorText("Division by zero");
  const std::string invalid = ErrorText("Invalid procedure call or argument");
  const struct {
    std::string expression, message;
  } cases[] = {
      {"1E400", kOverflow}, {"1+1E400", kOverflow}, {"1E200*1E200", kOverflow},
      {"1E308+1E308", kOverflow}, {"1E308/.1", kOverflow}, {"0^-1", kOverflow},
      {"2147483648\\1", kOverflow}, {"-2147483648\\-1", kOverflow}, {"1\\2147483648", kOverflow},
      {"2147483648|0", kOverflow}, {"0&-2147483649", kOverflow}, {"5\\0.4", byZero},
      {"5MOD0.5", byZero}, {"(-8)^(1/3)", invalid}, {"-8^.5", invalid},
      {"(1E400)+1", kOverflow},  // shown by the inner evaluation only
      {std::string(40000, '1'), kOverflow},
      {"1+" + std::string(32766, ' ') + std::string(32766, '1'), kOverflow}};
  for (const auto& c : cases) {
    ui.messages.clear();
    std::string text = c.expression;
    EXPECT_EQ(Evaluate(text), 0) << c.expression.substr(0, 40);
    EXPECT_EQ(text, "%" + c.expression);
    ASSERT_EQ(ui.messages.size(), 1u) << c.expression.substr(0, 40);
    EXPECT_EQ(ui.messages[0].text, c.message) << c.expression.substr(0, 40);
    EXPECT_EQ(ui.messages[0].title, "Gandrel");
    EXPECT_EQ(ui.messages[0].buttons, MsgButtons::Ok);
  }
}
// clang-format on

std::string Nested(int depth) {
  return std::string(depth, '(') + "7" + std::string(depth, ')');
}

TEST_F(EvaluateTest, DeepNestingIsRefusedWithoutExhaustingTheStack) {
  std::string deepest = Nested(199), tooDeep = Nested(200);
  EXPECT_EQ(Evaluate(deepest), 7);
  EXPECT_TRUE(ui.messages.empty());
  EXPECT_EQ(Evaluate(tooDeep), 0);
  EXPECT_EQ(tooDeep, "%" + Nested(200));
  EXPECT_EQ(ui.Texts(), std::vector<std::string>{ErrorText("Out of stack space")});
}

TEST_F(EvaluateTest, LongTexts) {
  std::string sum = "1", mixed = "2", padded = std::string(40000, ' ') + "1+1";
  for (int i = 1; i < 10000; ++i)
    sum += "+1";
  for (int i = 1; i < 3000; ++i)
    mixed += "*1-1+1";
  EXPECT_EQ(Evaluate(sum), 10000);
  EXPECT_EQ(Evaluate(mixed), 2);
  EXPECT_EQ(Evaluate(padded), 2);  // the length that counts is the stripped one
}

TEST_F(EvaluateTest, SplitsPeelsNumbersOffBothSides) {
  const struct {
    int op;
    const char *left, *right;
    double leftArg, rightArg;
    const char *leftRest, *rightRest;
  } cases[] = {{2, "a+12", "34b", 12, 34, "a+", "b"},
               {2, "-12", "-3-4", -12, -3, "", "-4"},
               {1, "5", "-3", 5, 0, "", "-3"},
               {2, "1E-3", "2", 3, 2, "1E-", ""},
               {2, "x-1.5E2", ".5D1y", 150, 5, "x-", "y"},
               {2, "-", "e", 0, 0, "", "e"}};
  for (const auto& c : cases) {
    std::string left = c.left, right = c.right;
    double leftArg = -99, rightArg = -99;
    Splits(c.op, left, right, leftArg, rightArg);
    EXPECT_EQ(leftArg, c.leftArg) << c.left;
    EXPECT_EQ(rightArg, c.rightArg) << c.right;
    EXPECT_EQ(left, c.leftRest);
    EXPECT_EQ(right, c.rightRest);
  }
}

TEST_F(EvaluateTest, FindCloseParen) {
  const struct {
    const char* text;
    int position;
  } cases[] = {{"()", 2}, {"(a(b)c)d", 7}, {"(((", 0}, {"(()", 0}, {"(x))", 3}};
  for (const auto& c : cases)
    EXPECT_EQ(FindCloseParen(c.text), c.position) << c.text;
}

// Folding as a literal rewrite: first occurrence replaced, search restarted.
std::string FoldSignsByRewriting(std::string text) {
  const char* pairs[4][2] = {{"++", "+"}, {"--", "+"}, {"-+", "-"}, {"+-", "-"}};
  for (auto& pair : pairs)
    for (long p; (p = InStr(text, pair[0])) > 0;)
      text = Left(text, p - 1) + pair[1] + Mid(text, p + 2);
  return text;
}

TEST_F(EvaluateTest, FoldSignsRunsEachPassOnce) {
  const struct {
    const char *in, *out;
  } cases[] = {{"+--5", "++5"}, {"---", "-"}, {"----", "++"}, {"1-+-2", "1--2"}, {"+-+-", "--"}};
  for (const auto& c : cases) {
    std::string text = c.in;
    FoldSigns(text);
    EXPECT_EQ(text, c.out) << c.in;
  }
  std::mt19937 random(7);
  for (int n = 0; n < 5000; ++n) {
    std::string text, folded;
    for (size_t length = random() % 12; length > 0; --length)
      text += "+-1"[random() % 3];
    FoldSigns(folded = text);
    ASSERT_EQ(folded, FoldSignsByRewriting(text)) << text;
  }
}

}  // namespace
}  // namespace gandrel
