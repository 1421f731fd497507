#include "app/DialogModels.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "app/Settings.h"
#include "app/TextEncoding.h"
#include "app/TextLists.h"
#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "calc/RuntimeError.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

// ---- Die types -------------------------------------------------------------

static std::string EntryText(const RangeType& type) {
  return type.Name + " = " + std::to_string(type.Lo) + " to " + std::to_string(type.Hi);
}

static std::string EntryText(const ListType& type) {
  return type.Name + " = " + type.Dice;
}

static std::vector<std::string> EntriesOf(const DieTypeTables& tables) {
  std::vector<std::string> entries;
  for (size_t i = 1; i < tables.Define.size(); ++i)
    entries.push_back(EntryText(tables.Define[i]));
  for (size_t i = 1; i < tables.DefSeq.size(); ++i)
    entries.push_back(EntryText(tables.DefSeq[i]));
  return entries;
}

std::vector<std::string> ListDieTypeEntries() {
  return EntriesOf(dieTypes);
}

// What one entry defines, learnt on tables of its own: the process's die
// types are never touched while an entry is only being tried.
struct TrialType {
  enum Kind { kNone, kRange, kList, kTooBig } kind = kNone;
  std::string name;
  std::string stored;  // the entry as the tables keep it
};

static TrialType TryEntry(const std::string& entry) {
  TrialType trial;
  DieTypeTables tables;
  std::optional<RuntimeError> error = TrapRuntimeError([&] {
    std::string statement = "define " + Trim(entry);
    ParseDefine(statement, tables);
  });
  if (error) {
    trial.kind = TrialType::kTooBig;
  } else if (tables.Define.size() > 1) {
    trial.kind = TrialType::kRange;
    trial.name = tables.Define[1].Name;
    trial.stored = EntryText(tables.Define[1]);
  } else if (tables.DefSeq.size() > 1) {
    trial.kind = TrialType::kList;
    trial.name = tables.DefSeq[1].Name;
    trial.stored = EntryText(tables.DefSeq[1]);
  }
  return trial;
}

static bool Defines(const TrialType& trial) {
  return trial.kind == TrialType::kRange || trial.kind == TrialType::kList;
}

static const char* KindName(TrialType::Kind kind) {
  return kind == TrialType::kRange ? "range" : "list";
}

// True when text, blanks around it aside, is one number that ReadNumber
// reads whole: a sign, digits with an optional point and fraction, an
// optional exponent ("1E3"). A "D" exponent is left out: "1D3" looks like a die.
static bool IsNumberText(std::string_view text) {
  std::string t = Trim(text);
  size_t i = 0, n = t.size(), digits = 0;
  if (i < n && (t[i] == '-' || t[i] == '+')) ++i;
  for (; i < n && IsDigit(t[i]); ++i)
    ++digits;
  if (i < n && t[i] == '.')
    for (++i; i < n && IsDigit(t[i]); ++i)
      ++digits;
  if (digits == 0) return false;
  if (i < n && t[i] == 'E') {
    if (++i < n && (t[i] == '-' || t[i] == '+')) ++i;
    size_t first = i;
    while (i < n && IsDigit(t[i]))
      ++i;
    if (i == first) return false;
  }
  return i == n;
}

// The faces of an entry, as ParseDefine cuts it: the text after the
// first "=", trimmed.
static std::string FacesOf(const std::string& entry) {
  return Trim(Mid(entry, InStr(entry, "=") + 1));
}

// Why the bounds of a range or the items of a list would not roll as
// numbers, or "".
static std::string CheckFacesText(const std::string& faces, TrialType::Kind kind) {
  if (kind == TrialType::kRange) {
    long t = InStr(LCase(faces), "to");
    for (const std::string& bound : {Trim(Left(faces, t - 1)), Trim(Mid(faces, t + 2))})
      if (!IsNumberText(bound))
        return bound.empty() ? "A range needs a number on each side of \"to\", such as -1 to 1."
                             : "The bounds of a range must be numbers: \"" + bound + "\" is not.";
    return "";
  }
  size_t from = 0;
  for (;;) {
    size_t comma = faces.find(',', from);
    std::string item = Trim(faces.substr(from, comma == std::string::npos ? comma : comma - from));
    if (item.empty())
      return "A list cannot have an empty item: every item between the commas is a face.";
    if (!IsNumberText(item))
      return "Every item of a list must be a number: \"" + item + "\" is not (it would roll 0).";
    if (comma == std::string::npos) return "";
    from = comma + 1;
  }
}

