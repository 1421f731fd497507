// The definitions files: gandrel.def (the user's die types and always-add
// items, read and rewritten) and the older gandrel.dat (read only).
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "app/DialogModels.h"
#include "app/Settings.h"
#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

static const char* const kCommentLine1 =
    "; This file contains the Die Definitions and Always Add items";
static const char* const kCommentLine2 = "; that you have defined for Gandrel, so don't delete it!";

// Everything from the first ";" on is a comment.
static std::string WithoutComment(const std::string& line) {
  long semicolon = InStr(line, ";");
  return semicolon > 0 ? Left(line, semicolon - 1) : line;
}

static bool ReadLines(const std::string& path, const char* what, std::vector<std::string>& lines) {
  if (FileIsMissing(path)) return false;
  std::string content, reason;
  if (!ReadTextFile(path, content, reason)) {
    MsgBox(std::string("Gandrel could not read its ") + what + " from " + path + ": " + reason);
    NoteUnreadFile(path);
    return false;
  }
  lines = SplitLines(content);
  return true;
}

// The define lines of a file, in order, all at once (the die types do not
// bear on the other lines). A line whose numbers do not fit is told about and
// skipped; the rest are still defined.
static void DefineAll(const std::vector<std::string>& defines, const std::string& path) {
  ParseDefines(defines, [&path](const std::string& line, const RuntimeError& error) {
    MsgBox("Gandrel skipped a die type it could not read in " + path + ": " + line + " (" +
           error.Description() + ")");
  });
}

static void AddAlwaysItem(const std::string& item) {
  if (AlwaysAddItems.empty()) AlwaysAddItems.emplace_back();
  AlwaysAddItems.push_back(item);
}

// The always-add items listed so far, lower-cased: a file of many items
// looks each one up at once.
static std::unordered_set<std::string> ListedItems() {
  std::unordered_set<std::string> listed;
  for (size_t i = 1; i < AlwaysAddItems.size(); ++i)
    listed.insert(LCase(AlwaysAddItems[i]));
  return listed;
}

void ReadDefinitions(const std::string& path) {
  std::vector<std::string> lines, defines;
  if (!ReadLines(path, "die types", lines)) return;
  std::unordered_set<std::string> listed = ListedItems();
  for (const std::string& raw : lines) {
    std::string line = Trim(WithoutComment(raw));
    if (LCase(Left(line, 6)) == "define") {
      defines.push_back(std::move(line));
    } else if (!line.empty() && listed.insert(LCase(line)).second) {
      AddAlwaysItem(line);
    }
  }
  DefineAll(defines, path);
}

void ReadOldDefinitions(const std::string& path, std::vector<std::string>& listed) {
  std::vector<std::string> lines, defines;
  if (!ReadLines(path, "die types", lines)) return;
  for (const std::string& raw : lines) {
    std::string line = Trim(LCase(WithoutComment(raw)));
    if (Left(line, 4) == "die=") {
      engineSettings.DieType = Mid(line, 5);
    } else if (Left(line, 6) == "define") {
      defines.push_back(std::move(line));
    } else if (!line.empty()) {
      AddAlwaysItem(line);
      listed.push_back(line);
    }
  }
  DefineAll(defines, path);
}

std::string DefinitionsText() {
  std::string text = std::string(kCommentLine1) + kCrLf + kCommentLine2 + kCrLf;
  for (const std::string& entry : ListDieTypeEntries())
    text += "define " + entry + kCrLf;
  for (size_t i = 1; i < AlwaysAddItems.size(); ++i)
    text += AlwaysAddItems[i] + kCrLf;
  return text;
}

bool SaveDefinitions(const std::string& path) {
  if (SkipUnreadFile(path)) return false;
  std::string reason;
  if (WriteTextFileAtomic(path, DefinitionsText(), reason)) return true;
  MsgBox("Gandrel could not save its die types to " + path + ": " + reason);
  return false;
}

}  // namespace gandrel
