// Chooses the host's services and starts the program.
#include <csignal>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "platform/real_host.h"
#include "shell/command_line.h"
#include "shell/velto_app.h"
#include "shell/windows_loader.h"

namespace {

int Run(const std::vector<std::string>& arguments) {
    const velto::platform::RealHost host;
    const auto& program = host.environment().program;
    velto::WindowsLoader windows(program);
    const velto::platform::HostScope scope(host.Services(windows, windows));

    velto::CVeltoApp app(velto::CommandLineText(program, arguments), windows);
    app.InitInstance();
    return app.exitStatus();
}

}  // namespace

int main(int argc, char** argv) {
    // A reader of the messages that is gone must not end what is under way.
    std::signal(SIGPIPE, SIG_IGN);
    // Nor a limit on the size of files: a write that fails is told.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return Run({argv + (argc > 0 ? 1 : 0), argv + argc});
    } catch (const std::exception& error) {
        std::cerr << "Velto: " << error.what() << std::endl;
        return 1;
    }
}
