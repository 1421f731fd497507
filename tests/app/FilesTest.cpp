#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ShellFixture.h"

namespace gandrel::testing {
namespace {

namespace fs = std::filesystem;
using Items = std::vector<std::string>;

// HOME in the test folder, the executable in its "bin"; the environment is
// given back afterwards.
class FilesTest : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    for (auto& [name, value] : saved)
      if (const char* v = std::getenv(name)) value = v;
    setenv("HOME", PathOf("home").c_str(), 1);
    fs::create_directories(PathOf("bin"));
  }
  void TearDown() override {
    for (auto& [name, value] : saved)
      value ? setenv(name, value->c_str(), 1) : unsetenv(name);
    ShellTest::TearDown();
  }
  std::pair<const char*, std::optional<std::string>> saved[2] = {{"HOME", {}},
                                                                 {"XDG_CONFIG_HOME", {}}};
};

TEST_F(FilesTest, WhereTheFilesLive) {
  struct Case {
    const char* xdg;      // nullptr: unset; "/..." lies in the test folder
    const char* binFile;  // a file put beside the executable first, or nullptr
    std::string folder;   // relative to the test folder
  } cases[] = {
      {nullptr, nullptr, "home/.config/gandrel"},
      {"rel", nullptr, "home/.config/gandrel"},  // a relative folder is ignored
      {"/XDG", nullptr, "XDG/gandrel"},
      {nullptr, "gandrel.dat", "home/.config/gandrel"},  // a dat alone is not portable
      {nullptr, "gandrel.def", "bin"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.folder);
    if (c.xdg) setenv("XDG_CONFIG_HOME", (c.xdg[0] == '/' ? folder + c.xdg : c.xdg).c_str(), 1);
    if (!c.xdg) unsetenv("XDG_CONFIG_HOME");
    if (c.binFile) WriteFile(std::string("bin/") + c.binFile, "x");
    EXPECT_EQ(ChooseAppDirectory(PathOf("bin")), PathOf(c.folder));
    // The gandrel.dat beside the executable first, and only once.
    Items dats{PathOf("bin/gandrel.dat"), PathOf(c.folder + "/gandrel.dat")};
    if (c.folder == "bin") dats.pop_back();
    EXPECT_EQ(OldDefinitionsFiles(), dats);
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
