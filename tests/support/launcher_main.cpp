// The editor's launch without its windows: `launcher <name>` launches that configuration of the
// home in VELTO_HOME and ends when the registry has been given back.
#include "fake_editor.h"
#include "launch/launch_cycle.h"
#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/host.h"
#include "platform/message_box.h"
#include "platform/process.h"

namespace platform = velto::platform;

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const auto files = platform::MakeFileService();
    const auto environment = platform::ReadEnvironment(*files);
    const auto drives = platform::MakeDriveTable(*files, environment.drives, environment.home);
    const auto registry = platform::MakeSqliteRegistry(environment.RegistryFile());
    const auto processes = platform::MakeProcessService(environment);
    const auto boxes = platform::MakeStandardErrorBoxes();
    const platform::HostScope scope({&environment, files.get(), drives.get(), registry.get(),
                                     processes.get(), nullptr, boxes.get()});
    if (!registry->OpenStore({}).ok()) return 3;

    velto::test::FakeEditor editor;
    editor.selected = argv[1];
    velto::CVeltoDoc document(environment.ConfigFolder(), editor);
    velto::CPluginCatalogue catalogue;
    velto::LaunchCycle launch([] {});
    document.LoadConfig(editor.selected);
    return launch.OnRun(document, editor.GetSelectedConfigFile(), catalogue) ? 0 : 1;
}
