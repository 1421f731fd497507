// The run flags that the script executor shares with the windows and the dice.
#pragma once

#include <cstdint>
#include <string>

namespace gandrel {

struct RunFlags {
  bool ScriptRunning = false;
  // Set by Escape, Ctrl-C and the Pause window's Cancel; cleared when a roll
  // or a run starts.
  bool BreakRequested = false;
  // BREAKON / BREAKOFF of the running script; always on outside a script.
  bool BreakEnabled = true;
  bool Paused = false;
  bool PauseEnded = false;
  bool LogOn = false;
  // Put in front of each calculation detail; grows inside SELECT blocks.
  std::string LogPrefix;
  double InputValue = 0;
  int16_t PickIndex = 0;
};

extern RunFlags runFlags;

}  // namespace gandrel
