#include "support/MemoryFiles.h"

namespace gandrel::testing {

namespace {

class MemoryFile final : public ScriptFile {
 public:
  MemoryFile(std::string& contents, const bool& failWrites)
      : contents_(&contents), failWrites_(failWrites) {}
  bool Write(std::string_view text) override {
    if (!contents_ || failWrites_) return false;
    buffer_ += text;
    return true;
  }
  bool Close() override {
    if (contents_) *contents_ += buffer_;
    contents_ = nullptr;
    buffer_.clear();
    return true;
  }

 private:
  std::string* contents_;
  const bool& failWrites_;
  std::string buffer_;
};

}  // namespace

MemoryFiles::MemoryFiles() {
  SetScriptFiles(this);
}

MemoryFiles::~MemoryFiles() {
  SetScriptFiles(nullptr);
}

std::unique_ptr<ScriptFile> MemoryFiles::Open(const std::string& path, bool overwrite) {
  if (path.starts_with("/unwritable/")) return nullptr;
  std::string& contents = files[path];
  if (overwrite) contents.clear();
  return std::make_unique<MemoryFile>(contents, failWrites);
}

}  // namespace gandrel::testing
