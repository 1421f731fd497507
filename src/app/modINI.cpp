#include "app/modINI.h"

#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <map>
#include <string_view>
#include <vector>

#include "app/TextEncoding.h"
#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "calc/UserInterface.h"

namespace gandrel {

namespace {

// What a file looked like when it was parsed, to notice changes on disk.
struct FileSignature {
  bool exists = false;
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  long long modifiedSeconds = 0;
  long modifiedNanos = 0;
  bool operator==(const FileSignature&) const = default;
};

struct IniDocument {
  std::vector<std::string> lines;
  std::string lineEnd = "\n";
  FileSignature signature;
  bool readable = true;
  std::string readError;
  bool dirty = false;
};

constexpr size_t kNotFound = static_cast<size_t>(-1);
// The value buffer of a read holds 255 characters with its terminator.
constexpr size_t kMaxValueLength = 254;

std::map<std::string, IniDocument> documents;
std::string currentSection;
std::string currentFile;
bool registered = false;
bool batchOpen = false;
// A write in the open batch that could not even be made (unreadable file).
std::string batchFailedFile;
std::string batchFailReason;

}  // namespace

static FileSignature SignatureOf(const std::string& path) {
  FileSignature sig;
  struct stat st;
  if (stat(path.c_str(), &st) != 0) return sig;
  sig.exists = true;
  sig.device = st.st_dev;
  sig.inode = st.st_ino;
  sig.size = st.st_size;
  sig.modifiedSeconds = st.st_mtim.tv_sec;
  sig.modifiedNanos = st.st_mtim.tv_nsec;
  return sig;
}

static std::string_view TrimSpace(std::string_view text) {
  size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  size_t last = text.find_last_not_of(" \t");
  return text.substr(first, last - first + 1);
}

static bool SectionHeader(std::string_view line, std::string& name) {
  std::string_view t = TrimSpace(line);
  if (t.empty() || t.front() != '[') return false;
  t.remove_prefix(1);
  size_t close = t.find(']');
  name = TrimSpace(close == std::string_view::npos ? t : t.substr(0, close));
  return true;
}

static bool KeyLine(std::string_view line, std::string& key, std::string& value) {
  std::string_view t = TrimSpace(line);
  if (t.empty() || t.front() == ';' || t.front() == '[') return false;
  size_t eq = t.find('=');
  if (eq == std::string_view::npos) return false;
  key = TrimSpace(t.substr(0, eq));
  value = TrimSpace(t.substr(eq + 1));
  return true;
}

static size_t FindSection(const IniDocument& doc, const std::string& section) {
  std::string wanted = LCase(section);
  std::string name;
  for (size_t i = 0; i < doc.lines.size(); ++i)
    if (SectionHeader(doc.lines[i], name) && LCase(name) == wanted) return i;
  return kNotFound;
}

// The line of key within the section whose header is at index header, and
// the last line of the section that is its header or one of its keys.
static size_t FindKey(const IniDocument& doc, size_t header, const std::string& key,
                      size_t& lastEntry, std::string* value) {
  std::string wanted = LCase(key);
  std::string name, k, v;
  lastEntry = header;
  for (size_t i = header + 1; i < doc.lines.size(); ++i) {
    if (SectionHeader(doc.lines[i], name)) break;
    if (!KeyLine(doc.lines[i], k, v)) continue;
    lastEntry = i;
    if (LCase(k) == wanted) {
      if (value) *value = v;
      return i;
    }
  }
  return kNotFound;
}

static void ParseInto(IniDocument& doc, const std::string& content) {
  doc.lines = SplitLines(content);
  doc.lineEnd = content.find("\r\n") != std::string::npos ? "\r\n" : "\n";
}

// The parsed file, read again when it changed on disk since it was parsed
// (a document with unsaved writes is kept as it is).
static IniDocument& Document(const std::string& path) {
  FileSignature sig = SignatureOf(path);
  auto it = documents.find(path);
  if (it != documents.end() && (it->second.dirty || it->second.signature == sig)) return it->second;
  IniDocument& doc = documents[path];
  doc = IniDocument{};
  doc.signature = sig;
  if (!sig.exists) return doc;
  std::string content, reason;
  if (ReadTextFile(path, content, reason)) {
    ParseInto(doc, content);
  } else {
    doc.readable = false;
    doc.readError = reason;
    MsgBox("Gandrel could not read the settings file " + path + ": " + reason);
    NoteUnreadFile(path);
  }
  return doc;
}

static bool CheckRegistered() {
  if (registered) return true;
  UI().ShowMessage("[Section] and FileName Not Registered in Private.Ini!", MsgButtons::Ok,
                   MsgIcon::Critical, "IniFile Logic Error");
  return false;
}

void SetIniFile(const std::string& section, const std::string& fileName) {
  currentSection = Trim(section);
  currentFile = Trim(fileName);
  registered = true;
}

static bool LookUp(const std::string& key, std::string& value) {
  IniDocument& doc = Document(currentFile);
  if (!doc.readable) return false;
  size_t header = FindSection(doc, currentSection);
  if (header == kNotFound) return false;
  size_t lastEntry;
  return FindKey(doc, header, key, lastEntry, &value) != kNotFound;
}

// Cut to the buffer's size, without splitting a UTF-8 character.
static std::string CutToBuffer(std::string text) {
  if (text.size() <= kMaxValueLength) return text;
  text.resize(Utf8CharStart(text, kMaxValueLength));
  return text;
}

static int32_t LeadingInteger(std::string_view text) {
  bool negative = !text.empty() && text.front() == '-';
  if (negative) text.remove_prefix(1);
  long long n = 0;
  for (char c : text) {
    if (!IsDigit(c)) break;
    n = n * 10 + (c - '0');
    if (n > static_cast<long long>(INT_MAX) + 1) break;
  }
  if (negative) n = -n;
  if (n > INT_MAX) return INT_MAX;
  if (n < INT_MIN) return INT_MIN;
  return static_cast<int32_t>(n);
}

int32_t GetIniInt(const std::string& key, int32_t defaultValue) {
  if (!CheckRegistered()) return 0;
  std::string value;
  if (!LookUp(key, value)) return defaultValue;
  return LeadingInteger(value);
}

std::string GetIniString(const std::string& key, const std::string& defaultValue) {
  if (!CheckRegistered()) return "";
  std::string value;
  if (!LookUp(key, value)) return CutToBuffer(defaultValue);
  return CutToBuffer(value);
}

static bool Flush(const std::string& path, IniDocument& doc, std::string& reason) {
  std::string content;
  for (const std::string& line : doc.lines)
    content += line + doc.lineEnd;
  if (!WriteTextFileAtomic(path, content, reason)) {
    documents.erase(path);
    return false;
  }
  doc.dirty = false;
  doc.signature = SignatureOf(path);
  return true;
}

// One line of the file per value: line breaks inside it would cut it.
static std::string OneLine(std::string value) {
  for (char& c : value)
    if (c == '\r' || c == '\n') c = ' ';
  return value;
}

static void SetKey(IniDocument& doc, const std::string& key, const std::string& value) {
  size_t header = FindSection(doc, currentSection);
  if (header == kNotFound) {
    if (!doc.lines.empty() && !TrimSpace(doc.lines.back()).empty()) doc.lines.emplace_back();
    doc.lines.push_back("[" + currentSection + "]");
    doc.lines.push_back(key + "=" + value);
    return;
  }
  size_t lastEntry;
  size_t at = FindKey(doc, header, key, lastEntry, nullptr);
  if (at != kNotFound) {
    // The key keeps its own spelling; only the value changes.
    std::string k, v;
    KeyLine(doc.lines[at], k, v);
    doc.lines[at] = k + "=" + value;
  } else {
    doc.lines.insert(doc.lines.begin() + static_cast<long>(lastEntry) + 1, key + "=" + value);
  }
}

static int32_t WriteValue(const std::string& key, const std::string& value) {
  if (!CheckRegistered()) return 0;
  IniDocument& doc = Document(currentFile);
  if (!doc.readable) {
    if (batchOpen && batchFailedFile.empty()) {
      batchFailedFile = currentFile;
      batchFailReason = doc.readError;
    }
    return 0;
  }
  SetKey(doc, Trim(key), OneLine(value));
  doc.dirty = true;
  if (batchOpen) return 1;
  std::string reason;
  return Flush(currentFile, doc, reason) ? 1 : 0;
}

int32_t WriteIniInt(const std::string& key, int32_t value) {
  return WriteValue(key, std::to_string(value));
}

int32_t WriteIniString(const std::string& key, const std::string& value) {
  return WriteValue(key, value);
}

void BeginIniBatch() {
  batchOpen = true;
  batchFailedFile.clear();
  batchFailReason.clear();
}

bool EndIniBatch(std::string& failedFile, std::string& reason) {
  batchOpen = false;
  bool ok = batchFailedFile.empty();
  if (!ok) {
    failedFile = batchFailedFile;
    reason = batchFailReason;
  }
  std::vector<std::string> dirty;
  for (auto& [path, doc] : documents)
    if (doc.dirty) dirty.push_back(path);
  for (const std::string& path : dirty) {
    std::string why;
    if (!Flush(path, documents[path], why) && ok) {
      ok = false;
      failedFile = path;
      reason = why;
    }
  }
  batchFailedFile.clear();
  batchFailReason.clear();
  return ok;
}

void ResetIni() {
  documents.clear();
  currentSection.clear();
  currentFile.clear();
  registered = false;
  batchOpen = false;
  batchFailedFile.clear();
  batchFailReason.clear();
}

}  // namespace gandrel
