// The script language's command codes and keyword spellings, and how one raw
// line becomes a tokenized line.
//
// A tokenized line is a byte string: its first byte is the command code, read
// as an unsigned byte, and the rest is the operand, already trimmed of blanks.
// The codes are 0..37 and 255, so a tokenized line may begin with NUL, TAB,
// LF, CR, a blank, a double quote or "%": nothing may trim, split or convert
// it. A few keywords ("clear", "end", "open", "close" with a rest they do not
// know) keep only that rest, with no code in front: its own first byte then
// acts as the code, and a byte that is no command code runs as code 0.
//
// The tables below are what the tokenizer reads; the editor's highlighting
// and the players' guide read them too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace gandrel {

enum class ScriptCode : uint8_t {
  Other = 0,         // the line; "name = expression" assigns, any other text is ignored
  If = 1,            // condition; true only when it is exactly -1
  EndIf = 2,         // none
  For = 3,           // "var = x TO y [STEP s]"
  Next = 4,          // none
  ExitFor = 5,       // none
  Get = 6,           // "variable" or "variable, prompt"
  Var = 7,           // variable name
  Die = 8,           // the new default die
  Goto = 9,          // label name; after tokenizing, the label's line number
  Define = 10,       // die type definition "name = faces"
  Display = 11,      // none
  BreakOn = 12,      // none
  BreakOff = 13,     // none
  End = 14,          // none
  Time = 15,         // none
  ClearLog = 16,     // none
  LogOn = 17,        // none
  LogOff = 18,       // none
  Select = 19,       // expression
  EndSelect = 20,    // none
  Case = 21,         // value list: values, "lo to hi" ranges, or "else"
  CaseIs = 22,       // comparison without its left side ("> 3")
  ExitSelect = 23,   // none
  ListBegin = 24,    // list name
  ListEnd = 25,      // none
  ListName = 26,     // list name
  Item = 27,         // item text
  PickList = 28,     // "list, variable[, prompt]"
  OpenWindow = 29,   // window name
  OpenFile = 30,     // "name, path[, mode]"
  CloseWindow = 31,  // window name
  CloseFile = 32,    // file name
  Echo = 33,         // text, ignored
  Print = 34,        // "target, text"
  PrintNl = 35,      // "target, text", then a line end
  Pause = 36,        // none
  ClearWindow = 37,  // window name
  Nothing = 255,     // blank line, comment, label, ignored DIE line
};

// The command a tokenized line's first byte stands for. A byte that is no
// command code runs as code 0.
constexpr ScriptCode CodeOf(unsigned char byte) {
  if (byte <= 37) return static_cast<ScriptCode>(byte);
  return byte == 255 ? ScriptCode::Nothing : ScriptCode::Other;
}

// The code of a tokenized line; an empty line counts as Nothing.
inline ScriptCode CodeOf(std::string_view tokenized) {
  return tokenized.empty() ? ScriptCode::Nothing
                           : CodeOf(static_cast<unsigned char>(tokenized.front()));
}

// ---- Commands --------------------------------------------------------------

struct CommandInfo {
  ScriptCode code;
  std::string_view name;     // as the guide writes the statement
  std::string_view operand;  // what follows it; "" when nothing does
};

// Every command, in code order, 0..37 and then 255.
inline constexpr CommandInfo kCommands[] = {
    {ScriptCode::Other, "name = expression", "expression"},
    {ScriptCode::If, "IF", "condition"},
    {ScriptCode::EndIf, "ENDIF", ""},
    {ScriptCode::For, "FOR", "var = x TO y [STEP s]"},
    {ScriptCode::Next, "NEXT", ""},
    {ScriptCode::ExitFor, "EXITFOR", ""},
    {ScriptCode::Get, "GET", "variable[, prompt]"},
    {ScriptCode::Var, "VAR", "variable"},
    {ScriptCode::Die, "DIE", "= die"},
    {ScriptCode::Goto, "GOTO", "label"},
    {ScriptCode::Define, "DEFINE", "name = faces"},
    {ScriptCode::Display, "DISPLAY", ""},
    {ScriptCode::BreakOn, "BREAKON", ""},
    {ScriptCode::BreakOff, "BREAKOFF", ""},
    {ScriptCode::End, "END", ""},
    {ScriptCode::Time, "TIME", ""},
    {ScriptCode::ClearLog, "CLEARLOG", ""},
    {ScriptCode::LogOn, "LOGON", ""},
    {ScriptCode::LogOff, "LOGOFF", ""},
    {ScriptCode::Select, "SELECT", "expression"},
    {ScriptCode::EndSelect, "ENDSELECT", ""},
    {ScriptCode::Case, "CASE", "values"},
    {ScriptCode::CaseIs, "CASEIS", "comparison"},
    {ScriptCode::ExitSelect, "EXITSELECT", ""},
    {ScriptCode::ListBegin, "LISTBEGIN", "list"},
    {ScriptCode::ListEnd, "LISTEND", ""},
    {ScriptCode::ListName, "LIST NAME", "list"},
    {ScriptCode::Item, "ITEM", "text"},
    {ScriptCode::PickList, "PICKLIST", "list, variable[, prompt]"},
    {ScriptCode::OpenWindow, "OPEN WINDOW", "window"},
    {ScriptCode::OpenFile, "OPEN FILE", "name, path[, mode]"},
    {ScriptCode::CloseWindow, "CLOSE WINDOW", "window"},
    {ScriptCode::CloseFile, "CLOSE FILE", "name"},
    {ScriptCode::Echo, "ECHO", "text"},
    {ScriptCode::Print, "PRINT", "target, text"},
    {ScriptCode::PrintNl, "PRINTNL", "target, text"},
    {ScriptCode::Pause, "PAUSE", ""},
    {ScriptCode::ClearWindow, "CLEAR WINDOW", "window"},
    {ScriptCode::Nothing, "", ""},
};

