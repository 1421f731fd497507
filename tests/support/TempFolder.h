// A fresh folder under the system's temporary folder for one test, removed
// with everything in it at the end, and the files in it by name.
#pragma once

#include <string>

namespace gandrel::testing {

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  const std::string& path() const { return path_; }
  std::string Path(const std::string& name) const { return path_ + "/" + name; }
  // Writes the file of that name byte for byte; returns its path.
  std::string Write(const std::string& name, const std::string& content) const;
  std::string Read(const std::string& name) const { return ReadWhole(Path(name)); }
  // A file's bytes; "" when it cannot be read.
  static std::string ReadWhole(const std::string& path);

 private:
  std::string path_;
};

}  // namespace gandrel::testing
