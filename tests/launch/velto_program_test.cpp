// The programs as a user has them: real processes, from the command line to the emulator.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "store/velto_settings.h"
#include "support/config_text.h"
#include "support/home_test.h"
#include "support/run_program.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::HasSubstr;
using testing::Not;

class VeltoProgramTest : public HomeTest {
  protected:
    VeltoProgramTest() {
        std::filesystem::create_directories(InHome("drive_c/emu"));
        std::filesystem::create_symlink(BinaryFolder() + "/demo-emulator",
                                        InHome("drive_c/emu/ePSXe.EXE"));
        CVeltoSettings().SetEmulatorPath("C:\\emu\\ePSXe.EXE");
        WriteFile(InConfig("A Game.dta"),
                  ConfigText("1.67.160", {"commandLine = -stay 0", "region = PAL"}));
    }

    ProgramRun Velto(const std::vector<std::string>& arguments) const {
        ProgramRun run;
        run.command = {BinaryFolder() + "/velto"};
        run.command.insert(run.command.end(), arguments.begin(), arguments.end());
        run.variables = {{"VELTO_HOME", home_folder.path()},
                         {"XDG_RUNTIME_DIR", runtime.path()},
                         {"QT_QPA_PLATFORM", ""},
                         {"DISPLAY", ""},
                         {"WAYLAND_DISPLAY", ""}};
        run.folder = "/";
        return run;
    }
    std::unique_ptr<RunningProgram> Listener(const std::string& milliseconds) {
        auto run = Velto({});
        run.command = {BinaryFolder() + "/hand-over-listener", BinaryFolder() + "/velto",
                       home_folder.path(), milliseconds};
        auto listener = std::make_unique<RunningProgram>(run, outputs.path());
        EXPECT_TRUE(listener->Says("ready\n"));
        return listener;
    }

    TemporaryFolder runtime;
    TemporaryFolder outputs;
};

TEST_F(VeltoProgramTest, ADirectRunEndsWhileTheEmulatorGoesOn) {
    WriteFile(InConfig("Long.dta"), ConfigText("1.67.160", {"commandLine = -stay 60000"}));
    RunningProgram first(Velto({"-direct", "Long"}), outputs.path());
    EXPECT_EQ(first.Wait().status, 0);
    ASSERT_TRUE(first.Says("Demo emulator"));

    RunningProgram second(Velto({"-direct", "A Game"}), outputs.path());
    const auto result = second.Wait();
    EXPECT_EQ(result.status, 0) << "the emulator of the first holds no lock";
    EXPECT_EQ(result.err, "");
    ASSERT_TRUE(second.Says("PSEmu Pro"));
    EXPECT_THAT(second.out(), HasSubstr("    -nogui\n    -stay\n    0\n"));
    EXPECT_THAT(second.out(), HasSubstr("Country                    1\n"));
    EXPECT_THAT(second.out(), HasSubstr(InHome("drive_c/emu")));
    EXPECT_THAT(second.out(), Not(HasSubstr("missing")));
}

TEST_F(VeltoProgramTest, RefusesWhatItDoesNotKnowBeforeAnythingElse) {
    const auto listener = Listener("0");
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"-x"}, "Unknown Flag: -x  is not a recognised command\n"},
        {{"game"}, "Unknown Flag: - game is not a recognised command\n"},
        {{"-Direct", "game"}, "Unknown Flag: -Direct game is not a recognised command\n"},
    };
    for (const auto& [arguments, text] : cases) {
        const auto result = RunProgram(Velto(arguments));
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, text);
    }
}

TEST_F(VeltoProgramTest, ASecondProcessHandsItsConfigurationOver) {
    const auto listener = Listener("300");
    const auto before = std::chrono::steady_clock::now();
    const auto result = RunProgram(Velto({"-direct", "A Game"}));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(300))
        << "it waits until the first one has handled the name";
    EXPECT_TRUE(listener->Says("A Game\n"));
    EXPECT_EQ(StringOf(kEmulatorConfigKey, "Country"), std::nullopt) << "and runs nothing itself";

    const auto editor = RunProgram(Velto({}));
    EXPECT_EQ(editor.status, 1);
    EXPECT_EQ(editor.err, "Already running: Velto is already running.\n");

    const auto too_long = RunProgram(Velto({"-direct", std::string(5000, 'x')}));
    EXPECT_EQ(too_long.status, 1);
    EXPECT_EQ(too_long.err, "File not found: " + std::string(5000, 'x') + ".dta does not exist\n");
}

