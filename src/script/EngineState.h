// The engine's process-wide state, gathered: where each piece lives and the
// one call that puts all of it back as the program starts.
//
//   calc/RunFlags.h        runFlags: break, pause, log switch and indent,
//                          the values the script windows hand back
//   calc/EngineSettings.h  engineSettings: DieType, LongResults, MarginIncrement
//   calc/Pump.h            the yield's stride and clock
//   calc/modEvaluate.h     the evaluator's nesting depth
//   calc/UserInterface.h   the interface in force
//   dice/modDiceCalc.h     dieTypes: the range and list die types; the count
//                          of dice terms rolled (only ever read as the
//                          difference of two readings, so never reset)
//   dice/DiceText.h        maxDiceText: the longest list of dice one term writes
//   dice/Random.h          the random generator
//   script/ScriptWindows.h the script windows in force
//   script/ScriptFiles.h   the file layer in force
//
// Everything that belongs to one script run lives in that run's own state
// and is gone when the run ends. The distributions keep nothing between
// calls.
//
// Above the engine, each layer owns its own: the shell (app/Settings.h: the
// settings; app/modGandrel.h: the history, the always-add items, the script
// lines and editor state, the view in force, the files' folder and the
// files that could not be read; app/modINI.h: the parsed settings files),
// which StartUp() and ResetIni() put back; the windows (where the script
// dialogs stood, the pause window and the calculator's window that are
// open); gandrel-cli (whether Ctrl-C was pressed, ClearInterrupts()).
#pragma once

namespace gandrel {

// Run flags, engine settings, pump, evaluator, die types, the longest dice
// list and the random generator's test hooks back to their start; the
// random state itself is kept (a test seeds it). The installed interfaces
// are left alone: whoever installed them removes them.
void ResetEngineState();

}  // namespace gandrel
