#include "launch/launch_cycle.h"

#include <sys/prctl.h>
#include <sys/wait.h>

#include <atomic>
#include <filesystem>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/libraries.h"
#include "regedit/regedit.h"
#include "store/document_test.h"
#include "support/config_text.h"
#include "support/run_program.h"

namespace velto::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kUser = "HKEY_CURRENT_USER\\";
const std::string kDemoKey = "Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo";
const std::string kImageKey = "Software\\Vision Thing\\PSEmu Pro\\CDR\\MoobyCDR";

// The real emulator of the demo, or scripts; its settings and those of a plug-in are the user's.
class LaunchTest : public DocumentTest {
  protected:
    LaunchTest() {
        std::filesystem::create_directories(InHome("drive_c"));
        std::filesystem::create_symlink(BinaryFolder() + "/demo-emulator", InHome("drive_c/demo"));
        CVeltoSettings().SetEmulatorPath("C:\\demo");
        SetValue(kDemoKey, "v", platform::StringValue("the user's"));
        SetValue(kEmulatorConfigKey, "Country", platform::StringValue("the user's"));
    }
    void Configure(const std::vector<std::string>& options) {
        WriteConfig("Game", ConfigText("1.67.160", options, {},
                                       "[" + kUser + kDemoKey + "]\r\n\"v\"=\"borrowed\"\r\n[" +
                                           kUser + kImageKey + "]\r\n\"autorun\"=\"old\"\r\n"));
        editor.SelectByName("Game", NodeKind::Configuration);
        ASSERT_FALSE(document.LoadConfig("Game"));
    }
    bool Run() { return launch.OnRun(document, editor.GetSelectedConfigFile(), catalogue); }
    bool HasBackups() const {
        return Exists(InConfig("main.bak")) || Exists(InConfig("plugins.bak"));
    }
    void ExpectTheUsersOwn() {
        EXPECT_FALSE(HasBackups());
        EXPECT_EQ(StringOf(kDemoKey, "v"), "the user's");
        EXPECT_EQ(StringOf(kEmulatorConfigKey, "Country"), "the user's");
    }
    void SetRandomValues() {
        std::vector<platform::RegistryWrite> writes;
        for (const std::string key : {"Vision Thing\\Other", "epsxe", "epsxe\\config"}) {
            for (unsigned i = 0; i < 12; ++i) {
                std::string data(random() % 40, '\0');
                for (char& byte : data) byte = static_cast<char>(random());
                const auto type = static_cast<platform::RegistryType>(i < 8 ? i : random());
                const auto name = "v\\\"=" + std::to_string(random() % 20);
                writes.push_back({kUser + "Software\\" + key, name, {type, data}});
            }
        }
        ASSERT_TRUE(platform::WriteValues(*registry, writes).ok());
    }
    // All keys below and their values, with types and bytes.
    std::string Branch(const std::string& key) {
        EXPECT_TRUE(regedit::ExportKey(*files, *registry, InHome("text"), kUser + key).ok());
        return ReadFile(InHome("text"));
    }

    CPluginCatalogue catalogue;
    std::atomic<int> ended = 0;
    LaunchCycle launch{[this] { ++ended; }};
    std::mt19937 random{2026};
};

TEST_F(LaunchTest, TheRegistryComesBackWithItsTypesAndBytes) {
    // The first run adds values, and a merge removes nothing.
    constexpr int kTimes = 100;
    for (int i = 0; i <= kTimes; ++i) {
        SetRandomValues();
        Configure({std::string("commandLine = -change -create new -stay 0") +
                   (i % 2 == 0 ? "" : " -crash")});
        const auto before = Branch("Software\\epsxe") + Branch("Software\\Vision Thing");
        ASSERT_TRUE(Run());
        launch.Wait();
        const auto after = Branch("Software\\epsxe") + Branch("Software\\Vision Thing");
        EXPECT_TRUE(i == 0 || after == before) << before;
        ExpectTheUsersOwn();
    }
    EXPECT_EQ(ended, kTimes + 1);
    EXPECT_TRUE(StringOf("Software\\Vision Thing\\PSEmu Pro\\Demo", "new"));
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(LaunchTest, AKillAtAnyMomentLeavesWhatTheNextStartPutsRight) {
    ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    Configure({"commandLine = -change -stay 100"});
    SetValue(kImageKey, "autorun", platform::StringValue("the user's"));
    const auto config = Config("Game");
    const ProgramRun run{
        {BinaryFolder() + "/launcher", "Game"}, {{"VELTO_HOME", home_folder.path()}}, "/"};
    int cut_off = 0;
    Start();
    for (int i = 0; i < 30; ++i) {
        SetRandomValues();
        const auto plugins = Branch("Software\\Vision Thing");
        RunningProgram launcher(run);
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 900));
        launcher.Kill();
        launcher.Wait();
        // The emulator, a child of this process now, goes on and ends.
        while (waitpid(-1, nullptr, 0) > 0) {
        }
        cut_off += HasBackups() ? 1 : 0;
        Start();
        EXPECT_EQ(Branch("Software\\Vision Thing"), plugins);
        EXPECT_EQ(Config("Game"), config);
        EXPECT_FALSE(HasBackups());
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
    EXPECT_THAT(processes.requests, IsEmpty());
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
    EXPECT_FALSE(processes.requests[3].ends_with_parent);
    EXPECT_THAT(ReadFile(InHome("saved")), testing::HasSubstr("\"v\"=\"the user's\""));
    EXPECT_EQ(document.gpuFileName, "GPU.SO");
    EXPECT_TRUE(document.dirty);
    ExpectTheUsersOwn();
}

TEST_F(LaunchTest, WhatCannotBeStartedIsToldAndTheRestIsDone) {
    Configure({});
    CVeltoSettings().SetEmulatorPath("C:\\missing.exe");
    const auto* const no_emulator = "Error: Unable to locate Epsxe at C:\\missing.exe";
    EXPECT_TRUE(Run());
    launch.Wait();
    EXPECT_THAT(Shown(boxes), ElementsAre(no_emulator));
    ExpectTheUsersOwn();
    environment.registry_editor = InHome("missing");
    EXPECT_TRUE(Run());
    launch.Wait();
    EXPECT_THAT(
        Shown(boxes),
        ElementsAre(
            "Error: Unable to backup HKEY_CURRENT_USER\\Software\\epsxe settings",
            "Error: Unable to backup \"HKEY_CURRENT_USER\\Software\\Vision Thing\" settings",
            "Error: Unable to restore settings", no_emulator));
}

}  // namespace
}  // namespace velto::test