TEST_F(VeltoProgramTest, ASecondDirectRunThatMeetsTheLockOfAnotherEndsSilently) {
    // The first one is held by its registry editor, which waits for its own output to be read.
    WriteFile(InHome("slow-editor"), "#!/bin/sh\necho merging\nsleep 60\n");
    std::filesystem::permissions(InHome("slow-editor"), std::filesystem::perms::owner_all);
    auto run = Velto({"-direct", "A Game"});
    run.variables.emplace_back("VELTO_REGEDIT", InHome("slow-editor"));
    RunningProgram first(run, outputs.path());
    ASSERT_TRUE(first.Says("merging"));

    const auto second = RunProgram(Velto({"-direct", "A Game"}));
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.out + second.err, "");
    EXPECT_EQ(RunProgram(Velto({})).err, "Already running: Velto is already running.\n");

    auto elsewhere = Velto({"-direct", "A Game"});
    const TemporaryFolder other_home;
    elsewhere.variables[0].second = other_home.path();
    EXPECT_EQ(RunProgram(elsewhere).err, "File not found: A Game.dta does not exist\n")
        << "another data folder is another instance";

    first.Kill();
    first.Wait();
    EXPECT_EQ(RunProgram(Velto({"-direct", "A Game"})).status, 0) << "a lock dies with its process";
}

TEST_F(VeltoProgramTest, WithoutADisplayTheEditorSaysSo) {
    const auto result = RunProgram(Velto({}));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "Velto: The editor needs a display.\n");
}

TEST_F(VeltoProgramTest, ANewHomeAsksForTheFirstRunAndOneThatExistsIsLeftAsItIs) {
    const TemporaryFolder folder;
    auto run = Velto({"-direct", "A Game"});
    run.variables[0].second = "new/home";
    run.folder = folder.path();
    EXPECT_EQ(RunProgram(run).err, "File not found: A Game.dta does not exist\n");

    const auto exported = [&](const std::string& home) {
        auto regedit = Velto({});
        regedit.command = {BinaryFolder() + "/velto-regedit", "/E", folder / "export.reg",
                           "HKEY_CURRENT_USER\\software\\velto\\Settings"};
        regedit.variables[0].second = home;
        EXPECT_EQ(RunProgram(regedit).status, 0);
        return ReadFile(folder / "export.reg");
    };
    EXPECT_THAT(exported(folder / "new/home"), HasSubstr("\"installerReset\"=dword:00000001"));
    EXPECT_TRUE(std::filesystem::is_directory(folder / "new/home/config"));
    RunProgram(Velto({"-direct", "A Game"}));
    EXPECT_THAT(exported(home_folder.path()), Not(HasSubstr("installerReset")));
}

TEST_F(VeltoProgramTest, RelativePathsOfTheEnvironmentReachTheChildren) {
    std::filesystem::create_symlink(BinaryFolder() + "/velto-regedit", InHome("editor"));
    std::filesystem::create_directory(InHome("letters"));
    std::filesystem::create_symlink(InHome("drive_c"), InHome("letters/e:"));
    CVeltoSettings().SetEmulatorPath("E:\\EMU\\epsxe.exe");
    auto run = Velto({"-direct", "A Game"});
    run.folder = home_folder.path();
    run.variables[0].second = ".";
    run.variables.emplace_back("VELTO_DRIVES", "letters");
    run.variables.emplace_back("VELTO_REGEDIT", "./editor");
    RunningProgram program(run, outputs.path());
    const auto result = program.Wait();
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(program.Says("Country                    1\n")) << "from the same registry";
}

TEST_F(VeltoProgramTest, ARegistryThatCannotBeOpenedEndsTheProgramAndStaysAsItIs) {
    registry.reset();
    const auto database = InHome("registry.db");
    for (const auto* sibling : {"-wal", "-shm"}) std::filesystem::remove(database + sibling);
    const std::string garbage(8192, 'g');
    WriteFile(database, garbage);
    const auto corrupt = RunProgram(Velto({"-direct", "A Game"}));
    EXPECT_EQ(corrupt.status, 1);
    EXPECT_THAT(corrupt.err,
                testing::StartsWith("Error: Unable to open the registry " + database + ": "));
    EXPECT_EQ(std::count(corrupt.err.begin(), corrupt.err.end(), '\n'), 1);
    EXPECT_EQ(ReadFile(database), garbage);

    auto run = Velto({"-direct", "A Game"});
    WriteFile(InHome("file"), "");
    run.variables[0].second = InHome("file/home");
    EXPECT_THAT(RunProgram(run).err, testing::StartsWith("Error: Unable to open the registry " +
                                                         InHome("file/home/registry.db") + ": "));
}

TEST_F(VeltoProgramTest, ADataFolderThatCannotBeWrittenIsReported) {
    if (geteuid() != 0) GTEST_SKIP() << "becomes another user, which takes the superuser";
    const TemporaryFolder other;
    const auto home = other / "home";
    std::filesystem::create_directory(home);
    ASSERT_EQ(chmod(other.path().c_str(), 0755), 0);
    ASSERT_EQ(chmod(home.c_str(), 0555), 0);
    auto run = Velto({"-direct", "A Game"});
    run.command.insert(run.command.begin(),
                       {"/usr/bin/setpriv", "--reuid=65534", "--clear-groups", "--"});
    run.variables[0].second = home;
    run.variables[1].second = "";
    const auto result = RunProgram(run);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, testing::StartsWith("Error: Unable to open the registry " + home +
                                                "/registry.db: "));
    EXPECT_TRUE(std::filesystem::is_empty(home));
}

}  // namespace
}  // namespace velto::test
