// Opens the editor's window on the configurations of the start folder, says so with one byte, makes
// as many selections as it is told to, and ends. For the benchmarks alone.
#include <unistd.h>

#include <QApplication>
#include <cstdlib>
#include <exception>
#include <iostream>

#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/message_box.h"
#include "platform/process.h"
#include "platform/registry.h"
#include "shell/main_frame_window.h"

namespace {

namespace platform = velto::platform;

// From one configuration to the next, through all groups.
void Select(velto::CEpsxeTree& tree, int selections) {
    for (int i = 0; i < selections; ++i) {
        const auto& groups = tree.root().children;
        const auto& inside = groups.at(static_cast<std::size_t>(i) % groups.size())->children;
        tree.Select({inside.at(static_cast<std::size_t>(i) % inside.size()).get()});
        QCoreApplication::processEvents();
    }
}

int Open(int argc, char** argv) {
    const auto files = platform::MakeFileService();
    const auto environment = platform::ReadEnvironment(*files);
    const auto drives = platform::MakeDriveTable(*files, environment.drives, environment.home);
    const auto registry = platform::MakeSqliteRegistry(environment.RegistryFile());
    const auto processes = platform::MakeProcessService(environment);
    const auto boxes = platform::MakeStandardErrorBoxes();
    const platform::HostScope scope({&environment, files.get(), drives.get(), registry.get(),
                                     processes.get(), nullptr, boxes.get()});
    if (!registry->OpenStore({}).ok()) return 1;

    const QApplication application(argc, argv);
    velto::CPluginCatalogue catalogue;
    velto::LaunchCycle launch({});
    velto::CMainFrameWindow window(environment.ConfigFolder(), catalogue, launch,
                                   [] { return true; });
    window.show();
    QCoreApplication::processEvents();
    if (write(STDOUT_FILENO, "1", 1) != 1) return 1;
    Select(window.tree(), argc > 1 ? std::atoi(argv[1]) : 0);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Open(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        return 1;
    }
}
