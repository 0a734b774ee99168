#include "launch/launch_cycle.h"

#include <sys/prctl.h>
#include <sys/wait.h>

#include <atomic>

#include <gmock/gmock.h>

#include "platform/libraries.h"
#include "regedit/regedit.h"
#include "store/document_test.h"
#include "support/failing_registry.h"
#include "support/run_program.h"

namespace velto::test {
namespace {

using testing::ElementsAre;

const std::string kUser = "HKEY_CURRENT_USER\\";
const std::string kDemoKey = "Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo";
const std::string kImageKey = "Software\\Vision Thing\\PSEmu Pro\\CDR\\MoobyCDR";

// The real emulator of the demo, or scripts; its settings and those of a plug-in are the user's.
class LaunchTest : public DocumentTest {
  protected:
    LaunchTest() {
        CVeltoSettings().SetEmulatorPath(BinaryFolder() + "/demo-emulator");
        SetValue(kDemoKey, "v", platform::StringValue("the user's"));
    }
    void Configure(const std::vector<std::string>& options) {
        WriteConfig("Game",
                    ConfigText("1.67.160", options, {},
                               "[" + kUser + kDemoKey + "]\r\n\"v\"=\"borrowed\"\r\n[" + kUser +
                                   kImageKey + "]\r\n\"autorun\"=\"old\"\r\n[" + kUser +
                                   "software\\velto\\Settings]\r\n\"epsxe\"=\"x\"\r\n"));
        ASSERT_FALSE(document.LoadConfig("Game"));
    }
    bool Run() { return launch.OnRun(document, "Game.dta", catalogue); }
    std::vector<std::string> Files() { return files->List(environment.ConfigFolder()).value(); }
    // Of every type, with bytes that have no plain form.
    void SetOddValues() {
        for (const std::string key : {"Vision Thing\\Other", "epsxe", "epsxe\\config"}) {
            for (unsigned i = 0; i < 13; ++i) {
                const auto data = std::string("\r\n\\\"\0a\xFF\0", 8).substr(i % 9);
                const auto name = "v\\\"=" + std::to_string(i);
                SetValue("Software\\" + key, name, {platform::RegistryType{i}, data});
            }
        }
    }
    // All keys below and their values, with types and bytes.
    std::string Branch(const std::string& key) {
        EXPECT_TRUE(regedit::ExportKey(*files, *registry, InHome("text"), kUser + key).ok());
        return ReadFile(InHome("text"));
    }

    CPluginCatalogue catalogue;
    std::atomic<int> ended = 0;
    LaunchCycle launch{[this] { ++ended; }};
};

TEST_F(LaunchTest, TheRegistryComesBackWithItsTypesAndBytes) {
    Configure({"commandLine = -create new -stay 0"});
    ASSERT_TRUE(Run());  // adds values, and a merge removes nothing
    launch.Wait();
    EXPECT_TRUE(StringOf("Software\\Vision Thing\\PSEmu Pro\\Demo", "new"));
    SetOddValues();
    const auto before = Branch("Software");
    for (int i = 0; i < 100; ++i) {
        Configure({std::string("commandLine = -change -stay 0") + (i % 2 == 0 ? "" : " -crash")});
        ASSERT_TRUE(Run());
        launch.Wait();
        ASSERT_EQ(Branch("Software"), before);
        EXPECT_THAT(Files(), ElementsAre("Game.dta"));
    }
    EXPECT_EQ(ended, 101);
    EXPECT_THAT(boxes.shown, testing::IsEmpty());
}

TEST_F(LaunchTest, AKillAtAnyMomentLeavesWhatTheNextStartPutsRight) {
    ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    Configure({"commandLine = -change -stay 100"});
    SetValue(kImageKey, "autorun", platform::StringValue("the user's"));
    SetOddValues();
    Start();
    const auto plugins = Branch("Software\\Vision Thing");
    const auto config = Config("Game");
    int cut_off = 0;
    for (int i = 0; i < 30; ++i) {
        {
            const RunningProgram killed({{BinaryFolder() + "/launcher", "Game"},
                                         {{"VELTO_HOME", home_folder.path()}},
                                         "/"});
            std::this_thread::sleep_for(std::chrono::milliseconds(30 * i));
        }
        // The emulator, a child of this process now, goes on and ends.
        while (waitpid(-1, nullptr, 0) > 0) {
        }
        cut_off += Exists(InConfig("plugins.bak")) ? 1 : 0;
        Start();
        EXPECT_EQ(Branch("Software\\Vision Thing"), plugins);
        EXPECT_EQ(Config("Game"), config);
        EXPECT_THAT(Files(), ElementsAre("Game.dta"));
    }
    EXPECT_GT(cut_off, 0) << "or no kill came during a run";
    ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 0), 0);
}

