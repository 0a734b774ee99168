// The editor's launch without its windows: `launcher <name>` launches that configuration of the
// home in VELTO_HOME and ends when the registry has been given back.
#include "documents.h"
#include "launch/launch_cycle.h"
#include "platform/real_host.h"

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const velto::platform::RealHost host;
    const auto boxes = velto::platform::MakeStandardErrorBoxes();
    const velto::platform::HostScope scope(host.Services(*boxes));
    if (!host.registry().OpenStore({}).ok()) return 3;

    velto::test::FakeEditor editor;
    editor.selected = argv[1];
    velto::CVeltoDoc document(host.environment().ConfigFolder(), editor);
    velto::CPluginCatalogue catalogue;
    velto::LaunchCycle launch([] {});
    document.LoadConfig(editor.selected);
    return launch.OnRun(document, editor.GetSelectedConfigFile(), catalogue) ? 0 : 1;
}
