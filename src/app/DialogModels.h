// DialogModels: what Gandrel's windows do that needs no widget.
//
// The Define Die Types dialog shows the die types as entries such as
// "dfate = -1 to 1" and "dfib = 1,1,2,3,5" and rebuilds both tables from
// them; the Preferences dialog checks the default die and edits the
// always-add items; the main window
// limits the each-result text it shows. The widgets call these and only show
// the outcome.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace gandrel {

// ---- Entry lists ----------------------------------------------------------

// What an entry list makes of a typed entry.
struct EntryVerdict {
  std::string refusal;   // why it cannot go in; "" when it can
  std::string stored;    // the entry as the list keeps it
  long replaces = -1;    // the index, in others, of the entry it takes the place of
  std::string question;  // asked (Yes/No) before it takes that place
};

// ---- Die types -------------------------------------------------------------

// Every die type as an entry "name = faces": the range types first
// ("dfate = -1 to 1"), then the list types ("dfib = 1,1,2,3,5"), each in
// table order.
std::vector<std::string> ListDieTypeEntries();

// What the Define Die Types dialog makes of entry beside others. Refused:
// an entry that defines no type (or a bound beyond 32 bits, or a ";"), a
// name that is only "d" or holds a blank or a character that means
// something else in a die value (+ - * / \ ^ < > = | & ( ) " , @), a range
// bound or a list item that is not a number, and a name that begins with the
// name of a type of the other kind, or is the beginning of one (the roll
// would take one for the other). stored is the entry as the tables will keep
// it ("x = 1 to 3" is "dx = 1 to 3"). An entry whose name is that of another
// entry replaces it, after the question. The tables are left as they were.
EntryVerdict CheckDieTypeEntry(const std::string& entry, const std::vector<std::string>& others);

// The line shown under the typed entry: how it will be stored, what it
// replaces, and what a name of "d" and digits also stands for; "" while the
// entry would be refused.
std::string PreviewDieTypeEntry(const std::string& entry, const std::vector<std::string>& others);

// The entries in the order the tables will hold them, which is the order a
// later ListDieTypeEntries shows: ranges, then lists, each longest name
// first, names of one length in the order given. Entries that define no type
// are left out; of two with one name and kind, the later one's text stands
// in the earlier one's place.
std::vector<std::string> ArrangeDieTypeEntries(const std::vector<std::string>& entries);

// Empties both tables and defines the entries in the order above, so that a
// type left out is gone and the dialog opened again lists what it was left
// with.
void RebuildDieTypes(const std::vector<std::string>& entries);

// ---- The default die -------------------------------------------------------

// The spelling of the defined die type named name (ignoring case), or nothing.
std::optional<std::string> DefinedName(const std::string& name);

// The default die as the Preferences dialog shows it: "d6" for the size
// "6", a die type's name as it stands.
std::string DefaultDieText(const std::string& dieType);

// What the Preferences dialog makes of a typed default die: "d" and a whole
// number of sides of at least 1 (at most 15 digits), or that number alone as
// the settings file keeps it, is stored as the bare number ("d6" and "6" as
// "6"); the name of a defined die type, with or without its "d", as the type
// spells it. Anything else is refused: such a default die would not roll.
struct DefaultDieVerdict {
  std::string refusal;
  std::string stored;
};
DefaultDieVerdict CheckDefaultDie(const std::string& typed);

// ---- Always-add items ------------------------------------------------------

// Why item cannot be an always-add item beside others, or "" when it can.
std::string CheckAlwaysAddItem(const std::string& item, const std::vector<std::string>& others);

// Makes items (in this order) the always-add items and raises KeepNum to their
// number. When the items changed, the history gets them at their home (the
// top, or the bottom with NewFirst), keeps its other entries in order, newest
// kept when there is no room, and the die-value list is rebuilt.
void ApplyAlwaysAddItems(const std::vector<std::string>& items);

// ---- The each-result text --------------------------------------------------

// About 1 MB: what the each-result box shows of a text at most.
inline constexpr std::size_t kShownTextLimit = 1000000;

// text when it has at most limit characters. Otherwise its beginning, cut
// after the last line end within the limit (or at the limit when there is
// none, never inside a UTF-8 character), then a line such as
// "... 12,345,678 more characters not shown".
std::string LimitShownText(const std::string& text, std::size_t limit = kShownTextLimit);

// A text box lays a line out whole, and a line of a million dice takes it
// minutes: lines longer than width are broken into pieces of at most width
// characters, before a "+" or "-" or after a blank when one is near the end
// of the piece, else at the width (never inside a UTF-8 character). Pieces
// are joined by CR LF.
inline constexpr std::size_t kShownLineWidth = 1000;
std::string BreakLongLines(const std::string& text, std::size_t width = kShownLineWidth);

// 12345678 as "12,345,678".
std::string GroupDigits(std::size_t number);

}  // namespace gandrel
