// The run flags that the script executor shares with the windows and the
// engine's loops: the break switch that every yield tests, the pause, the
// log switch and indent, and what the script windows hand back.
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
  // The user insists on stopping a script that switched breaking off (a
  // second Escape, answered Yes): it stops whatever BREAKOFF said.
  bool BreakForced = false;
  bool Paused = false;
  bool PauseEnded = false;
  bool LogOn = false;
  // Put in front of each calculation detail; grows inside SELECT blocks.
  std::string LogPrefix;
  double InputValue = 0;
  int16_t PickIndex = 0;
};

extern RunFlags runFlags;

// Every flag back to its state before any roll or run.
void ResetRunFlags();

}  // namespace gandrel
