// DialogModels: what Gandrel's windows do that needs no widget.
//
// The Define Die Types dialog shows the die types as entries such as
// "dfate = -1 to 1" and "dfib = 1,1,2,3,5" and rebuilds both tables from
// them; the Preferences dialog edits the always-add items; the main window
// limits the each-result text it shows. The widgets call these and only show
// the outcome.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace gandrel {

// ---- Die types -------------------------------------------------------------

// Every die type as an entry "name = spec": the range types first
// ("dfate = -1 to 1"), then the list types ("dfib = 1,1,2,3,5"), each in
// table order.
std::vector<std::string> ListDieTypeEntries();

// Why entry would not make a die type beside others, or "" when it would:
// it must define a type, and no other entry may define a type of the same
// kind and name (the later would silently replace it). The tables are left as
// they were.
std::string CheckDieTypeEntry(const std::string& entry, const std::vector<std::string>& others);

// Empties both tables and defines every entry through ParseDefine
// ("define " & entry), so that a type left out is gone.
void RebuildDieTypes(const std::vector<std::string>& entries);

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
