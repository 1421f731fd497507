// Start-up, and the settings read from and written to gandrel.ini.
#include <cfloat>
#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

#include "app/Settings.h"
#include "app/modGandrel.h"
#include "app/modINI.h"
#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/RunFlags.h"
#include "calc/RuntimeError.h"
#include "calc/UserInterface.h"
#include "dice/Random.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

static const char* const kFontPrefixes[3] = {"Results", "Script", "Output"};
static constexpr int16_t kMinimised = 1;

static int16_t ToInt16(int32_t value) {
  if (value > INT16_MAX) return INT16_MAX;
  if (value < INT16_MIN) return INT16_MIN;
  return static_cast<int16_t>(value);
}

static bool ReadFlag(const std::string& key, bool current) {
  return GetIniInt(key, current ? -1 : 0) != 0;
}

static int16_t ReadInt16(const std::string& key, int16_t current) {
  return ToInt16(GetIniInt(key, current));
}

// Geometry is read as text by the leading-number rule; a number too large for
// 32 bits leaves the current value.
static int32_t ReadPixels(const std::string& key, int32_t current) {
  std::string text = GetIniString(key, std::to_string(current));
  int32_t value = current;
  TrapRuntimeError([&] { value = CLng(ReadNumber(text)); });
  return value;
}

// Font sizes are singles: the shortest text that reads back as the same single.
static std::string SizeText(float size) {
  char buffer[32];
  auto written = std::to_chars(buffer, buffer + sizeof buffer, size);
  double shortest = size;
  std::from_chars(buffer, written.ptr, shortest);
  std::string text = "0";
  TrapRuntimeError([&] { text = FormatNumber(shortest); });
  return text;
}

static float ReadSize(const std::string& key, float current) {
  std::string text = GetIniString(key, SizeText(current));
  double value = current;
  TrapRuntimeError([&] { value = ReadNumber(text); });
  if (value > FLT_MAX) return FLT_MAX;
  if (value < -FLT_MAX) return -FLT_MAX;
  return static_cast<float>(value);
}

static int32_t AsIniFlag(bool on) {
  return on ? -1 : 0;
}

void LoadSettings() {
  ReadDefinitions(AppFile("gandrel.def"));
  std::string ini = AppFile("gandrel.ini");
  WindowPlacement& window = settings.Main;

  SetIniFile("location", ini);
  if (window.State != kMinimised) {
    window.Left = ReadPixels("left", window.Left);
    window.Top = ReadPixels("top", window.Top);
    window.Width = ReadPixels("width", window.Width);
    window.Height = ReadPixels("height", window.Height);
  }

  SetIniFile("splitter", ini);
  window.Splitter = ReadInt16("value", WindowPlacement{}.Splitter);

  SetIniFile("Flags", ini);
  settings.OnTop = ReadFlag("OnTop", settings.OnTop);
  settings.SeeAll = ReadFlag("SeeAll", settings.SeeAll);

  SetIniFile("Fonts", ini);
  for (int i = 0; i < 3; ++i) {
    FontSetting& font = settings.Fonts[i];
    std::string prefix = kFontPrefixes[i];
    font.Name = GetIniString(prefix + "Name", font.Name);
    font.Size = ReadSize(prefix + "Size", font.Size);
    font.Bold = ReadFlag(prefix + "Bold", font.Bold);
    font.Italic = ReadFlag(prefix + "Italic", font.Italic);
  }

  SetIniFile("Settings", ini);
  engineSettings.DieType = GetIniString("DieType", engineSettings.DieType);
  settings.AddDice = ReadFlag("AddDice", settings.AddDice);
  settings.NewFirst = ReadFlag("NewFirst", settings.NewFirst);
  // A negative history length keeps no history, as 0 does.
  int16_t keepNum = ReadInt16("KeepNum", settings.KeepNum);
  settings.KeepNum = keepNum < 0 ? 0 : keepNum;
  settings.KeepAlways = ReadFlag("KeepAlways", settings.KeepAlways);
  engineSettings.LongResults = ReadFlag("LongResults", engineSettings.LongResults);
  engineSettings.MarginIncrement = ReadInt16("MarginIncrement", engineSettings.MarginIncrement);

  SetIniFile("Flags", ini);
  // 0 normal, 1 minimised, 2 maximised; anything else is normal.
  int32_t state = GetIniInt("State", 0);
  window.State = (state >= 0 && state <= 2) ? static_cast<int16_t>(state) : 0;
}

