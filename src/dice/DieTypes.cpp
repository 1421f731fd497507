// The die-type tables and the define statement.
#include <utility>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/RuntimeError.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

DieTypeTables dieTypes;

void ClearDieTypes(DieTypeTables& tables) {
  tables = DieTypeTables{};
}

// The exchange sort of both tables: longest trimmed name first. Equal lengths
// are never exchanged directly, but other exchanges can reorder them; which of
// two equally long names a lookup meets first is settled here.
template <class Record>
static void SortByNameLength(std::vector<Record>& table) {
  long n = static_cast<long>(table.size()) - 1;
  for (long i = 1; i <= n - 1; ++i) {
    for (long j = i + 1; j <= n; ++j) {
      if (Len(Trim(table[i].Name)) < Len(Trim(table[j].Name))) {
        table[0] = table[i];
        table[i] = table[j];
        table[j] = table[0];
      }
    }
  }
}

// The record whose name equals name (ignoring case), or a new last record.
template <class Record>
static Record& FindOrAppend(std::vector<Record>& table, const std::string& name) {
  std::string wanted = LCase(name);
  for (size_t i = 1; i < table.size(); ++i)
    if (LCase(table[i].Name) == wanted) return table[i];
  if (table.size() > 2147483647u) Raise(ErrNo::Overflow);
  table.emplace_back();
  return table.back();
}

void DefineRange(const std::string& spec, const std::string& name, DieTypeTables& tables) {
  long t = InStr(LCase(spec), "to");
  int32_t lo = CLng(ReadNumber(Trim(Left(spec, t - 1))));
  int32_t hi = CLng(ReadNumber(Trim(Mid(spec, t + 2))));
  if (lo > hi) std::swap(lo, hi);
  RangeType& record = FindOrAppend(tables.Define, name);
  record.Name = name;
  record.Lo = lo;
  record.Hi = hi;
  SortByNameLength(tables.Define);
}

void DefineSequence(const std::string& spec, const std::string& name, DieTypeTables& tables) {
  ListType& record = FindOrAppend(tables.DefSeq, name);
  record.Name = name;
  record.Dice = spec;
  SortByNameLength(tables.DefSeq);
}

void ParseDefine(std::string& statement, DieTypeTables& tables) {
  std::string rest = Mid(statement, 7);
  long eq = InStr(rest, "=");
  if (eq == 0) return;
  std::string name = Trim(Left(rest, eq - 1));
  if (LCase(Left(name, 1)) != "d") name = "d" + name;
  std::string spec = Trim(Mid(rest, eq + 1));
  if (InStr(LCase(spec), "to") > 0) {
    DefineRange(spec, name, tables);
  } else if (InStr(spec, ",") > 0) {
    DefineSequence(spec, name, tables);
  }
}

}  // namespace gandrel
