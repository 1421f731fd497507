// The file layer that a script's OPEN FILE, PRINT and CLOSE FILE write
// through.
//
// The default layer writes real files. A caller that must touch no file (a
// calculation that runs scripts many times, a fuzz target, a test) installs
// its own: one that discards, or one that keeps the files in memory. Nothing
// here raises: a failure is a return value, for the command to report.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "calc/Installed.h"

namespace gandrel {

// One open file. Text reaches it as bytes, unchanged (CR LF stays CR LF).
class ScriptFile {
 public:
  virtual ~ScriptFile() = default;
  // Appends text; false when it could not be written.
  virtual bool Write(std::string_view text) = 0;
  // Writes out what is buffered and closes the file; false when that
  // failed. Further calls do nothing and report success.
  virtual bool Close() = 0;
};

class ScriptFileLayer {
 public:
  virtual ~ScriptFileLayer() = default;
  // Opens path for appending (created when missing), or for writing from
  // the start when overwrite is True (an existing file is emptied). A
  // relative path is taken from the current directory. nullptr when the file
  // cannot be opened. Opening never waits: a pipe that nobody reads cannot
  // be opened.
  virtual std::unique_ptr<ScriptFile> Open(const std::string& path, bool overwrite) = 0;
};

// The layer in force; never null. Until one is installed, real files.
ScriptFileLayer& ScriptFiles();

// Installs layer (nullptr restores real files). The caller keeps ownership.
void SetScriptFiles(ScriptFileLayer* layer);
// Installs one for the length of a block.
using ScriptFilesScope = Installed<ScriptFileLayer, ScriptFiles, SetScriptFiles>;

// A layer that touches no file: every path opens, every write succeeds, and
// nothing is kept.
ScriptFileLayer& DiscardingScriptFiles();

}  // namespace gandrel
