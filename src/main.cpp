// Chooses the host's services and starts the program.
#include <csignal>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "launch/command_line.h"
#include "launch/velto_app.h"
#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/instance.h"
#include "platform/libraries.h"
#include "platform/process.h"
#include "platform/registry.h"
#include "shell/windows_loader.h"

namespace {

int Run(const std::vector<std::string>& arguments) {
    namespace platform = velto::platform;
    const auto files = platform::MakeFileService();
    const auto environment = platform::ReadEnvironment(*files);
    const auto drives = platform::MakeDriveTable(*files, environment.drives, environment.home);
    const auto registry = platform::MakeSqliteRegistry(environment.RegistryFile());
    const auto processes = platform::MakeProcessService(environment);
    const auto instance = platform::MakeInstanceService(environment.program, environment.home);
    velto::WindowsLoader windows(environment.program);
    const auto libraries = platform::MakeLibraryService(*processes, environment.program);
    const platform::HostScope scope({&environment, files.get(), drives.get(), registry.get(),
                                     processes.get(), instance.get(), &windows, libraries.get()});

    velto::CVeltoApp app(velto::CommandLineText(environment.program, arguments), windows);
    app.InitInstance();
    return app.exitStatus();
}

}  // namespace

int main(int argc, char** argv) {
    // A reader of the messages that is gone must not end what is under way.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return Run({argv + (argc > 0 ? 1 : 0), argv + argc});
    } catch (const std::exception& error) {
        std::cerr << "Velto: " << error.what() << std::endl;
        return 1;
    }
}
