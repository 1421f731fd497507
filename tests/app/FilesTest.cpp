#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "ShellFixture.h"

namespace gandrel::testing {
namespace {

namespace fs = std::filesystem;
using Items = std::vector<std::string>;

class FilesTest : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    for (const char* name : {"XDG_CONFIG_HOME", "HOME"}) {
      const char* value = std::getenv(name);
      saved.push_back(value ? value : "");
    }
    setenv("HOME", PathOf("home").c_str(), 1);
    unsetenv("XDG_CONFIG_HOME");
    fs::create_directories(PathOf("bin"));
  }
  void TearDown() override {
    setenv("XDG_CONFIG_HOME", saved[0].c_str(), 1);
    if (saved[0].empty()) unsetenv("XDG_CONFIG_HOME");
    setenv("HOME", saved[1].c_str(), 1);
    ShellTest::TearDown();
  }
  Items saved;
};

TEST_F(FilesTest, WhereTheFilesLive) {
  struct Case {
    const char* name;
    const char* xdg;      // nullptr: unset
    const char* binFile;  // a file put beside the executable first, or nullptr
    std::string folder;   // relative to the test folder
    Items datFiles;
  } cases[] = {
      {"home config",
       nullptr,
       nullptr,
       "home/.config/gandrel",
       {"bin/gandrel.dat", "home/.config/gandrel/gandrel.dat"}},
      {"relative XDG ignored",
       "rel",
       nullptr,
       "home/.config/gandrel",
       {"bin/gandrel.dat", "home/.config/gandrel/gandrel.dat"}},
      {"XDG", "/XDG", nullptr, "XDG/gandrel", {"bin/gandrel.dat", "XDG/gandrel/gandrel.dat"}},
      {"a dat alone is not portable",
       nullptr,
       "gandrel.dat",
       "home/.config/gandrel",
       {"bin/gandrel.dat", "home/.config/gandrel/gandrel.dat"}},
      {"portable", nullptr, "gandrel.def", "bin", {"bin/gandrel.dat"}},
  };
  for (const Case& c : cases) {
    if (c.xdg) setenv("XDG_CONFIG_HOME", (c.xdg[0] == '/' ? folder + c.xdg : c.xdg).c_str(), 1);
    if (!c.xdg) unsetenv("XDG_CONFIG_HOME");
    if (c.binFile) WriteFile(std::string("bin/") + c.binFile, "x");
    EXPECT_EQ(ChooseAppDirectory(PathOf("bin")), PathOf(c.folder)) << c.name;
    EXPECT_EQ(AppFile("gandrel.ini"), PathOf(c.folder + "/gandrel.ini")) << c.name;
    Items expected;
    for (const std::string& f : c.datFiles)
      expected.push_back(PathOf(f));
    EXPECT_EQ(OldDefinitionsFiles(), expected) << c.name;
  }
  SetAppDirectory(PathOf("bin/"));
  EXPECT_EQ(OldDefinitionsFiles(), Items{PathOf("bin/gandrel.dat")});
}

TEST_F(FilesTest, AtomicWrite) {
  std::string reason;
  ASSERT_TRUE(WriteTextFileAtomic(PathOf("new/deeper/f.txt"), "one", reason));
  EXPECT_EQ(ReadFile("new/deeper/f.txt"), "one");
  chmod(PathOf("new/deeper/f.txt").c_str(), 0640);
  fs::create_symlink(PathOf("new/deeper/f.txt"), PathOf("link"));
  ASSERT_TRUE(WriteTextFileAtomic(PathOf("link"), "two", reason));
  EXPECT_TRUE(fs::is_symlink(PathOf("link")));
  EXPECT_EQ(ReadFile("new/deeper/f.txt"), "two");
  struct stat st;
  stat(PathOf("new/deeper/f.txt").c_str(), &st);
  EXPECT_EQ(st.st_mode & 0777, 0640u);
  WriteFile("plain", "x");
  EXPECT_FALSE(WriteTextFileAtomic(PathOf("plain/f.txt"), "y", reason));
  EXPECT_FALSE(reason.empty());
  std::string content;
  EXPECT_FALSE(ReadTextFile(PathOf("absent"), content, reason));
  EXPECT_EQ(reason, "No such file or directory");
}

}  // namespace
}  // namespace gandrel::testing
