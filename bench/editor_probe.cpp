// Opens the editor's window on the configurations of the start folder and says so with one byte.
// Then `select <n>` makes so many selections, and `launch` selects a configuration, writes one more
// byte and clicks on "Launch Epsxe". For the benchmarks alone.
#include <unistd.h>

#include <QAbstractButton>
#include <QApplication>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string_view>

#include "platform/real_host.h"
#include "shell/main_frame_window.h"

namespace {

// From one configuration to the next, through all groups.
void Select(velto::CEpsxeTree& tree, int selections) {
    for (int i = 0; i < selections; ++i) {
        const auto& groups = tree.nodes().root().children;
        const auto& inside = groups.at(static_cast<std::size_t>(i) % groups.size())->children;
        tree.Select({inside.at(static_cast<std::size_t>(i) % inside.size()).get()});
        QCoreApplication::processEvents();
    }
}

void Tell() {
    if (write(STDOUT_FILENO, "1", 1) != 1) throw std::runtime_error("write");
}

// Returns when the run has ended.
void Launch(velto::CMainFrameWindow& window, velto::LaunchCycle& launch) {
    Select(window.tree(), 1);
    for (auto* const button : window.findChildren<QAbstractButton*>()) {
        if (button->text().remove('&') != "Launch Epsxe") continue;
        Tell();
        button->click();
        launch.Wait();
    }
}

int Open(int argc, char** argv) {
    const velto::platform::RealHost host;
    const auto boxes = velto::platform::MakeStandardErrorBoxes();
    const velto::platform::HostScope scope(host.Services(*boxes));
    if (!host.registry().OpenStore({}).ok()) return 1;

    const QApplication application(argc, argv);
    velto::CPluginCatalogue catalogue;
    velto::LaunchCycle launch({});
    velto::CMainFrameWindow window(host.environment().ConfigFolder(), catalogue, launch,
                                   [] { return true; });
    window.show();
    QCoreApplication::processEvents();
    Tell();
    const std::string_view work = argc > 1 ? argv[1] : "";
    if (work == "select") Select(window.tree(), std::atoi(argv[2]));
    if (work == "launch") Launch(window, launch);
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
