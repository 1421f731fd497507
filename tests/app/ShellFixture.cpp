#include "ShellFixture.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/modINI.h"

namespace gandrel::testing {

void ShellTest::SetUp() {
  EngineTest::SetUp();
  folder = std::filesystem::temp_directory_path() / "gandrel-test-XXXXXX";
  if (!mkdtemp(folder.data())) FAIL() << "cannot make a temporary folder";
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
  std::stringstream text;
  text << std::ifstream(PathOf(name), std::ios::binary).rdbuf();
  return text.str();
}

Items OneBased(const std::string& entries) {
  Items list{""};
  std::istringstream words(entries);
  for (std::string w; words >> w;)
    list.push_back(w);
  return list;
}

}  // namespace gandrel::testing
