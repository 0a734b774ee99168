// Runs one of the built programs as a user would: its own process, environment and folder.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/forked_child.h"

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

// A program that was started and runs on. The destructor kills it if it wasn't waited for.
class RunningProgram {
  public:
    // Its outputs go to two files in `folder`, which must outlive it.
    RunningProgram(const ProgramRun& run, const std::string& folder);

    // Waits for its end. What its children write later isn't in the result.
    ProgramResult Wait();
    void Kill() const { child_.Kill(); }
    // What has been written so far.
    std::string out() const;
    // Waits up to 20 seconds for the text to appear in its output, its children's included.
    bool Says(const std::string& text) const;

  private:
    std::string out_file_;
    std::string err_file_;
    ForkedChild child_;
};

ProgramResult RunProgram(const ProgramRun& run);

}  // namespace velto::test
