#include "ShellFixture.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/modINI.h"

namespace gandrel::testing {

std::string MakeTempFolder() {
  const char* tmp = std::getenv("TMPDIR");
  std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/gandrel-test-XXXXXX";
  if (!mkdtemp(pattern.data())) ADD_FAILURE() << "cannot make a temporary folder";
  return pattern;
}

void ShellTest::SetUp() {
  EngineTest::SetUp();
  folder = MakeTempFolder();
  SetAppDirectory(folder);
  SetMainView(&view);
  ResetIni();
  DieHistory.assign(1, "");
  AlwaysAddItems.assign(1, "");
}

void ShellTest::TearDown() {
  SetMainView(nullptr);
  ResetIni();
  std::filesystem::remove_all(folder);
  EngineTest::TearDown();
}

void ShellTest::WriteFile(const std::string& name, const std::string& content) const {
  std::ofstream(PathOf(name), std::ios::binary) << content;
}

std::string ShellTest::ReadFile(const std::string& name) const {
  std::ifstream in(PathOf(name), std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

std::vector<std::string> ShellTest::Entries(const std::vector<std::string>& list) {
  return std::vector<std::string>(list.begin() + 1, list.end());
}

}  // namespace gandrel::testing
