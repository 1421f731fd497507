#include "support/TempFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace gandrel::testing {

TempFolder::TempFolder() {
  path_ = (std::filesystem::temp_directory_path() / "gandrel-test-XXXXXX").string();
  if (!mkdtemp(path_.data())) ADD_FAILURE() << "cannot make a temporary folder";
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::Write(const std::string& name, const std::string& content) const {
  std::ofstream(Path(name), std::ios::binary) << content;
  return Path(name);
}

std::string TempFolder::ReadWhole(const std::string& path) {
  std::stringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

}  // namespace gandrel::testing
