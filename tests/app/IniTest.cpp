#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <tuple>

#include "ShellFixture.h"
#include "app/modINI.h"

namespace gandrel::testing {
namespace {

class IniTest : public ShellTest {
 protected:
  std::string ini() const { return dir.Path("test.ini"); }
};

TEST_F(IniTest, UnregisteredAccessIsRefused) {
  EXPECT_EQ(GetIniInt("x", 7), 0);
  EXPECT_EQ(GetIniString("x", "d"), "");
  EXPECT_EQ(WriteIniString("x", "v"), 0);
  EXPECT_EQ(ui.Texts(), Items(3, "[Section] and FileName Not Registered in Private.Ini!"));
}

TEST_F(IniTest, Reads) {
  dir.Write("test.ini",
            "top=1\n[FLAGS]\n; OnTop=5\n ONTOP = 12 \nlead=7x\nneg=-3\n"
            "huge=99999999999\nempty=\nlong=" +
                std::string(300, 'x') + "\nutf8=" + std::string(253, 'x') +
                "\xC3\xA9\n[Flags]\ntwice=1\n[Other]\nOnTop=9\n");
  // The section, the key, the number read (default -1) and the text (default "dflt").
  const std::tuple<const char*, const char*, int32_t, std::string> cases[] = {
      {"  Flags ", "OnTop", 12, "12"},
      {"Flags", "lead", 7, "7x"},
      {"Flags", "neg", -3, "-3"},
      {"Flags", "huge", INT_MAX, "99999999999"},
      {"Flags", "empty", 0, ""},
      {"Flags", "long", 0, std::string(254, 'x')},  // cut to 254 characters
      {"Flags", "utf8", 0, std::string(253, 'x')},  // ... and no half character
      {"Flags", "twice", -1, "dflt"},               // only the first section of a name counts
      {"Flags", "top", -1, "dflt"},
      {"Nowhere", "OnTop", -1, "dflt"},
  };
  for (const auto& [section, key, number, text] : cases) {
    SetIniFile(section, ini());
    EXPECT_EQ(GetIniInt(key, -1), number) << key;
    EXPECT_EQ(GetIniString(key, "dflt"), text) << key;
  }
  EXPECT_EQ(GetIniString("none", std::string(260, 'd')), std::string(254, 'd'));
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(IniTest, WritesInPlaceAndAppendsInOrder) {
  dir.Write("test.ini", "; top comment\n[A]\n; about x\nx = 1\nother=keep\n\n[B]\ny=2\n");
  SetIniFile("a", ini());
  EXPECT_EQ(WriteIniInt("X", 5), 1);
  EXPECT_EQ(WriteIniString("z", "line\r\nbreak"), 1);
  SetIniFile("C", ini());
  WriteIniInt("w", -1);
  WriteIniInt("v", 2);
  EXPECT_EQ(dir.Read("test.ini"),
            "; top comment\n[A]\n; about x\nx=5\nother=keep\nz=line  break\n\n[B]\ny=2\n\n[C]\n"
            "w=-1\nv=2\n");
}

TEST_F(IniTest, BatchWritesOnceAtTheEnd) {
  dir.Write("test.ini", "[A]\nx=1\n");
  BeginIniBatch();
  SetIniFile("A", ini());
  WriteIniInt("x", 2);
  WriteIniString("y", "3");
  EXPECT_EQ(GetIniInt("x", 0), 2);
  EXPECT_EQ(dir.Read("test.ini"), "[A]\nx=1\n");
  std::string file, reason;
  EXPECT_TRUE(EndIniBatch(file, reason));
  EXPECT_EQ(dir.Read("test.ini"), "[A]\nx=2\ny=3\n");
  dir.Write("test.ini", "[A]\r\nx=22\r\n");  // changed on disk: read again
  EXPECT_EQ(GetIniInt("x", 0), 22);
  WriteIniInt("y", 1);  // and its line ends kept
  EXPECT_EQ(dir.Read("test.ini"), "[A]\r\nx=22\r\ny=1\r\n");
}

TEST_F(IniTest, UnreadableFileIsToldOnceAndNotOverwritten) {
  std::filesystem::create_directory(ini());
  SetIniFile("A", ini());
  EXPECT_EQ(std::make_tuple(GetIniInt("x", 3), GetIniString("y", "d"), WriteIniInt("x", 1)),
            std::make_tuple(3, "d", 0));
  ASSERT_EQ(ui.messages.size(), 1u);
  EXPECT_EQ(ui.messages[0].text.rfind("Gandrel could not read the settings file " + ini(), 0), 0u);
  BeginIniBatch();
  WriteIniInt("x", 1);
  std::string file, reason;
  EXPECT_EQ(std::make_tuple(EndIniBatch(file, reason), file, std::filesystem::is_directory(ini())),
            std::make_tuple(false, ini(), true));
}

}  // namespace
}  // namespace gandrel::testing
