// modGandrel: the shell that both front ends share.
//
// The roll request (classify a die value, roll it or run it, show the result,
// the details and the clipboard line, keep the history), start-up and
// shut-down (settings and definitions files), and where those files live.
// Nothing here knows Qt or the terminal: the front end shows the outcome
// through a MainView, and messages through the engine's UserInterface.
#pragma once

#include <string>
#include <vector>

namespace gandrel {

// The main window as the shell sees it.
class MainView {
 public:
  virtual ~MainView() = default;
  virtual std::string DieValueText() const = 0;
  virtual void SetDieValueText(const std::string& text) = 0;
  // Selects the whole die-value text, so that typing replaces it.
  virtual void SelectAllDieValue() = 0;
  virtual void SetResultText(const std::string& text) = 0;
  virtual void SetEachResultText(const std::string& text) = 0;
  virtual void SetClipboardText(const std::string& text) = 0;
  // The drop-down list of the die-value box.
  virtual void ClearDieList() = 0;
  virtual void AddDieListItem(const std::string& item) = 0;
  // The script editor's text, lines ended by CR LF.
  virtual std::string ScriptText() const = 0;
};

// The history behind the die-value list and the always-add items; 1-based
// (element 0 unused).
extern std::vector<std::string> DieHistory;
extern std::vector<std::string> AlwaysAddItems;

// The view the shell works on (the window, the terminal, a test double).
void SetMainView(MainView* view);
MainView& View();

// One Roll request on the current die-value text.
void RollDieValue();

// Puts value into the history under the history settings and rebuilds the list.
void AddToHistory(std::string& value);

// Start-up: defaults, gandrel.dat, gandrel.ini and gandrel.def, the history
// filled with the always-add items, the die-value text set. The front end
// applies the settings to its window and makes the first roll afterwards.
void StartUp();
void LoadSettings();
// Writes gandrel.ini and gandrel.def (never half-written files). Returns
// false when a file could not be written (the user has been told).
bool SaveSettings();

// The folder of gandrel.ini, gandrel.def and gandrel.dat.
std::string AppDirectory();
void SetAppDirectory(const std::string& folder);

}  // namespace gandrel
