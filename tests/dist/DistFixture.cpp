#include "dist/DistFixture.h"

#include <algorithm>

#include "calc/Basic.h"
#include "calc/EngineSettings.h"
#include "calc/NumberText.h"
#include "calc/modGRCalcs.h"
#include "dice/modDiceCalc.h"
#include "functions/modScriptFunctions.h"

namespace gandrel::testing {

namespace {

// One roll of the die value with the random values already scripted.
std::string RollOnce(const std::string& dieValue) {
  std::string value = Trim(dieValue), details;
  if (Left(value, 1) == "@") value.insert(0, "=");
  if (value[0] != '=') {
    ExpandDice(value);
    double v = Calc(value, details);
    return value == "<error>" || value == "<calc error>" ? value : FormatNumber(v);
  }
  std::string line = "result" + value, name;
  if (line.find('@') != std::string::npos) ProcFunc(line, details, VarStore{});
  if (line == "<script error>") return line;
  SplitAssignment(line, name);
  const bool quoted = line.find('"') != std::string::npos;
  ExpandAllDice(line);
  double number = Calc(line, details);
  if (!quoted) return FormatNumber(number);
  // Calc leaves the text with the pieces around the quotes worked out.
  line = Trim(line);
  std::erase(line, '"');
  return Trim(line);
}

}  // namespace

void DistTest::SetUp() {
  EngineTest::SetUp();
  engineSettings.LongResults = false;
  for (std::string s : {"define dfate = -1 to 1", "define dfib = 1,1,2,3,5",
                        "define dwide = -2147483648 to 2147483647", "define dhalf = 1.5,2,x",
                        "define dbad = 1,1E400"})
    ParseDefine(s);
}

Shown RolledThrough(const std::string& dieValue, double faces, int maxDraws, double* cut) {
  return EveryFaceSequence([&] { return RollOnce(dieValue); }, faces, maxDraws, cut);
}

}  // namespace gandrel::testing
