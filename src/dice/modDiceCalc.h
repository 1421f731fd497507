// modDiceCalc: die types, dice notation, rolling, long results, the bounds of
// a dice term and the per-die lists of the script functions.
//
// Every procedure edits the strings it is given in place. Failures show up as
// marker texts: a term or expression that could not be rolled becomes
// "<error>", an expression the evaluator refused becomes "<calc error>".
// A break requested by the user while dice are rolled (and breaking is on)
// ends the roll with BreakSignal; no handler here catches it.
//
// Run-time errors that reach the caller (RuntimeError):
// - Positions in a text are 16-bit: ExpandDice, ExpandAllDice,
//   GenerateAllDice, Calc, CalcOutsideQuotes, LongGenDice, BreakOutDice,
//   ReplaceDice, GetDieType, GetMaxResult and GetMinResult raise "Overflow"
//   for a text longer than 32,767 characters (also one that grows past it).
// - GenerateAllDice and Calc raise "Out of memory" when the details of one
//   expression would pass 512 MB.
// - GetMaxResult, GetMinResult, GetDieType and BreakOutDice raise "Invalid
//   procedure call or argument" for a text without "d"; GetMaxResult and
//   GetMinResult raise "Overflow" for a bound too large for a double.
// - The define procedures raise "Overflow" for a bound beyond 32 bits.
// GetDieResult and LongGetDieResults never raise: they report a failed roll
// with a message box and the term text "<error>".
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "calc/RuntimeError.h"
#include "calc/modEvaluate.h"

namespace gandrel {

// ---- Die types ----------------------------------------------------------

// A range type: rolls a whole number from Lo to Hi (Lo <= Hi).
struct RangeType {
  std::string Name;
  int32_t Lo = 0;
  int32_t Hi = 0;
};

// A list type: rolls one item of Dice, the items as written, separated by ",".
struct ListType {
  std::string Name;
  std::string Dice;
};

// The range types (Define) and the list types (DefSeq). Both tables are
// 1-based; element 0 is the sort's scratch slot. Each is kept ordered by the
// length of its trimmed names, longest first.
struct DieTypeTables {
  std::vector<RangeType> Define = std::vector<RangeType>(1);
  std::vector<ListType> DefSeq = std::vector<ListType>(1);
};

// The process's die types: every roll reads these.
extern DieTypeTables dieTypes;

// Empties both tables.
void ClearDieTypes(DieTypeTables& tables = dieTypes);

// "define name = faces": the first six characters are skipped unseen. Faces
// holding "to" make a range, else faces holding "," a list; otherwise
// nothing happens.
// Given other tables, a statement can be tried without touching the
// process's die types.
void ParseDefine(std::string& statement, DieTypeTables& tables = dieTypes);
void DefineRange(const std::string& faces, const std::string& name,
                 DieTypeTables& tables = dieTypes);
void DefineSequence(const std::string& faces, const std::string& name,
                    DieTypeTables& tables = dieTypes);

// Told about a statement of ParseDefines that raised (Overflow); the statement
// changed nothing and the others are still defined.
using DefineErrorHandler =
    std::function<void(const std::string& statement, const RuntimeError& error)>;

// The statements of a definitions file at once: leaves both tables exactly as
// ParseDefine on each statement in turn would (element 0 aside), in time
// about in proportion to the text instead of the square of the table per
// statement.
void ParseDefines(const std::vector<std::string>& statements, const DefineErrorHandler& onError);

// ---- Notation and the calculation entry ----------------------------------

// Gives every "d" that has neither a size nor a defined name the default die.
void ExpandDice(std::string& expr);

// ExpandDice on the parts of the line outside double quotes.
void ExpandAllDice(std::string& line);

// Rolls every dice term and puts its total in its place; with long results
// on, appends each term's detail line to details.
void GenerateAllDice(std::string& expr, std::string& details);

// Replaces every stretch outside double quotes by its calculated value.
void CalcOutsideQuotes(std::string& line);

// The calculation entry: reseed, roll, evaluate. On the evaluator's failure
// expr becomes "<calc error>". With long results on, appends
// "Calc: " & expr & "=" & value to details.
double Calc(std::string& expr, std::string& details);
// The same, and failure says why the evaluator failed (EvalFault::None when
// it did not); a roll that failed before it is EvalFault::RollFailed. The
// roll, the result and the details are those of the call above.
double Calc(std::string& expr, std::string& details, EvalFailure& failure);

// ---- Rolling one term ----------------------------------------------------

// Rolls a term such as "3d6", "d20", "4dfudge". With long results on, puts
// "3d6= +4+1+6= 11" CR LF in front of details. On failure shows the message,
// returns 0 and makes die "<error>".
double GetDieResult(std::string& die, std::string& details);

// As GetDieResult, and also returns the dice ("+4+1+6") in dice, whatever the
// long-results setting.
double LongGetDieResults(std::string& die, std::string& dice, std::string& details);

// Rolls the first dice term of expr with LongGetDieResults; expr is not changed.
void LongGenDice(const std::string& expr, std::string& dice, std::string& details);

// How many dice terms GetDieResult and LongGetDieResults have been handed
// since the program started: two readings tell whether the work between them
// reached the dice.
unsigned long long DiceTermsRolled();

// ---- Bounds of a term ----------------------------------------------------

double GetMaxResult(std::string& die);
double GetMinResult(std::string& die);

// ---- Per-die lists -------------------------------------------------------

// Every "-" becomes "+-".
void ExpandMinusSigns(std::string& expr);

// Cuts expr at its first dice term into the trimmed texts before, term, after.
void BreakOutDice(std::string& expr, std::string& before, std::string& term, std::string& after);

// Replaces every dice term by its dice ("2d6+3" becomes "+5+2+3").
void ReplaceDice(std::string& expr, std::string& details);

// The die part of a term: a defined type's stored name, or the size digits.
std::string GetDieType(std::string& die);

}  // namespace gandrel