// Writes every setting to ini in one go; false when it failed (the user has
// been told).
static bool WriteSettingsFile(const std::string& ini) {
  const WindowPlacement& window = settings.Main;
  BeginIniBatch();

  SetIniFile("location", ini);
  if (window.State != kMinimised) {
    WriteIniInt("left", window.Left);
    WriteIniInt("top", window.Top);
    WriteIniInt("width", window.Width);
    WriteIniInt("height", window.Height);
  }

  SetIniFile("Flags", ini);
  WriteIniInt("State", window.State);
  WriteIniInt("OnTop", AsIniFlag(settings.OnTop));
  WriteIniInt("SeeAll", AsIniFlag(settings.SeeAll));

  SetIniFile("Fonts", ini);
  for (int i = 0; i < 3; ++i) {
    const FontSetting& font = settings.Fonts[i];
    std::string prefix = kFontPrefixes[i];
    WriteIniString(prefix + "Name", font.Name);
    WriteIniString(prefix + "Size", SizeText(font.Size));
    WriteIniInt(prefix + "Bold", AsIniFlag(font.Bold));
    WriteIniInt(prefix + "Italic", AsIniFlag(font.Italic));
  }

  SetIniFile("splitter", ini);
  WriteIniInt("value", window.Splitter);

  SetIniFile("Settings", ini);
  WriteIniString("DieType", engineSettings.DieType);
  WriteIniInt("AddDice", AsIniFlag(settings.AddDice));
  WriteIniInt("NewFirst", AsIniFlag(settings.NewFirst));
  WriteIniInt("KeepNum", settings.KeepNum);
  WriteIniInt("KeepAlways", AsIniFlag(settings.KeepAlways));
  WriteIniInt("LongResults", AsIniFlag(engineSettings.LongResults));
  WriteIniInt("MarginIncrement", engineSettings.MarginIncrement);

  std::string failedFile, reason;
  bool ok = EndIniBatch(failedFile, reason);
  if (!ok) MsgBox("Gandrel could not save its settings to " + failedFile + ": " + reason);
  return ok;
}

bool SaveSettings() {
  std::string ini = AppFile("gandrel.ini");
  bool ok = !SkipUnreadFile(ini) && WriteSettingsFile(ini);
  return SaveDefinitions(AppFile("gandrel.def")) && ok;
}

void StartUp() {
  AlwaysAddItems.assign(1, "");
  DieHistory.assign(1, "");
  ScriptLines.assign(1, "");
  scriptEditor = ScriptEditorState{};
  ClearDieTypes();
  ForgetUnreadFiles();
  runFlags.ScriptRunning = false;
  runFlags.Paused = false;
  runFlags.BreakRequested = false;

  Randomize();
  ResetSettings();

  // The die-value list shows gandrel.dat's items as they are read, and then
  // the history: an item of gandrel.dat is listed twice until a roll rebuilds
  // the list.
  std::vector<std::string> listed;
  ReadOldDefinitions(OldDefinitionsFile(), listed);
  LoadSettings();

  long alwaysCount = static_cast<long>(AlwaysAddItems.size()) - 1;
  if (settings.KeepNum < alwaysCount) settings.KeepNum = ToInt16(static_cast<int32_t>(alwaysCount));

  DieHistory = AlwaysAddItems;
  for (size_t i = 1; i < DieHistory.size(); ++i)
    listed.push_back(DieHistory[i]);
  View().ShowDieList(listed, listed.empty() ? "3d6" : listed.front());
}

}  // namespace gandrel
