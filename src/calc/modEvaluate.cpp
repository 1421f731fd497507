#include "calc/modEvaluate.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/NumberText.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"
#include "calc/modGRCalcs.h"

namespace gandrel {

namespace {

// Longer than any text FormatNumber writes ("-1.23456789012345E+100" is 22):
// a working text this long can never pass the shortcut test.
constexpr long kLongestNumberText = 32;

// Parentheses are evaluated by recursion; past this depth the evaluation is
// refused as running out of stack rather than risking the real stack.
constexpr int kMaxNesting = 200;
int nesting = 0;

// Operand characters: digits, the point, and the exponent markers D and E.
bool IsNumberChar(char c) {
  return IsDigit(c) || c == '.' || c == 'D' || c == 'E';
}

bool IsSign(char c) {
  return c == '+' || c == '-';
}

// ---- Number text ------------------------------------------------------------
//
// The working text is read by ReadNumber and written by FormatNumber. Whole
// numbers of up to 15 digits, by far the commonest, are read and written here
// directly: the result is the same, without the general machinery.

constexpr double kPlainWholeLimit = 1e15;  // from here on FormatNumber writes an exponent

// The value of the leading number of text, as ReadNumber gives it.
double ReadValue(std::string_view text) {
  size_t start = !text.empty() && text[0] == '-' ? 1 : 0, i = start;
  int64_t whole = 0;
  while (i < text.size() && IsDigit(text[i]) && i - start < 15)
    whole = whole * 10 + (text[i++] - '0');
  bool plainWhole = i > start && (i == text.size() || !IsNumberChar(text[i]));
  if (!plainWhole) return ReadNumber(text);
  double value = static_cast<double>(whole);
  return start ? -value : value;
}

bool IsPlainWhole(double value) {
  return std::fabs(value) < kPlainWholeLimit &&
         static_cast<double>(static_cast<int64_t>(value)) == value;
}

// The text FormatNumber writes for value.
std::string ValueText(double value) {
  if (!IsPlainWhole(value)) return FormatNumber(value);
  char digits[24];
  auto end = std::to_chars(digits, digits + sizeof digits, static_cast<int64_t>(value)).ptr;
  return std::string(digits, end);
}

// The length of the text FormatNumber writes for value.
long ValueTextLength(double value) {
  if (!IsPlainWhole(value)) return Len(FormatNumber(value));
  auto whole = static_cast<int64_t>(value);
  long length = whole < 0 ? 2 : 1;
  for (whole /= 10; whole != 0; whole /= 10)
    ++length;
  return length;
}

// ---- Sign folding --------------------------------------------------------
//
// Each pass gives the same text as replacing the first occurrence of its pair
// and searching again from the start, but in one sweep.

// "++" to "+": a run of plus signs keeps one.
void FoldPlusRuns(std::string& text) {
  size_t out = 0;
  for (size_t i = 0; i < text.size(); ++i)
    if (!(text[i] == '+' && out > 0 && text[out - 1] == '+')) text[out++] = text[i];
  text.resize(out);
}

// "--" to "+": a run of minus signs is paired from the left; an odd one out
// stays a minus at the end ("---" is "+-").
void FoldMinusPairs(std::string& text) {
  size_t out = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '-' && i + 1 < text.size() && text[i + 1] == '-') {
      text[out++] = '+';
      ++i;
    } else {
      text[out++] = text[i];
    }
  }
  text.resize(out);
}

// "-+" to "-": a minus swallows the plus signs that follow it.
void FoldMinusPlus(std::string& text) {
  size_t out = 0;
  for (size_t i = 0; i < text.size(); ++i)
    if (!(text[i] == '+' && out > 0 && text[out - 1] == '-')) text[out++] = text[i];
  text.resize(out);
}

// "+-" to "-": the plus signs in front of a minus vanish.
void FoldPlusMinus(std::string& text) {
  size_t out = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '-')
      while (out > 0 && text[out - 1] == '+')
        --out;
    text[out++] = text[i];
  }
  text.resize(out);
}

