// Fuzzes Evaluate, and checks it against a literal transcription of the
// rewriting: every operator searched with InStr from position 1, the texts cut
// with Left and Mid, each sign pair replaced one at a time, every number read
// with ReadNumber and written with FormatNumber. The evaluator's fast paths
// must give the same value, the same failure and the same message.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"
#include "calc/modEvaluate.h"

namespace {

using namespace gandrel;

class LastMessage : public UserInterface {
 public:
  MsgAnswer ShowMessage(const std::string& message, MsgButtons, MsgIcon,
                        const std::string&) override {
    text += message + "\n";
    return MsgAnswer::Ok;
  }
  void ProcessEvents() override {}
  std::string text;
};

LastMessage ui;

namespace literal {

std::string Strip(std::string text) {
  for (const char* blank : {" ", "\t", "\r", "\n"})
    text = ReplaceAll(text, blank, "");
  return text;
}

void Fold(std::string& text) {
  const char* pairs[4][2] = {{"++", "+"}, {"--", "+"}, {"-+", "-"}, {"+-", "-"}};
  for (auto& pair : pairs)
    for (long p; (p = InStr(text, pair[0])) > 0;)
      text = Left(text, p - 1) + pair[1] + Mid(text, p + 2);
}

bool Passes(const std::string& work, double& value) {
  value = ReadNumber(work);
  return Len(FormatNumber(value)) == Len(work);
}

long Count(const std::string& text, const char* needle) {
  long count = 0;
  for (long p = InStr(text, needle); p > 0; p = InStr(p + 1, text, needle))
    ++count;
  return count;
}

bool IsNumberChar(char c) {
  return c != '\0' && std::strchr("0123456789DE.", c);
}

void Split(int op, std::string& left, std::string& right, double& leftArg, double& rightArg) {
  long i = Len(left);
  for (; i > 0; --i) {
    if (IsNumberChar(left[i - 1])) continue;
    if (i == 1 && left[0] == '-') i = 0;
    break;
  }
  leftArg = ReadNumber(Mid(left, i + 1));
  left = Left(left, i);
  long j = 0;
  while (j < Len(right) && (IsNumberChar(right[j]) || (op != 1 && j == 0 && right[j] == '-')))
    ++j;
  rightArg = ReadNumber(Left(right, j));
  right = Mid(right, j + 1);
}

std::optional<double> Apply(const std::string& op, double a, double b) {
  double v = 0;
  if (op == "^") v = std::pow(a, b);
  if (op == "*") v = a * b;
  if (op == "/" && b == 0) return std::nullopt;
  if (op == "/") v = a / b;
  if ((op == "\\" || op == "MOD") && b == 0) return std::nullopt;
  if (op == "\\" || op == "MOD") {
    int64_t x = CLng(a), y = CLng(b);
    if (y == 0) Raise(ErrNo::DivisionByZero);
    v = static_cast<double>(op == "MOD" ? x % y : x / y);
    if (op == "\\" && (v > 2147483647.0 || v < -2147483648.0)) Raise(ErrNo::Overflow);
  }
  if (op == "+") v = a + b;
  if (op == "-") v = a - b;
  if (op == ">=") v = a >= b ? -1 : 0;
  if (op == "<=") v = a <= b ? -1 : 0;
  if (op == "<>") v = a != b ? -1 : 0;
  if (op == ">") v = a > b ? -1 : 0;
  if (op == "<") v = a < b ? -1 : 0;
  if (op == "=") v = a == b ? -1 : 0;
  if (op == "|" || op == "&") {
    int32_t x = CLng(a), y = CLng(b);
    v = op == "|" ? (x | y) : (x & y);
  }
  if (std::isnan(v)) Raise(ErrNo::InvalidProcedureCall);
  if (std::isinf(v)) Raise(ErrNo::Overflow);
  return v;
}

// Parentheses recurse, and the run-time's stack is not endless: 200 nested
// evaluations are refused as "Out of stack space", a run-time error like any
// other (message, then failure), raised where the 201st would begin.
constexpr int kMaxNesting = 200;
int nesting = 0;

class Nesting {
 public:
  Nesting() {
    if (nesting >= kMaxNesting) Raise(ErrNo::OutOfStackSpace);
    ++nesting;
  }
  ~Nesting() { --nesting; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;
};

struct Level {
  std::vector<std::pair<std::string, long>> ops;
  int op;
  bool failsAtOne, missingIsZero;
};

std::optional<double> Run(const std::string& expression);

double Evaluate(std::string& expression) {
  std::optional<double> result;
  if (auto e = TrapRuntimeError([&] { result = Run(expression); })) {
    MsgBox(e->Number() == ErrNo::Overflow
               ? "I'm sorry, but the result calculated is too big for me to handle."
               : "I'm sorry, but the following error has occurred:\r" + e->Description() +
                     "\r\rIf performing a complex calculation, please simplify or use smaller "
                     "numbers.");
  }
  if (!result) expression = "%" + expression;
  return result.value_or(0);
}

std::optional<double> Run(const std::string& expression) {
  Nesting nested;
  std::string work = Strip(Trim(expression));
  Fold(work);
  if (Left(work, 1) == "+") work = Mid(work, 2);
  double v;
  if (Passes(work, v)) return v;
  if (Count(work, "(") != Count(work, ")")) return std::nullopt;
  for (long p; (p = InStr(work, "(")) > 0;) {
    std::string rest = Mid(work, p);
    long q = FindCloseParen(rest);
    if (q == 0) return std::nullopt;
    std::string inner = Mid(rest, 2, q - 2);
    double value = Evaluate(inner);
    if (InStr(inner, "%") > 0) return std::nullopt;
    work = Left(work, p - 1) + FormatNumber(value) + Mid(rest, q + 1);
  }
  Fold(work);
  if (Passes(work, v)) return v;
  static const Level levels[] = {{{{"^", 1}}, 2, true, true},
                                 {{{"*", 1}, {"/", 1}, {"\\", 1}, {"MOD", 1}}, 2, true, false},
                                 {{{"+", 1}, {"-", 2}}, 1, false, false},
                                 {{{">=", 1}, {"<=", 1}, {"<>", 1}}, 3, true, false},
                                 {{{">", 1}, {"<", 1}, {"=", 1}}, 3, true, false},
                                 {{{"|", 1}, {"&", 1}}, 3, true, false}};
  for (const Level& level : levels) {
    for (;;) {
      long missing = level.missingIsZero ? 0 : Len(work) + 1, p = missing;
      std::string op;
      for (auto& [text, from] : level.ops) {
        long at = InStr(from, work, text);
        if (at > 0 && (p == missing || at < p)) p = at, op = text;
      }
      if (p == Len(work) || (p == 1 && level.failsAtOne)) return std::nullopt;
      if (op.empty()) break;
      std::string left = Left(work, p - 1), right = Mid(work, p + Len(op));
      double a, b;
      Split(level.op, left, right, a, b);
      std::optional<double> value = Apply(op, a, b);
      if (!value) return std::nullopt;
      std::string rewritten = left + FormatNumber(*value) + right;
      if (rewritten == work) break;
      work = rewritten;
      if (Passes(work, v)) return v;
    }
    Fold(work);
  }
  return ReadNumber(work);
}

}  // namespace literal

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  SetUI(&ui);
  const std::string input(reinterpret_cast<const char*>(data), size);

  std::string text = input;
  ui.text.clear();
  double value = Evaluate(text);
  std::string message = ui.text;

  std::string expected = input;
  ui.text.clear();
  double expectedValue = literal::Evaluate(expected);

  bool failed = text != input;
  if (failed && (text != "%" + input || value != 0)) std::abort();
  if (text != expected || message != ui.text) std::abort();
  if (std::memcmp(&value, &expectedValue, sizeof value) != 0 && value != expectedValue)
    std::abort();
  return 0;
}
