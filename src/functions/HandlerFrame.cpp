#include "functions/HandlerFrame.h"

#include <vector>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/RuntimeError.h"
#include "calc/modGRCalcs.h"
#include "functions/modScriptFunctions.h"
#include "script/RunFlags.h"

namespace gandrel {

void FunctionCall::Fail(const std::string& message) {
  line = kScriptError;
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
    if (call.args == kScriptError) {
      line = kScriptError;
      return;
    }
    body(call);
  });
  if (error) call.Fail("Error: " + error->Description() + kCrLf + UsageText(name));
}

bool RequireComma(FunctionCall& call) {
  if (InStr(call.args, ",") != 0) return true;
  call.FailMissingComma();
  return false;
}

bool RequireTwoCommas(FunctionCall& call) {
  if (CountOccurrences(call.args, ",") == 2) return true;
  call.FailMissingComma();
  return false;
}

void SubstituteVariables(FunctionCall& call) {
  ReplaceVars(call.args, call.store);
}

void CutAtFirstComma(const std::string& args, std::string& first, std::string& rest) {
  int16_t comma = Int16(InStr(args, ","));
  first = Left(args, comma - 1);
  rest = Mid(args, comma + 1);
}

void CutThreePieces(const std::string& args, std::string& first, std::string& second,
                    std::string& third) {
  std::vector<std::string> pieces;
  SplitText(args, ',', pieces);
  // A list item put in by the substitution can take a comma away.
  if (pieces.size() < 4) Raise(ErrNo::SubscriptOutOfRange);
  first = pieces[1];
  second = pieces[2];
  third = pieces[3];
}

int16_t WholeBound(const std::string& text) {
  return CInt(ReadNumber(text));
}

}  // namespace gandrel
