#include "app/DialogModels.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "app/Settings.h"
#include "app/TextLists.h"
#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "calc/RuntimeError.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

// ---- Die types -------------------------------------------------------------

std::vector<std::string> ListDieTypeEntries() {
  std::vector<std::string> entries;
  for (size_t i = 1; i < dieTypes.Define.size(); ++i)
    entries.push_back(dieTypes.Define[i].Name + " = " + std::to_string(dieTypes.Define[i].Lo) +
                      " to " + std::to_string(dieTypes.Define[i].Hi));
  for (size_t i = 1; i < dieTypes.DefSeq.size(); ++i)
    entries.push_back(dieTypes.DefSeq[i].Name + " = " + dieTypes.DefSeq[i].Dice);
  return entries;
}

// What one entry defines, learnt on tables of its own: the process's die
// types are never touched while an entry is only being tried.
struct TrialType {
  enum Kind { kNone, kRange, kList, kTooBig } kind = kNone;
  std::string name;
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
  } else if (tables.DefSeq.size() > 1) {
    trial.kind = TrialType::kList;
    trial.name = tables.DefSeq[1].Name;
  }
  return trial;
}

std::string CheckDieTypeEntry(const std::string& entry, const std::vector<std::string>& others) {
  std::string text = Trim(entry);
  if (text.empty()) return "Please type a die type, such as dfate = -1 to 1 or dfib = 1,1,2,3,5.";
  if (InStr(text, ";") > 0)
    return "A die type cannot hold \";\": the definitions file would take the rest of the line "
           "for a comment.";
  TrialType trial = TryEntry(text);
  switch (trial.kind) {
    case TrialType::kTooBig:
      return "The bounds of a range die must lie between -2147483648 and 2147483647.";
    case TrialType::kNone:
      return "A die type is a name, \"=\" and either a range such as -1 to 1 or a list such as "
             "1,1,2,3,5.";
    default:
      break;
  }
  for (const std::string& other : others) {
    TrialType existing = TryEntry(other);
    if (existing.kind == trial.kind && LCase(existing.name) == LCase(trial.name))
      return "There is already a die type " + trial.name + " of this kind: change that one.";
  }
  return "";
}

void RebuildDieTypes(const std::vector<std::string>& entries) {
  ClearDieTypes();
  for (const std::string& entry : entries) {
    std::string statement = "define " + Trim(entry);
    // Entries are checked when they are typed; one that still fails is left out.
    TrapRuntimeError([&] { ParseDefine(statement); });
  }
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

static bool IsUtf8Continuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

std::string LimitShownText(const std::string& text, std::size_t limit) {
  if (text.size() <= limit) return text;
  size_t cut = text.rfind('\n', limit == 0 ? 0 : limit - 1);
  if (cut != std::string::npos && cut < limit) {
    cut += 1;  // keep the line end with its line
  } else {
    cut = limit;
    if (cut > 0 && text[cut - 1] == '\r') --cut;  // never split a CR LF
    while (cut > 0 && IsUtf8Continuation(text[cut]))
      --cut;
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
  while (end > start + 1 && IsUtf8Continuation(line[end]))
    --end;
  return end;
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
