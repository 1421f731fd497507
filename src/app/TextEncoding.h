// TextEncoding: the encodings of the texts Gandrel reads and shows.
//
// Gandrel's texts are UTF-8. Script files written on Windows in its own code
// page are read as Windows-1252; texts cut short for showing are never cut
// inside a character; output that must be valid UTF-8 (JSON) checks each
// sequence.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace gandrel {

// True when text is well-formed UTF-8: no stray or missing continuation
// bytes, no overlong forms, no surrogates, nothing past U+10FFFF.
bool IsUtf8(std::string_view text);

// The length of the well-formed UTF-8 sequence that starts at text[i] (1
// for ASCII); 0 when none does. i must be inside text.
size_t Utf8SequenceLength(std::string_view text, size_t i);

// Where to cut text at about at: at itself, or the nearest position before it
// (but not before floor) that is no UTF-8 continuation byte, so that the cut
// never splits a character. A position past the end stays as it is.
size_t Utf8CharStart(std::string_view text, size_t at, size_t floor = 0);

// text read as Windows-1252, written as UTF-8. The five bytes that code page
// leaves undefined become the control characters of the same value.
std::string Windows1252ToUtf8(std::string_view text);

}  // namespace gandrel
