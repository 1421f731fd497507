#include "functions/HandlerFrame.h"

#include <vector>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"
#include "calc/modGRCalcs.h"
#include "functions/modScriptFunctions.h"

namespace gandrel {

void FunctionCall::Fail(const std::string& message) {
  line = kScriptErrorMarker;
  details = message;
}

void FunctionCall::FailMissingComma() {
  Fail(std::string("Error: missing comma") + kCrLf + UsageText(name));
}

void FunctionCall::FailNoDice() {
  Fail(std::string("Error: you must roll dice to do wild dice") + kCrLf + UsageText(name));
}

void FunctionCall::Finish(const std::string& result) {
  line = left + result + right;
}

void FunctionCall::BeginTrace(const std::string& head) {
  details += runFlags.LogPrefix + head;
}

void HandleCall(std::string_view name, std::string& line, std::string& details,
                const VarStore& store, CallBody body) {
  FunctionCall call{name, line, details, store, {}, {}, {}};
  std::optional<RuntimeError> error = TrapRuntimeError([&] {
    SplitFunctionCall(line, std::string(name), call.left, call.args, call.right);
    ProcFunc(call.args, details, store);
    // The nested call has said what went wrong; a comma or dice check on its
    // marker would only hide that.
    if (call.args == kScriptErrorMarker) {
      line = kScriptErrorMarker;
      return;
    }
    body(call);
  });
  if (error) call.Fail("Error: " + error->Description() + kCrLf + UsageText(name));
}

void SubstituteVariables(FunctionCall& call) {
  ReplaceVars(call.args, call.store);
}

std::string BoundedArgs::Shown(const char* separator) const {
  std::string shown;
  for (double bound : bounds)
    shown += FormatNumber(bound) + separator;
  return shown;
}

bool ReadBoundedArgs(FunctionCall& call, int count, bool whole, BoundedArgs& args) {
  const std::string& text = call.args;  // substituted in place below
  if (count == 2 ? CountOccurrences(text, ",") != 2 : InStr(text, ",") == 0) {
    call.FailMissingComma();
    return false;
  }
  SubstituteVariables(call);
  std::vector<std::string> pieces{std::string(), std::string()};
  if (count == 2) {
    SplitText(text, ',', pieces);
    // A list item put in by the substitution can take a comma away.
    if (pieces.size() < 4) Raise(ErrNo::SubscriptOutOfRange);
    args.dice = pieces[3];
  } else {
    const int16_t comma = Int16(InStr(text, ","));
    pieces[1] = Left(text, comma - 1);
    args.dice = Mid(text, comma + 1);
  }
  args.bounds.clear();
  for (int i = 1; i <= count; ++i)
    args.bounds.push_back(whole ? CInt(ReadNumber(pieces[i])) : ReadNumber(pieces[i]));
  return true;
}

}  // namespace gandrel
