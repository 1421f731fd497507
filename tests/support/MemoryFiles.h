// A file layer for tests: script files live in memory, by path. What a
// script writes reaches its file when the file is closed, as buffered
// writes would; paths under "/unwritable/" cannot be opened, and with
// failWrites every write fails.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "script/ScriptFiles.h"

namespace gandrel::testing {

class MemoryFiles : public ScriptFileLayer {
 public:
  MemoryFiles();            // installs itself
  ~MemoryFiles() override;  // restores real files

  std::unique_ptr<ScriptFile> Open(const std::string& path, bool overwrite) override;

  std::map<std::string, std::string> files;  // path -> contents
  bool failWrites = false;
};

}  // namespace gandrel::testing
