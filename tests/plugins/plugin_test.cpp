// Plug-ins as real libraries in the program that runs them, the ill-behaved ones included.
#include "plugins/plugin.h"

#include <sys/stat.h>

#include <array>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/libraries.h"
#include "plugins/plugin_catalogue.h"
#include "store/velto_settings.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

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
    // The lines of a scan, without the plug-in folder.
    std::vector<std::string> Scan() {
        std::vector<std::string> lines;
        catalogue.ScanPlugins([&](const std::string& line) {
            auto text = line;
            if (const auto at = text.find(plugin_folder + "/"); at != std::string::npos) {
                text.erase(at, plugin_folder.size() + 1);
            }
            lines.push_back(text);
        });
        return lines;
    }
    CPlugin Loaded(const std::string& library) {
        Install(library, library + ".dll");
        CPlugin plugin;
        EXPECT_TRUE(plugin.Load(library + ".dll", plugin_folder));
        EXPECT_TRUE(plugin.Identify());
        return plugin;
    }

    const std::string plugin_folder = InHome("drive_c/emu/plugins");
    std::unique_ptr<platform::LibraryService> libraries =
        platform::MakeLibraryService(processes, environment.program, std::chrono::seconds(3));
    platform::HostScope with_libraries{{&environment, files.get(), drives.get(), registry.get(),
                                        &processes, nullptr, &boxes, libraries.get()}};
    CPluginCatalogue catalogue;
};

TEST_F(PluginTest, AScanKeepsWhatAnswersAndLogsTheRest) {
    const std::string is_none = " is not a valid psemu plugin";
    const std::string no_load = "Cannot load ";
    // In the order of the search: file, the library that it is, what the log says behind its line.
    const std::vector<std::array<std::string, 3>> cases = {
        {"a.dll", "cdr", ""},
        {"b.dll", "crash", "b.dll" + is_none},
        {"C.DLL", "gpu", ""},
        {"d.so", "exit", "d.so" + is_none},
        {"e.so.1.2", "spu", ""},
        {"f.dll", "hang", "f.dll" + is_none},
        {"g.dll", "pad", ""},
        {"h.dll", "null-name", "h.dll" + is_none},
        {"i.dll", "huge-name", "i.dll" + is_none},
        {"j.dll", "binary-name", "j.dll" + is_none},
        {"k.dll", "without-name", "k.dll" + is_none},
        {"l.dll", "without-type", "l.dll" + is_none},
        {"m.dll", "without-version", "m.dll" + is_none},
        {"n.dll", "no-plugin", "n.dll" + is_none},
        {"o.dll", "net", ""},
        {"p.dll", "unknown-type", ""},
        {"q.dll", "crash-on-load", no_load + "q.dll"},
        {"r.dll", "hang-on-load", no_load + "r.dll"},
        {"s.dll", "cdr", no_load + "s.dll"},
        {"t.dll", "cdr", no_load + "t.dll"},
        {"u.dll", "cdr", no_load + "u.dll"},
        {"zlib.dll", "gpu", "That file is excluded. Continuing"},
    };
    std::vector<std::string> expected;
    for (const auto& [file, library, outcome] : cases) {
        Install(library, file);
        expected.push_back("Scanning file: " + file);
        if (!outcome.empty()) expected.push_back(outcome);
    }
    auto bytes = ReadFile(plugin_folder + "/a.dll");
    WriteFile(plugin_folder + "/s.dll", "");
    WriteFile(plugin_folder + "/t.dll", bytes.substr(0, 40));
    bytes[18] = '\xF3';  // of another machine
    WriteFile(plugin_folder + "/u.dll", bytes);
    std::filesystem::create_directory(plugin_folder + "/v.dll");
    WriteFile(plugin_folder + "/readme.txt", "");
    CVeltoSettings().SetExclusionList({"zlib.dll"});
    EXPECT_EQ(Scan(), expected);

    EXPECT_THAT(catalogue.GetPluginNames(1), ElementsAre("Test CDR Version 3.5"));
    EXPECT_THAT(catalogue.GetPluginNames(2), ElementsAre("Test GPU Version 3.5"));
    EXPECT_THAT(catalogue.GetPluginNames(4), ElementsAre("Test SPU Version 3.5"));
    EXPECT_THAT(catalogue.GetPluginNames(8), ElementsAre("Test PAD Version 3.5"));
    EXPECT_THAT(catalogue.GetPluginNames(16), ElementsAre("Test NET Version 3.5"));
    ASSERT_EQ(catalogue.plugins().size(), 6U) << "and one of a type that nobody asks for";
    EXPECT_EQ(catalogue.plugins().back().prefix, "");
    for (const auto& plugin : catalogue.plugins()) {
        EXPECT_EQ(plugin.module, platform::LibraryHandle::None) << "unloaded at rest";
    }
    EXPECT_EQ(catalogue.GetPluginFile("Test GPU Version 3.5"), "C.DLL");
    EXPECT_EQ(catalogue.GetPluginFile("test gpu version 3.5"), "");
    EXPECT_EQ(catalogue.FindByFile("c.dll").size(), 1U);
}