bool HasSignPair(std::string_view text) {
  for (size_t i = 1; i < text.size(); ++i)
    if (IsSign(text[i]) && IsSign(text[i - 1])) return true;
  return false;
}

// ---- Operands --------------------------------------------------------------

// How many characters at the end of left form the left operand: number
// characters, and a "-" only when it is the very first character of left.
size_t LeftOperandLength(std::string_view left) {
  size_t n = left.size(), taken = 0;
  while (taken < n) {
    char c = left[n - 1 - taken];
    if (IsNumberChar(c)) {
      ++taken;
      continue;
    }
    if (c == '-' && taken == n - 1) ++taken;
    break;
  }
  return taken;
}

// How many characters at the start of right form the right operand. Except at
// the add level, a "-" in the first place belongs to the number.
size_t RightOperandLength(int op, std::string_view right) {
  size_t taken = 0;
  while (taken < right.size()) {
    char c = right[taken];
    if (!IsNumberChar(c) && !(op != 1 && c == '-' && taken == 0)) break;
    ++taken;
  }
  return taken;
}

// ---- Arithmetic ------------------------------------------------------------

double Truth(bool holds) {
  return holds ? -1.0 : 0.0;
}

// "\" and MOD work on the operands rounded to 32 bits, in 64 bits so that
// -2147483648 \ -1 is an overflow and -2147483648 MOD -1 is 0.
double IntegerDivide(double left, double right, bool remainder) {
  int64_t a = CLng(left), b = CLng(right);
  if (b == 0) Raise(ErrNo::DivisionByZero);
  if (remainder) return static_cast<double>(a % b);
  int64_t quotient = a / b;
  if (quotient > INT32_MAX || quotient < INT32_MIN) Raise(ErrNo::Overflow);
  return static_cast<double>(quotient);
}

// The value of left op right; nothing when the operation fails silently
// (division, integer division or MOD by a right operand of exactly 0).
std::optional<double> Apply(std::string_view op, double left, double right) {
  double value = 0;
  switch (op[0]) {
    case '^':
      value = std::pow(left, right);
      break;
    case '*':
      value = left * right;
      break;
    case '/':
      if (right == 0) return std::nullopt;
      value = left / right;
      break;
    case '\\':
    case 'M':
      if (right == 0) return std::nullopt;
      value = IntegerDivide(left, right, op[0] == 'M');
      break;
    case '+':
      value = left + right;
      break;
    case '-':
      value = left - right;
      break;
    case '>':
      value = Truth(op == ">=" ? left >= right : left > right);
      break;
    case '<':
      value = Truth(op == "<=" ? left <= right : op == "<>" ? left != right : left < right);
      break;
    case '=':
      value = Truth(left == right);
      break;
    case '|':
    case '&': {
      int32_t a = CLng(left), b = CLng(right);
      value = op[0] == '|' ? (a | b) : (a & b);
      break;
    }
  }
  if (std::isnan(value)) Raise(ErrNo::InvalidProcedureCall);
  if (std::isinf(value)) Raise(ErrNo::Overflow);
  return value;
}

// ---- Levels ------------------------------------------------------------------

struct Operator {
  std::string_view text;
  size_t from;  // the search starts at this position
};

struct Level {
  Level(std::vector<Operator> ops, int op, bool failsAtOne, bool missingAtZero)
      : operators(std::move(ops)),
        splitsOp(op),
        failsAtStart(failsAtOne),
        missingIsZero(missingAtZero) {
    for (const Operator& o : operators)
      opens[static_cast<unsigned char>(o.text[0])] = true;
  }
  std::vector<Operator> operators;
  int splitsOp;
  bool failsAtStart;              // an operator in position 1 fails the evaluation
  bool missingIsZero;             // a missing operator counts as position 0, not length + 1
  std::array<bool, 256> opens{};  // the characters an operator of the level begins with
};

