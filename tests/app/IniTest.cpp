#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <string>

#include "ShellFixture.h"
#include "app/modINI.h"

namespace gandrel::testing {
namespace {

class IniTest : public ShellTest {
 protected:
  std::string ini() const { return PathOf("test.ini"); }
};

TEST_F(IniTest, UnregisteredAccessIsRefused) {
  EXPECT_EQ(GetIniInt("x", 7), 0);
  EXPECT_EQ(GetIniString("x", "d"), "");
  EXPECT_EQ(WriteIniInt("x", 1), 0);
  EXPECT_EQ(WriteIniString("x", "v"), 0);
  ASSERT_EQ(ui.messages.size(), 4u);
  for (const auto& m : ui.messages) {
    EXPECT_EQ(m.text, "[Section] and FileName Not Registered in Private.Ini!");
    EXPECT_EQ(m.icon, MsgIcon::Critical);
    EXPECT_EQ(m.title, "IniFile Logic Error");
  }
  EXPECT_TRUE(ReadFile("test.ini").empty());
}

TEST_F(IniTest, Reads) {
  WriteFile("test.ini",
            "top=1\n[FLAGS]\n; OnTop=5\n ONTOP = 12 \nword=abc\nlead=7x\nneg=-3\nminus=- 4\n"
            "plus=+5\nhuge=99999999999\nempty=\nname= MS Sans Serif \n[Flags]\ntwice=1\n"
            "[Other]\nOnTop=9\n");
  SetIniFile("  Flags ", ini());
  struct Case {
    const char* key;
    int32_t number;
    const char* text;
  } cases[] = {
      {"OnTop", 12, "12"},
      {"word", 0, "abc"},
      {"lead", 7, "7x"},
      {"neg", -3, "-3"},
      {"minus", 0, "- 4"},
      {"plus", 0, "+5"},
      {"huge", INT_MAX, "99999999999"},
      {"empty", 0, ""},
      {"name", 0, "MS Sans Serif"},
      {"twice", -1, "dflt"},
      {"top", -1, "dflt"},
      {"missing", -1, "dflt"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(GetIniInt(c.key, -1), c.number) << c.key;
    EXPECT_EQ(GetIniString(c.key, "dflt"), c.text) << c.key;
  }
  SetIniFile("Nowhere", ini());
  EXPECT_EQ(GetIniInt("OnTop", 4), 4);
  SetIniFile("Flags", PathOf("absent.ini"));
  EXPECT_EQ(GetIniString("OnTop", "d"), "d");
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(IniTest, LongValuesAreCut) {
  WriteFile("test.ini",
            "[s]\nk=" + std::string(300, 'x') + "\nu=" + std::string(253, 'x') + "\xC3\xA9\n");
  SetIniFile("s", ini());
  EXPECT_EQ(GetIniString("k", ""), std::string(254, 'x'));
  EXPECT_EQ(GetIniString("u", ""), std::string(253, 'x'));  // no half character
  EXPECT_EQ(GetIniString("none", std::string(260, 'd')), std::string(254, 'd'));
}

TEST_F(IniTest, WritesInPlaceAndAppendsInOrder) {
  WriteFile("test.ini", "; top comment\n[A]\n; about x\nx = 1\nother=keep\n\n[B]\ny=2\n");
  SetIniFile("a", ini());
  EXPECT_EQ(WriteIniInt("X", 5), 1);
  EXPECT_EQ(WriteIniString("z", "line\r\nbreak"), 1);
  SetIniFile("C", ini());
  WriteIniInt("w", -1);
  WriteIniInt("v", 2);
  EXPECT_EQ(ReadFile("test.ini"),
            "; top comment\n[A]\n; about x\nx=5\nother=keep\nz=line  break\n\n[B]\ny=2\n\n[C]\n"
            "w=-1\nv=2\n");
}

TEST_F(IniTest, BatchWritesOnceAtTheEnd) {
  WriteFile("test.ini", "[A]\nx=1\n");
  BeginIniBatch();
  SetIniFile("A", ini());
  WriteIniInt("x", 2);
  WriteIniString("y", "3");
  EXPECT_EQ(GetIniInt("x", 0), 2);
  EXPECT_EQ(ReadFile("test.ini"), "[A]\nx=1\n");
  std::string file, reason;
  EXPECT_TRUE(EndIniBatch(file, reason));
  EXPECT_EQ(ReadFile("test.ini"), "[A]\nx=2\ny=3\n");
  WriteFile("test.ini", "[A]\r\nx=22\r\n");  // changed on disk: read again
  EXPECT_EQ(GetIniInt("x", 0), 22);
  WriteIniInt("y", 1);  // and its line ends kept
  EXPECT_EQ(ReadFile("test.ini"), "[A]\r\nx=22\r\ny=1\r\n");
}

TEST_F(IniTest, UnreadableFileIsToldOnceAndNotOverwritten) {
  std::filesystem::create_directory(ini());
  SetIniFile("A", ini());
  EXPECT_EQ(GetIniInt("x", 3), 3);
  EXPECT_EQ(GetIniString("y", "d"), "d");
  ASSERT_EQ(ui.messages.size(), 1u);
  EXPECT_EQ(ui.messages[0].text.rfind("Gandrel could not read the settings file " + ini(), 0), 0u);
  EXPECT_EQ(WriteIniInt("x", 1), 0);
  BeginIniBatch();
  WriteIniInt("x", 1);
  std::string file, reason;
  EXPECT_FALSE(EndIniBatch(file, reason));
  EXPECT_EQ(file, ini());
  EXPECT_TRUE(std::filesystem::is_directory(ini()));
}

}  // namespace
}  // namespace gandrel::testing
