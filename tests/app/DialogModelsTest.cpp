#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "ShellFixture.h"
#include "app/DialogModels.h"
#include "app/Settings.h"

namespace gandrel::testing {
namespace {

using DialogModelsTest = ShellTest;

// Accepted entries: stored as the tables keep them; one of an existing name
// (any kind, ignoring case) replaces it after a question naming both.
TEST_F(DialogModelsTest, AcceptedDieTypeEntries) {
  const Items others{"dfate = -1 to 1", "dfib = 1,2", "dx = 1,2,3"};
  // The entry, how it is stored, and the entry it replaces (-1: none).
  const std::tuple<const char*, const char*, long> cases[] = {
      {"x = 1 to 3", "dx = 1 to 3", 2},  // a list of that name goes
      {"  FATE = 2 to 0  ", "dFATE = 0 to 2", 0},
      {"dz = -1,+2,.5,1E3", "dz = -1,+2,.5,1E3", -1},
      {"dfa = 1 to 2", "dfa = 1 to 2", -1},  // a range may begin like a range
  };
  for (const auto& [entry, stored, replaces] : cases) {
    EntryVerdict verdict = CheckDieTypeEntry(entry, others);
    EXPECT_EQ(std::make_tuple(verdict.refusal, verdict.stored, verdict.replaces,
                              verdict.question.empty()),
              std::make_tuple("", stored, replaces, replaces < 0))
        << entry;
  }
  EXPECT_EQ(CheckDieTypeEntry("x = 1 to 3", others).question,
            "There is already a die type named dx: \"dx = 1,2,3\". Replace it with \"dx = 1 to "
            "3\"?");
}

// Refused entries, each for its own reason (a word of the message).
TEST_F(DialogModelsTest, RefusedDieTypeEntries) {
  const Items others{"dfate = -1 to 1", "dfib = 1,2"};
  const std::pair<const char*, const char*> cases[] = {
      {"   ", "Please"},
      {"dy = 7", "either a range"},
      {"dbig = 1 to 1E12", "-2147483648"},
      {"dsemi = 1,2;3", "comment"},
      {"d = 1 to 3", "only \"d\""},
      {"dsp ace = 1,2", "blank"},
      {"d+x = 1 to 2", "\"+\" means"},
      {"dx = 1,2,", "empty item"},
      {"dx = 1d3,2", "\"1d3\" is not"},
      {"dx = to 3", "each side"},
      {"dx = 1 to six", "\"six\" is not"},
      {"df = 1,2", "roll of dfate would roll the list type df"},
      {"dfates = 1,2", "roll of dfates would roll the range type dfate"},
      {"dfib = 1,2", "already in the list"},
  };
  for (const auto& [entry, reason] : cases) {
    std::string refusal = CheckDieTypeEntry(entry, others).refusal;
    EXPECT_NE(refusal.find(reason), std::string::npos) << entry << ": " << refusal;
  }
  // The same name in both kinds (from a hand-written file): the range
  // replaces its range, the list is still in the way.
  EXPECT_NE(CheckDieTypeEntry("dx = 1 to 2", {"dx = 1,2", "dx = 3 to 4"}).refusal, "");
}

TEST_F(DialogModelsTest, DieTypePreview) {
  const Items others{"dx = 1 to 6"};
  EXPECT_EQ(PreviewDieTypeEntry("x = 1 to 3", others),
            "Stored as: dx = 1 to 3 (replaces dx = 1 to 6)");
  EXPECT_EQ(PreviewDieTypeEntry("d10 = 0 to 9", others),
            "Stored as: d10 = 0 to 9\nIt stands for the plain d10, and for the d10 of larger "
            "dice: 2d100 would roll 2d10 and put 0 after it.");
  EXPECT_EQ(PreviewDieTypeEntry("d = 1 to 3", others), "");
}

// The dialog opened again lists what it was left with: each kind longest
// first, equal lengths as the user left them (the tables' own sort alone
// would turn [da, db, dccc] into [dccc, db, da]); rebuilding replaces the
// tables as a whole.
TEST_F(DialogModelsTest, ReopeningKeepsTheOrder) {
  const std::pair<Items, Items> cases[] = {
      {{"da = 1 to 2", "db = 3 to 4", "dccc = 1 to 3", "dee = 5,6", "df = 1,2"},
       {"dccc = 1 to 3", "da = 1 to 2", "db = 3 to 4", "dee = 5,6", "df = 1,2"}},
      {{"dx = 1 to 2", "dy = 3 to 4", "dX = 5 to 6", "dz = 7"}, {"dX = 5 to 6", "dy = 3 to 4"}},
      // Only the good entries are kept, trimmed.
      {{"  dfib = 1,2  ", "dhuge = 1 to 1E12", "dx = 7", "d10 = 0 to 9"},
       {"d10 = 0 to 9", "dfib = 1,2"}},
  };
  RebuildDieTypes({"dfib = 1,1,2,3,5", "fate = 1 to -1"});  // replaced as a whole
  for (const auto& [entries, arranged] : cases) {
    EXPECT_EQ(ArrangeDieTypeEntries(entries), arranged);
    RebuildDieTypes(entries);
    EXPECT_EQ(ListDieTypeEntries(), arranged);
    RebuildDieTypes(ListDieTypeEntries());
    EXPECT_EQ(ListDieTypeEntries(), arranged);
  }
  // Checking an entry leaves the tables alone.
  for (const char* entry : {"dfib = 3,4", "dy = 1 to 6", "d = 1 to 2"})
    CheckDieTypeEntry(entry, ListDieTypeEntries());
  EXPECT_EQ(ListDieTypeEntries(), (Items{"d10 = 0 to 9", "dfib = 1,2"}));
}

TEST_F(DialogModelsTest, DefaultDie) {
  RebuildDieTypes({"dFate = -1 to 1", "dfib = 1,2"});
  const std::pair<const char*, const char*> accepted[] = {
      {" D10 ", "10"},   {"6", "6"},       {"d007", "7"},
      {"fate", "dFate"}, {"DFIB", "dfib"}, {"d999999999999999", "999999999999999"}};
  for (const auto& [typed, stored] : accepted) {
    DefaultDieVerdict verdict = CheckDefaultDie(typed);
    EXPECT_EQ(verdict.refusal + "|" + verdict.stored, std::string("|") + stored) << typed;
  }
  for (const char* typed : {"", "abc", "d0", "d", "d1000000000000000"})
    EXPECT_NE(CheckDefaultDie(typed).refusal, "") << typed;
  for (const auto& [stored, shown] : {std::pair{"6", "d6"}, {"dFate", "dFate"}})
    EXPECT_EQ(DefaultDieText(stored), shown);
}

TEST_F(DialogModelsTest, AlwaysAddItems) {
  const Items others{"4df", "1d20"};
  EXPECT_EQ(CheckAlwaysAddItem("3d6+2", others), "");
  for (const char* item : {"  ", " 1D20 ", "x ; y", "Defined"})
    EXPECT_NE(CheckAlwaysAddItem(item, others), "") << item;
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
    StartLists(c.keepNum, c.newFirst, c.oldItems, c.history);
    view.dieValue = "typed";
    Items items = OneBased(c.newItems), expected = OneBased(c.expected);
    ApplyAlwaysAddItems(Listed(true, items));
    EXPECT_EQ(std::make_tuple(AlwaysAddItems, DieHistory, view.list, view.dieValue),
              std::make_tuple(items, expected, Listed(c.rebuilt, expected), "typed"));
  }
  EXPECT_EQ(settings.KeepNum, 2);  // raised to the number of items, even unchanged ones
}

// Shown texts are cut at a limit, long lines broken at a width; neither
// splits a CR LF or a UTF-8 character.
TEST_F(DialogModelsTest, ShownTextIsLimitedAndItsLongLinesBroken) {
  // A text, a size and what becomes of the text.
  using TextCase = std::tuple<std::string, size_t, std::string>;
  const TextCase limited[] = {
      {"abcdef", 6, "abcdef"},
      {"ab\r\ncd\r\nef", 9, "ab\r\ncd\r\n... 2 more characters not shown"},
      {"abcd\r\nef", 5, "abcd\r\n... 4 more characters not shown"},
      {"ab\xC3\xA9z", 3, "ab\r\n... 3 more characters not shown"},
      {std::string(1234568, 'x'), 5, "xxxxx\r\n... 1,234,563 more characters not shown"},
  };
  for (const auto& [text, limit, expected] : limited)
    EXPECT_EQ(LimitShownText(text, limit), expected) << limit;
  const TextCase broken[] = {
      {"3d6= +1+2+3+4", 8, "3d6= +1\r\n+2+3+4"},  // before a sign
      {"abcdef ghij", 8, "abcdef \r\nghij"},      // after a blank
      {"abcdefghijkl", 8, "abcdefgh\r\nijkl"},    // at the width
      {"a+bcdefghij", 8, "a+bcdefg\r\nhij"},      // a sign too early is no place
      {"+1+2+3+4+5+6+7\r\nx\r\n", 6, "+1+2+3\r\n+4+5+6\r\n+7\r\nx\r\n"},
      {"abcdefg\xC3\xA9xyz", 8, "abcdefg\r\n\xC3\xA9xyz"},
  };
  for (const auto& [text, width, expected] : broken)
    EXPECT_EQ(BreakLongLines(text, width), expected) << text;
}

}  // namespace
}  // namespace gandrel::testing