// Why name could not be rolled as written, or "".
static std::string CheckName(const std::string& name) {
  if (LCase(name) == "d")
    return "A die type needs a name after its \"d\", such as dfate: a type named only \"d\" "
           "would take the \"d\" of every die (3d6 would roll 3d and put 6 after it).";
  for (char c : name) {
    if (c == ' ' || c == '\t') return "A die type's name cannot hold a blank: \"" + name + "\".";
    if (std::string_view("+-*/\\^<>=|&()\",@").find(c) != std::string_view::npos)
      return "\"" + name + "\" cannot be a die type's name: \"" + std::string(1, c) +
             "\" means something else in a die value. Use letters and digits, such as dfate.";
  }
  return "";
}

// True when one name is the beginning of the other, ignoring case.
static bool BeginAlike(const std::string& a, const std::string& b) {
  std::string x = LCase(a), y = LCase(b);
  return x.size() <= y.size() ? y.compare(0, x.size(), x) == 0 : x.compare(0, y.size(), y) == 0;
}

// A range and a list whose names begin alike: a roll takes the shorter name,
// and the range when both are as long, so the other never rolls.
static std::string ConflictText(const TrialType& a, const TrialType& b) {
  bool aRolls =
      Len(a.name) != Len(b.name) ? Len(a.name) < Len(b.name) : a.kind == TrialType::kRange;
  const TrialType& rolled = aRolls ? a : b;
  const TrialType& lost = aRolls ? b : a;
  return "Die types of different kinds cannot begin alike: a roll of " + lost.name +
         " would roll the " + KindName(rolled.kind) + " type " + rolled.name + ", never the " +
         KindName(lost.kind) + " type " + lost.name + ".";
}

// The verdict on an entry, and the type it defines.
static EntryVerdict Judge(const std::string& entry, const std::vector<std::string>& others,
                          TrialType& trial) {
  EntryVerdict verdict;
  std::string text = Trim(entry);
  if (text.empty()) {
    verdict.refusal = "Please type a die type, such as dfate = -1 to 1 or dfib = 1,1,2,3,5.";
    return verdict;
  }
  if (InStr(text, ";") > 0) {
    verdict.refusal =
        "A die type cannot hold \";\": the definitions file would take the rest of the line "
        "for a comment.";
    return verdict;
  }
  trial = TryEntry(text);
  if (trial.kind == TrialType::kTooBig) {
    verdict.refusal = "The bounds of a range die must lie between -2147483648 and 2147483647.";
    return verdict;
  }
  if (trial.kind == TrialType::kNone) {
    verdict.refusal =
        "A die type is a name, \"=\" and either a range such as -1 to 1 or a list such as "
        "1,1,2,3,5.";
    return verdict;
  }
  verdict.refusal = CheckName(trial.name);
  if (verdict.refusal.empty()) verdict.refusal = CheckFacesText(FacesOf(text), trial.kind);
  if (!verdict.refusal.empty()) return verdict;
  verdict.stored = trial.stored;

  // The entry of the same name it replaces: one of its own kind first.
  std::vector<TrialType> existing;
  for (const std::string& other : others)
    existing.push_back(TryEntry(other));
  for (size_t i = 0; i < existing.size(); ++i) {
    if (!Defines(existing[i]) || LCase(existing[i].name) != LCase(trial.name)) continue;
    if (verdict.replaces < 0 || existing[i].kind == trial.kind)
      verdict.replaces = static_cast<long>(i);
  }
  for (size_t i = 0; i < existing.size(); ++i) {
    if (static_cast<long>(i) == verdict.replaces || !Defines(existing[i])) continue;
    if (existing[i].kind != trial.kind && BeginAlike(existing[i].name, trial.name)) {
      verdict.refusal = ConflictText(trial, existing[i]);
      verdict.replaces = -1;
      return verdict;
    }
  }
  if (verdict.replaces >= 0) {
    const std::string& old = existing[static_cast<size_t>(verdict.replaces)].stored;
    if (old == verdict.stored) {
      verdict.refusal = "\"" + old + "\" is already in the list.";
      verdict.replaces = -1;
      return verdict;
    }
    verdict.question = "There is already a die type named " + trial.name + ": \"" + old +
                       "\". Replace it with \"" + verdict.stored + "\"?";
  }
  return verdict;
}

EntryVerdict CheckDieTypeEntry(const std::string& entry, const std::vector<std::string>& others) {
  TrialType trial;
  return Judge(entry, others, trial);
}

