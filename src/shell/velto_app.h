// The program's entry: it refuses, hands a configuration over to the program that runs already,
// makes a direct run, or becomes the editor.
#pragma once

#include <string>
#include <utility>

#include "shell/windows_loader.h"

namespace velto {

class CVeltoApp {
  public:
    // `commandLine` is the text that CommandLineText gives. The windows aren't owned.
    CVeltoApp(std::string commandLine, WindowsLoader& windows)
        : command_line_(std::move(commandLine)), windows_(windows) {}

    // The whole life of the process; it ends with exitStatus().
    void InitInstance();

    // 0 if the emulator was started, the first process answered the hand-over, or the editor
    // ended; else 1.
    int exitStatus() const { return status_; }

  private:
    // A first process exists: gives it the configuration's name, or tells that it is there. True if
    // it was none after all, and this one is the first now.
    bool MeetFirstProcess(const std::string& flag, const std::string& name);
    bool OpenRegistry();
    void RunDirect(const std::string& name);

    std::string command_line_;
    WindowsLoader& windows_;
    int status_ = 1;
};

}  // namespace velto
