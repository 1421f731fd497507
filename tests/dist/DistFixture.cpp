#include "dist/DistFixture.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "calc/EngineSettings.h"
#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/modGRCalcs.h"
#include "dice/Random.h"
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
  if (line.find('"') != std::string::npos) {
    std::string quoted = Trim(line);
    std::erase(quoted, '"');
    return Trim(quoted);
  }
  ExpandAllDice(line);
  return FormatNumber(Calc(line, details));
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

Shown ShownOf(const Distribution& dist) {
  Shown shown;
  for (const DistOutcome& o : dist.outcomes)
    shown[o.text] += o.probability;
  return shown;
}

void ExpectShown(const Shown& actual, const Shown& expected, double tolerance) {
  // A text that only one side holds counts as held with probability 0.
  Shown all = expected;
  all.insert(actual.begin(), actual.end());
  for (const auto& entry : all) {
    const std::string& text = entry.first;
    auto a = actual.find(text), e = expected.find(text);
    double pa = a == actual.end() ? 0 : a->second, pe = e == expected.end() ? 0 : e->second;
    EXPECT_NEAR(pa, pe, tolerance) << "\"" << text << "\"";
    // A text found with probability 0 on one side only is an outcome that
    // cannot happen; one found with more than the tolerance, a lost outcome.
    double p = std::max(pa, pe);
    if ((a == actual.end()) != (e == expected.end()) && (p == 0 || p > tolerance))
      ADD_FAILURE() << "\"" << text << "\" on one side only";
  }
}

Shown RolledThrough(const std::string& dieValue, double faces, int maxDraws, double* cut) {
  Shown shown;
  if (cut) *cut = 0;
  // A sequence is complete when the roll leaves the value after it unread.
  std::vector<double> draws;
  std::function<void(double)> walk = [&](double p) {
    std::vector<double> scripted = draws;
    scripted.push_back(0.5);
    ScriptRandom(scripted);
    std::string result = RollOnce(dieValue);
    if (random_detail::scriptedPending) {
      ScriptRandom({});
      shown[result] += p;
      return;
    }
    if (static_cast<int>(draws.size()) == maxDraws) {
      if (cut) *cut += p;
      return;
    }
    for (double face = 1; face <= faces; ++face) {
      draws.push_back(FaceToRnd(face, faces));
      walk(p / faces);
      draws.pop_back();
    }
  };
  walk(1);
  return shown;
}

}  // namespace gandrel::testing