std::string PreviewDieTypeEntry(const std::string& entry, const std::vector<std::string>& others) {
  TrialType trial;
  EntryVerdict verdict = Judge(entry, others, trial);
  if (!verdict.refusal.empty()) return "";
  std::string preview = "Stored as: " + verdict.stored;
  if (verdict.replaces >= 0) preview += " (replaces " + others[verdict.replaces] + ")";
  std::string size = Mid(trial.name, 2);
  if (!size.empty() && std::all_of(size.begin(), size.end(), IsDigit))
    preview += "\nIt stands for the plain " + trial.name + ", and for the " + trial.name +
               " of larger dice: 2" + trial.name + "0 would roll 2" + trial.name +
               " and put 0 after it.";
  return preview;
}

// The tables the entries make: each kind longest name first, names of one
// length in the order given. Defined in that order, no entry is ever moved
// by the tables' own sort, which exchanges only a shorter name with a longer
// one after it.
static DieTypeTables BuildTables(const std::vector<std::string>& entries) {
  std::vector<std::pair<long, std::string>> ranges, lists;
  for (const std::string& entry : entries) {
    TrialType trial = TryEntry(entry);
    if (!Defines(trial)) continue;
    (trial.kind == TrialType::kRange ? ranges : lists).emplace_back(Len(Trim(trial.name)), entry);
  }
  auto longerFirst = [](const auto& a, const auto& b) { return a.first > b.first; };
  std::stable_sort(ranges.begin(), ranges.end(), longerFirst);
  std::stable_sort(lists.begin(), lists.end(), longerFirst);
  DieTypeTables tables;
  for (const auto* kind : {&ranges, &lists}) {
    for (const auto& [length, entry] : *kind) {
      std::string statement = "define " + Trim(entry);
      // Tried above on tables of its own: it cannot fail here.
      TrapRuntimeError([&] { ParseDefine(statement, tables); });
    }
  }
  return tables;
}

std::vector<std::string> ArrangeDieTypeEntries(const std::vector<std::string>& entries) {
  return EntriesOf(BuildTables(entries));
}

void RebuildDieTypes(const std::vector<std::string>& entries) {
  dieTypes = BuildTables(entries);
}

// ---- The default die -------------------------------------------------------

std::string DefaultDieText(const std::string& dieType) {
  std::string text = Trim(dieType);
  if (text.empty() || LCase(Left(text, 1)) == "d") return text;
  return "d" + text;
}

std::optional<std::string> DefinedName(const std::string& name) {
  std::string wanted = LCase(name);
  for (size_t i = 1; i < dieTypes.Define.size(); ++i)
    if (LCase(dieTypes.Define[i].Name) == wanted) return dieTypes.Define[i].Name;
  for (size_t i = 1; i < dieTypes.DefSeq.size(); ++i)
    if (LCase(dieTypes.DefSeq[i].Name) == wanted) return dieTypes.DefSeq[i].Name;
  return std::nullopt;
}

DefaultDieVerdict CheckDefaultDie(const std::string& typed) {
  std::string text = Trim(typed);
  if (text.empty()) return {"Please give a default die, such as d6.", ""};
  std::string size = LCase(Left(text, 1)) == "d" ? Mid(text, 2) : text;
  if (!size.empty() && std::all_of(size.begin(), size.end(), IsDigit)) {
    size.erase(0, std::min(size.find_first_not_of('0'), size.size()));
    if (size.empty()) return {"\"" + text + "\" is not a die: a die has at least 1 side.", ""};
    if (size.size() > 15)
      return {"\"" + text + "\" is not a die Gandrel can roll: at most 15 digits of sides.", ""};
    return {"", size};
  }
  if (auto name = DefinedName(text)) return {"", *name};
  if (LCase(Left(text, 1)) != "d")
    if (auto name = DefinedName("d" + text)) return {"", *name};
  return {"\"" + text +
              "\" is not a die: give \"d\" and a whole number of sides, such as d6, or the name "
              "of one of your die types (Define Die Types).",
          ""};
}

// ---- Always-add items ------------------------------------------------------

