// Plug-ins as real libraries in the program that runs them, the ill-behaved ones included.
#include "plugins/plugin.h"

#include <array>
#include <filesystem>

#include <gmock/gmock.h>

#include "platform/libraries.h"
#include "platform/linux/library_messages.h"
#include "plugins/plugin_catalogue.h"
#include "store/velto_settings.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using testing::ElementsAre;

class PluginTest : public HomeTest {
  protected:
    PluginTest() {
        environment.child_variables.emplace_back("VELTO_REGEDIT", environment.registry_editor);
        CVeltoSettings().SetEmulatorPath("C:\\emu\\ePSXe.EXE");
        std::filesystem::create_directories(plugin_folder);
    }

    // A library of the test tree in the plug-in folder, under this name.
    void Install(const std::string& library, const std::string& as) {
        std::filesystem::copy_file(BinaryFolder() + "/test-plugins/" + library + ".so",
                                   plugin_folder + "/" + as);
    }
    std::vector<std::string> Scan() {
        std::vector<std::string> log;
        catalogue.ScanPlugins([&](const std::string& line) { log.push_back(line); });
        return log;
    }
    CPlugin Loaded(const std::string& library) {
        Install(library, library + ".dll");
        CPlugin plugin;
        EXPECT_TRUE(plugin.Load(library + ".dll", plugin_folder) && plugin.Identify());
        return plugin;
    }

    const std::string plugin_folder = InHome("drive_c/emu/plugins");
    std::unique_ptr<platform::LibraryService> libraries =
        platform::MakeLibraryService(processes, environment.program, std::chrono::seconds(3));
    platform::HostScope with_libraries = With(*libraries);
    CPluginCatalogue catalogue;
};

TEST_F(PluginTest, AScanKeepsWhatAnswersAndLogsTheRest) {
    const auto in = plugin_folder + "/";
    const std::string is_none = " is not a valid psemu plugin";
    const auto no_load = "Cannot load " + in;
    // In the order of the search: file, the library that it is, what the log says behind its line.
    const std::vector<std::array<std::string, 3>> cases = {
        {"a.dll", "cdr", ""},
        {"b.dll", "crash", in + "b.dll" + is_none},
        {"C.DLL", "gpu", ""},
        {"d.so.1.2", "spu", ""},
        {"e.dll", "hang", in + "e.dll" + is_none},
        {"f.so", "pad", ""},
        {"g.dll", "huge-name", in + "g.dll" + is_none},
        {"h.dll", "binary-name", in + "h.dll" + is_none},
        {"i.dll", "without-version", in + "i.dll" + is_none},
        {"j.dll", "net", ""},
        {"k.dll", "unknown-type", ""},
        {"l.dll", "crash-on-load", no_load + "l.dll"},
        {"m.dll", "cdr", no_load + "m.dll"},
        {"w.dll", "gpu", ""},
        {"zlib.dll", "gpu", "That file is excluded. Continuing"},
    };
    std::vector<std::string> expected;
    for (const auto& [file, library, outcome] : cases) {
        Install(library, file);
        expected.push_back("Scanning file: " + in + file);
        if (!outcome.empty()) expected.push_back(outcome);
    }
    WriteFile(in + "m.dll", ReadFile(in + "a.dll").substr(0, 40));
    WriteFile(in + "v.dll/readme.txt", "");
    WriteFile(in + "readme.txt", "");
    CVeltoSettings().SetExclusionList({"zlib.dll", "W.dll"});
    EXPECT_EQ(Scan(), expected);
    EXPECT_EQ(processes.requests.size(), 4U) << "one, and one behind each that has ended another";
    EXPECT_TRUE(processes.requests.back().ends_with_parent);

    const std::string gpu = "Test GPU Version 3.5";
    EXPECT_THAT(catalogue.GetPluginNames(2), ElementsAre(gpu, gpu));
    EXPECT_EQ(catalogue.GetPluginFile(gpu), "w.dll") << "the later one of two with one name";
    EXPECT_EQ(catalogue.GetPluginFile("test gpu version 3.5"), "");
    EXPECT_EQ(catalogue.FindByFile("c.dll").size(), 1U);
    std::string prefixes;
    for (auto& plugin : catalogue.plugins()) {
        prefixes += plugin.prefix + " ";
        EXPECT_EQ(plugin.module, platform::LibraryHandle::None) << "unloaded at rest";
        EXPECT_TRUE(plugin.Reload(plugin_folder));
    }
    EXPECT_EQ(prefixes, "CDR GPU SPU PAD NET  GPU ");
    EXPECT_EQ(processes.requests.size(), 4U + 7U) << "each in a program of its own";

    std::filesystem::remove_all(plugin_folder);
    EXPECT_THAT(Scan(), ElementsAre("No plugins files (*.dll) found"));
    CVeltoSettings().SetEmulatorPath("");
    WriteFile(InConfig("a.dll"), "never the configuration folder");
    EXPECT_THAT(Scan(), ElementsAre("No plugins files (*.dll) found"));
    EXPECT_THAT(catalogue.plugins(), testing::IsEmpty());
}

