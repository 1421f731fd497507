// Running script lines through ProcFunc in tests, with scripted dice.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "dice/Random.h"
#include "functions/modScriptFunctions.h"
#include "script/VarStore.h"

namespace gandrel::testing {

// The random values that make dice of the given size show these faces.
inline std::vector<double> Faces(std::initializer_list<double> faces, double sides = 6) {
  std::vector<double> values;
  for (double face : faces)
    values.push_back(FaceToRnd(face, sides));
  return values;
}

struct Outcome {
  std::string line;
  std::string details;
};

// ProcFunc on the line, the next random values scripted.
inline Outcome RunLine(const std::string& line, const std::vector<double>& random = {},
                       const VarStore& store = VarStore{}) {
  ScriptRandom(random);
  Outcome out{line, ""};
  ProcFunc(out.line, out.details, store);
  return out;
}

// A store holding one list; items joined by NUL as the executor keeps them.
inline VarStore StoreWithList(const std::string& name, const std::vector<std::string>& items) {
  VarStore store;
  std::string joined;
  for (size_t i = 0; i < items.size(); ++i) {
    if (i > 0) joined += '\0';
    joined += items[i];
  }
  store.listNames.push_back(name);
  store.listItems.push_back(joined);
  return store;
}

}  // namespace gandrel::testing
