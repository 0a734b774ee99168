#include "bench_support.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "platform/registry.h"
#include "store/option_table.h"
#include "store/velto_settings.h"

namespace velto::bench {

namespace fs = std::filesystem;

void Check(bool good, const std::string& what) {
    if (!good) throw std::runtime_error(what);
}

double Since(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string Program(const std::string& name) {
    return (fs::read_symlink("/proc/self/exe").parent_path() / name).string();
}

Folder::Folder() {
    std::string name = (fs::temp_directory_path() / "velto-bench-XXXXXX").string();
    Check(mkdtemp(name.data()) != nullptr, "mkdtemp");
    path_ = name;
}

Folder::~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void ForgetTheConfiguration(const std::string& registry) {
    const auto store = platform::MakeSqliteRegistry(registry);
    Check(store->OpenStore({}).ok(), "registry");
    std::vector<platform::RegistryWrite> writes;
    for (const auto name : EmulatorValueNames()) {
        writes.push_back({std::string(platform::kCurrentUser).append(kEmulatorConfigKey),
                          std::string(name), platform::StringValue("former")});
    }
    for (const char* name : {"Width", "Shader", "Palette"}) {
        writes.push_back({std::string(platform::kCurrentUser)
                              .append("Software\\Vision Thing\\PSEmu Pro\\GPU\\DemoGPU"),
                          name, platform::StringValue("former")});
    }
    Check(platform::WriteValues(*store, writes).ok(), "former values");
}

namespace {

class Pipe {
  public:
    Pipe() { Check(pipe2(ends_, O_CLOEXEC) == 0, "pipe"); }
    ~Pipe() {
        close(ends_[0]);
        CloseInput();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    int output() const { return ends_[0]; }
    int input() const { return ends_[1]; }
    void CloseInput() {
        if (ends_[1] >= 0) close(ends_[1]);
        ends_[1] = -1;
    }

  private:
    int ends_[2]{};
};

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (auto& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

pid_t Spawn(std::vector<std::string>& command, const Pipe& output, const Pipe& told, Peak peak) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output.input(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, told.input(), PEAK_DESCRIPTOR);
    std::vector<std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) variables.emplace_back(*entry);
    if (peak == Peak::Read) variables.push_back("LD_PRELOAD=" + Program("peak-probe.so"));
    pid_t child = 0;
    const auto failure = posix_spawn(&child, command[0].c_str(), &actions, nullptr,
                                     Pointers(command).data(), Pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    Check(failure == 0, "spawn " + command[0]);
    return child;
}

// From the line "VmHWM:   1234 kB".
double PeakIn(int descriptor) {
    char line[256]{};
    Check(read(descriptor, line, sizeof line - 1) > 0, "no peak was told");
    return std::strtod(std::strpbrk(line, "0123456789"), nullptr) / 1024;
}

}  // namespace

Timing Run(std::vector<std::string> command, Peak peak) {
    Pipe output;
    Pipe told;
    Timing timing{};
    const auto start = Clock::now();
    const auto child = Spawn(command, output, told, peak);
    output.CloseInput();
    told.CloseInput();
    char byte = 0;
    Check(read(output.output(), &byte, 1) >= 0, "read");
    timing.first_byte = Since(start);
    while (read(output.output(), &byte, 1) > 0) timing.next_bytes.push_back(Since(start));
    int status = 0;
    Check(waitpid(child, &status, 0) == child && status == 0, "exit of " + command[0]);
    timing.exit = Since(start);
    if (peak == Peak::Read) timing.peak_mib = PeakIn(told.output());
    return timing;
}

}  // namespace velto::bench
