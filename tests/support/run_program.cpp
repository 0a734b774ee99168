#include "support/run_program.h"

#include <atomic>
#include <chrono>
#include <thread>

#include "support/temporary_folder.h"
#include "support/variables.h"

namespace velto::test {
namespace {

void Redirect(const std::string& file, int flags, int to) {
    const int opened = open(file.c_str(), flags, 0600);
    if (opened < 0 || dup2(opened, to) < 0) _exit(125);
}

// Returns only if there is no such program.
int Become(const ProgramRun& run, const std::string& out_file, const std::string& err_file) {
    constexpr int kOutput = O_WRONLY | O_CREAT | O_TRUNC | O_APPEND;
    Redirect("/dev/null", O_RDONLY, STDIN_FILENO);
    Redirect(out_file, kOutput, STDOUT_FILENO);
    Redirect(err_file, kOutput, STDERR_FILENO);
    if (!run.folder.empty() && chdir(run.folder.c_str()) != 0) return 125;
    const Variables variables(run.variables);
    std::vector<char*> arguments;
    for (const auto& argument : run.command)
        arguments.push_back(const_cast<char*>(argument.data()));
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    return 126;
}

std::string OutputName(const std::string& folder) {
    static std::atomic<int> counter = 0;
    return folder + "/output-" + std::to_string(counter++);
}

}  // namespace

RunningProgram::RunningProgram(const ProgramRun& run, const std::string& folder)
    : out_file_(OutputName(folder)),
      err_file_(out_file_ + "-error"),
      child_([&](const auto&) { return Become(run, out_file_, err_file_); }) {}

ProgramResult RunningProgram::Wait() {
    const int status = child_.Wait();
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), ReadFile(out_file_),
            ReadFile(err_file_)};
}

std::string RunningProgram::out() const {
    return Exists(out_file_) ? ReadFile(out_file_) : "";
}

bool RunningProgram::Says(const std::string& text) const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (out().find(text) == std::string::npos) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

ProgramResult RunProgram(const ProgramRun& run) {
    const TemporaryFolder folder;
    return RunningProgram(run, folder.path()).Wait();
}

}  // namespace velto::test