TEST_F(LaunchTest, TheStepsComeInTheirOrder) {
    const auto libraries = platform::MakeLibraryService(processes, environment.program);
    const auto with_libraries = With(*libraries);
    for (const auto* file : {"gpu.so", "spu.so"}) {
        catalogue.plugins().emplace_back();
        ASSERT_TRUE(catalogue.plugins().back().Load(file, BinaryFolder() + "/test-plugins"));
    }
    processes.requests.clear();
    CVeltoSettings().SetEmulatorPath(
        Script("script", "cat config/*.bak > saved; while [ ! -e end ]; do sleep 0.02; done"));
    Configure({"gpuFileName = Gpu.so", "imageFileName = C:\\a b.iso", "commandLine = -x"});
    document.cdrIsInternalIso = document.cdrIsMooby = true;
    document.region = "PAL";
    document.dirty = true;
    EXPECT_FALSE(Run()) << "answered No";
    EXPECT_THAT(processes.requests, testing::IsEmpty());
    boxes.answers = {platform::BoxAnswer::Yes, platform::BoxAnswer::Yes};
    ASSERT_TRUE(Run());
    EXPECT_FALSE(Run()) << "it runs";
    EXPECT_EQ(launch.Running(), "Game");
    EXPECT_EQ(StringOf(kEmulatorConfigKey, "Country"), "1");
    EXPECT_EQ(StringOf(kImageKey, "autorun"), "C:\\a b.iso");
    EXPECT_NE(catalogue.plugins()[0].module, platform::LibraryHandle::None);
    EXPECT_EQ(catalogue.plugins()[1].module, platform::LibraryHandle::None) << "of no use";
    catalogue.UnloadAll();
    launch.StopTelling();
    WriteFile(InHome("end"), "");
    launch.Wait();
    EXPECT_EQ(launch.Running(), "");
    EXPECT_EQ(ended, 0);

    std::vector<std::string> parameters;
    for (const auto& request : processes.requests) parameters.push_back(request.parameters);
    EXPECT_THAT(parameters,
                ElementsAre("/E \"main.bak\" HKEY_CURRENT_USER\\Software\\epsxe",
                            "/E \"plugins.bak\" \"HKEY_CURRENT_USER\\Software\\Vision Thing\"",
                            " /S \"Game.dta\"", " -nogui -x -loadbin \"C:\\a b.iso\"",
                            " /S \"main.bak\"", " /S \"plugins.bak\""));
    EXPECT_EQ(processes.requests[3].folder, home_folder.path());
    EXPECT_TRUE(processes.requests[2].ends_with_parent && !processes.requests[3].ends_with_parent);
    EXPECT_THAT(ReadFile(InHome("saved")), testing::HasSubstr("\"v\"=\"the user's\""));
    EXPECT_EQ(document.gpuFileName, "Gpu.so") << "a launch changes nothing in it";
    EXPECT_TRUE(document.dirty);
}

TEST_F(LaunchTest, WhatCannotBeStartedIsToldAndTheRestIsDone) {
    Configure({"magicCFG = true"});
    EXPECT_FALSE(Run());
    EXPECT_THAT(Shown(boxes), ElementsAre(testing::StartsWith("MagicCFG: Personal preferences")));
    EXPECT_TRUE(processes.requests.empty());
    Configure({});
    {
        FailingRegistry full(*registry, RegistryCall::Step, "", 3);
        const auto on_full_disk = With(full);
        EXPECT_FALSE(Run()) << "with the values of another configuration";
    }
    EXPECT_THAT(Shown(boxes),
                ElementsAre("Error: Unable to write the settings of Game: as the test wants it"));
    EXPECT_EQ(StringOf(kDemoKey, "v"), "the user's");
    EXPECT_THAT(Files(), ElementsAre("Game.dta"));
    CVeltoSettings().SetEmulatorPath("C:\\missing.exe");
    environment.registry_editor = InHome("missing");
    EXPECT_TRUE(Run());
    launch.Wait();
    EXPECT_THAT(
        Shown(boxes),
        ElementsAre(
            "Error: Unable to backup HKEY_CURRENT_USER\\Software\\epsxe settings",
            "Error: Unable to backup \"HKEY_CURRENT_USER\\Software\\Vision Thing\" settings",
            "Error: Unable to restore settings",
            "Error: Unable to locate Epsxe at C:\\missing.exe"));
}

}  // namespace
}  // namespace velto::test
