#include <gtest/gtest.h>

#include "calc/RuntimeError.h"
#include "dice/modDiceCalc.h"
#include "support/EngineFixture.h"

namespace gandrel {
namespace {

class DieTypes : public testing::EngineTest {
 protected:
  static void Def(std::string statement) { ParseDefine(statement); }
};

TEST_F(DieTypes, RangeAndListStatements) {
  Def("define fate = 1 to -1");
  Def("define dfib = 1,1,2,3,5");
  Def("define dx = 7");  // neither range nor list: ignored
  Def("define nothing here");
  ASSERT_EQ(Define.size(), 2u);
  EXPECT_EQ(Define[1].Name, "dfate");
  EXPECT_EQ(Define[1].Lo, -1);
  EXPECT_EQ(Define[1].Hi, 1);
  ASSERT_EQ(DefSeq.size(), 2u);
  EXPECT_EQ(DefSeq[1].Name, "dfib");
  EXPECT_EQ(DefSeq[1].Dice, "1,1,2,3,5");
}

TEST_F(DieTypes, RedefinitionInOtherCaseKeepsOneRecordWithTheNewSpelling) {
  Def("define dFudge = -1 to 1");
  Def("define DFUDGE = -2 to 2");
  ASSERT_EQ(Define.size(), 2u);
  EXPECT_EQ(Define[1].Name, "DFUDGE");
  EXPECT_EQ(Define[1].Lo, -2);
}

TEST_F(DieTypes, BoundsRoundHalfToEvenAndSpecsWithToAreRanges) {
  Def("define dh = 2.5 to 3.5");
  Def("define dc = 1,2 to 3");
  Def("define = 1 to 2");  // empty name becomes "d"
  ASSERT_EQ(Define.size(), 4u);
  // Sorted longest name first: dh and dc (2) before d (1).
  EXPECT_EQ(Define[1].Name, "dh");
  EXPECT_EQ(Define[1].Lo, 2);
  EXPECT_EQ(Define[1].Hi, 4);
  EXPECT_EQ(Define[2].Name, "dc");
  EXPECT_EQ(Define[2].Lo, 1);
  EXPECT_EQ(Define[2].Hi, 3);
  EXPECT_EQ(Define[3].Name, "d");
}

TEST_F(DieTypes, LongerNamesSortFirst) {
  Def("define d1 = 1 to 1");
  Def("define d10 = 0 to 9");
  Def("define dfudge = -1 to 1");
  ASSERT_EQ(Define.size(), 4u);
  EXPECT_EQ(Define[1].Name, "dfudge");
  EXPECT_EQ(Define[2].Name, "d10");
  EXPECT_EQ(Define[3].Name, "d1");
}

TEST_F(DieTypes, EqualLengthsAreReorderedOnlyAsASideEffect) {
  // Exchange sort trace: [da, db, dcc] -> i=1: da<dcc swaps: [dcc, db, da];
  // i=2: db vs da equal: stays.
  Def("define da = 1 to 2");
  Def("define db = 1 to 2");
  Def("define dcc = 1 to 2");
  EXPECT_EQ(Define[1].Name, "dcc");
  EXPECT_EQ(Define[2].Name, "db");
  EXPECT_EQ(Define[3].Name, "da");
}

TEST_F(DieTypes, BoundBeyond32BitsIsAnOverflow) {
  std::string statement = "define dbig = 1 to 3000000000";
  EXPECT_THROW(ParseDefine(statement), RuntimeError);
}

}  // namespace
}  // namespace gandrel