TEST_F(PluginTest, OfTwoWithOneNameTheLaterFileIsChosen) {
    Install("gpu", "a.dll");
    Install("gpu", "b.dll");
    Scan();
    EXPECT_EQ(catalogue.GetPluginNames(2).size(), 2U);
    EXPECT_EQ(catalogue.GetPluginFile("Test GPU Version 3.5"), "b.dll");
}

TEST_F(PluginTest, AFolderThatIsNotThereHasNoLibraries) {
    const std::vector<std::string> none = {"No plugins files (*.dll) found"};
    EXPECT_EQ(Scan(), none);
    std::filesystem::remove(plugin_folder);
    EXPECT_EQ(Scan(), none);
    CVeltoSettings().SetEmulatorPath("");
    WriteFile(InConfig("a.dll"), "never the configuration folder");
    EXPECT_EQ(Scan(), none);
    EXPECT_FALSE(CPlugin().Load("a.dll", ""));
    EXPECT_THAT(processes.requests, IsEmpty());
}

TEST_F(PluginTest, ItsOwnVerbsRunInThePluginFolder) {
    auto plugin = Loaded("gpu");
    EXPECT_TRUE(plugin.Configure());
    EXPECT_EQ(StringOf("Software\\Test", "configured"), "yes");
    EXPECT_TRUE(Exists(plugin_folder + "/configured.reg"));
    EXPECT_TRUE(plugin.Unload());
    EXPECT_EQ(plugin.GetName(), "Test GPU Version 3.5");
    EXPECT_TRUE(plugin.Configure()) << "silent without a library";
    EXPECT_TRUE(plugin.Reload(plugin_folder));
    plugin.Init();  // which it doesn't have
    plugin.Test();
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(boxes.shown[0].text, "It should work");
    EXPECT_TRUE(plugin.Unload());
}

TEST_F(PluginTest, TestTellsItsStatus) {
    auto plugin = Loaded("spu");
    const std::pair<std::string, std::pair<std::string, std::string>> cases[] = {
        {"0", {"It should work", "Fine"}},
        {"7",
         {"Warning recieved from plugin!  Make sure that it is correctly configured.", "Warning"}},
        {"-1",
         {"Error recieved from plugin! Make sure that it is correctly configured and your hardware "
          "supports it.",
          "Error"}},
    };
    for (const auto& [status, message] : cases) {
        WriteFile(plugin_folder + "/status", status);
        boxes.shown.clear();
        plugin.Test();
        ASSERT_EQ(boxes.shown.size(), 1U);
        EXPECT_EQ(boxes.shown[0].text, message.first);
        EXPECT_EQ(boxes.shown[0].caption, message.second);
        EXPECT_EQ(boxes.shown[0].icon, platform::BoxIcon::None);
    }
    boxes.shown.clear();
    auto untestable = Loaded("without-test");
    untestable.Test();
    EXPECT_THAT(boxes.shown, IsEmpty());
    plugin.Unload();
    untestable.Unload();
}

TEST_F(PluginTest, ACrashInAVerbEndsThatLibraryAlone) {
    auto plugin = Loaded("cdr");
    auto other = Loaded("net");
    plugin.About();
    plugin.Test();
    EXPECT_THAT(boxes.shown, IsEmpty());
    other.Test();
    EXPECT_EQ(boxes.shown.size(), 1U);
    EXPECT_TRUE(plugin.Unload());
    EXPECT_TRUE(plugin.Reload(plugin_folder));
    plugin.Test();
    EXPECT_EQ(boxes.shown.size(), 2U);
    plugin.Unload();
    other.Unload();
}

TEST_F(PluginTest, ALoadThatFailsKeepsTheNameOfTheLastOne) {
    auto plugin = Loaded("gpu");
    EXPECT_FALSE(plugin.Load("missing.dll", plugin_folder));
    EXPECT_EQ(plugin.GetFileName(), "gpu.dll");
    EXPECT_EQ(plugin.module, platform::LibraryHandle::None);
    EXPECT_FALSE(plugin.Identify());
    EXPECT_FALSE(plugin.Load("../plugins/gpu.dll", "/nowhere"));
}

}  // namespace
}  // namespace velto::test
