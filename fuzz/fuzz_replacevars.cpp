// Fuzzes ReplaceVars. The input is a line to substitute, then lines of the
// store: "name=value" makes a variable, "name=[a,b,c" a list with those items.
// Endless substitutions are ended the way the user ends them: after so many
// event pumps the interface asks for a break. The result is checked against a
// literal transcription that searches every name from position 1 on each pass.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/Pump.h"
#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"
#include "calc/modGRCalcs.h"

namespace {

using namespace gandrel;

constexpr long kPumpsBeforeBreak = 200;

class BreakingInterface : public UserInterface {
 public:
  MsgAnswer ShowMessage(const std::string&, MsgButtons, MsgIcon, const std::string&) override {
    return MsgAnswer::Ok;
  }
  void ProcessEvents() override {
    if (++pumps >= kPumpsBeforeBreak) runFlags.BreakRequested = true;
  }
  long pumps = 0;
};

BreakingInterface ui;

VarStore StoreFrom(const std::vector<std::string>& lines) {
  VarStore store;
  for (size_t i = 2; i < lines.size(); ++i) {
    long eq = InStr(lines[i], "=");
    if (eq == 0) continue;
    std::string name = LCase(Left(lines[i], eq - 1)), value = Mid(lines[i], eq + 1);
    if (Left(value, 1) == "[") {
      store.listNames.push_back(name);
      store.listItems.push_back(ReplaceAll(Mid(value, 2), ",", std::string(1, '\0')));
    } else if (!name.empty()) {
      double number = 0;
      if (TrapRuntimeError([&] { number = ReadNumber(value); })) continue;
      store.varNames.push_back(name);
      store.varValues.push_back(number);
    }
  }
  return store;
}

void LiteralReplaceVars(std::string& line, const VarStore& store) {
  for (size_t i = 1; i < store.varNames.size(); ++i) {
    for (long p; (p = InStr(LCase(line), store.varNames[i])) > 0;) {
      line = Left(line, p - 1) + FormatNumber(store.varValues[i]) +
             Mid(line, p + Len(store.varNames[i]));
      YieldCheckBreak();
    }
  }
  for (size_t i = 1; i < store.listNames.size(); ++i) {
    for (;;) {
      std::string lower = LCase(line);
      long p = InStr(lower, store.listNames[i] + "(");
      if (p == 0) break;
      long q = InStr(p, lower, ")");
      if (q > 0) {
        long r = InStrLast(Int16(q), lower, "(");
        long index = CInt(ReadNumber(Mid(line, r + 1, q - r - 1)));
        std::vector<std::string> items;
        SplitText(store.listItems[i], '\0', items);
        long n = static_cast<long>(items.size()) - 1;
        const std::string& item = items[index < 1 ? 1 : index > n ? n : index];
        line = Left(line, p - 1) + item + Mid(line, q + 1);
      }
      YieldCheckBreak();
    }
  }
}

enum class Outcome { Done, Break, Error };

template <class Replace>
Outcome RunOnce(std::string& line, const VarStore& store, Replace replace) {
  runFlags.BreakRequested = false;
  ui.pumps = 0;
  try {
    if (TrapRuntimeError([&] { replace(line, store); })) return Outcome::Error;
  } catch (const BreakSignal&) {
    return Outcome::Break;
  }
  return Outcome::Done;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  SetUI(&ui);
  SetPumpEveryCall(true);
  std::vector<std::string> lines;
  SplitText(std::string(reinterpret_cast<const char*>(data), size), '\n', lines);
  VarStore store = StoreFrom(lines);

  std::string line = lines[1], expected = lines[1];
  Outcome outcome = RunOnce(line, store, ReplaceVars);
  Outcome expectedOutcome = RunOnce(expected, store, LiteralReplaceVars);
  if (outcome != expectedOutcome) std::abort();
  if (outcome == Outcome::Done && line != expected) std::abort();
  return 0;
}
