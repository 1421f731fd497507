// The die-type tables and the define statement.
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

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

void DefineRange(const std::string& faces, const std::string& name, DieTypeTables& tables) {
  long t = InStr(LCase(faces), "to");
  int32_t lo = CLng(ReadNumber(Trim(Left(faces, t - 1))));
  int32_t hi = CLng(ReadNumber(Trim(Mid(faces, t + 2))));
  if (lo > hi) std::swap(lo, hi);
  RangeType& record = FindOrAppend(tables.Define, name);
  record.Name = name;
  record.Lo = lo;
  record.Hi = hi;
  SortByNameLength(tables.Define);
}

void DefineSequence(const std::string& faces, const std::string& name, DieTypeTables& tables) {
  ListType& record = FindOrAppend(tables.DefSeq, name);
  record.Name = name;
  record.Dice = faces;
  SortByNameLength(tables.DefSeq);
}

void ParseDefine(std::string& statement, DieTypeTables& tables) {
  std::string rest = Mid(statement, 7);
  long eq = InStr(rest, "=");
  if (eq == 0) return;
  std::string name = Trim(Left(rest, eq - 1));
  if (LCase(Left(name, 1)) != "d") name = "d" + name;
  std::string faces = Trim(Mid(rest, eq + 1));
  if (InStr(LCase(faces), "to") > 0) {
    DefineRange(faces, name, tables);
  } else if (InStr(faces, ",") > 0) {
    DefineSequence(faces, name, tables);
  }
}

// ---- Many statements at once ---------------------------------------------

namespace {

enum class DefineKind { None, Range, List };

// What one statement defines, read by ParseDefine itself into empty tables:
// a batch never reads a statement otherwise than ParseDefine does. Raises
// where ParseDefine raises.
class StatementReader {
 public:
  DefineKind Read(const std::string& statement, RangeType& range, ListType& list) {
    ClearDieTypes(scratch_);
    std::string text = statement;
    ParseDefine(text, scratch_);
    if (scratch_.Define.size() > 1) {
      range = std::move(scratch_.Define[1]);
      return DefineKind::Range;
    }
    if (scratch_.DefSeq.size() > 1) {
      list = std::move(scratch_.DefSeq[1]);
      return DefineKind::List;
    }
    return DefineKind::None;
  }

 private:
  DieTypeTables scratch_;
};

long NameLength(const std::string& name) {
  return Len(Trim(name));
}

// One table filled by many records, ending in the order that defining them
// one at a time, with the exchange sort after each, would give.
//
// In a table the sort has already ordered, the sort after appending a record
// x leaves the longer names alone, puts x last among the names of its own
// length, and moves the first name of every shorter length to the end of its
// length's names (it is exchanged with x, then passed down). Replacing a
// record of the same name keeps its length and moves nothing. So the names of
// each length form a circular list whose head is the first of them: moving
// the first to the end is advancing the head, appending is linking in before
// it. The shorter lengths an append passes are fewer than its name's length,
// so the work stays in proportion to the text defined.
template <class Record>
class TableBuilder {
 public:
  explicit TableBuilder(std::vector<Record>& table) : table_(table) {}

  // As defining record alone; raises Overflow, changing nothing, where that
  // would.
  void Store(Record record) {
    if (!loaded_) {
      // A table that no sort has ordered is defined into the slow way first.
      if (!InLengthOrder()) {
        StoreAndSort(std::move(record));
        return;
      }
      Load();
    }
    std::string key = LCase(record.Name);
    auto found = nodeOf_.find(key);
    if (found != nodeOf_.end()) {
      records_[found->second] = std::move(record);
      return;
    }
    if (records_.size() + 1 > 2147483647u) Raise(ErrNo::Overflow);
    long length = NameLength(record.Name);
    size_t node = Link(std::move(record));
    for (auto group = groups_.begin(); group != groups_.end() && group->first < length; ++group)
      MoveFirstToEnd(group->second);
    Append(groups_[length], node);
    nodeOf_.emplace(std::move(key), node);
  }

  // Writes the table back, longest names first.
  void Finish() {
    if (!loaded_) return;
    std::vector<Record> table(1);
    table.reserve(records_.size() + 1);
    for (auto group = groups_.rbegin(); group != groups_.rend(); ++group) {
      size_t node = group->second.head;
      do {
        table.push_back(std::move(records_[node]));
        node = next_[node];
      } while (node != group->second.head);
    }
    table_ = std::move(table);
  }

 private:
  static constexpr size_t kNone = static_cast<size_t>(-1);
  struct Group {
    size_t head = kNone, tail = kNone;
  };

  bool InLengthOrder() const {
    for (size_t i = 2; i < table_.size(); ++i)
      if (NameLength(table_[i - 1].Name) < NameLength(table_[i].Name)) return false;
    return true;
  }

  void StoreAndSort(Record record) {
    Record& stored = FindOrAppend(table_, record.Name);
    stored = std::move(record);
    SortByNameLength(table_);
  }

  // The ordered table as groups, each in table order.
  void Load() {
    for (size_t i = 1; i < table_.size(); ++i) {
      long length = NameLength(table_[i].Name);
      std::string key = LCase(table_[i].Name);
      size_t node = Link(table_[i]);
      Append(groups_[length], node);
      nodeOf_.emplace(std::move(key), node);  // of two equal names the first is found
    }
    loaded_ = true;
  }

  size_t Link(Record record) {
    records_.push_back(std::move(record));
    next_.push_back(records_.size() - 1);
    return records_.size() - 1;
  }

  void Append(Group& group, size_t node) {
    if (group.head == kNone) {
      group.head = node;
    } else {
      next_[group.tail] = node;
      next_[node] = group.head;
    }
    group.tail = node;
  }

  void MoveFirstToEnd(Group& group) {
    group.tail = group.head;
    group.head = next_[group.head];
  }

  std::vector<Record>& table_;
  bool loaded_ = false;
  std::vector<Record> records_;
  std::vector<size_t> next_;                        // the next node of the same length, round
  std::map<long, Group> groups_;                    // by trimmed name length
  std::unordered_map<std::string, size_t> nodeOf_;  // by lower-cased name
};

}  // namespace

void ParseDefines(const std::vector<std::string>& statements, const DefineErrorHandler& onError) {
  TableBuilder<RangeType> ranges(dieTypes.Define);
  TableBuilder<ListType> lists(dieTypes.DefSeq);
  StatementReader reader;
  for (const std::string& statement : statements) {
    std::optional<RuntimeError> error = TrapRuntimeError([&] {
      RangeType range;
      ListType list;
      switch (reader.Read(statement, range, list)) {
        case DefineKind::Range:
          ranges.Store(std::move(range));
          break;
        case DefineKind::List:
          lists.Store(std::move(list));
          break;
        case DefineKind::None:
          break;
      }
    });
    if (error && onError) onError(statement, *error);
  }
  ranges.Finish();
  lists.Finish();
}

}  // namespace gandrel
