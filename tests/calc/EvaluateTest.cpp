#include <gtest/gtest.h>

#include <random>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

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

std::string Nested(int depth) {
  return std::string(depth, '(') + "7" + std::string(depth, ')');
}

std::string Repeat(const std::string& text, int times) {
  std::string out;
  while (times-- > 0)
    out += text;
  return out;
}

struct ValueCase {
  std::string expression;
  double value;
};

// Values are compared exactly: every result is read back from 15-digit text.
class EvaluateTest : public testing::EngineTest {
 protected:
  void ExpectValues(std::span<const ValueCase> cases) {
    for (const ValueCase& c : cases) {
      std::string text = c.expression;
      EXPECT_EQ(Evaluate(text), c.value) << c.expression.substr(0, 40);
      EXPECT_EQ(text, c.expression) << "the caller's text is kept";
    }
    EXPECT_TRUE(ui.messages.empty());
  }
  // The value 0, the "%" in front, and the one message box shown.
  void ExpectFailure(const std::string& expression, const std::string& message) {
    ui.messages.clear();
    std::string text = expression;
    double value = Evaluate(text);
    EXPECT_EQ(std::tuple(value, text, ui.Texts()),
              std::tuple(0.0, "%" + expression, std::vector{message}))
        << expression.substr(0, 40);
  }
};

TEST_F(EvaluateTest, SignsFoldAndPlusIsNeverPartOfAnOperand) {
  const ValueCase cases[] = {{"+5", 5},        {"--5", 5},    {"5-+3", 2},
                             {"5----3", 8},    {"-(-2)", 2},  {"2*+3", 3},
                             {"-12*-3-4", 32}, {"2-3^2", -7}, {"x-1.5E2*.5D1y", 0}};
  ExpectValues(cases);
}

// Comparisons and bitwise operators are two levels each.
TEST_F(EvaluateTest, EveryLevelIsLeftAssociativeAndTakesItsOperatorsFromTheLeft) {
  const ValueCase cases[] = {{"2^3^2", 64},  {"-2^2", 4},      {"3^-2", 0.111111111111111},
                             {"8/2/2", 2},   {"10\\3/2", 1.5}, {"7MOD4*2", 6},
                             {"10-2+3", 11}, {"3>2>1", 0},     {"2=2<>0", 0},
                             {"1|0&0", 0}};
  ExpectValues(cases);
}

// "mod" in lower case is no operator; "\", MOD, "|" and "&" round their
// operands half to even.
TEST_F(EvaluateTest, OperatorsAndHalfToEvenOperands) {
  const ValueCase cases[] = {{"7MOD3", 1}, {"7mod3", 7}, {"-7\\2", -3}, {"-7MOD3", -1},
                             {"3>=3", -1}, {"3<>3", 0},  {"3<=2", 0},   {"5>=", -1},
                             {"6|1", 7},   {"6&3", 2},   {"2.5\\1", 2}, {"7\\3.5", 1},
                             {"3.5|0", 4}, {"2.5&3", 2}};
  ExpectValues(cases);
}

// The shortcut compares lengths only; parentheses imply no operator; text
// that is no number reads as 0.
TEST_F(EvaluateTest, TheShortcutParenthesesWhitespaceAndText) {
  const ValueCase cases[] = {{"1E4+1", 10000},  {"1E3+1", 1001}, {"&", 0},     {"1E-3*2", -5},
                             {"1E15*10+1", 18}, {"((2))", 2},    {"2(3)", 23}, {"0.1+0.2", 0.3},
                             {"1\t+\r\n2", 3},  {"1 2", 12},     {"abc+1", 0}, {"a-1", 0},
                             {"1+abc", 1}};
  ExpectValues(cases);
}

// Every step is written as text of 15 digits, and read back; the 32-bit
// edges of "\" and MOD.
TEST_F(EvaluateTest, FifteenDigitStepsAndLongOperands) {
  const ValueCase cases[] = {{"2/3", 0.666666666666667},
                             {"1/3*3", 0.999999999999999},
                             {"123456789012345678+0", 123456789012345678.0},
                             {"123456789012345678+00", 1.23456789012346E+17},
                             {"123456789012345678", 123456789012345678.0},
                             {"1234567890123456+0", 1.23456789012346E+15},
                             {"999999999999999+1", 1e15},
                             {"-2147483648MOD-1", 0},
                             {"-2147483648\\1", -2147483648.0}};
  ExpectValues(cases);
}

// The length that counts is the stripped one.
TEST_F(EvaluateTest, LongInput) {
  const ValueCase cases[] = {{"1" + Repeat("+1", 9999), 10000},
                             {"2" + Repeat("*1-1+1", 2999), 2},
                             {std::string(40000, ' ') + "1+1", 2},
                             {Nested(199), 7}};
  ExpectValues(cases);
}

TEST_F(EvaluateTest, RunTimeErrorsShowAMessageAndFail) {
  for (std::string expression :
       {"1E400", "1E200*1E200", "2147483648\\1", "-2147483648\\-1", "0&-2147483649", "(1E400)+1"})
    ExpectFailure(expression, kOverflow);  // "(1E400)" shows it from the inner evaluation only
  ExpectFailure("1+" + std::string(32766, ' ') + std::string(32766, '1'), kOverflow);
  ExpectFailure("5MOD0.5", ErrorText("Division by zero"));
  ExpectFailure("(-8)^(1/3)", ErrorText("Invalid procedure call or argument"));
  ExpectFailure(Nested(200), ErrorText("Out of stack space"));
}

// Each failure: the value 0, "%" in front of the caller's text, and its
// cause; a part's own cause goes up through its parentheses. Only the
// run-time errors show a message. Asking why changes nothing.
TEST_F(EvaluateTest, FailuresNameTheirCause) {
  const struct {
    const char* expression;
    EvalFault fault;
    const char* op;
  } cases[] = {
      {"", EvalFault::Empty, ""},
      {"2*()", EvalFault::Empty, ""},
      {"(1+2", EvalFault::UnpairedParentheses, ""},
      {")1+2(", EvalFault::UnclosedParenthesis, ""},
      {"(5%)", EvalFault::PercentInParentheses, ""},
      {">=5", EvalFault::OperatorFirst, ">="},
      {"5=", EvalFault::OperatorLast, "="},
      {"(2-)*3", EvalFault::OperatorLast, "-"},
      {"2*(1/0)", EvalFault::DivisionByZero, "/"},
      {"5MOD0", EvalFault::DivisionByZero, "MOD"},
      {"1E400", EvalFault::RunTimeError, ""},
      {"2+3", EvalFault::None, ""},
      {"(5)%", EvalFault::None, ""},
  };
  for (const auto& c : cases) {
    std::string plain = c.expression, asked = c.expression;
    EvalFailure failure{EvalFault::RollFailed, "x"};  // every call starts afresh
    double plainValue = Evaluate(plain), value = Evaluate(asked, failure);
    EXPECT_EQ(std::tuple(value, asked, failure.fault, failure.op),
              std::tuple(plainValue, plain, c.fault, std::string_view(c.op)))
        << c.expression;
    if (c.fault != EvalFault::None) {
      EXPECT_EQ(std::pair(value, plain), std::pair(0.0, "%" + std::string(c.expression)));
    }
  }
  EXPECT_EQ(ui.messages.size(), 2u);  // the run-time error, asked and not
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