TEST(LibraryMessage, IsReadAsItWasWrittenOrNotAtAll) {
    const platform::LibraryMessage message{
        platform::LibraryMessageKind::Call, {1, UINT64_MAX}, {"", "t"}};
    const auto bytes = platform::EncodeLibraryMessage(message).value();
    EXPECT_EQ(platform::DecodeLibraryMessage(bytes), message);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(platform::DecodeLibraryMessage(bytes.substr(0, size))) << size;
    }
    constexpr char kMany = platform::kMostNumbers + 1;
    for (const auto& bad : {bytes + 'x', '\0' + bytes.substr(1), '\6' + bytes.substr(1),
                            std::string{2, kMany} + std::string(8 * kMany + 1U, '\0')}) {
        EXPECT_FALSE(platform::DecodeLibraryMessage(bad));
    }
}

TEST_F(PluginTest, ItsOwnVerbsRunInThePluginFolderAndACrashEndsThatLibraryAlone) {
    auto plugin = Loaded("gpu");
    auto other = Loaded("without-test");
    EXPECT_TRUE(plugin.Configure());
    EXPECT_EQ(StringOf("Software\\Test", "configured"), "yes");
    const std::pair<std::string, std::string> cases[] = {
        {"0", "Fine: It should work"},
        {"7", "Warning: Warning recieved from plugin!  Make sure that it is correctly configured."},
        {"-1",
         "Error: Error recieved from plugin! Make sure that it is correctly configured and your "
         "hardware supports it."},
    };
    for (const auto& [status, message] : cases) {
        WriteFile(plugin_folder + "/status", status);
        plugin.Test();
        EXPECT_EQ(boxes.shown.at(0).icon, platform::BoxIcon::None);
        EXPECT_THAT(Shown(boxes), ElementsAre(message));
    }
    plugin.About();
    plugin.Test();
    other.Test();  // which it doesn't have
    EXPECT_THAT(boxes.shown, testing::IsEmpty());
    EXPECT_TRUE(plugin.Unload());
    EXPECT_EQ(plugin.GetName(), "Test GPU Version 3.5");
    EXPECT_TRUE(plugin.Configure()) << "silent without a library";
    EXPECT_TRUE(plugin.Reload(plugin_folder));
    plugin.Test();
    EXPECT_EQ(Shown(boxes).size(), 1U);
    for (auto* loaded : {&plugin, &other}) EXPECT_TRUE(loaded->Unload());
}

TEST_F(PluginTest, ALoadThatFailsKeepsTheNameOfTheLastOne) {
    auto plugin = Loaded("gpu");
    EXPECT_FALSE(plugin.Load("missing.dll", plugin_folder));
    EXPECT_EQ(plugin.GetFileName(), "gpu.dll");
    EXPECT_EQ(plugin.module, platform::LibraryHandle::None);
    EXPECT_FALSE(plugin.Identify());
    EXPECT_FALSE(plugin.Load("../plugins/gpu.dll", "/nowhere"));
    EXPECT_FALSE(plugin.Load("gpu.dll", ""));
    Install("hang-on-load", "hang.dll");
    EXPECT_FALSE(plugin.Load("hang.dll", plugin_folder)) << "and it doesn't take forever";
}

}  // namespace
}  // namespace velto::test