const std::vector<Level>& Levels() {
  static const std::vector<Level> levels = {
      {{{"^", 1}}, 2, true, true},
      {{{"*", 1}, {"/", 1}, {"\\", 1}, {"MOD", 1}}, 2, true, false},
      {{{"+", 1}, {"-", 2}}, 1, false, false},
      {{{">=", 1}, {"<=", 1}, {"<>", 1}}, 3, true, false},
      {{{">", 1}, {"<", 1}, {"=", 1}}, 3, true, false},
      {{{"|", 1}, {"&", 1}}, 3, true, false},
  };
  return levels;
}

bool MatchesAt(std::string_view text, size_t at, std::string_view op) {
  if (text.size() - at < op.size()) return false;
  for (size_t k = 0; k < op.size(); ++k)
    if (text[at + k] != op[k]) return false;
  return true;
}

// The leftmost operator of the level: its position, or 0. No two operators of
// one level can match at the same position.
long FindOperator(const Level& level, std::string_view work, std::string_view& found) {
  for (size_t i = 0; i < work.size(); ++i) {
    if (!level.opens[static_cast<unsigned char>(work[i])]) continue;
    for (const Operator& op : level.operators) {
      if (i + 1 >= op.from && MatchesAt(work, i, op.text)) {
        found = op.text;
        return static_cast<long>(i) + 1;
      }
    }
  }
  return 0;
}

// The shortcut test: the working text is taken for a plain number when the
// number read from it, written back, is as long as the text. Only the lengths
// are compared. The value is read even when the text is too long to pass, as
// reading it is what meets a number too large to handle.
std::optional<double> Shortcut(std::string_view work) {
  double value = ReadValue(work);
  if (Len(work) > kLongestNumberText) return std::nullopt;
  if (ValueTextLength(value) != Len(work)) return std::nullopt;
  return value;
}

enum class Step { Done, Next, Fail };

// Runs one level's loop on work. Done: the shortcut test passed and value
// holds the result. Fail: failure says why.
Step RunLevel(const Level& level, std::string& work, double& value, EvalFailure& failure) {
  for (;;) {
    std::string_view op;
    long length = Len(work);
    long p = FindOperator(level, work, op);
    if (p == 0 && !level.missingIsZero) p = length + 1;
    p = Int16(p);  // positions are 16-bit: past 32,767 is an overflow
    if (p == length || (p == 1 && level.failsAtStart)) {
      // Only the exp level counts a missing operator as 0: the text is empty.
      if (op.empty())
        failure = {EvalFault::Empty, {}};
      else
        failure = {p == length ? EvalFault::OperatorLast : EvalFault::OperatorFirst, op};
      return Step::Fail;
    }
    if (op.empty()) return Step::Next;

    size_t opStart = static_cast<size_t>(p - 1), opEnd = opStart + op.size();
    std::string_view text = work;
    size_t leftTaken = LeftOperandLength(text.substr(0, opStart));
    size_t rightTaken = RightOperandLength(level.splitsOp, text.substr(opEnd));
    size_t from = opStart - leftTaken, to = opEnd + rightTaken;
    double leftArg = ReadValue(text.substr(from, leftTaken));
    double rightArg = ReadValue(text.substr(opEnd, rightTaken));

    std::optional<double> result = Apply(op, leftArg, rightArg);
    if (!result) {
      failure = {EvalFault::DivisionByZero, op};
      return Step::Fail;
    }
    std::string resultText = ValueText(*result);
    // The rewrite changed nothing ("a-1" gives "a" & "-1" & ""): leave the loop.
    if (work.compare(from, to - from, resultText) == 0) return Step::Next;
    work.replace(from, to - from, resultText);
    if (auto v = Shortcut(work)) {
      value = *v;
      return Step::Done;
    }
  }
}

class NestingGuard {
 public:
  NestingGuard() {
    if (nesting >= kMaxNesting) Raise(ErrNo::OutOfStackSpace);
    ++nesting;
  }
  ~NestingGuard() { --nesting; }
  NestingGuard(const NestingGuard&) = delete;
  NestingGuard& operator=(const NestingGuard&) = delete;
};

