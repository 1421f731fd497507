// How a running script reaches the user beyond message boxes: the number
// prompt (GET), the pick list (PICKLIST), the pause window (PAUSE), the
// output windows (OPEN, PRINT, CLEAR and CLOSE WINDOW) and DISPLAY.
//
// The Qt windows implement it, the terminal front end implements it on
// standard input and output, the tests implement it with a recorder. Until a
// front end installs one, a stand-in answers every prompt with its default
// and shows nothing (which is what a calculation that must not disturb the
// user wants, too).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "calc/Installed.h"

namespace gandrel {

// One output window, as the run that opened it holds it. Dropping the object
// drops the run's reference only: the window stays on screen until Close()
// or the user closes it. Once the user has closed it, every call is ignored.
class OutputWindow {
 public:
  virtual ~OutputWindow() = default;
  // Appends text at the end of the window's text; CR LF is a line break.
  virtual void Print(const std::string& text) = 0;
  // Empties the window's text.
  virtual void Clear() = 0;
  // Closes the window.
  virtual void Close() = 0;
  // Brings the window to the front (it is opened again by name).
  virtual void Raise() = 0;
  // False once the window is gone (closed by the script or by the user).
  virtual bool IsOpen() const = 0;
};

class ScriptWindows {
 public:
  virtual ~ScriptWindows() = default;

  // GET: the number prompt, modal, showing prompt and a text box that holds
  // defaultText, selected so that typing replaces it. Okay stores the leading
  // number of the text in runFlags.InputValue; closing the prompt otherwise
  // leaves InputValue as it was.
  virtual void GetNumber(const std::string& prompt, const std::string& defaultText) = 0;

  // PICKLIST: the pick list, modal, showing prompt and the items numbered
  // 1..n with item `selected` (1-based) preselected. Okay (or a double click)
  // stores the chosen item's number in runFlags.PickIndex; Cancel stores 0;
  // closing the window otherwise leaves PickIndex as it was.
  virtual void PickItem(const std::string& prompt, const std::vector<std::string>& items,
                        int16_t selected) = 0;

  // PAUSE: shows the pause window and returns at once; runFlags.Paused is
  // already True. However the window goes away it sets Paused False and
  // PauseEnded True; its Cancel sets BreakRequested True first.
  virtual void ShowPause() = 0;

  // OPEN WINDOW: a new output window named name, with caption as its title,
  // shown without waiting.
  virtual std::unique_ptr<OutputWindow> OpenOutputWindow(const std::string& name,
                                                         const std::string& caption) = 0;

  // DISPLAY: result in the main window's result label and log in its
  // each-result box, while the script goes on (no clipboard, no history).
  virtual void Display(const std::string& result, const std::string& log) = 0;
};

// What the number prompt makes of the text typed into it: the value of its
// leading number (blanks skipped, "12abc" is 12, " 3.5" is 3.5, "-3" is -3),
// 0 when there is none, and 0 for a number too large for a double.
double EnteredNumber(const std::string& text);

// The script windows in force; never null.
ScriptWindows& Windows();

// Installs windows (nullptr restores the stand-in). The caller keeps ownership.
void SetScriptWindows(ScriptWindows* windows);
// Installs them for the length of a block.
using ScriptWindowsScope = Installed<ScriptWindows, Windows, SetScriptWindows>;

// An output window that shows nothing and keeps nothing, open until closed.
std::unique_ptr<OutputWindow> DiscardingOutputWindow();

}  // namespace gandrel
