#include "script/ScriptFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace gandrel {

namespace {

// A file through stdio: buffered, binary, so that bytes pass unchanged.
class RealFile final : public ScriptFile {
 public:
  explicit RealFile(std::FILE* file) : file_(file) {}
  ~RealFile() override { Close(); }
  RealFile(const RealFile&) = delete;
  RealFile& operator=(const RealFile&) = delete;

  bool Write(std::string_view text) override {
    if (!file_) return false;
    return std::fwrite(text.data(), 1, text.size(), file_) == text.size();
  }
  bool Close() override {
    if (!file_) return true;
    bool written = std::ferror(file_) == 0;
    written = std::fclose(file_) == 0 && written;
    file_ = nullptr;
    return written;
  }

 private:
  std::FILE* file_;
};

class RealFiles final : public ScriptFileLayer {
 public:
  std::unique_ptr<ScriptFile> Open(const std::string& path, bool overwrite) override {
    if (path.empty()) return nullptr;
    // Opening a pipe that nobody reads would wait for a reader for ever,
    // with no event pumped: without waiting it fails at once instead.
    int flags = O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK | (overwrite ? O_TRUNC : O_APPEND);
    int fd = open(path.c_str(), flags, 0666);
    if (fd < 0) return nullptr;
    // Once open, writes wait as ordinary writes do.
    std::FILE* file = fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) & ~O_NONBLOCK) == 0
                          ? fdopen(fd, overwrite ? "wb" : "ab")
                          : nullptr;
    if (!file) {
      close(fd);
      return nullptr;
    }
    return std::make_unique<RealFile>(file);
  }
};

class DiscardingFile final : public ScriptFile {
 public:
  bool Write(std::string_view) override { return true; }
  bool Close() override { return true; }
};

class DiscardingFiles final : public ScriptFileLayer {
 public:
  std::unique_ptr<ScriptFile> Open(const std::string&, bool) override {
    return std::make_unique<DiscardingFile>();
  }
};

RealFiles realFiles;
DiscardingFiles discardingFiles;
ScriptFileLayer* current = &realFiles;

}  // namespace

ScriptFileLayer& ScriptFiles() {
  return *current;
}

void SetScriptFiles(ScriptFileLayer* layer) {
  current = layer ? layer : &realFiles;
}

ScriptFileLayer& DiscardingScriptFiles() {
  return discardingFiles;
}

}  // namespace gandrel
