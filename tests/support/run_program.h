// Runs one of the built programs as a user would: its own process, environment and folder.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "platform/environment.h"
#include "platform/process.h"
#include "support/surroundings.h"

namespace velto::test {

struct ProgramRun {
    std::vector<std::string> command;  // the program's path and its arguments
    Variables::List variables;
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
    explicit RunningProgram(const ProgramRun& run) {
        std::string parameters = "-c " + platform::QuoteParameter("exec \"$@\" >$0/out 2>$0/err");
        parameters += ' ' + outputs_.path();
        for (const auto& part : run.command) parameters += ' ' + platform::QuoteParameter(part);
        const Variables variables(run.variables);
        const platform::Environment environment;
        child_ = platform::MakeProcessService(environment)
                     ->Start({.file = "/bin/sh", .parameters = parameters, .folder = run.folder})
                     .value();
    }
    ~RunningProgram() {
        Kill();
        std::ignore = child_->Wait();
    }
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    // Waits for its end. What its children write later isn't in the result.
    ProgramResult Wait() {
        const auto status = child_->Wait().value();
        return {status.normal ? status.code : 128 + status.code, out(), ReadFile(outputs_ / "err")};
    }
    void Kill() const { child_->Kill(); }
    // What has been written so far.
    std::string out() const { return Exists(outputs_ / "out") ? ReadFile(outputs_ / "out") : ""; }
    // Waits up to 20 seconds for the text to appear in its output, its children's included.
    bool Says(const std::string& text) const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (out().find(text) == std::string::npos) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return true;
    }

  private:
    TemporaryFolder outputs_;
    std::unique_ptr<platform::ChildProcess> child_;
};

inline ProgramResult RunProgram(const ProgramRun& run) {
    return RunningProgram(run).Wait();
}

}  // namespace velto::test
