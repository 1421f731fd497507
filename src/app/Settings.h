// The settings of Gandrel, with their built-in defaults.
//
// modGandrel owns them: it loads them from gandrel.ini at start-up and writes
// them back. The three that the engine reads (DieType, LongResults,
// MarginIncrement) live in the engine's own EngineSettings, which the shell
// loads and saves with these.
#pragma once

#include <cstdint>
#include <string>

#include "calc/EngineSettings.h"

namespace gandrel {

struct FontSetting {
  std::string Name = "MS Sans Serif";
  float Size = 8.25f;
  bool Bold = false;
  bool Italic = false;
};

enum FontIndex { kResultsFont = 0, kScriptFont = 1, kOutputFont = 2 };

// Where the main window stands, in pixels; State 0 normal, 1 minimised,
// 2 maximised. Splitter is the position of the bar between the results and
// the script editor, from the left edge of the window.
struct WindowPlacement {
  int32_t Left = 120;
  int32_t Top = 80;
  int32_t Width = 760;
  int32_t Height = 520;
  int16_t State = 0;
  int16_t Splitter = 380;
};

struct AppSettings {
  bool AddDice = true;
  bool NewFirst = false;
  int16_t KeepNum = 10;
  bool KeepAlways = false;
  bool OnTop = false;
  bool SeeAll = false;
  WindowPlacement Main;
  FontSetting Fonts[3] = {
      {"MS Sans Serif", 8.25f, false, false},
      {"MS Sans Serif", 8.25f, true, false},
      {"MS Sans Serif", 12.0f, false, false},
  };
};

extern AppSettings settings;

// Puts every setting back to its built-in default, the engine's included.
void ResetSettings();

}  // namespace gandrel