constexpr bool CommandTableInStep() {
  constexpr size_t count = std::size(kCommands);
  for (size_t i = 0; i + 1 < count; ++i)
    if (static_cast<size_t>(kCommands[i].code) != i) return false;
  return count == 39 && kCommands[count - 1].code == ScriptCode::Nothing &&
         static_cast<size_t>(ScriptCode::ClearWindow) == count - 2;
}
static_assert(CommandTableInStep(), "kCommands must list codes 0..37 in order, then 255");

// The table entry of a code.
constexpr const CommandInfo& InfoOf(ScriptCode code) {
  return code == ScriptCode::Nothing ? kCommands[std::size(kCommands) - 1]
                                     : kCommands[static_cast<size_t>(code)];
}

// Whether the command keeps an operand after its code.
constexpr bool TakesOperand(ScriptCode code) {
  return !InfoOf(code).operand.empty() && code != ScriptCode::Nothing;
}

// ---- Keywords --------------------------------------------------------------

// How a line that begins with a keyword and a blank is made, when none of
// the keyword's sub-keywords decided it. "rest" is the text after the first
// blank, trimmed.
enum class KeywordRule : uint8_t {
  Operand,      // code + rest
  BareRest,     // rest alone: its first byte acts as the code
  AfterEquals,  // the line holds "=": code + the text after the first "=";
                // otherwise the `otherwise` code + rest
  OpenClose,    // rest without a blank: code 0 + "open " (or "close ") + rest;
                // with a blank, a second word that is no sub-keyword leaves
                // the text after it alone, with no code
};

struct Keyword {
  std::string_view word;  // lower case, compared whole with the line's first word
  ScriptCode code;
  KeywordRule rule;
  ScriptCode otherwise = ScriptCode::Nothing;
};

// Keywords followed by an operand, in the order the tokenizer tries them.
inline constexpr Keyword kOperandKeywords[] = {
    {"if", ScriptCode::If, KeywordRule::Operand},
    {"for", ScriptCode::For, KeywordRule::Operand},
    {"get", ScriptCode::Get, KeywordRule::Operand},
    {"var", ScriptCode::Var, KeywordRule::Operand},
    {"clear", ScriptCode::Other, KeywordRule::BareRest},
    {"die", ScriptCode::Die, KeywordRule::AfterEquals, ScriptCode::Nothing},
    {"die=", ScriptCode::Die, KeywordRule::Operand},
    {"end", ScriptCode::Other, KeywordRule::BareRest},
    {"goto", ScriptCode::Goto, KeywordRule::Operand},
    {"define", ScriptCode::Define, KeywordRule::Operand},
    {"select", ScriptCode::Select, KeywordRule::Operand},
    {"case", ScriptCode::Case, KeywordRule::Operand},
    {"caseis", ScriptCode::CaseIs, KeywordRule::Operand},
    {"exit", ScriptCode::Other, KeywordRule::Operand},
    {"list", ScriptCode::ListName, KeywordRule::Operand},
    {"listbegin", ScriptCode::ListBegin, KeywordRule::Operand},
    {"item", ScriptCode::Item, KeywordRule::AfterEquals, ScriptCode::Item},
    {"item=", ScriptCode::Item, KeywordRule::Operand},
    {"open", ScriptCode::Other, KeywordRule::OpenClose},
    {"close", ScriptCode::Other, KeywordRule::OpenClose},
    {"echo", ScriptCode::Echo, KeywordRule::Operand},
    {"pick", ScriptCode::Other, KeywordRule::Operand},
    {"picklist", ScriptCode::PickList, KeywordRule::Operand},
    {"print", ScriptCode::Print, KeywordRule::Operand},
    {"printnl", ScriptCode::PrintNl, KeywordRule::Operand},
};

