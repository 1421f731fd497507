// Where Gandrel's files live, the existence test, and whole-file reading and
// writing that never leaves a file half-written.
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "app/modGandrel.h"
#include "calc/UserInterface.h"

namespace gandrel {

namespace fs = std::filesystem;

namespace {

// The application's folder ("" until chosen) and the executable's folder
// when that is another one, whose gandrel.dat stands in for a missing one.
std::string appDirectory;
std::string extraDatDirectory;

// The files that could not be read, and whether the user has been told that
// they are not saved.
std::map<std::string, bool> unreadFiles;

// Settings and definitions files are small; anything larger than this is
// not one of them and is not read into memory.
constexpr off_t kMaxTextFileSize = 16 * 1024 * 1024;

}  // namespace

static std::string Absolute(const std::string& folder) {
  std::error_code ec;
  fs::path p = fs::absolute(folder.empty() ? fs::path(".") : fs::path(folder), ec);
  if (ec) return folder;
  return p.lexically_normal().string();
}

static std::string WithoutTrailingSlash(std::string folder) {
  while (folder.size() > 1 && folder.back() == '/')
    folder.pop_back();
  return folder;
}

static bool SameFolder(const std::string& a, const std::string& b) {
  std::error_code ec;
  if (fs::equivalent(a, b, ec)) return true;
  return WithoutTrailingSlash(a) == WithoutTrailingSlash(b);
}

static std::string HomeFolder() {
  const char* home = std::getenv("HOME");
  if (home && *home) return home;
  if (const passwd* pw = getpwuid(getuid()); pw && pw->pw_dir && *pw->pw_dir) return pw->pw_dir;
  return "";
}

static std::string UserConfigFolder() {
  const char* xdg = std::getenv("XDG_CONFIG_HOME");
  // Relative values are to be ignored.
  if (xdg && xdg[0] == '/') return WithoutTrailingSlash(xdg) + "/gandrel";
  std::string home = HomeFolder();
  if (home.empty()) return "";
  return WithoutTrailingSlash(home) + "/.config/gandrel";
}

static bool IsPortableFolder(const std::string& exeDir) {
  if (exeDir.empty()) return false;
  std::error_code ec;
  bool hasFiles = fs::exists(fs::path(exeDir) / "gandrel.ini", ec) ||
                  fs::exists(fs::path(exeDir) / "gandrel.def", ec);
  return hasFiles && access(exeDir.c_str(), W_OK) == 0;
}

std::string ExecutableDirectory() {
  std::error_code ec;
  fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  if (ec) return "";
  return exe.parent_path().string();
}

std::string ChooseAppDirectory(const std::string& exeDir) {
  extraDatDirectory.clear();
  if (IsPortableFolder(exeDir)) {
    appDirectory = Absolute(exeDir);
    return appDirectory;
  }
  std::string config = UserConfigFolder();
  appDirectory = Absolute(config.empty() ? exeDir : config);
  if (!exeDir.empty() && !SameFolder(exeDir, appDirectory)) extraDatDirectory = Absolute(exeDir);
  return appDirectory;
}

void SetAppDirectory(const std::string& folder) {
  appDirectory = Absolute(folder);
  extraDatDirectory.clear();
}

std::string AppDirectory() {
  if (appDirectory.empty()) ChooseAppDirectory("");
  return appDirectory;
}

static std::string FileIn(const std::string& folder, const std::string& name) {
  if (!folder.empty() && folder.back() == '/') return folder + name;
  return folder + "/" + name;
}

std::string AppFile(const std::string& name) {
  return FileIn(AppDirectory(), name);
}

// Two copies of one item would both be read; the settings folder's copy is
// the one the user keeps up to date.
std::string OldDefinitionsFile() {
  std::string own = AppFile("gandrel.dat");
  if (extraDatDirectory.empty() || !FileIsMissing(own)) return own;
  return FileIn(extraDatDirectory, "gandrel.dat");
}

bool FileIsMissing(const std::string& path) {
  if (path.empty() || path[0] == '.') return true;
  struct stat st;
  // Any other failure (a link loop, a folder that may not be searched) leaves
  // something there that the reader has to report.
  if (stat(path.c_str(), &st) != 0) return errno == ENOENT || errno == ENOTDIR;
  // A folder, a pipe or a device is there, though no file can be read from it.
  return S_ISREG(st.st_mode) && st.st_size == 0;
}

void NoteUnreadFile(const std::string& path) {
  unreadFiles.try_emplace(path, false);
}

bool SkipUnreadFile(const std::string& path) {
  auto it = unreadFiles.find(path);
  if (it == unreadFiles.end()) return false;
  if (!it->second) {
    it->second = true;
    MsgBox("Gandrel could not read " + path +
           ", so it is left as it is: this run's changes to it cannot be saved.");
  }
  return true;
}

bool FileWasUnread(const std::string& path) {
  return unreadFiles.contains(path);
}

void ForgetUnreadFiles() {
  unreadFiles.clear();
}

static std::string Reason(int error) {
  return std::strerror(error);
}

// Only a regular file of a sensible size is read: a pipe or a device could
// block the reader or never end.
static bool IsReadableFile(const struct stat& st, std::string& reason) {
  if (!S_ISREG(st.st_mode)) {
    reason = S_ISDIR(st.st_mode) ? Reason(EISDIR) : "not a regular file";
    return false;
  }
  if (st.st_size > kMaxTextFileSize) {
    reason = "the file is too large";
    return false;
  }
  return true;
}

bool ReadTextFile(const std::string& path, std::string& content, std::string& reason) {
  content.clear();
  struct stat st;
  if (stat(path.c_str(), &st) != 0) {
    reason = Reason(errno);
    return false;
  }
  if (!IsReadableFile(st, reason)) return false;
  // A pipe put in its place since the test above must not block the open.
  int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) {
    reason = Reason(errno);
    return false;
  }
  if (fstat(fd, &st) != 0) {
    reason = Reason(errno);
    close(fd);
    return false;
  }
  if (!IsReadableFile(st, reason)) {
    close(fd);
    return false;
  }
  char buffer[65536];
  for (;;) {
    ssize_t n = read(fd, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      reason = Reason(errno);
      close(fd);
      content.clear();
      return false;
    }
    if (n == 0) break;
    content.append(buffer, static_cast<size_t>(n));
    if (content.size() > static_cast<size_t>(kMaxTextFileSize)) {
      reason = "the file is too large";
      close(fd);
      content.clear();
      return false;
    }
  }
  close(fd);
  return true;
}

