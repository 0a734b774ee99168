// Runs of the registry editor, an outside program: exports and merges, each waited for.
//
// One that runs on for long may hang: then the user is shown what is waited for, and may end it,
// which counts as a failure. `folder` is a host path, the editor's current directory; `file` is
// relative to it.
#pragma once

#include <string>

namespace velto {

enum class EditorRun {
    Done,        // it reports success
    Failed,      // it reports failure, crashed, or was ended
    NotStarted,  // it isn't there or can't be run
};

// Exports `key`, which goes into the command line unchanged: one with a blank needs its quotes. 0,
// or after a message -1 if the editor can't be started, and kNoBackup if it reports failure or left
// no file. A file that was there before the export must be gone, or it is taken for the backup.
inline constexpr int kNoBackup = -2;
int BackupBranch(const std::string& key, const std::string& file, const std::string& folder);

// What a merge may write: keys as velto-regedit takes them from VELTO_MERGE_SCOPE. Another registry
// editor doesn't know them. A configuration may come from a stranger: it reaches plug-ins, but
// neither this program's settings, which name the emulator, nor the emulator's own values.
inline constexpr const char* kConfigurationScope =
    "HKEY_CURRENT_USER\\Software\\;-HKEY_CURRENT_USER\\Software\\velto;"
    "-HKEY_CURRENT_USER\\Software\\epsxe";

// Merges `file`. -1 if the editor can't be started, after a message, or if it reports a failure
// itself, without one; else 0.
int RestoreFile(const std::string& file, const std::string& folder, const std::string& scope);

// The same without a message.
EditorRun MergeFile(const std::string& file, const std::string& folder, const std::string& scope);

}  // namespace velto
