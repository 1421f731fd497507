#include <gtest/gtest.h>

#include <tuple>

#include "ShellFixture.h"
#include "app/DialogModels.h"
#include "app/Settings.h"

namespace gandrel::testing {
namespace {

// A text, a size and what becomes of the text.
using TextCase = std::tuple<std::string, size_t, std::string>;

using DialogModelsTest = ShellTest;

// Rebuilding keeps only the good entries, ranges first; checking leaves the tables alone.
TEST_F(DialogModelsTest, DieTypeEntries) {
  RebuildDieTypes({"dfib = 1,1,2,3,5", "fate = 1 to -1"});
  RebuildDieTypes({"  dfib = 1,2  ", "dhuge = 1 to 1E12", "dx = 7", "d10 = 0 to 9"});
  const Items rebuilt{"d10 = 0 to 9", "dfib = 1,2"};
  EXPECT_EQ(ListDieTypeEntries(), rebuilt);
  const Items others{"dfate = -1 to 1", "dfib = 1,2", "dx = 7"};
  // A range may share a list's name, and the other way round.
  for (const char* entry : {"  dfib = 0 to 2  ", "dfate = 1,1,2", "dx = 1 to 6"})
    EXPECT_EQ(CheckDieTypeEntry(entry, others), "") << entry;
  // The names the types get are compared, ignoring case.
  for (const char* entry :
       {"   ", "dy 1 to 6", "dbig = 1 to 1E12", "dsemi = 1,2;3", "FATE = 0 to 2", "dfib = 3,4"})
    EXPECT_NE(CheckDieTypeEntry(entry, others), "") << entry;
  EXPECT_EQ(ListDieTypeEntries(), rebuilt);
}

TEST_F(DialogModelsTest, AlwaysAddItemChecks) {
  const Items others{"4df", "1d20"};
  EXPECT_EQ(CheckAlwaysAddItem("3d6+2", others), "");
  for (const char* item : {"  ", " 1D20 ", "x ; y", "Defined"})
    EXPECT_NE(CheckAlwaysAddItem(item, others), "") << item;
}

TEST_F(DialogModelsTest, ApplyingAlwaysAddItems) {
  // Lists are written as blank-separated entries.
  struct Case {
    bool newFirst;
    int keepNum;
    const char *oldItems, *history, *newItems, *expected;
    bool rebuilt;
  } cases[] = {
      {false, 5, "a", "a x B", "b", "b x", true},         // old item gone, listed entry an item
      {false, 3, "", "o1 o2 o3", "a b", "a b o3", true},  // no room: the oldest leaves
      {true, 3, "", "o3 o2 o1", "a b", "o3 a b", true},
      {false, 1, "a b", "b a x", "a b", "b a x", false},  // unchanged items
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.expected);
    settings.NewFirst = c.newFirst;
    settings.KeepNum = static_cast<int16_t>(c.keepNum);
    AlwaysAddItems = OneBased(c.oldItems);
    DieHistory = OneBased(c.history);
    view = FakeView{};
    view.dieValue = "typed";
    Items items = OneBased(c.newItems), expected = OneBased(c.expected);
    ApplyAlwaysAddItems(Items(items.begin() + 1, items.end()));
    EXPECT_EQ(AlwaysAddItems, items);
    EXPECT_EQ(DieHistory, expected);
    EXPECT_EQ(view.list, c.rebuilt ? Items(expected.begin() + 1, expected.end()) : Items{});
    EXPECT_EQ(view.dieValue, "typed");
  }
  EXPECT_EQ(settings.KeepNum, 2);  // raised to the number of items, even unchanged ones
}

TEST_F(DialogModelsTest, ShownTextIsLimited) {
  const TextCase cases[] = {
      {"abcdef", 6, "abcdef"},
      {"ab\r\ncd\r\nef", 9, "ab\r\ncd\r\n... 2 more characters not shown"},
      {"abcd\r\nef", 5, "abcd\r\n... 4 more characters not shown"},  // no CR LF split
      {"ab\xC3\xA9z", 3, "ab\r\n... 3 more characters not shown"},   // no UTF-8 split
      {std::string(1234568, 'x'), 5, "xxxxx\r\n... 1,234,563 more characters not shown"},
  };
  for (const auto& [text, limit, expected] : cases)
    EXPECT_EQ(LimitShownText(text, limit), expected) << limit;
}

TEST_F(DialogModelsTest, LongLinesAreBroken) {
  const TextCase cases[] = {
      {"3d6= +1+2+3+4", 8, "3d6= +1\r\n+2+3+4"},  // before a sign
      {"abcdef ghij", 8, "abcdef \r\nghij"},      // after a blank
      {"abcdefghijkl", 8, "abcdefgh\r\nijkl"},    // at the width
      {"a+bcdefghij", 8, "a+bcdefg\r\nhij"},      // a sign too early is no place
      {"+1+2+3+4+5+6+7\r\nx\r\n", 6, "+1+2+3\r\n+4+5+6\r\n+7\r\nx\r\n"},
      {"abcdefg\xC3\xA9xyz", 8, "abcdefg\r\n\xC3\xA9xyz"},  // no UTF-8 split
  };
  for (const auto& [text, width, expected] : cases)
    EXPECT_EQ(BreakLongLines(text, width), expected) << text;
}

}  // namespace
}  // namespace gandrel::testing