static bool WriteAll(int fd, const std::string& content) {
  size_t done = 0;
  while (done < content.size()) {
    ssize_t n = write(fd, content.data() + done, content.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return false;
    done += static_cast<size_t>(n);
  }
  return true;
}

// A link to a settings file is kept: the file it points at is replaced.
static fs::path ResolveLink(const fs::path& target) {
  std::error_code ec;
  if (!fs::is_symlink(target, ec)) return target;
  fs::path resolved = fs::weakly_canonical(target, ec);
  return ec ? target : resolved;
}

bool WriteTextFileAtomic(const std::string& path, const std::string& content, std::string& reason) {
  static unsigned long counter = 0;
  fs::path target = ResolveLink(path);
  fs::path folder = target.parent_path();
  if (folder.empty()) folder = ".";
  std::error_code ec;
  fs::create_directories(folder, ec);
  if (ec) {
    reason = ec.message();
    return false;
  }
  std::string tempName = ".";
  tempName += target.filename().string();
  tempName += ".tmp-" + std::to_string(getpid()) + "-" + std::to_string(++counter);
  std::string temp = (folder / tempName).string();
  int fd = open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) {
    reason = Reason(errno);
    return false;
  }
  struct stat st;
  if (stat(target.c_str(), &st) == 0 && S_ISREG(st.st_mode)) fchmod(fd, st.st_mode & 07777);
  bool ok = WriteAll(fd, content) && fsync(fd) == 0;
  int error = errno;
  if (close(fd) != 0 && ok) {
    ok = false;
    error = errno;
  }
  if (ok && rename(temp.c_str(), target.c_str()) != 0) {
    ok = false;
    error = errno;
  }
  if (!ok) {
    unlink(temp.c_str());
    reason = Reason(error);
  }
  return ok;
}

std::string UnixLines(const std::string& text) {
  if (text.find('\r') == std::string::npos) return text;
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r') {
      out += text[i];
    } else if (i + 1 < text.size() && text[i + 1] == '\n') {
      // The LF that follows is the break.
    } else {
      out += '\n';
    }
  }
  return out;
}

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  size_t start = text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
  size_t i = start;
  while (i < text.size()) {
    char c = text[i];
    if (c == '\r' || c == '\n') {
      lines.push_back(text.substr(start, i - start));
      i += (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ? 2 : 1;
      start = i;
    } else {
      ++i;
    }
  }
  if (start < text.size()) lines.push_back(text.substr(start));
  return lines;
}

}  // namespace gandrel
