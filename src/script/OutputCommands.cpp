// Output windows, files, PRINT and PRINTNL, DISPLAY and TIME.
#include <algorithm>
#include <ctime>
#include <string>

#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/RuntimeError.h"
#include "calc/modGRCalcs.h"
#include "dice/modDiceCalc.h"
#include "script/ScriptFiles.h"
#include "script/ScriptRun.h"
#include "script/ScriptWindows.h"

namespace gandrel {

namespace {

constexpr std::string_view kOpenFileError =
    "Error trying to open file.\r\nCheck your Open File line";

// The script's name for a window or a file, as it is compared.
std::string NameOf(std::string_view operand) {
  return LCase(Trim(operand));
}

// The first slot that is free (its name ""), or a new one at the end.
template <class Slot>
Slot& FreeSlot(std::vector<Slot>& slots, size_t& number) {
  auto free =
      std::find_if(slots.begin(), slots.end(), [](const Slot& s) { return s.name.empty(); });
  if (free == slots.end()) free = slots.insert(slots.end(), Slot{});
  number = static_cast<size_t>(free - slots.begin()) + 1;
  return *free;
}

// A freed slot at the end goes: the slots shrink by one.
template <class Slot>
void ShrinkFreedEnd(std::vector<Slot>& slots) {
  if (!slots.empty() && slots.back().name.empty()) slots.pop_back();
}

WindowSlot* FindWindow(ScriptRun& run, const std::string& name) {
  for (WindowSlot& slot : run.windows)
    if (slot.window && slot.name == name) return &slot;
  return nullptr;
}

FileSlot* FindFile(ScriptRun& run, const std::string& name) {
  for (FileSlot& slot : run.files)
    if (slot.file && slot.name == name) return &slot;
  return nullptr;
}

// The text of a PRINT: variables, dice and arithmetic outside quotes worked
// out, then every quote removed.
std::string PrintedText(ScriptRun& run, std::string text) {
  ReplaceVars(text, run.store);
  ExpandAllDice(text);
  CalcOutsideQuotes(text);
  if (text.find('"') != std::string::npos) text = WithoutQuotes(text);
  return text;
}

}  // namespace

void RunOpenWindow(ScriptRun& run, std::string& text) {
  std::string written = Trim(text), name = LCase(written);
  if (name.empty()) return;
  WindowSlot* slot = FindWindow(run, name);
  size_t number = 0;
  if (slot && slot->window->IsOpen()) return slot->window->Raise();
  if (slot) {
    // The user closed it: a new window takes the slot it had.
    number = static_cast<size_t>(slot - run.windows.data()) + 1;
  } else {
    slot = &FreeSlot(run.windows, number);
  }
  slot->name = name;
  std::string caption = "Output Window " + std::to_string(number) + ": " + written;
  slot->window = Windows().OpenOutputWindow(name, caption);
  if (slot->window) return;
  slot->name.clear();
  ShrinkFreedEnd(run.windows);
}

void RunClearWindow(ScriptRun& run, std::string& text) {
  std::string name = NameOf(text);
  for (WindowSlot& slot : run.windows)
    if (slot.window && slot.name == name) slot.window->Clear();
}

void RunCloseWindow(ScriptRun& run, std::string& text) {
  WindowSlot* slot = FindWindow(run, NameOf(text));
  if (!slot) return;
  slot->window->Close();
  slot->window.reset();
  slot->name.clear();
  ShrinkFreedEnd(run.windows);
}

void RunOpenFile(ScriptRun& run, std::string& text) {
  size_t comma = text.find(',');
  if (comma == std::string::npos) return Fail(run, text, kOpenFileError);
  std::string name = NameOf(std::string_view(text).substr(0, comma));
  std::string path = Trim(std::string_view(text).substr(comma + 1)), mode = "append";
  if (size_t second = path.find(','); second != std::string::npos) {
    mode = NameOf(std::string_view(path).substr(second + 1));
    path = Trim(std::string_view(path).substr(0, second));
  }
  if (FindFile(run, name)) return;
  std::replace(path.begin(), path.end(), '\\', '/');
  if (name.empty() || path.empty()) return Fail(run, text, kOpenFileError);
  auto file = ScriptFiles().Open(path, mode == "over" || mode == "overwrite");
  if (!file) return Fail(run, text, kOpenFileError);
  size_t number = 0;
  FileSlot& slot = FreeSlot(run.files, number);
  slot.name = name;
  slot.file = std::move(file);
}

void RunCloseFile(ScriptRun& run, std::string& text) {
  std::string name = NameOf(text);
  bool written = true;
  for (FileSlot& slot : run.files) {
    if (!slot.file || slot.name != name) continue;
    written = slot.file->Close() && written;
    slot.file.reset();
    slot.name.clear();
  }
  ShrinkFreedEnd(run.files);
  if (!written) Raise(ErrNo::DeviceIOError);
}

void RunPrint(ScriptRun& run, std::string& text, bool newline) {
  size_t comma = text.find(',');
  std::string target = NameOf(std::string_view(text).substr(0, comma)), printed;
  if (comma != std::string::npos)
    printed = PrintedText(run, Trim(std::string_view(text).substr(comma + 1)));
  if (newline) printed += kCrLf;
  for (WindowSlot& slot : run.windows)
    if (slot.window && slot.name == target) slot.window->Print(printed);
  for (FileSlot& slot : run.files)
    if (slot.file && slot.name == target && !slot.file->Write(printed)) Raise(ErrNo::DeviceIOError);
}

void RunDisplay(ScriptRun& run) {
  if (run.resultText.starts_with(kToWindowMarker)) run.resultText.erase(0, kToWindowMarker.size());
  Windows().Display(run.resultText, run.logText);
}

void RunTime(ScriptRun& run) {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[16];
  std::strftime(text, sizeof text, "%H:%M:%S", &local);
  run.logText += text;
  run.logText += kCrLf;
}

void CloseRunOutputs(ScriptRun& run) {
  // Only the first window closes; the others stay on screen.
  if (!run.windows.empty() && run.windows.front().window) run.windows.front().window->Close();
  run.windows.clear();
  for (FileSlot& slot : run.files)
    if (slot.file) slot.file->Close();
  run.files.clear();
}

}  // namespace gandrel
