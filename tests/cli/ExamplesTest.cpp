// The example scripts of examples/, run by the terminal program as a player
// would run them: their prompts answered on standard input, their dice fixed
// by --seed, in a folder of their own (loot.die writes loot.txt there). The
// scripts of the guide to scripts run too.
#include <algorithm>
#include <filesystem>
#include <string>
#include <tuple>

#include "cli/CliFixture.h"

namespace gandrel::cli {
namespace {

namespace fs = std::filesystem;

class ExamplesTest : public ::testing::Test {
 protected:
  void SetUp() override { fs::create_directories(folder.Path("config")); }

  // gandrel-cli ARGS PATH, answers on standard input, in folder.
  CliOutcome RunScript(const std::string& path, const std::string& args,
                       const std::string& answers) {
    folder.Write("answers", answers);
    CliOutcome run = Shell("cd '" + folder.path() + "' && " + GANDREL_CLI_PROGRAM +
                           " --config config " + args + " '" + path + "' <answers 2>err");
    run.err = folder.Read("err");
    return run;
  }

  testing::TempFolder folder;
};

const char* const kWeapons =
    "Which weapon do you strike with?\n  1. Dagger\n  2. Short sword\n  3. Long sword\n"
    "  4. Battle axe\n  5. Great sword\n  6. Long bow\n  0. Cancel\n";

TEST_F(ExamplesTest, EachExampleRunsAsAPlayerWouldRunIt) {
  const struct {
    const char* script;
    const char* args;
    std::string answers, out, err;
  } cases[] = {
      {"abilities.die", "--seed 1", "",
       "Strength: 13\nDexterity: 9\nConstitution: 18\nIntelligence: 17\nWisdom: 5\n"
       "Charisma: 10\n\nTotal: 72\n"
       "72\n"
       "4d6= +5+4+4+3= 16\nBest(3,+5+4+4+3)=(+5+4+4)\n"
       "4d6= +5+1+1+3= 10\nBest(3,+5+1+1+3)=(+5+3+1)\n"
       "4d6= +6+4+6+6= 22\nBest(3,+6+4+6+6)=(+6+6+6)\n"
       "4d6= +6+5+4+6= 21\nBest(3,+6+5+4+6)=(+6+6+5)\n"
       "4d6= +1+3+1+1= 6\nBest(3,+1+3+1+1)=(+3+1+1)\n"
       "4d6= +3+3+4+3= 13\nBest(3,+3+3+4+3)=(+4+3+3)\n",
       ""},
      {"damage.die", "--seed 1", "5\n3\n", "Great sword: 12\nIf : 5 = 0: False\n",
       std::string(kWeapons) + "Choice [3]: 5\nDamage modifier (Strength or Dexterity)? [2]: 3\n"},
      {"damage.die", "-q", "0\n", "No attack\n", std::string(kWeapons) + "Choice [3]: 0\n"},
      // The wild die explodes.
      {"dicepool.die", "--seed 10", "3\n",
       "11\nIf : 3 < 1: FalseCalc: 11=11\nSWWild(3d6)=(+[6+3]+1+1)=11\n",
       "How many dice? [4]: 3\n"},
      {"dicepool.die", "-q", "0\n", "No dice, no roll\n", "How many dice? [4]: 0\n"},
      {"initiative.die", "--seed 1", "2\n-1\n\n3\n",
       "Aldra rolls 17\nBram rolls 10\nCorwin rolls 12\nDessa rolls 11\n"
       "17  Aldra\n12  Corwin\n11  Dessa\n10  Bram\n"
       "The order of the round is in its window\n",
       "Aldra: initiative modifier? [0]: 2\nBram: initiative modifier? [0]: -1\n"
       "Corwin: initiative modifier? [0]: \nDessa: initiative modifier? [0]: 3\n"},
      {"encounter.die", "-q --seed 23", "", "3 goblins\n", ""},
      {"encounter.die", "--seed 10", "",
       "A dragon!\n    Is: 20 = 1 to 8: No\n    Is: 20 = 9 to 11, 13: No\n"
       "    Is: 20 = 12, 14 to 16: No\n    Is: 20<= 19: No\n    Is: 20 = else: Yes\n"
       "    Calc: \"A dragon!\"=0\nEnd Select: 20\n",
       ""},
      {"loot.die", "--seed 1", "", "130 gold and a rusty key\n", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.script) + " " + c.args);
    CliOutcome run = RunScript(std::string(GANDREL_EXAMPLES) + "/" + c.script, c.args, c.answers);
    EXPECT_EQ(std::tie(run.status, run.out, run.err), std::make_tuple(0, c.out, c.err));
  }
  // The loot is written down too, with Windows line ends.
  EXPECT_EQ(folder.Read("loot.txt"), "----\r\nGold: 130\r\nAlso: a rusty key\r\n");
  // Every example is in the table.
  for (const auto& entry : fs::directory_iterator(GANDREL_EXAMPLES)) {
    std::string name = entry.path().filename().string();
    EXPECT_TRUE(std::any_of(std::begin(cases), std::end(cases),
                            [&](const auto& c) { return name == c.script; }))
        << name << " has no test";
  }
}

// Every script of the guide (its "die" blocks) runs to a result, its
// questions answered with their defaults, and tells of no trouble.
TEST_F(ExamplesTest, TheGuidesScriptsRun) {
  const std::string guide = testing::TempFolder::ReadWhole(GANDREL_GUIDE), fence = "```die\n";
  int count = 0;
  for (size_t at = guide.find(fence); at != std::string::npos; at = guide.find(fence, at)) {
    at += fence.size();
    size_t end = guide.find("```", at);
    ASSERT_NE(end, std::string::npos);
    std::string script = guide.substr(at, end - at);
    SCOPED_TRACE(script);
    CliOutcome run = RunScript(folder.Write("guide.die", script), "-q --seed 1", "");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err.find("gandrel:"), std::string::npos) << run.err;
    ++count;
  }
  EXPECT_GE(count, 15);
}

}  // namespace
}  // namespace gandrel::cli
