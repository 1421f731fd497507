// What the script function tests share: the engine fixture and settings, and
// running script lines through ProcFunc with scripted dice.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "calc/EngineSettings.h"
#include "calc/VarStore.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"
#include "functions/modScriptFunctions.h"
#include "support/EngineFixture.h"

namespace gandrel::testing {

// The random values that make dice of that many sides show these faces.
inline std::vector<double> Dice(std::initializer_list<double> faces, double sides = 6) {
  std::vector<double> values;
  for (double face : faces)
    values.push_back(FaceToRnd(face, sides));
  return values;
}

// A line, its scripted rolls, and the line and details that ProcFunc leaves.
struct LineCase {
  std::string line;
  std::vector<double> random;
  std::string result, details;
};

// Each case starts from the details given, so that a replaced text shows.
inline void ExpectLines(const std::vector<LineCase>& cases, const VarStore& store = VarStore{},
                        const std::string& details = "") {
  for (const LineCase& c : cases) {
    ScriptRandom(c.random);
    std::string line = c.line, out = details;
    ProcFunc(line, out, store);
    EXPECT_EQ(std::pair(line, out), std::pair(c.result, c.details)) << c.line;
  }
}

// A store with one list, its items joined by NUL as the executor keeps them.
inline VarStore StoreWithList(const std::string& name, const std::vector<std::string>& items) {
  VarStore store;
  std::string joined;
  for (size_t i = 0; i < items.size(); ++i)
    joined += (i ? std::string(1, '\0') : "") + items[i];
  store.listNames.push_back(name);
  store.listItems.push_back(joined);
  return store;
}

}  // namespace gandrel::testing
