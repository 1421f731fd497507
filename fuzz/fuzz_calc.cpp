// Fuzzes the dice notation and the calculation entry: ExpandDice and Calc of
// the input, then the quote-aware and per-die procedures on it, with die
// types whose names overlap (d1 and d10, a range and a list sharing "dfu").
//
// Checks: nothing crashes or hangs; after GenerateAllDice no "d" is left, and
// in each of its detail lines of whole dice the dice add up to the total.
// A huge roll is broken off: the interface's event pump asks for a break, so
// a roll ends at its first pump (about 20 ms) with BreakSignal.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "calc/Basic.h"
#include "calc/EngineSettings.h"
#include "calc/NumberText.h"
#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"

namespace {

using namespace gandrel;

class BreakingInterface : public UserInterface {
 public:
  MsgAnswer ShowMessage(const std::string&, MsgButtons, MsgIcon, const std::string&) override {
    return MsgAnswer::Ok;
  }
  void ProcessEvents() override { runFlags.BreakRequested = true; }
};

BreakingInterface ui;

void DefineTypes() {
  for (std::string statement :
       {"define d1 = 1 to 1", "define d10 = 0 to 9", "define dfudge = -1 to 1", "define dfu = 2,,x",
        "define dfib = 1,1,2,3,5", "define dE = 1,,3", "define dwide = -2147483648 to 2147483647"})
    ParseDefine(statement);
}

bool WholeDigits(std::string_view text) {
  for (char c : text)
    if (!IsDigit(c) && c != '-' && c != '+') return false;
  return true;
}

// "term= +a+b+c= total" CR LF: the dice must add up to the total. A term of
// a hundred thousand dice writes a line of that many entries, so the line is
// walked in place: each die is read where it stands, and the whole check is
// one pass over the details.
void CheckDetailLines(std::string_view details) {
  size_t from = 0;
  for (size_t end; (end = details.find("\r\n", from)) != std::string_view::npos; from = end + 2) {
    std::string_view line = details.substr(from, end - from);
    size_t second = line.rfind("= ");
    if (second == std::string_view::npos || second == 0) continue;
    size_t first = line.rfind("= ", second - 1);
    if (first == std::string_view::npos) continue;
    std::string_view dice = line.substr(first + 2, second - first - 2);
    std::string_view total = line.substr(second + 2);
    if (!WholeDigits(dice) || !WholeDigits(total) || total.size() > 14) continue;
    double sum = 0;
    for (size_t p = 0; p < dice.size(); p = dice.find('+', p + 1))
      sum += ReadNumber(dice.substr(p + 1));
    if (FormatNumber(sum) != total) std::abort();
  }
}

template <class Body>
void Guarded(Body&& body) {
  runFlags.BreakRequested = false;
  try {
    body();
  } catch (const BreakSignal&) {
  } catch (const RuntimeError&) {
  }
}

}  // namespace

// Rolls broken off after 20 ms leave megabytes of detail text behind them;
// the sanitizer's default quarantine would hold gigabytes of them.
extern "C" const char* __asan_default_options() {
  return "quarantine_size_mb=32";
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool ready = [] {
    SetUI(&ui);
    DefineTypes();
    SeedRandom(1);
    return true;
  }();
  (void)ready;
  if (size == 0 || size > 200) return 0;
  const std::string input(reinterpret_cast<const char*>(data), size);
  // The first byte picks the settings; it stays part of the text too.
  engineSettings.LongResults = !(data[0] & 1);
  engineSettings.DieType = (data[0] & 2) ? "dfudge" : "6";

  Guarded([&] {
    std::string expr = input, details;
    ExpandDice(expr);
    Calc(expr, details);
  });
  Guarded([&] {
    std::string expr = input, details;
    GenerateAllDice(expr, details);
    if (LCase(expr).find('d') != std::string::npos) std::abort();
    CheckDetailLines(details);
  });
  Guarded([&] {
    std::string line = input;
    ExpandAllDice(line);
    CalcOutsideQuotes(line);
  });
  Guarded([&] {
    std::string expr = input, details;
    ExpandMinusSigns(expr);
    ReplaceDice(expr, details);
  });
  Guarded([&] {
    std::string die = input;
    GetMaxResult(die);
    GetMinResult(die);
    GetDieType(die);
  });
  return 0;
}
