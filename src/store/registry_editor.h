// Runs of the registry editor, an outside program, each waited for until it ends.
//
// One that runs on for long may hang: then a message box names it and offers to end it, again and
// again, each time after twice as long. One that is so ended has failed.
#pragma once

#include <string>

namespace velto {

// What happens while somebody waits. Called every few milliseconds, on the waiting thread.
class RegistryEditorWait {
  public:
    virtual ~RegistryEditorWait() = default;
    // Windows repaint and take no input: neither the user's nor a second process's.
    virtual void Repaint() = 0;
};

enum class EditorRun {
    Done,        // it reports success
    Failed,      // it reports failure, crashed, or was ended
    NotStarted,  // it isn't there or can't be run
};

// Blocks. `folder` is a host path, the editor's current directory. `wait` may be null.
EditorRun RunRegistryEditor(const std::string& parameters, const std::string& folder,
                            RegistryEditorWait* wait);

}  // namespace velto
