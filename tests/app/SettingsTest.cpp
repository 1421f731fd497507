#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "ShellFixture.h"
#include "app/DialogModels.h"
#include "app/Settings.h"
#include "app/modINI.h"

namespace gandrel::testing {
namespace {

namespace fs = std::filesystem;

using SettingsTest = ShellTest;

// An environment variable set (or unset, given nullptr) until the end of the scope.
struct ScopedEnv {
  ScopedEnv(const char* name, const char* value) : name(name) {
    if (const char* v = std::getenv(name)) old = v;
    value ? setenv(name, value, 1) : unsetenv(name);
  }
  ~ScopedEnv() { old ? setenv(name, old->c_str(), 1) : unsetenv(name); }
  const char* name;
  std::optional<std::string> old;
};

// One byte more than a settings or definitions file may hold (a sparse file).
constexpr std::uintmax_t kTooLarge = 16 * 1024 * 1024 + 1;

// Ends the test program if the scope takes longer than 20 seconds: a reader
// that waits on a pipe fails the test instead of hanging it.
struct WatchForHang {
  WatchForHang() { alarm(20); }
  ~WatchForHang() { alarm(0); }
};

// With every setting changed, saved, loaded in a fresh state and saved
// again, every setting comes back.
TEST_F(SettingsTest, RoundTrip) {
  StartUp();
  AppSettings& s = settings;
  // clang-format off
  s = {false, true, 7, true, true, true, {-5, 6, 1000, 900, 2, 444},
       {{"DejaVu Sans", 10.5f, true, true}, {"Mono", 8.3f, false, true}, {"Serif", 12, 0, 0}}};
  engineSettings = {"d10", false, 9};
  // clang-format on
  ASSERT_TRUE(SaveSettings());
  std::string saved = dir.Read("gandrel.ini");
  ResetSettings();
  ResetIni();
  LoadSettings();
  ASSERT_TRUE(SaveSettings());
  EXPECT_EQ(dir.Read("gandrel.ini"), saved);
  // Font sizes are written as the shortest text that reads back the same.
  EXPECT_NE(saved.find("\nScriptSize=8.3\n"), std::string::npos);
}

TEST_F(SettingsTest, OddValuesAndAMinimisedWindow) {
  dir.Write("gandrel.ini",
            "[location]\nleft=abc\ntop=12.6\nwidth=1E400\nheight=1E12\n[Flags]\nState=7\n"
            "OnTop=1\n[Fonts]\nResultsSize=big\nScriptSize=1E300\n[Settings]\nKeepNum=-5\n"
            "MarginIncrement=70000\n");
  LoadSettings();
  const WindowPlacement& w = settings.Main;
  // Non-numbers read as 0; numbers too large for the window keep the default.
  EXPECT_EQ(std::vector<int>({w.Left, w.Top, w.Width, w.Height, w.State}),
            std::vector<int>({0, 13, WindowPlacement{}.Width, WindowPlacement{}.Height, 0}));
  EXPECT_EQ(std::make_tuple(settings.OnTop, settings.Fonts[0].Size, settings.Fonts[1].Size > 1e38f,
                            settings.KeepNum, engineSettings.MarginIncrement),
            std::make_tuple(true, 0.0f, true, 0, 32767));
  EXPECT_TRUE(ui.messages.empty());
  // A minimised window keeps the place it had, neither written nor read.
  dir.Write("gandrel.ini", "[location]\nleft=11\n");
  settings.Main.State = 1;
  settings.Main.Left = 99;
  ASSERT_TRUE(SaveSettings());
  EXPECT_EQ(dir.Read("gandrel.ini").rfind("[location]\nleft=11\n\n[Flags]\nState=1\n", 0), 0u);
  LoadSettings();
  EXPECT_EQ(settings.Main.Left, 99);
}

TEST_F(SettingsTest, StartUpReadsDatThenDefThenIni) {
  dir.Write("gandrel.dat", "4dF\n4df ; twice\nDIE=10\nDefine Fate = -1 to 1\n");
  dir.Write("gandrel.def",
            "3d6+2 ; my favourite\r\n4DF\r\nDIE=10\r\ndefine fate = 1 to -2\r\n"
            "a\r\nb\r\nc\r\n");
  dir.Write("gandrel.ini", "[Settings]\nKeepNum=2\n");
  StartUp();
  const Items items = OneBased("4df 4df 3d6+2 DIE=10 a b c");
  EXPECT_EQ(std::make_tuple(engineSettings.DieType, AlwaysAddItems, DieHistory, view.dieValue,
                            settings.KeepNum, ListDieTypeEntries()),
            std::make_tuple("10", items, items, "4df", 7, Items{"dfate = -2 to 1"}));
  EXPECT_EQ(view.list, (Items{"4df", "4df", "4df", "4df", "3d6+2", "DIE=10", "a", "b", "c"}));
  dir.Write("gandrel.ini", "[Settings]\nDieType=d8\n");  // the settings file has the last word
  StartUp();
  EXPECT_EQ(engineSettings.DieType, "d8");
}

TEST_F(SettingsTest, DefinitionsReadAndWritten) {
  dir.Write("gandrel.def",
            "\xEF\xBB\xBF; comment only\n\n   \nDefined dx = 1,2\ndefine stat = 1,2,3,4,5,6\n"
            "define big = 1 to 99999999999\nx;y\ndefine d4 = 4 to 1\nX\n");
  ReadDefinitions(dir.Path("gandrel.def"));
  EXPECT_EQ(AlwaysAddItems, OneBased("x"));
  ASSERT_EQ(ui.messages.size(), 1u);
  EXPECT_EQ(ui.messages[0].text.rfind("Gandrel skipped a die type it could not read in ", 0), 0u);
  EXPECT_EQ(DefinitionsText(),
            "; This file contains the Die Definitions and Always Add items\r\n"
            "; that you have defined for Gandrel, so don't delete it!\r\n"
            "define d4 = 1 to 4\r\n"
            "define dstat = 1,2,3,4,5,6\r\ndefine d dx = 1,2\r\nx\r\n");
}

// Looking never deletes: an empty gandrel.ini or gandrel.def beside the
// executable is how a user asks for portable use. Only regular files are
// read: a pipe or a device (alike to the reader) is not opened to wait for
// a writer or read without end.
TEST_F(SettingsTest, WhatIsMissingAndWhatCanBeRead) {
  dir.Write("empty", "");
  dir.Write("full", "x");
  fs::create_directory(dir.Path("dir"));
  ASSERT_EQ(mkfifo(dir.Path("pipe").c_str(), 0600), 0);
  dir.Write("large", "");
  fs::resize_file(dir.Path("large"), kTooLarge);
  // The path, whether it is missing, whether it exists afterwards, and why
  // it cannot be read ("" when it can).
  const std::tuple<std::string, bool, bool, std::string> cases[] = {
      {dir.Path("empty"), true, true, ""},
      {dir.Path("full"), false, true, ""},
      {dir.Path("absent"), true, false, "No such file or directory"},
      {dir.Path("dir"), false, true, "Is a directory"},
      {dir.Path("pipe"), false, true, "not a regular file"},
      {dir.Path("large"), false, true, "the file is too large"},
      {"./" + fs::relative(dir.Path("full")).string(), true, true, ""},  // a name starting with "."
  };
  WatchForHang watch;
  for (const auto& [path, missing, existsAfter, why] : cases) {
    EXPECT_EQ(FileIsMissing(path), missing) << path;
    EXPECT_EQ(fs::exists(path), existsAfter) << path;
    std::string content = "old", reason;
    EXPECT_EQ(ReadTextFile(path, content, reason), why.empty()) << path;
    EXPECT_EQ(reason, why) << path;
    if (!why.empty()) {
      EXPECT_EQ(content, "") << path;
    }
  }
}

// A folder where nothing can be made, and a folder in the place of one
// file: each failure is told, the other file is saved, no temporary file is
// left behind.
TEST_F(SettingsTest, SaveFailuresAreTold) {
  fs::create_directories(dir.Path("gandrel.def/keep"));
  EXPECT_FALSE(SaveSettings());
  EXPECT_EQ(std::make_tuple(ui.Texts().size(), fs::exists(dir.Path("gandrel.def/keep")),
                            fs::is_regular_file(dir.Path("gandrel.ini")),
                            std::distance(fs::directory_iterator(dir.path()), {})),
            std::make_tuple(1u, true, true, 2));
  ui.messages.clear();
  SetAppDirectory("/proc/self");  // no file can be made there, even by root
  EXPECT_FALSE(SaveSettings());
  ASSERT_EQ(ui.messages.size(), 2u);
  EXPECT_EQ(ui.messages[0].text.rfind("Gandrel could not save its settings to ", 0), 0u);
  EXPECT_EQ(ui.messages[1].text.rfind("Gandrel could not save its die types to ", 0), 0u);
}

// The settings folder chosen, and the one gandrel.dat read: the settings
// folder's, else the executable's (two would double an item in both).
TEST_F(SettingsTest, WhereTheFilesLive) {
  // HOME in the test folder, the executable in its "bin".
  ScopedEnv home("HOME", dir.Path("home").c_str());
  fs::create_directories(dir.Path("bin"));
  // XDG_CONFIG_HOME (nullptr: unset; "/..." lies in the test folder), a file
  // put beside the executable first (or nullptr), the folder chosen.
  const std::tuple<const char*, const char*, std::string> cases[] = {
      {nullptr, nullptr, "home/.config/gandrel"},
      {"rel", nullptr, "home/.config/gandrel"},  // a relative folder is ignored
      {"/XDG", nullptr, "XDG/gandrel"},
      {nullptr, "gandrel.dat", "home/.config/gandrel"},  // a dat alone is not portable
      {nullptr, "gandrel.def", "bin"},
  };
  for (const auto& [xdgSet, binFile, chosen] : cases) {
    SCOPED_TRACE(chosen);
    std::string xdg = xdgSet ? (xdgSet[0] == '/' ? dir.path() + xdgSet : xdgSet) : "";
    ScopedEnv env("XDG_CONFIG_HOME", xdgSet ? xdg.c_str() : nullptr);
    if (binFile) dir.Write(std::string("bin/") + binFile, "x");
    EXPECT_EQ(ChooseAppDirectory(dir.Path("bin")), dir.Path(chosen));
  }

  fs::remove(dir.Path("bin/gandrel.def"));
  ScopedEnv xdg("XDG_CONFIG_HOME", nullptr);
  const std::string own = "home/.config/gandrel/gandrel.dat", beside = "bin/gandrel.dat";
  fs::create_directories(dir.Path("home/.config/gandrel"));
  // What the settings folder's and the executable's gandrel.dat hold
  // (nullptr: there is none), and the one read.
  const std::tuple<const char*, const char*, std::string> dats[] = {
      {nullptr, "4d6\n", beside},
      {"", "4d6\n", beside},  // an empty one counts as none
      {"4D6\n", "4d6\n", own},
  };
  for (const auto& [ownText, besideText, read] : dats) {
    for (const auto& [name, text] : {std::pair{own, ownText}, std::pair{beside, besideText}}) {
      fs::remove(dir.Path(name));
      if (text) dir.Write(name, text);
    }
    ChooseAppDirectory(dir.Path("bin"));
    EXPECT_EQ(OldDefinitionsFile(), dir.Path(read)) << read;
  }
  StartUp();
  EXPECT_EQ(AlwaysAddItems, OneBased("4d6"));
  ASSERT_TRUE(SaveSettings());
  std::string def = dir.Read("home/.config/gandrel/gandrel.def");
  EXPECT_EQ(def.substr(def.find("it!\r\n") + 5), "4d6\r\n");
  SetAppDirectory(dir.Path("bin/"));
  EXPECT_EQ(OldDefinitionsFile(), dir.Path(beside));
}

// What stands at a path, to tell whether it was left as it was.
std::string Describe(const std::string& path) {
  fs::file_status st = fs::symlink_status(path);
  if (fs::is_symlink(st)) return "link to " + fs::read_symlink(path).string();
  if (fs::is_directory(st))
    return "folder of " + std::to_string(std::distance(fs::directory_iterator(path), {}));
  if (fs::is_fifo(st)) return "pipe";
  if (fs::is_regular_file(st)) return "file of " + std::to_string(fs::file_size(path));
  return "nothing";
}

// A settings or definitions file that is there but cannot be read is told
// about at start-up and never written over: saving it would lose what it
// holds. The first save that skips it says so once; the other file is saved.
TEST_F(SettingsTest, UnreadFilesAreNeverWrittenOver) {
  // A link to a folder is read as the folder, and must stay a link.
  const struct {
    const char* what;
    void (*make)(const std::string& path);
    Items names;
  } cases[] = {
      {"a pipe",
       [](const std::string& p) { ASSERT_EQ(mkfifo(p.c_str(), 0600), 0); },
       {"gandrel.ini", "gandrel.def", "gandrel.dat"}},
      {"a link to a folder",
       [](const std::string& p) {
         fs::create_directories(p + ".folder/keep");
         fs::create_directory_symlink(p + ".folder", p);
       },
       {"gandrel.ini"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    for (const fs::path& path : std::vector<fs::path>(fs::directory_iterator(dir.path()), {}))
      fs::remove_all(path);
    ResetIni();
    ui.messages.clear();
    std::map<std::string, std::string> before;
    for (const std::string& name : c.names) {
      c.make(dir.Path(name));
      before[name] = Describe(dir.Path(name));
    }
    {
      WatchForHang watch;
      StartUp();
    }
    EXPECT_EQ(ui.messages.size(), c.names.size());  // each could not be read
    ui.messages.clear();
    EXPECT_FALSE(SaveSettings());
    EXPECT_FALSE(SaveSettings());
    Items told;
    for (const std::string& name : c.names) {
      EXPECT_EQ(Describe(dir.Path(name)), before[name]) << name;
      if (name != "gandrel.dat")
        told.push_back("Gandrel could not read " + dir.Path(name) +
                       ", so it is left as it is: this run's changes to it cannot be saved.");
    }
    EXPECT_EQ(ui.Texts(), told);
    for (const char* saved : {"gandrel.ini", "gandrel.def"})  // the other file is saved
      EXPECT_TRUE(before.count(saved) || fs::is_regular_file(dir.Path(saved))) << saved;
  }
}

TEST_F(SettingsTest, AtomicWrite) {
  std::string reason;
  ASSERT_TRUE(WriteTextFileAtomic(dir.Path("new/deeper/f.txt"), "one", reason));
  EXPECT_EQ(dir.Read("new/deeper/f.txt"), "one");
  fs::permissions(dir.Path("new/deeper/f.txt"), fs::perms(0640));
  fs::create_symlink(dir.Path("new/deeper/f.txt"), dir.Path("link"));
  ASSERT_TRUE(WriteTextFileAtomic(dir.Path("link"), "two", reason));
  EXPECT_EQ(std::make_tuple(fs::is_symlink(dir.Path("link")), dir.Read("new/deeper/f.txt"),
                            fs::status(dir.Path("link")).permissions()),
            std::make_tuple(true, "two", fs::perms(0640)));
}

}  // namespace
}  // namespace gandrel::testing
