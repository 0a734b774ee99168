#include "support/run_program.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include "support/temporary_folder.h"

namespace velto::test {
namespace {

void Redirect(const std::string& file, int to) {
    const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
    if (opened < 0 || dup2(opened, to) < 0) _exit(125);
}

[[noreturn]] void BecomeProgram(const ProgramRun& run) {
    if (!run.folder.empty() && chdir(run.folder.c_str()) != 0) _exit(125);
    for (const auto& [name, value] : run.variables) {
        if (value.empty()) {
            unsetenv(name.c_str());
        } else {
            setenv(name.c_str(), value.c_str(), 1);
        }
    }
    std::vector<char*> arguments;
    for (const auto& argument : run.command)
        arguments.push_back(const_cast<char*>(argument.data()));
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(126);
}

std::string OutputName(const std::string& folder) {
    static std::atomic<int> counter = 0;
    return folder + "/output-" + std::to_string(counter++);
}

}  // namespace

RunningProgram::RunningProgram(const ProgramRun& run, const std::string& folder)
    : out_file_(OutputName(folder)), err_file_(out_file_ + "-error") {
    WriteFile(out_file_, "");
    WriteFile(err_file_, "");
    int input[2];
    if (pipe2(input, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
    id_ = fork();
    if (id_ < 0) throw std::runtime_error("fork");
    if (id_ == 0) {
        dup2(input[0], STDIN_FILENO);
        Redirect(out_file_, STDOUT_FILENO);
        Redirect(err_file_, STDERR_FILENO);
        BecomeProgram(run);
    }
    close(input[0]);
    input_ = input[1];
}

RunningProgram::~RunningProgram() {
    CloseInput();
    if (!ended_) {
        Kill();
        Wait();
    }
}

ProgramResult RunningProgram::Wait() {
    int status = 0;
    while (waitpid(id_, &status, 0) < 0) {
        if (errno != EINTR) throw std::runtime_error("waitpid");
    }
    ended_ = true;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), ReadFile(out_file_),
            ReadFile(err_file_)};
}

void RunningProgram::Kill() {
    kill(id_, SIGKILL);
}

std::string RunningProgram::out() const {
    return ReadFile(out_file_);
}

bool RunningProgram::Says(const std::string& text) const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (out().find(text) == std::string::npos) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

void RunningProgram::Tell(const std::string& text) {
    if (write(input_, text.data(), text.size()) < 0) throw std::runtime_error("write");
}

void RunningProgram::CloseInput() {
    if (input_ >= 0) close(input_);
    input_ = -1;
}

ProgramResult RunProgram(const ProgramRun& run) {
    const TemporaryFolder folder;
    return RunningProgram(run, folder.path()).Wait();
}

}  // namespace velto::test
