#include "support/ForcedFaces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "dice/Random.h"

namespace gandrel::testing {

Shown EveryFaceSequence(const std::function<std::string()>& roll, double faces, int maxDraws,
                        double* cut) {
  Shown shown;
  if (cut) *cut = 0;
  std::vector<double> draws;
  std::function<void(double)> walk = [&](double p) {
    std::vector<double> scripted = draws;
    scripted.push_back(0.5);
    ScriptRandom(scripted);
    std::string result = roll();
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

}  // namespace gandrel::testing
