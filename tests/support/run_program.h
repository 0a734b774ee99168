// Runs one of the built programs as a user would: its own process, environment and folder.
#pragma once

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

namespace velto::test {

struct ProgramRun {
    std::vector<std::string> command;  // the program's path and its arguments
    std::vector<std::pair<std::string, std::string>> variables;  // an empty value unsets
    std::string folder;  // the current directory; empty: this process's own
};

struct ProgramResult {
    int status = -1;  // the exit status; 128 and the signal's number for one that died
    std::string out;
    std::string err;
};

// A program that was started and runs on.
class RunningProgram {
  public:
    // Its outputs go to two files in `folder`, which must outlive it.
    RunningProgram(const ProgramRun& run, const std::string& folder);
    // Kills it if it still runs.
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    pid_t id() const { return id_; }
    // Waits for its end. What its children write later isn't in the result.
    ProgramResult Wait();
    void Kill();
    // What has been written so far.
    std::string out() const;
    // Waits up to 20 seconds for the text to appear in its output, its children's included.
    bool Says(const std::string& text) const;
    // Writes to its standard input, or closes it.
    void Tell(const std::string& text);
    void CloseInput();

  private:
    std::string out_file_;
    std::string err_file_;
    pid_t id_ = -1;
    int input_ = -1;
    bool ended_ = false;
};

ProgramResult RunProgram(const ProgramRun& run);

}  // namespace velto::test
