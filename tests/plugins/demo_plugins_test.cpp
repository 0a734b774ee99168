// The demo plug-ins in the program that runs plug-ins, with settings of a demo configuration.
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/libraries.h"
#include "plugins/plugin_catalogue.h"
#include "store/velto_settings.h"
#include "support/home_test.h"
#include "support/run_program.h"

namespace velto::test {
namespace {

class DemoPluginsTest : public HomeTest {
  protected:
    platform::RegistryValue Setting(const std::string& key, const char* name) {
        const auto open =
            registry->OpenKey("HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\" + key);
        const auto value = open.ok() ? open.value()->Query(name) : platform::Error{};
        return value.ok() ? value.value() : platform::RegistryValue{};
    }
    // What a press of "Configure" does.
    void Configure(const std::string& name) {
        for (auto* plugin : catalogue.FindByName(name)) {
            EXPECT_TRUE(plugin->Reload(plugin_folder));
            plugin->Configure();
            EXPECT_TRUE(plugin->Unload());
        }
    }

    const std::string plugin_folder = InHome("drive_c/emu/plugins");
    std::unique_ptr<platform::LibraryService> libraries =
        platform::MakeLibraryService(processes, environment.program, std::chrono::seconds(3));
    platform::HostScope with_libraries = With(*libraries);
    CPluginCatalogue catalogue;
};

TEST_F(DemoPluginsTest, ConfigureTakesTheSettingAStepFurtherAndBehindTheLargestTheLeast) {
    std::filesystem::create_directories(InHome("drive_c/emu"));
    std::filesystem::copy(BinaryFolder() + "/demo-plugins", plugin_folder);
    CVeltoSettings().SetEmulatorPath("C:\\emu\\ePSXe.EXE");
    catalogue.ScanPlugins([](const std::string&) {});

    Configure("Demo GPU Version 1.0");
    EXPECT_EQ(Setting("GPU\\DemoGPU", "Brightness"), platform::DwordValue(60)) << "unset before";

    const auto merged = RunProgram(
        {{environment.registry_editor, "/S", VELTO_DEMO_FOLDER "/config/Comet Circuit.dta"},
         environment.child_variables,
         {}});
    ASSERT_EQ(merged.status, 0) << merged.err;
    Configure("Demo CDR Version 1.0");
    Configure("Demo GPU Version 1.0");
    Configure("Demo SPU Version 1.0");
    EXPECT_EQ(Setting("CDR\\DemoCDR", "Speed"), platform::DwordValue(20));
    EXPECT_EQ(Setting("GPU\\DemoGPU", "Brightness"), platform::DwordValue(80));
    EXPECT_EQ(Setting("SPU\\DemoSPU", "Volume"), platform::DwordValue(25)) << "100 before";
}

}  // namespace
}  // namespace velto::test