std::string CheckAlwaysAddItem(const std::string& item, const std::vector<std::string>& others) {
  std::string text = Trim(item);
  if (text.empty()) return "Please type a die value, such as 3d6+2.";
  if (InStr(text, ";") > 0)
    return "An always-add item cannot hold \";\": the definitions file would take the rest of "
           "the line for a comment.";
  if (LCase(Left(text, 6)) == "define")
    return "An always-add item cannot begin with \"define\": the definitions file would read it "
           "as a die type.";
  if (ContainsIgnoringCase(others, text)) return "\"" + text + "\" is already in the list.";
  return "";
}

void ApplyAlwaysAddItems(const std::vector<std::string>& items) {
  std::vector<std::string> previous(AlwaysAddItems.begin() + (AlwaysAddItems.empty() ? 0 : 1),
                                    AlwaysAddItems.end());
  AlwaysAddItems.assign(1, "");
  AlwaysAddItems.insert(AlwaysAddItems.end(), items.begin(), items.end());
  long count = static_cast<long>(items.size());
  if (settings.KeepNum < count) settings.KeepNum = Int16(count);
  if (previous == items) return;

  // The ordinary entries: neither an old nor a new always-add item.
  std::vector<std::string> ordinary;
  for (size_t i = 1; i < DieHistory.size(); ++i)
    if (!ContainsIgnoringCase(previous, DieHistory[i]) &&
        !ContainsIgnoringCase(items, DieHistory[i]))
      ordinary.push_back(DieHistory[i]);
  size_t room = static_cast<size_t>(settings.KeepNum - count);
  if (ordinary.size() > room) {
    // The oldest leave: at the top without NewFirst, at the bottom with it.
    size_t surplus = ordinary.size() - room;
    if (settings.NewFirst)
      ordinary.resize(room);
    else
      ordinary.erase(ordinary.begin(), ordinary.begin() + static_cast<long>(surplus));
  }
  DieHistory.assign(1, "");
  if (settings.NewFirst) {
    DieHistory.insert(DieHistory.end(), ordinary.begin(), ordinary.end());
    DieHistory.insert(DieHistory.end(), items.begin(), items.end());
  } else {
    DieHistory.insert(DieHistory.end(), items.begin(), items.end());
    DieHistory.insert(DieHistory.end(), ordinary.begin(), ordinary.end());
  }
  View().ShowDieList(DieListEntries(), View().DieValueText());
}

// ---- The each-result text --------------------------------------------------

std::string GroupDigits(std::size_t number) {
  std::string digits = std::to_string(number);
  std::string grouped;
  for (size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) grouped += ',';
    grouped += digits[i];
  }
  return grouped;
}

std::string LimitShownText(const std::string& text, std::size_t limit) {
  if (text.size() <= limit) return text;
  size_t cut = text.rfind('\n', limit == 0 ? 0 : limit - 1);
  if (cut != std::string::npos && cut < limit) {
    cut += 1;  // keep the line end with its line
  } else {
    cut = limit;
    if (cut > 0 && text[cut - 1] == '\r') --cut;  // never split a CR LF
    cut = Utf8CharStart(text, cut);
  }
  std::string shown = text.substr(0, cut);
  if (!shown.empty() && shown.back() != '\n') shown += "\r\n";
  return shown + "... " + GroupDigits(text.size() - cut) + " more characters not shown";
}

// Where a piece of at most width characters of line, from start on, ends:
// before a sign or after a blank in its last quarter, else at the width.
static size_t PieceEnd(const std::string& line, size_t start, size_t width) {
  size_t end = start + width;
  for (size_t at = end; at > end - width / 4; --at) {
    char c = line[at];
    if (c == '+' || c == '-') return at;
    if (line[at - 1] == ' ') return at;
  }
  return Utf8CharStart(line, end, start + 1);
}

std::string BreakLongLines(const std::string& text, std::size_t width) {
  if (width < 4) width = 4;
  std::string broken;
  broken.reserve(text.size() + text.size() / width * 2);
  size_t lineStart = 0;
  while (lineStart <= text.size()) {
    size_t lineEnd = text.find('\n', lineStart);
    if (lineEnd == std::string::npos) lineEnd = text.size();
    size_t contentEnd = lineEnd;
    if (contentEnd > lineStart && text[contentEnd - 1] == '\r') --contentEnd;
    size_t start = lineStart;
    while (contentEnd - start > width) {
      size_t end = PieceEnd(text, start, width);
      broken.append(text, start, end - start);
      broken += "\r\n";
      start = end;
    }
    broken.append(text, start, lineEnd - start);
    if (lineEnd == text.size()) break;
    broken += '\n';
    lineStart = lineEnd + 1;
  }
  return broken;
}

}  // namespace gandrel
