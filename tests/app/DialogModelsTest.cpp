#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "ShellFixture.h"
#include "app/DialogModels.h"
#include "app/Settings.h"
#include "calc/Basic.h"
#include "dice/modDiceCalc.h"

namespace gandrel::testing {
namespace {

using Lines = std::vector<std::string>;

class DialogModelsTest : public ShellTest {};

TEST_F(DialogModelsTest, DieTypesListAsEntriesRangesFirst) {
  RebuildDieTypes({"dfib = 1,1,2,3,5", "fate = 1 to -1", "d10 = 0 to 9", "DX = 2.5 to 3.5"});
  // Each table keeps its order: longest name first.
  EXPECT_EQ(ListDieTypeEntries(),
            (Lines{"dfate = -1 to 1", "d10 = 0 to 9", "DX = 2 to 4", "dfib = 1,1,2,3,5"}));
}

TEST_F(DialogModelsTest, RebuildingDropsTypesLeftOut) {
  RebuildDieTypes({"dfate = -1 to 1", "dfib = 1,1,2,3,5"});
  RebuildDieTypes({"  dfib = 1,2  ", "dhuge = 1 to 1E12", "dx = 7"});
  EXPECT_EQ(ListDieTypeEntries(), (Lines{"dfib = 1,2"}));
}

TEST_F(DialogModelsTest, DieTypeEntryChecks) {
  struct Case {
    const char* entry;
    Lines others;
    bool accepted;
  } cases[] = {
      {"dfate = -1 to 1", {}, true},
      {"fate = 1 to -1", {}, true},
      {"dfib = 1,1,2,3,5", {}, true},
      {"  dfib = 1,2  ", {}, true},
      {"", {}, false},
      {"   ", {}, false},
      {"dx = 7", {}, false},
      {"dx 1 to 6", {}, false},
      {"dbig = 1 to 1E12", {}, false},
      {"dsemi = 1,2;3", {}, false},
      {"DFATE = 0 to 2", {"dfate = -1 to 1"}, false},
      {"fate = 0 to 2", {"dfate = -1 to 1"}, false},
      {"dfate = 1,2", {"dfate = -1 to 1"}, true},  // a list may share a range's name
      {"dfate = 0 to 2", {"dfib = 1,2", "dx = 7"}, true},
  };
  RebuildDieTypes({"dkeep = 1 to 3"});
  for (const Case& c : cases) {
    SCOPED_TRACE(c.entry);
    std::string why = CheckDieTypeEntry(c.entry, c.others);
    EXPECT_EQ(why.empty(), c.accepted) << why;
    EXPECT_EQ(ListDieTypeEntries(), (Lines{"dkeep = 1 to 3"}));  // the tables are untouched
  }
}

TEST_F(DialogModelsTest, AlwaysAddItemChecks) {
  struct Case {
    const char* item;
    bool accepted;
  } cases[] = {
      {"3d6+2", true}, {" 3dF ", true},  {"", false},         {"  ", false},
      {"4DF", false},  {"x ; y", false}, {"define x", false}, {"Defined", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.item);
    EXPECT_EQ(CheckAlwaysAddItem(c.item, {"4df", "1d20"}).empty(), c.accepted);
  }
}

TEST_F(DialogModelsTest, ApplyingAlwaysAddItems) {
  struct Case {
    const char* name;
    bool newFirst;
    int keepNum;
    Lines oldItems, history, newItems;
    Lines expected;
    int keepNumAfter;
    bool rebuilt;
  } cases[] = {
      // clang-format off
      {"new items at the top", false, 5, {}, {"1d6", "2d6"}, {"a", "b"}, {"a", "b", "1d6", "2d6"}, 5, true},
      {"new items at the bottom", true, 5, {}, {"2d6", "1d6"}, {"a", "b"}, {"2d6", "1d6", "a", "b"}, 5, true},
      {"old item gone, ordinary kept", false, 5, {"a"}, {"a", "x"}, {"b"}, {"b", "x"}, 5, true},
      {"no room: oldest leaves", false, 3, {}, {"o1", "o2", "o3"}, {"a", "b"}, {"a", "b", "o3"}, 3, true},
      {"no room, new first", true, 3, {}, {"o3", "o2", "o1"}, {"a", "b"}, {"o3", "a", "b"}, 3, true},
      {"listed entry becomes an item", false, 5, {}, {"x", "A"}, {"a"}, {"a", "x"}, 5, true},
      {"keep number raised", false, 1, {}, {"x"}, {"a", "b"}, {"a", "b"}, 2, true},
      {"unchanged items", false, 1, {"a", "b"}, {"b", "a", "x"}, {"a", "b"}, {"b", "a", "x"}, 2, false},
      // clang-format on
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    settings.NewFirst = c.newFirst;
    settings.KeepNum = static_cast<int16_t>(c.keepNum);
    AlwaysAddItems = Lines{""};
    AlwaysAddItems.insert(AlwaysAddItems.end(), c.oldItems.begin(), c.oldItems.end());
    DieHistory = Lines{""};
    DieHistory.insert(DieHistory.end(), c.history.begin(), c.history.end());
    view = FakeView{};
    view.dieValue = "typed";
    ApplyAlwaysAddItems(c.newItems);
    EXPECT_EQ(Entries(AlwaysAddItems), c.newItems);
    EXPECT_EQ(Entries(DieHistory), c.expected);
    EXPECT_EQ(settings.KeepNum, c.keepNumAfter);
    EXPECT_EQ(view.listClears, c.rebuilt ? 1 : 0);
    if (c.rebuilt) {
      EXPECT_EQ(view.list, c.expected);
    }
    EXPECT_EQ(view.dieValue, "typed");
  }
}

TEST_F(DialogModelsTest, ShownTextIsLimited) {
  struct Case {
    const char* name;
    std::string text;
    size_t limit;
    std::string expected;
  } cases[] = {
      {"short", "3d6= +1+2+3= 6\r\n", 100, "3d6= +1+2+3= 6\r\n"},
      {"exactly the limit", "abcdef", 6, "abcdef"},
      {"cut after a line", "ab\r\ncd\r\nef", 9, "ab\r\ncd\r\n... 2 more characters not shown"},
      {"one long line", "abcdefgh", 5, "abcde\r\n... 3 more characters not shown"},
      {"no CR LF split", "abcd\r\nef", 5, "abcd\r\n... 4 more characters not shown"},
      {"no UTF-8 split", "ab\xC3\xA9z", 3, "ab\r\n... 3 more characters not shown"},
      {"grouped count", std::string(1234568, 'x'), 1,
       "x\r\n... 1,234,567 more characters not shown"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(LimitShownText(c.text, c.limit), c.expected);
  }
}

TEST_F(DialogModelsTest, LongLinesAreBroken) {
  struct Case {
    const char* name;
    std::string text;
    size_t width;
    std::string expected;
  } cases[] = {
      {"short lines kept", "ab\r\ncd\r\n", 4, "ab\r\ncd\r\n"},
      {"before a sign", "3d6= +1+2+3+4", 8, "3d6= +1\r\n+2+3+4"},
      {"after a blank", "abcdef ghij", 8, "abcdef \r\nghij"},
      {"at the width", "abcdefghijkl", 8, "abcdefgh\r\nijkl"},
      {"sign too early", "+abcdefghij", 8, "+abcdefg\r\nhij"},
      {"every piece", "+1+2+3+4+5+6+7+8+9", 6, "+1+2+3\r\n+4+5+6\r\n+7+8+9"},
      {"line end kept", "+1+2+3+4\r\nx", 6, "+1+2+3\r\n+4\r\nx"},
      {"no UTF-8 split", "abcdefg\xC3\xA9xyz", 8, "abcdefg\r\n\xC3\xA9xyz"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(BreakLongLines(c.text, c.width), c.expected);
  }
  // A million dice become short lines, and no character is lost.
  std::string dice;
  for (int i = 0; i < 200000; ++i)
    dice += "+" + std::to_string(i % 6 + 1);
  std::string broken = BreakLongLines(dice);
  size_t longest = 0, start = 0;
  for (size_t end = broken.find("\r\n"); end != std::string::npos;
       start = end + 2, end = broken.find("\r\n", start))
    longest = std::max(longest, end - start);
  EXPECT_LE(longest, kShownLineWidth);
  EXPECT_EQ(ReplaceAll(broken, "\r\n", ""), dice);
}

TEST_F(DialogModelsTest, ScriptLinesForAFile) {
  struct Case {
    const char* editor;
    Lines lines;
    const char* file;
    const char* editorAfter;
  } cases[] = {
      {"a  \r\nb", {"a", "b", ""}, "a\r\nb\r\n\r\n", "a\r\nb\r\n"},
      {"a\r\nb\r\n", {"a", "b", ""}, "a\r\nb\r\n\r\n", "a\r\nb\r\n"},
      {"a\r\n   ", {"a", ""}, "a\r\n\r\n", "a\r\n"},
      {"", {""}, "\r\n", ""},
      {"  x\r\n\r\ny\t ", {"  x", "", "y\t", ""}, "  x\r\n\r\ny\t\r\n\r\n", "  x\r\n\r\ny\t\r\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.editor);
    Lines lines = SplitScriptLines(c.editor);
    EXPECT_EQ(lines, c.lines);
    EXPECT_EQ(ScriptFileContents(lines), c.file);
    EXPECT_EQ(JoinScriptLines(lines), c.editorAfter);
  }
  // The last line's CR and LF become blanks, and it is trimmed.
  EXPECT_EQ(ScriptFileContents({"a", " x\ry\n "}), "a\r\nx y\r\n");
}

TEST_F(DialogModelsTest, ScriptNamesAndExtension) {
  struct NameCase {
    const char* path;
    const char* current;
    const char* name;
  } names[] = {
      {"/home/me/combat.DIE", "/home/me", "combat.DIE"},
      {"/home/me/combat.DIE", "/home/me/", "combat.DIE"},
      {"/home/me/dice/combat.die", "/home/me", "/home/me/dice/combat.die"},
      {"/home/combat.die", "/home/me", "/home/combat.die"},
      {"/combat.die", "/", "combat.die"},
      {" combat.die ", "/home/me", "combat.die"},
  };
  for (const NameCase& c : names)
    EXPECT_EQ(ScriptNameFor(c.path, c.current), c.name) << c.path;

  struct ExtensionCase {
    const char* chosen;
    const char* saved;
  } extensions[] = {{"combat", "combat.DIE"},
                    {"combat.txt", "combat.txt"},
                    {"/home/me/combat", "/home/me/combat.DIE"},
                    {"/home/m.e/combat", "/home/m.e/combat"}};
  for (const ExtensionCase& c : extensions)
    EXPECT_EQ(WithScriptExtension(c.chosen), c.saved);
}

}  // namespace
}  // namespace gandrel::testing
