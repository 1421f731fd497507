// The settings that the engine itself reads.
//
// The shell loads them from gandrel.ini with the rest of its settings and
// writes them back; a script can change them while it runs (DIE changes the
// default die for good). Everything else the shell keeps (window, fonts,
// history options) lives with the shell.
#pragma once

#include <cstdint>
#include <string>

namespace gandrel {

struct EngineSettings {
  // The default die inserted for a bare "d": a size ("6") or a die name
  // with its letter ("d10", "dfudge").
  std::string DieType = "6";
  // Each rolled term writes its detail line ("3d6= +4+1+6= 11") and Calc its
  // "Calc: ..." line.
  bool LongResults = true;
  // The width by which the log indent of a script grows inside a SELECT.
  int16_t MarginIncrement = 4;
};

extern EngineSettings engineSettings;

// Puts the engine's settings back to their built-in defaults.
void ResetEngineSettings();

}  // namespace gandrel
