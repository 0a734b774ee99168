// Direct runs: what they refuse, and the programs as a user has them, real processes from the
// command line to the emulator.
#include "launch/direct_run.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include <gmock/gmock.h>

#include "platform/instance.h"
#include "store/velto_settings.h"
#include "support/documents.h"
#include "support/failing_registry.h"
#include "support/home_test.h"
#include "support/run_program.h"

namespace velto::test {
namespace {

namespace fs = std::filesystem;

using namespace std::string_literals;
using testing::ElementsAre;

using Arguments = std::vector<std::string>;
const Arguments kGame = {"-direct", "A Game"};
const std::string kPluginKey = "Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo";

class DirectRunTest : public HomeTest {
  protected:
    DirectRunTest() {
        fs::create_directories(InHome("drive_c/emu"));
        fs::create_symlink(BinaryFolder() + "/demo-emulator", InHome("drive_c/emu/ePSXe.EXE"));
        CVeltoSettings().SetEmulatorPath("C:\\emu\\ePSXe.EXE");
        // An option line that ends in a backslash is only a comment.
        WriteConfig("A Game", {"commandLine = -stay 0", "cdrFileName = iso",
                               "imageFileName = C:\\d \xE9.bin", "memcard1 = C:\\cards\\"});
    }

    void WriteConfig(const std::string& name, const std::vector<std::string>& options = {},
                     const std::vector<Key>& left_out = {}) {
        WriteFile(InConfig(name + ".dta"),
                  ConfigText("1.67.160", options, left_out,
                             ";#//GPU plugins\r\n\r\n[HKEY_CURRENT_USER\\" + kPluginKey +
                                 "]\r\n\"path\"=\"C:\\new\\\"\r\n"));
    }
    // What the plug-in lines of these files write.
    bool IsMerged() { return StringOf(kPluginKey, "path") == "C:\\new\\"; }
    void ExpectRefused(const std::string& name, const std::string& box) {
        EXPECT_FALSE(RunDirect(name));
        EXPECT_THAT(Shown(boxes), ElementsAre(box));
    }

    // The whole program.
    ProgramRun Velto(const Arguments& arguments) const {
        ProgramRun run{{BinaryFolder() + "/velto"}, {{"XDG_RUNTIME_DIR", runtime.path()}}, "/"};
        for (const auto* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"}) {
            run.variables.emplace_back(name, "");
        }
        run.variables.emplace_back("VELTO_HOME", home_folder.path());
        run.command.insert(run.command.end(), arguments.begin(), arguments.end());
        return run;
    }
    // It ends with this status and these words on standard error.
    static void ExpectEnd(const ProgramRun& run, int status, const std::string& words) {
        const auto result = RunProgram(run);
        EXPECT_EQ(result.status, status);
        EXPECT_EQ(result.err, words);
    }

