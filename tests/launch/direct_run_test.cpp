#include "launch/direct_run.h"

#include <sys/wait.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "store/velto_settings.h"
#include "support/config_text.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::IsEmpty;
using testing::Optional;

const std::string kPluginKey = "Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo";

class DirectRunTest : public HomeTest {
  protected:
    DirectRunTest() {
        WriteFile(InHome("drive_c/emu/ePSXe.EXE"), "#!/bin/sh\nexit 0\n");
        std::filesystem::permissions(InHome("drive_c/emu/ePSXe.EXE"),
                                     std::filesystem::perms::owner_all);
        CVeltoSettings().SetEmulatorPath("C:\\emu\\ePSXe.EXE");
    }
    // Nobody else waits for the emulators that were started.
    ~DirectRunTest() override {
        while (waitpid(-1, nullptr, 0) > 0) {
        }
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
    void ExpectRefused(const std::string& name, const std::string& box,
                       platform::BoxIcon icon = platform::BoxIcon::Error) {
        EXPECT_FALSE(RunDirect(name));
        ASSERT_EQ(boxes.shown.size(), 1U) << name;
        EXPECT_EQ(boxes.shown[0].icon, icon);
        EXPECT_EQ(Shown(boxes).front(), box);
    }
};

TEST_F(DirectRunTest, MergesThePluginLinesWritesTheValuesAndStartsTheEmulator) {
    // An option line that ends in a backslash is only a comment.
    WriteConfig("A Game", {"commandLine = -x", "cdrFileName = iso",
                           "imageFileName = C:\\d \xE9.bin", "memcard1 = C:\\cards\\"});
    EXPECT_TRUE(RunDirect("A Game"));
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_TRUE(IsMerged());
    EXPECT_THAT(StringOf(kEmulatorConfigKey, "Memcard1"), Optional("C:\\cards\\"s));
    EXPECT_THAT(StringOf(kEmulatorConfigKey, "Multitap1"), Optional("0"s));
    ASSERT_EQ(processes.requests.size(), 2U) << "the registry editor and the emulator";
    const auto& emulator = processes.requests[1];
    EXPECT_EQ(emulator.file, InHome("drive_c/emu/ePSXe.EXE"));
    EXPECT_EQ(emulator.parameters, " -nogui -x -loadbin \"C:\\d \xE9.bin\"");
    EXPECT_EQ(emulator.folder, InHome("drive_c/emu"));
    EXPECT_EQ(emulator.show, platform::ShowState::Hidden);
    EXPECT_FALSE(emulator.ends_with_parent);
}

TEST_F(DirectRunTest, ShowsTheEmulatorIfItsLogWindowIsOffAndSkipsItsGuiInAnyCase) {
    CVeltoSettings().SetLogWindow(false);
    CVeltoSettings().SetGuiBypassed(false);
    WriteConfig("Game");
    EXPECT_TRUE(RunDirect("Game"));
    EXPECT_EQ(processes.requests.back().show, platform::ShowState::Shown);
    EXPECT_EQ(processes.requests.back().parameters, " -nogui ");
}

TEST_F(DirectRunTest, AFileThatIsNotThereInThisSpellingChangesNothing) {
    WriteConfig("Game");
    WriteConfig("../outside");
    ExpectRefused(
        "game", "File not found: game.dta does not exist. Remember that names are case sensitive.");
    for (const std::string& name : {"Gam"s, ""s, "../outside"s, "*"s, InHome("outside")}) {
        ExpectRefused(name, "File not found: " + name + ".dta does not exist");
    }
    EXPECT_THAT(processes.requests, IsEmpty());
    EXPECT_FALSE(IsMerged());
}

TEST_F(DirectRunTest, APortableOrCorruptedFileIsRefusedBehindTheMerge) {
    WriteConfig("portable", {"magicCFG = true"}, {Key::bios});
    ExpectRefused("portable",
                  "MagicCFG: Personal preferences not verified.\n  You need to run this file via "
                  "the editor at least once before using command lines.",
                  platform::BoxIcon::None);
    WriteConfig("key missing", {}, {Key::autoplay});
    WriteFile(InConfig("empty.dta"), "");
    WriteFile(InConfig("binary.dta"), "\0\x1A\xFF\r\r\n\0"s);
    WriteConfig("NUL", {"commandLine = -a\0b"s});
    WriteConfig("text too long", {"bios = " + std::string(std::size_t{1} << 16, 'b')});
    WriteFile(InConfig("too large.dta"), std::string(kLargestConfigFile + 1, 'x'));
    const auto names = {"key missing", "empty", "binary", "NUL", "text too long", "too large"};
    for (const auto* name : names) {
        const auto text = ReadFile(InConfig(name + ".dta"s));
        ExpectRefused(name, "File Corrupted: File Corrupted.  Please repair then try again");
        EXPECT_EQ(ReadFile(InConfig(name + ".dta"s)), text);
    }
    EXPECT_TRUE(IsMerged());
    EXPECT_EQ(processes.requests.size(), 1 + names.size()) << "never the emulator";
    EXPECT_EQ(StringOf(kEmulatorConfigKey, "BiosName"), std::nullopt);
}

TEST_F(DirectRunTest, TellsWhereItLookedForTheEmulator) {
    WriteConfig("Game");
    WriteFile(InHome("drive_c/text.exe"), "no program");
    for (const std::string path : {"C:\\missing\\e.exe", "", "C:\\emu", "C:\\text.exe"}) {
        CVeltoSettings().SetEmulatorPath(path);
        ExpectRefused("Game", "Error: Unable to locate Epsxe at " + path);
    }
}

}  // namespace
}  // namespace velto::test