bool HasParenthesis(std::string_view text) {
  for (char c : text)
    if (c == '(' || c == ')') return true;
  return false;
}

// Replaces every parenthesised part, outermost first and from the left, by the
// text of its value. Fails when the counts differ, a "(" is never closed, or a
// part fails (failure then tells the part's own cause).
bool ResolveParentheses(std::string& work, EvalFailure& failure) {
  if (CountOccurrences(work, "(") != CountOccurrences(work, ")")) {
    failure = {EvalFault::UnpairedParentheses, {}};
    return false;
  }
  for (long p; (p = Int16(InStr(work, "("))) > 0;) {
    std::string_view rest = std::string_view(work).substr(static_cast<size_t>(p - 1));
    int16_t q = FindCloseParen(rest);
    if (q == 0) {
      failure = {EvalFault::UnclosedParenthesis, {}};
      return false;
    }
    std::string inner(rest.substr(1, static_cast<size_t>(q - 2)));
    double value = Evaluate(inner, failure);
    if (inner.find('%') != std::string::npos) {
      // A part that worked out but holds a "%" of its own fails all the same.
      if (failure.fault == EvalFault::None) failure = {EvalFault::PercentInParentheses, {}};
      return false;
    }
    work.replace(static_cast<size_t>(p - 1), static_cast<size_t>(q), ValueText(value));
  }
  return true;
}

// The evaluation proper: the value, or nothing for a failure and why.
std::optional<double> EvaluateText(std::string_view expression, EvalFailure& failure) {
  NestingGuard guard;
  std::string work = StripWhitespace(expression);
  Int16(Len(work));  // a text longer than positions can count is an overflow
  FoldSigns(work);
  if (!work.empty() && work[0] == '+') work.erase(0, 1);
  if (auto v = Shortcut(work)) return v;

  bool hasParentheses = HasParenthesis(work);
  if (hasParentheses && !ResolveParentheses(work, failure)) return std::nullopt;
  size_t unfolded = work.size();
  FoldSigns(work);
  // Every fold shortens the text: with no parentheses and nothing folded it is
  // the text that just failed the shortcut test.
  if (hasParentheses || work.size() != unfolded)
    if (auto v = Shortcut(work)) return v;

  for (const Level& level : Levels()) {
    double value = 0;
    switch (RunLevel(level, work, value, failure)) {
      case Step::Done:
        return value;
      case Step::Fail:
        return std::nullopt;
      case Step::Next:
        break;
    }
    FoldSigns(work);
  }
  return ReadNumber(work);
}

void ShowCalcError(const RuntimeError& error) {
  ShowErrorMessage(error, kResultTooBigMessage, kCalculatingAdvice);
}

}  // namespace

double Evaluate(std::string& expression) {
  EvalFailure failure;
  return Evaluate(expression, failure);
}

double Evaluate(std::string& expression, EvalFailure& failure) {
  failure = {};
  std::optional<double> result;
  if (auto error = TrapRuntimeError([&] { result = EvaluateText(expression, failure); })) {
    ShowCalcError(*error);
    failure = {EvalFault::RunTimeError, {}};
  }
  if (!result) {
    expression.insert(0, "%");
    return 0;
  }
  return *result;
}

void FoldSigns(std::string& text) {
  if (!HasSignPair(text)) return;
  FoldPlusRuns(text);
  FoldMinusPairs(text);
  FoldMinusPlus(text);
  FoldPlusMinus(text);
}

void ResetEvaluator() {
  nesting = 0;
}

int16_t FindCloseParen(std::string_view text) {
  long depth = 1;
  for (long i = 2; i <= Len(text); ++i) {
    char c = text[static_cast<size_t>(i - 1)];
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (depth == 0) return Int16(i);
  }
  return 0;
}

}  // namespace gandrel
