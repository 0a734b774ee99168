// The program's entry: it refuses, hands a configuration over to the program that runs already,
// makes a direct run, or becomes the editor.
#pragma once

#include <string>
#include <utility>

namespace velto {

// The editor, which stands above this program's entry.
class EditorRunner {
  public:
    virtual ~EditorRunner() = default;
    // From its start to its end. False if it can't start, which is reported.
    virtual bool RunEditor() = 0;
};

class CVeltoApp {
  public:
    // `commandLine` is the text that CommandLineText gives. The editor isn't owned.
    CVeltoApp(std::string commandLine, EditorRunner& editor)
        : command_line_(std::move(commandLine)), editor_(editor) {}

    // The whole life of the process; it ends with exitStatus().
    void InitInstance();

    // 0 if the emulator was started, the first process answered the hand-over, or the editor
    // ended; else 1.
    int exitStatus() const { return status_; }

  private:
    // A first process exists: gives it the configuration's name, or tells that it is there.
    void MeetFirstProcess(const std::string& flag, const std::string& name);
    bool OpenRegistry();
    void RunDirect(const std::string& name);

    std::string command_line_;
    EditorRunner& editor_;
    int status_ = 1;
};

}  // namespace velto
