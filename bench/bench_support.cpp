#include "bench_support.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

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

Timing Run(std::vector<std::string> command) {
    int output[2];
    Check(pipe2(output, O_CLOEXEC) == 0, "pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    std::vector<char*> arguments;
    for (auto& argument : command) arguments.push_back(argument.data());
    arguments.push_back(nullptr);

    pid_t child = 0;
    const auto start = Clock::now();
    Check(posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0,
          "spawn " + command[0]);
    close(output[1]);
    Timing timing{};
    char byte = 0;
    Check(read(output[0], &byte, 1) >= 0, "read");
    timing.first_byte = Since(start);
    while (read(output[0], &byte, 1) > 0) timing.next_bytes.push_back(Since(start));
    int status = 0;
    rusage usage{};
    Check(wait4(child, &status, 0, &usage) == child && status == 0, "exit of " + command[0]);
    timing.exit = Since(start);
    close(output[0]);
    posix_spawn_file_actions_destroy(&actions);
    timing.peak_mib = static_cast<double>(usage.ru_maxrss) / 1024;
    return timing;
}

}  // namespace velto::bench
