// modGRCalcs: substitution of script variables and list items into a text,
// and the small text helpers that every part of Gandrel leans on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "calc/VarStore.h"

namespace gandrel {

// Replaces every variable name, then every list reference name(index), by its
// value, in the store's order. Names match anywhere in the lower-cased line,
// also inside longer words. A list reference without a closing ")" never
// completes: the loop pumps events and ends with BreakSignal when the user
// breaks. A list index too large for 16 bits ("die(40000)", "die(1E400)") or
// a match past position 32,767 raises Overflow, for the caller's handler.
void ReplaceVars(std::string& line, const VarStore& store);

// left = trimmed text before the first "="; line = trimmed text after it.
void SplitAssignment(std::string& line, std::string& left);

// Trimmed, then every blank, TAB, CR and LF removed.
std::string StripWhitespace(std::string_view text);

// fields = {"", piece 1, ..., piece n}: the text cut at every delimiter.
void SplitText(std::string_view text, char delimiter, std::vector<std::string>& fields);

// The number of positions at which needle occurs (overlapping ones count).
int16_t CountOccurrences(std::string_view text, std::string_view needle);

// The last occurrence of needle lying wholly within the first start characters
// of text (start -1: the whole text); 0 if none.
int16_t InStrLast(int16_t start, std::string_view text, std::string_view needle);

}  // namespace gandrel
