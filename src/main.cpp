// Chooses the host's services and starts the program.
#include <string>
#include <vector>

#include "launch/command_line.h"
#include "launch/velto_app.h"
#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/instance.h"
#include "platform/message_box.h"
#include "platform/process.h"
#include "platform/registry.h"

int main(int argc, char** argv) {
    namespace platform = velto::platform;
    const auto files = platform::MakeFileService();
    const auto environment = platform::ReadEnvironment(*files);
    const auto drives = platform::MakeDriveTable(*files, environment.drives, environment.home);
    const auto registry = platform::MakeSqliteRegistry(environment.RegistryFile());
    const auto processes = platform::MakeProcessService(environment);
    const auto instance = platform::MakeInstanceService(environment.program, environment.home);
    const auto boxes = platform::MakeStandardErrorBoxes();
    const platform::HostScope scope({&environment, files.get(), drives.get(), registry.get(),
                                     processes.get(), instance.get(), boxes.get()});

    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    velto::CVeltoApp app(velto::CommandLineText(environment.program, arguments));
    app.InitInstance();
    return app.exitStatus();
}
