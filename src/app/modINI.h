// modINI: the private-profile settings file.
//
// A section and a file are registered once with SetIniFile; keys are then read
// and written against them. Section and key names compare without regard to
// case; a missing key gives the caller's default; a key written for the first
// time is appended to its section, a section written for the first time is
// appended to the file; existing lines are updated in place and every other
// line (comments, unknown keys, other sections) is kept as it was.
//
// Each file is parsed once and kept in memory; it is parsed again when the
// file on disk changes. A write goes to disk at once (never half-written: a
// temporary file beside the target is renamed over it), unless a batch is
// open: then the writes collect in memory and EndIniBatch writes each changed
// file once.
#pragma once

#include <cstdint>
#include <string>

namespace gandrel {

// Registers the section and the file (both trimmed of blanks) for the
// routines below.
void SetIniFile(const std::string& section, const std::string& fileName);

// The value of key as a whole number: an optional "-" and the digits that
// follow (0 when there are none); the default when the key is missing.
int32_t GetIniInt(const std::string& key, int32_t defaultValue);

// The value of key (at most 254 characters), or the default when it is missing.
std::string GetIniString(const std::string& key, const std::string& defaultValue);

// Write key = value; return 1 on success, 0 on failure.
int32_t WriteIniInt(const std::string& key, int32_t value);
int32_t WriteIniString(const std::string& key, const std::string& value);

// Holds the writes in memory until EndIniBatch, which writes every changed
// file once. EndIniBatch returns false (with the file and the reason in
// failedFile and reason) when a file could not be written; the files that
// failed are read afresh on the next access.
void BeginIniBatch();
bool EndIniBatch(std::string& failedFile, std::string& reason);

// Forgets the registration, the parsed files and any open batch.
void ResetIni();

}  // namespace gandrel
