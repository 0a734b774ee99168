// The program's entry: it refuses, hands a configuration over to the program that runs already,
// makes a direct run, or becomes the editor.
#pragma once

#include <string>
#include <utility>

namespace velto {

class CVeltoApp {
  public:
    // `commandLine` is the text that CommandLineText gives.
    explicit CVeltoApp(std::string commandLine) : command_line_(std::move(commandLine)) {}

    // False ends the process, with exitStatus().
    bool InitInstance();

    // 0 if the emulator was started or the first process answered the hand-over, else 1.
    int exitStatus() const { return status_; }

  private:
    // A first process exists: gives it the configuration's name, or tells that it is there.
    void MeetFirstProcess(const std::string& flag, const std::string& name);
    bool OpenRegistry();
    void RunDirect(const std::string& name);
    bool StartEditor();

    std::string command_line_;
    int status_ = 1;
};

}  // namespace velto