    const TemporaryFolder runtime;
};

TEST_F(DirectRunTest, ShowsTheEmulatorIfItsLogWindowIsOffOrTellsWhyThereIsNone) {
    WriteConfig("Game");
    const auto file = InConfig("Game.dta");
    WriteFile(file, ReadFile(file) +
                        "[HKEY_CURRENT_USER\\software\\velto\\Settings]\r\n"
                        "\"epsxe\"=\"/a/strangers\"\r\n");
    CVeltoSettings().SetEmulatorPath("/bin/true");
    for (const bool on : {true, false}) {
        CVeltoSettings().SetLogWindow(on);
        CVeltoSettings().SetGuiBypassed(on);
        EXPECT_TRUE(RunDirect("Game"));
        const auto& emulator = processes.requests.back();
        EXPECT_EQ(emulator.file, "/bin/true");
        EXPECT_EQ(emulator.show, on ? platform::ShowState::Hidden : platform::ShowState::Shown);
        EXPECT_EQ(emulator.parameters, " -nogui ");
    }
    CVeltoSettings().SetEmulatorPath("C:\\missing.exe");
    ExpectRefused("Game", "Error: Unable to locate Epsxe at C:\\missing.exe");
    FailingRegistry full(*registry, RegistryCall::Step, "", 0);
    const auto on_full_disk = With(full);
    ExpectRefused("Game", "Error: Unable to write the settings of Game: as the test wants it");
}

TEST_F(DirectRunTest, ARefusalComesBeforeTheMergeIfThereIsNoFileElseBehindIt) {
    WriteConfig("../outside");
    ExpectRefused(
        "a game",
        "File not found: a game.dta does not exist. Remember that names are case sensitive.");
    for (const std::string& name : {"Gam"s, ""s, "../outside"s, "*"s, InHome("outside")}) {
        ExpectRefused(name, "File not found: " + name + ".dta does not exist");
    }
    EXPECT_TRUE(processes.requests.empty());

    WriteConfig("portable", {"magicCFG = true"}, {Key::bios});
    EXPECT_FALSE(RunDirect("portable"));
    EXPECT_EQ(boxes.shown.at(0).icon, platform::BoxIcon::None);
    EXPECT_THAT(
        Shown(boxes),
        ElementsAre("MagicCFG: Personal preferences not verified.\n  You need "
                    "to run this file via the editor at least once before using command lines."));
    WriteConfig("key missing", {}, {Key::autoplay});
    WriteFile(InConfig("binary.dta"), "\0\x1A\xFF\r\r\n\0"s);
    WriteConfig("NUL", {"commandLine = -a\0b"s});
    WriteConfig("text too long", {"bios = " + std::string(std::size_t{1} << 16, 'b')});
    WriteFile(InConfig("too large.dta"), std::string(kLargestConfigFile + 1, 'x'));
    ExpectRefused("too large", "Error: Unable to read too large.dta: larger than 67108864 bytes");
    const auto names = {"key missing", "binary", "NUL", "text too long"};
    for (const auto* name : names) {
        SCOPED_TRACE(name);
        ExpectRefused(name, "File Corrupted: File Corrupted.  Please repair then try again");
    }
    EXPECT_TRUE(IsMerged());
    EXPECT_EQ(processes.requests.size(), 2 + names.size()) << "never the emulator";
    EXPECT_EQ(StringOf(kEmulatorConfigKey, "BiosName"), std::nullopt);
}

TEST_F(DirectRunTest, ADirectRunEndsWhileTheEmulatorGoesOn) {
    WriteConfig("Long", {"commandLine = -stay 60000"});
    RunningProgram first(Velto({"-direct", "Long"}));
    EXPECT_EQ(first.Wait().status, 0);
    ASSERT_TRUE(first.Says("Demo emulator"));

    RunningProgram second(Velto(kGame));
    const auto result = second.Wait();
    EXPECT_EQ(result.status, 0) << "the emulator of the first holds no lock";
    EXPECT_EQ(result.err, "");
    ASSERT_TRUE(second.Says("Demo: path                 C:\\new\\\n"));
    for (const auto& line : {"    -nogui\n    -stay\n    0\n    -loadbin\n    C:\\d \xE9.bin\n"s,
                             "Memcard1                   C:\\cards\\\n"s, InHome("drive_c/emu")}) {
        EXPECT_THAT(second.out(), testing::HasSubstr(line));
    }
    EXPECT_THAT(second.out(), testing::Not(testing::HasSubstr("missing")));
}

TEST_F(DirectRunTest, ASecondProcessHandsItsConfigurationOverOrTellsWhyNot) {
    ExpectEnd(Velto({}), 1, "Velto: The editor needs a display.\n");
    const Variables variables({{"XDG_RUNTIME_DIR", runtime.path()}});
    auto first = platform::MakeInstanceService("velto", home_folder.path());
    ASSERT_TRUE(first->Acquire().value());
    std::atomic<int> handled = 0;
    auto listener = first->Listen([&](const std::string& name) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        handled += name == "A Game" ? 1 : 100;
    });
    ASSERT_TRUE(listener.ok());
    ExpectEnd(Velto(kGame), 0, "");
    EXPECT_EQ(handled, 1) << "it waits until the first one has handled the name";

    const std::string too_long(5000, 'x');
    const std::pair<Arguments, std::string> cases[] = {
        {{"game"}, "Unknown Flag: - game is not a recognised command\n"},
        {{"-Direct", "game"}, "Unknown Flag: -Direct game is not a recognised command\n"},
        {{}, "Already running: Velto is already running.\n"},
        {{"-direct", too_long}, "File not found: " + too_long + ".dta does not exist\n"},
    };
    for (const auto& [arguments, words] : cases) ExpectEnd(Velto(arguments), 1, words);
    EXPECT_EQ(handled, 1);
    std::move(listener).value().reset();
    ExpectEnd(Velto(kGame), 1, "");  // there is nobody who takes the name
    EXPECT_FALSE(IsMerged()) << "it runs nothing itself";
    first.reset();
    ExpectEnd(Velto(kGame), 0, "");
}

TEST_F(DirectRunTest, ANewHomeAsksForTheFirstRunAndOneThatExistsIsLeftAsItIs) {
    const TemporaryFolder folder;
    auto run = Velto(kGame);
    run.variables.back().second = "new/home";
    run.folder = folder.path();
    ExpectEnd(run, 1, "File not found: A Game.dta does not exist\n");
    ExpectEnd(Velto(kGame), 0, "");
    EXPECT_FALSE(CVeltoSettings().IsFirstRunDue());
    registry = platform::MakeSqliteRegistry(folder / "new/home/registry.db");
    ASSERT_TRUE(registry->OpenStore({}).ok());
    const auto new_home = With(*registry);
    EXPECT_TRUE(CVeltoSettings().IsFirstRunDue());
}

}  // namespace
}  // namespace velto::test
