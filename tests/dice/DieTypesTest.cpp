#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "calc/RuntimeError.h"
#include "dice/modDiceCalc.h"
#include "support/EngineFixture.h"

namespace gandrel {
namespace {

// Both tables in lookup order: "name:lo..hi" for ranges, "name=items" for lists.
std::string Tables() {
  std::string out;
  for (size_t i = 1; i < Define.size(); ++i)
    out += Define[i].Name + ":" + std::to_string(Define[i].Lo) + ".." +
           std::to_string(Define[i].Hi) + " ";
  for (size_t i = 1; i < DefSeq.size(); ++i)
    out += DefSeq[i].Name + "=" + DefSeq[i].Dice + " ";
  return out;
}

using DieTypes = testing::EngineTest;

// Longer names sort first. The exchange sort never swaps equal lengths
// directly: [da, db, dcc] becomes [dcc, db, da] by da's exchange with dcc.
TEST_F(DieTypes, DefineStatements) {
  const struct {
    std::vector<std::string> statements;
    const char* tables;
  } cases[] = {
      {{"define fate = 1 to -1", "define dfib = 1,1,2,3,5", "define dx = 7", "define nothing here"},
       "dfate:-1..1 dfib=1,1,2,3,5 "},
      {{"define dFudge = -1 to 1", "define DFUDGE = -2 to 2"}, "DFUDGE:-2..2 "},
      {{"define dh = 2.5 to 3.5", "define dc = 1,2 to 3", "define = 1 to 2"},
       "dh:2..4 dc:1..3 d:1..2 "},
      {{"define d1 = 1 to 1", "define d10 = 0 to 9", "define dfudge = -1 to 1"},
       "dfudge:-1..1 d10:0..9 d1:1..1 "},
      {{"define da = 1 to 2", "define db = 1 to 2", "define dcc = 1 to 2"},
       "dcc:1..2 db:1..2 da:1..2 "}};
  for (const auto& c : cases) {
    ClearDieTypes();
    for (std::string statement : c.statements)
      ParseDefine(statement);
    EXPECT_EQ(Tables(), c.tables) << c.statements[0];
  }
  std::string tooWide = "define dbig = 1 to 3000000000";
  EXPECT_THROW(ParseDefine(tooWide), RuntimeError);
}

}  // namespace
}  // namespace gandrel
