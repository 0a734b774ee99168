// The programs as a user has them: real processes, from the command line to the emulator.
#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/instance.h"
#include "store/velto_settings.h"
#include "support/config_text.h"
#include "support/home_test.h"
#include "support/run_program.h"
#include "support/variables.h"

namespace velto::test {
namespace {

namespace fs = std::filesystem;

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

using Arguments = std::vector<std::string>;

const std::string kRunning = "Already running: Velto is already running.\n";
const std::string kNoGame = "File not found: A Game.dta does not exist\n";
const Arguments kGame = {"-direct", "A Game"};

class VeltoProgramTest : public HomeTest {
  protected:
    VeltoProgramTest() {
        fs::create_directories(InHome("drive_c/emu"));
        fs::create_symlink(BinaryFolder() + "/demo-emulator", InHome("drive_c/emu/ePSXe.EXE"));
        CVeltoSettings().SetEmulatorPath("C:\\emu\\ePSXe.EXE");
        WriteFile(InConfig("A Game.dta"),
                  ConfigText("1.67.160", {"commandLine = -stay 0", "region = PAL"}));
    }

    ProgramRun Program(const std::string& name, const Arguments& arguments,
                       const std::string& home) const {
        ProgramRun run{{BinaryFolder() + "/" + name},
                       {{"XDG_RUNTIME_DIR", runtime.path()},
                        {"QT_QPA_PLATFORM", ""},
                        {"DISPLAY", ""},
                        {"WAYLAND_DISPLAY", ""},
                        {"VELTO_HOME", home}},
                       "/"};
        run.command.insert(run.command.end(), arguments.begin(), arguments.end());
        return run;
    }
    ProgramRun Velto(const Arguments& arguments) const {
        return Program("velto", arguments, home_folder.path());
    }
    // It ends with this status and these words on standard error.
    static void ExpectEnd(const ProgramRun& run, int status, const std::string& words) {
        const auto result = RunProgram(run);
        EXPECT_EQ(result.status, status);
        EXPECT_EQ(result.err, words);
    }

    TemporaryFolder runtime;
};

TEST_F(VeltoProgramTest, ADirectRunEndsWhileTheEmulatorGoesOn) {
    WriteFile(InConfig("Long.dta"), ConfigText("1.67.160", {"commandLine = -stay 60000"}));
    RunningProgram first(Velto({"-direct", "Long"}));
    EXPECT_EQ(first.Wait().status, 0);
    ASSERT_TRUE(first.Says("Demo emulator"));

    RunningProgram second(Velto(kGame));
    const auto result = second.Wait();
    EXPECT_EQ(result.status, 0) << "the emulator of the first holds no lock";
    EXPECT_EQ(result.err, "");
    ASSERT_TRUE(second.Says("PSEmu Pro"));
    EXPECT_THAT(second.out(), HasSubstr("    -nogui\n    -stay\n    0\n"));
    EXPECT_THAT(second.out(), HasSubstr("Country                    1\n"));
    EXPECT_THAT(second.out(), HasSubstr(InHome("drive_c/emu")));
    EXPECT_THAT(second.out(), Not(HasSubstr("missing")));
}

TEST_F(VeltoProgramTest, ASecondProcessHandsItsConfigurationOverOrTellsWhyNot) {
    ExpectEnd(Velto({}), 1, "Velto: The editor needs a display.\n");
    const Variables variables({{"XDG_RUNTIME_DIR", runtime.path()}});
    const auto first = platform::MakeInstanceService("velto", home_folder.path());
    ASSERT_TRUE(first->Acquire().value());
    std::atomic<int> handled = 0;
    const auto listener = first->Listen([&](const std::string& name) {
        std::this_thread::sleep_for(300ms);
        handled += name == "A Game" ? 1 : 100;
    });
    ASSERT_TRUE(listener.ok());
    ExpectEnd(Velto(kGame), 0, "");
    EXPECT_EQ(handled, 1) << "it waits until the first one has handled the name";
    EXPECT_EQ(StringOf(kEmulatorConfigKey, "Country"), std::nullopt) << "and runs nothing itself";

    const std::string too_long(5000, 'x');
    const std::pair<Arguments, std::string> cases[] = {
        {{"-x"}, "Unknown Flag: -x  is not a recognised command\n"},
        {{"game"}, "Unknown Flag: - game is not a recognised command\n"},
        {{"-Direct", "game"}, "Unknown Flag: -Direct game is not a recognised command\n"},
        {{}, kRunning},
        {{"-direct", too_long}, "File not found: " + too_long + ".dta does not exist\n"},
    };
    for (const auto& [arguments, words] : cases) ExpectEnd(Velto(arguments), 1, words);
    EXPECT_EQ(handled, 1);
}

TEST_F(VeltoProgramTest, ASecondDirectRunThatMeetsTheLockOfAnotherEndsSilently) {
    // The first one is held by its registry editor, which waits for its own output to be read.
    WriteFile(InHome("slow-editor"), "#!/bin/sh\necho merging\nsleep 60\n");
    fs::permissions(InHome("slow-editor"), fs::perms::owner_all);
    auto run = Velto(kGame);
    run.variables.emplace_back("VELTO_REGEDIT", InHome("slow-editor"));
    RunningProgram first(run);
    ASSERT_TRUE(first.Says("merging"));

    ExpectEnd(Velto(kGame), 1, "");
    ExpectEnd(Velto({}), 1, kRunning);
    const TemporaryFolder elsewhere;
    ExpectEnd(Program("velto", kGame, elsewhere.path()), 1, kNoGame);

    first.Kill();
    first.Wait();
    ExpectEnd(Velto(kGame), 0, "");
}

TEST_F(VeltoProgramTest, ANewHomeAsksForTheFirstRunAndOneThatExistsIsLeftAsItIs) {
    const TemporaryFolder folder;
    auto run = Program("velto", kGame, "new/home");
    run.folder = folder.path();
    ExpectEnd(run, 1, kNoGame);
    ExpectEnd(Velto(kGame), 0, "");
    EXPECT_TRUE(fs::is_directory(folder / "new/home/config"));
    EXPECT_FALSE(CVeltoSettings().IsFirstRunDue());
    registry = platform::MakeSqliteRegistry(folder / "new/home/registry.db");
    ASSERT_TRUE(registry->OpenStore({}).ok());
    const auto new_home = With(*registry);
    EXPECT_TRUE(CVeltoSettings().IsFirstRunDue());
}

}  // namespace
}  // namespace velto::test
