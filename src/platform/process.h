// Other programs: started without a shell, waited for or left to themselves.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/result.h"

namespace velto::platform {

enum class ShowState { Shown, Hidden };

struct ProcessRequest {
    std::string file{};                 // host path of the program
    std::string parameters{};           // one text, split by SplitParameters
    std::string folder{};               // the child's current directory; empty: this process's own
    ShowState show = ShowState::Shown;  // a wish that this host has no means to fulfil
    bool ends_with_parent = false;      // killed when the thread that started it ends
    std::vector<int> descriptors{};     // of this process; the child's numbers 3, 4, ...
    // Names and values that this child alone is given.
    std::vector<std::pair<std::string, std::string>> variables{};
};

struct ExitStatus {
    bool normal = false;  // ended by itself, not by a signal
    int code = 0;         // the exit status, or the signal's number
    bool success() const { return normal && code == 0; }
};

// A started program. Destroying this lets it run on.
class ChildProcess {
  public:
    virtual ~ChildProcess() = default;
    virtual int id() const = 0;
    // Whether the program has ended when it does or at the limit, whichever comes first. It can
    // still be waited for.
    virtual bool EndsWithin(std::chrono::milliseconds limit) = 0;
    // Blocks until the program has ended. Once.
    virtual Result<ExitStatus> Wait() = 0;
    // Ends the program at once, if it hasn't been waited for.
    virtual void Kill() = 0;
};

class ProcessService {
  public:
    virtual ~ProcessService() = default;
    // The child gets a session of its own, an empty standard input, this process's outputs,
    // those descriptors and no other. A file that isn't there, is a folder, or can't be run is a
    // failure, and so is a folder that can't be entered or a parameter text with a NUL. A file
    // named `*.exe` that begins with the bytes MZ is started through the runner.
    virtual Result<std::unique_ptr<ChildProcess>> Start(const ProcessRequest& request) = 0;
};

ProcessService& Processes();

struct Environment;

// `environment` must outlive the service.
std::unique_ptr<ProcessService> MakeProcessService(const Environment& environment);

// A parameter text as the arguments that a C program of Windows receives: blanks and tabs
// separate, double quotes hold together, backslashes are special only in front of a quote
// (2n of them and a quote: n and the quote works; 2n+1: n and the quote is a character), and a
// doubled quote inside quotes is a character. (Source: the documentation of the C runtime's
// argument parsing.)
std::vector<std::string> SplitParameters(const std::string& parameters);

// `argument` between double quotes, such that SplitParameters gives it back.
std::string QuoteParameter(const std::string& argument);

}  // namespace velto::platform