enum class SubMatch : uint8_t {
  Equal,       // the whole rest, lower-cased, is the sub-keyword
  Prefix,      // the rest begins with it ("list beginners" is "list begin" + "ners")
  SecondWord,  // the rest holds a blank and its first word is the sub-keyword
};

// A word after a keyword that changes the code. A command that takes an
// operand gets the text after the sub-keyword, trimmed; one that takes none
// gets nothing. Tried in order; the first that matches decides.
struct SubKeyword {
  std::string_view keyword;
  std::string_view word;
  SubMatch match;
  ScriptCode code;
};

inline constexpr SubKeyword kSubKeywords[] = {
    {"clear", "log", SubMatch::Equal, ScriptCode::ClearLog},
    {"clear", "window", SubMatch::Prefix, ScriptCode::ClearWindow},
    {"end", "if", SubMatch::Equal, ScriptCode::EndIf},
    {"end", "select", SubMatch::Equal, ScriptCode::EndSelect},
    {"select", "case", SubMatch::Prefix, ScriptCode::Select},
    {"case", "is", SubMatch::Prefix, ScriptCode::CaseIs},
    {"exit", "select", SubMatch::Prefix, ScriptCode::ExitSelect},
    {"exit", "for", SubMatch::Prefix, ScriptCode::ExitFor},
    {"list", "begin", SubMatch::Prefix, ScriptCode::ListBegin},
    {"list", "name", SubMatch::Prefix, ScriptCode::ListName},
    {"list", "end", SubMatch::Prefix, ScriptCode::ListEnd},
    {"open", "window", SubMatch::SecondWord, ScriptCode::OpenWindow},
    {"open", "file", SubMatch::SecondWord, ScriptCode::OpenFile},
    {"close", "window", SubMatch::SecondWord, ScriptCode::CloseWindow},
    {"close", "file", SubMatch::SecondWord, ScriptCode::CloseFile},
    {"pick", "list", SubMatch::Prefix, ScriptCode::PickList},
};

struct Word {
  std::string_view word;
  ScriptCode code;
};

// Lines of one word, compared whole in lower case.
inline constexpr Word kOneWordCommands[] = {
    {"display", ScriptCode::Display},   {"breakon", ScriptCode::BreakOn},
    {"breakoff", ScriptCode::BreakOff}, {"clearlog", ScriptCode::ClearLog},
    {"endif", ScriptCode::EndIf},       {"endselect", ScriptCode::EndSelect},
    {"end", ScriptCode::End},           {"exitselect", ScriptCode::ExitSelect},
    {"exitfor", ScriptCode::ExitFor},   {"listbegin", ScriptCode::ListBegin},
    {"listend", ScriptCode::ListEnd},   {"logon", ScriptCode::LogOn},
    {"logoff", ScriptCode::LogOff},     {"next", ScriptCode::Next},
    {"pause", ScriptCode::Pause},       {"time", ScriptCode::Time},
};

// One word that begins with one of these and goes on: code + the text after it.
inline constexpr Word kOneWordPrefixes[] = {
    {"die=", ScriptCode::Die},
    {"item=", ScriptCode::Item},
};

// ---- One line --------------------------------------------------------------

struct TokenizedLine {
  std::string text;      // the tokenized line
  bool isLabel = false;  // a label line (its text is code 255)
  std::string label;     // the label's name: lower case, without the ":"
};

// One raw line as the tokenizer makes it: TABs become blanks, a comment from
// the first ";" on goes (quotes do not protect it), the rest is trimmed and
// looked up in the tables above. An empty line is code 255, or END when it is
// the script's last line. Any text is accepted; nothing is raised.
TokenizedLine TokenizeLine(std::string_view raw, bool lastLine);

// ---- GOTO targets ----------------------------------------------------------

// Where a GOTO names no label: the line (1-based) and the message that says
// so. line 0 means every GOTO found its label.
struct GotoCheck {
  int32_t line = 0;
  std::string message;
};

// Checks the GOTO lines of a raw script (1-based, element 0 unused) as the
// tokenizer would, without showing anything and without changing the lines.
GotoCheck CheckGotoTargets(const std::vector<std::string>& rawLines);

// Every GOTO line of a raw script whose label does not exist, in line order,
// each with the message the tokenizer would show for it (the tokenizer stops
// at the first).
std::vector<GotoCheck> MissingGotoTargets(const std::vector<std::string>& rawLines);

}  // namespace gandrel
