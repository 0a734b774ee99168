// Plug-ins as real libraries in the program that runs them, the ill-behaved ones included.
#include "plugins/plugin.h"

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/libraries.h"
#include "plugins/plugin_catalogue.h"
#include "store/velto_settings.h"
#include "support/home_test.h"
#include "support/shown.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

// The programs that this one has started and not yet taken leave of.
std::string Children() {
    std::string ids;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        ids += ReadFile(task.path() / "children");
    }
    return ids;
}

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
        const auto others = Children();
        processes.requests.clear();
        catalogue.ScanPlugins([&](const std::string& line) {
            lines.push_back(line);
            if (const auto at = line.find(plugin_folder + "/"); at != std::string::npos) {
                lines.back().erase(at, plugin_folder.size() + 1);
            }
            programs_at_line.push_back(processes.requests.size());
        });
        EXPECT_EQ(Children(), others) << "nothing is loaded where no program is left";
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
    platform::HostScope with_libraries = With(*libraries);
    CPluginCatalogue catalogue;
    std::vector<std::size_t> programs_at_line;  // that had been started by then
};

// Takes from this thread, and from the programs that it starts, what lets root read everything.
void BecomeOrdinary() {
    for (unsigned long right = 0; right <= CAP_LAST_CAP; ++right) prctl(PR_CAPBSET_DROP, right);
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    const std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> none{};
    ASSERT_EQ(syscall(SYS_capset, &header, none.data()), 0);
}

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
        {"w.dll", "gpu", ""},
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

    const std::string gpu = "Test GPU Version 3.5";
    EXPECT_THAT(catalogue.GetPluginNames(1), ElementsAre("Test CDR Version 3.5"));
    EXPECT_THAT(catalogue.GetPluginNames(2), ElementsAre(gpu, gpu));
    EXPECT_EQ(catalogue.GetPluginFile(gpu), "w.dll") << "the later one of two with one name";
    EXPECT_EQ(catalogue.GetPluginFile("test gpu version 3.5"), "");
    EXPECT_EQ(catalogue.FindByFile("c.dll").size(), 1U);
    std::vector<std::string> prefixes;
    for (const auto& plugin : catalogue.plugins()) {
        EXPECT_EQ(plugin.module, platform::LibraryHandle::None) << "unloaded at rest";
        prefixes.push_back(plugin.prefix);
    }
    EXPECT_THAT(prefixes, ElementsAre("CDR", "GPU", "SPU", "PAD", "NET", "", "GPU"));
}

TEST_F(PluginTest, EachLineOfAScanComesInFrontOfItsStep) {
    for (const auto* file : {"a.dll", "b.dll"}) Install("crash", file);
    Scan();
    EXPECT_THAT(programs_at_line, ElementsAre(0, 1, 1, 2)) << "one for each crash, at its end";
}

TEST_F(PluginTest, WhatCannotBeReadIsPassedOverAndAFolderThatIsNotThereToo) {
    const std::vector<std::string> none = {"No plugins files (*.dll) found"};
    EXPECT_EQ(Scan(), none) << "nothing in it";
    for (const auto* file : {"a.dll", "b.dll"}) Install("cdr", file);
    std::thread([&] {
        BecomeOrdinary();
        EXPECT_EQ(chmod((plugin_folder + "/a.dll").c_str(), 0), 0);
        EXPECT_THAT(Scan(), ElementsAre("Scanning file: a.dll", "Cannot load a.dll",
                                        "Scanning file: b.dll"));
        EXPECT_EQ(chmod(plugin_folder.c_str(), 0), 0);
        EXPECT_EQ(Scan(), none);
    }).join();
    std::filesystem::remove_all(plugin_folder);
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
    EXPECT_TRUE(plugin.Unload());
}

TEST_F(PluginTest, ACrashInAVerbEndsThatLibraryAlone) {
    auto plugin = Loaded("cdr");
    auto other = Loaded("net");
    auto untestable = Loaded("without-test");
    plugin.About();
    plugin.Test();
    untestable.Test();
    EXPECT_THAT(boxes.shown, IsEmpty());
    other.Test();
    EXPECT_EQ(Shown(boxes).size(), 1U);
    EXPECT_TRUE(plugin.Reload(plugin_folder));
    plugin.Test();
    EXPECT_EQ(Shown(boxes).size(), 1U);
    for (auto* loaded : {&plugin, &other, &untestable}) EXPECT_TRUE(loaded->Unload());
}

TEST_F(PluginTest, ALoadThatFailsKeepsTheNameOfTheLastOne) {
    auto plugin = Loaded("gpu");
    EXPECT_FALSE(plugin.Load("missing.dll", plugin_folder));
    EXPECT_EQ(plugin.GetFileName(), "gpu.dll");
    EXPECT_EQ(plugin.module, platform::LibraryHandle::None);
    EXPECT_FALSE(plugin.Identify());
    EXPECT_FALSE(plugin.Load("../plugins/gpu.dll", "/nowhere"));
    Install("hang-on-load", "hang.dll");
    EXPECT_FALSE(plugin.Load("hang.dll", plugin_folder)) << "and it doesn't take forever";
}

}  // namespace
}  // namespace velto::test
