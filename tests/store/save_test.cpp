// Saving a configuration: the layout, the source of the plug-in lines, and what is left when a
// step fails or the process ends there.
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "store/registry_dump.h"
#include "store/velto_doc.h"
#include "support/config_text.h"
#include "support/failing_files.h"
#include "support/fake_editor.h"
#include "support/heap.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kPluginLines =
    ";#//GPU plugins\r\n"
    "\r\n"
    "[HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo]\r\n"
    "\"path\"=\"C:\\a\\\"\r\n"
    " ; not at the start, so not a comment\r\n";

class SaveTest : public HomeTest {
  protected:
    void WriteConfig(const std::string& name, const std::string& text) {
        WriteFile(InConfig(name + ".dta"), text);
    }
    std::string Config(const std::string& name) const { return ReadFile(InConfig(name + ".dta")); }
    // The document as it is with a configuration in hand that was edited and, on request, has a
    // pending dump.
    void Edit(bool pending) {
        WriteConfig("Game", old_file);
        document.dirty = false;
        ASSERT_FALSE(document.LoadConfig("Game"));
        document.bios = "edited.bin";
        document.dirty = true;
        std::filesystem::remove(InConfig("plugins.tmp"));
        if (pending) WriteFile(InConfig("plugins.tmp"), kDump);
    }

    static constexpr const char* kDump =
        "REGEDIT4 \r\n;#//GPU plugins\r\n\r\n[HKEY_CURRENT_USER\\Dumped]\r\n\"a\"=hex:1\r\n;#\r\n";
    const std::string old_file = ConfigText("1.58.152", {"bios = old.bin"}, {}, kPluginLines);
    FakeEditor editor;
    CVeltoDoc document{environment.ConfigFolder(), editor};
};

TEST_F(SaveTest, ASavedFileComesBackByteForByte) {
    for (const auto* name : {"Demo Disc", "Image Disc"}) {
        const auto text = ReadFile(VELTO_DEMO_FOLDER "/config/"s + name + ".dta");
        WriteConfig(name, text);
        ASSERT_FALSE(document.LoadConfig(name));
        document.dirty = true;
        EXPECT_TRUE(document.SaveConfig(name, false, name));
        EXPECT_EQ(Config(name), text);
        EXPECT_FALSE(document.dirty);
    }
}

TEST_F(SaveTest, ASaveBringsAnyFileToTheCurrentVersionAndASecondOneChangesNothing) {
    for (const auto* version : {"1.5.152", "1.58.152", "1.63.152", "1.67.160", "later"}) {
        WriteConfig("Game",
                    ConfigText(version,
                               {"psxid = slus_1", "commandLine = -a=b", "memcard1 = \xE9 ; ' \"",
                                "driveLetter = Exyz", "keys1 = 1,,3,x,-4", "magicCFG = true"},
                               {}, kPluginLines));
        ASSERT_FALSE(document.LoadConfig("Game"));
        ASSERT_TRUE(document.SaveConfig("Game", false, "Game"));
        const auto saved = Config("Game");
        EXPECT_THAT(saved, HasSubstr("; fileVersion = 1.67.160 \r\n"));
        EXPECT_THAT(saved, HasSubstr("; psxid = NULL\r\n"));
        EXPECT_THAT(saved, HasSubstr("; commandLine = -ab\r\n"));
        EXPECT_THAT(saved, HasSubstr("; driveLetter = E\r\n"));
        EXPECT_THAT(saved, HasSubstr(kPluginLines));
        EXPECT_THAT(saved, Not(HasSubstr("magicCFG")));
        for (const auto& row : KeyTable()) {
            if (row.key == Key::magicCFG) continue;
            EXPECT_THAT(saved, HasSubstr("\r\n; "s.append(row.name).append(" = ")));
        }
        ASSERT_FALSE(document.LoadConfig("Game"));
        ASSERT_TRUE(document.SaveConfig("Game", false, "Game"));
        EXPECT_EQ(Config("Game"), saved) << version;
    }
}

TEST(CopyPluginLines, KeepsBannersAndRegistryLinesAndDropsTheFirstLine) {
    struct Case {
        const char* what;
        std::string from;
        std::string lines;
    };
    const Case cases[] = {
        {"empty", "", ""},
        {"only a first line", "REGEDIT4", ""},
        {"only a first line with its end", "REGEDIT4\n", ""},
        {"whatever the first line is", "[key]\n[other]\n", "[other]\n"},
        {"options and comments", "R\n; a = b\n;# x\n;#\n;x\n", ""},
        {"banners", "R\n;#//GPU plugins\n;#\n;#///\n", ";#//GPU plugins\n;#///\n"},
        {"empty lines", "R\n\n[a]\n\n", "\n[a]\n\n"},
        {"no end of the last line", "R\n\"a\"=\"b\"", "\"a\"=\"b\"\n"},
        {"lone CR and NUL", "R\na\rb\0c\n"s, "a\rb\0c\n"s},
    };
    for (const auto& c : cases) EXPECT_EQ(CopyPluginLines(c.from), c.lines) << c.what;
}

TEST_F(SaveTest, APendingDumpTakesPrecedenceAndIsGoneAfterwards) {
    Edit(true);
    EXPECT_TRUE(document.SaveConfig("Game", false, "Game"));
    EXPECT_THAT(Config("Game"),
                HasSubstr(";#//GPU plugins\r\n\r\n[HKEY_CURRENT_USER\\Dumped]\r\n\"a\"=hex:1\r\n"
                          ";#\r\n;# ------"));
    EXPECT_THAT(Config("Game"), Not(HasSubstr("Demo]")));
    EXPECT_FALSE(Exists(InConfig("plugins.tmp")));
    EXPECT_FALSE(document.dirty);
}

TEST_F(SaveTest, APortableSaveLeavesEverythingElseAsItIs) {
    for (const bool pending : {false, true}) {
        Edit(pending);
        EXPECT_TRUE(document.SaveConfig("Game", true, InHome("portable")));
        const auto portable = ReadFile(InHome("portable.dta"));
        EXPECT_THAT(portable,
                    HasSubstr("; fileGroup = My Epsxe\r\n;#\r\n; magicCFG = true\r\n;# -"));
        EXPECT_THAT(portable, HasSubstr(pending ? "Dumped]" : "Demo]"));
        EXPECT_EQ(Config("Game"), old_file);
        EXPECT_EQ(Exists(InConfig("plugins.tmp")), pending);
        EXPECT_TRUE(document.dirty);
    }
}

TEST_F(SaveTest, OnlyThePluginLinesOfASavedFileReachTheRegistry) {
    Edit(false);
    ASSERT_TRUE(document.SaveConfig("Game", false, "Game"));
    ASSERT_EQ(document.settings.RestoreFile("Game.dta", environment.ConfigFolder()), 0);
    EXPECT_EQ(StringOf("Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo", "path"), "C:\\a\\");
    std::string dump;
    DumpBranch(dump, "Software\\Vision Thing\\PSEmu Pro\\");
    EXPECT_EQ(dump, "\n[HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\GPU]\n");
}

TEST_F(SaveTest, AFileInOtherLettersIsReplacedInItsOwnSpelling) {
    WriteFile(InConfig("GAME.DTA"), old_file);
    ASSERT_FALSE(document.LoadConfig("game"));
    EXPECT_TRUE(document.SaveConfig("game", false, "game"));
    EXPECT_FALSE(Exists(InConfig("game.dta")));
    EXPECT_THAT(ReadFile(InConfig("GAME.DTA")), HasSubstr("1.67.160"));
}

TEST_F(SaveTest, AFailureIsReportedAndLosesNothing) {
    for (const bool pending : {false, true}) {
        Edit(pending);
        FailingFiles counting(*files, 0, FailingFiles::At::Fail);
        int steps = 0;
        {
            const platform::HostScope counted({&environment, &counting, drives.get(),
                                               registry.get(), &processes, nullptr, &boxes});
            ASSERT_TRUE(document.SaveConfig("Game", false, "Game"));
            steps = counting.steps();
        }
        const auto new_file = Config("Game");
        EXPECT_EQ(steps, pending ? 6 : 5) << "create, write, flush, rename, flush, delete";
        for (int step = 1; step <= steps; ++step) {
            Edit(pending);
            boxes.shown.clear();
            FailingFiles failing(*files, step, FailingFiles::At::Fail);
            const platform::HostScope failed({&environment, &failing, drives.get(), registry.get(),
                                              &processes, nullptr, &boxes});
            EXPECT_FALSE(document.SaveConfig("Game", false, "Game")) << "step " << step;
            ASSERT_EQ(boxes.shown.size(), 1U);
            EXPECT_EQ(boxes.shown[0].text, "Unable to save settings to Game.dta in folder " +
                                               environment.ConfigFolder());
            EXPECT_EQ(boxes.shown[0].caption, "File Not Found");
            EXPECT_EQ(Config("Game"), step <= 4 ? old_file : new_file) << "step " << step;
            EXPECT_EQ(Exists(InConfig("plugins.tmp")), pending) << "step " << step;
            EXPECT_TRUE(document.dirty);
        }
    }
}

TEST_F(SaveTest, AKillAtAnyStepLeavesAWholeFileAndThePendingDumpUntilItIsSaved) {
    for (const bool pending : {false, true}) {
        for (int step = 1; step <= (pending ? 6 : 5); ++step) {
            Edit(pending);
            registry.reset();
            const pid_t child = fork();
            if (child == 0) {
                FailingFiles killing(*files, step, FailingFiles::At::Kill);
                const platform::HostScope killed(
                    {&environment, &killing, drives.get(), nullptr, &processes, nullptr, &boxes});
                document.SaveConfig("Game", false, "Game");
                _exit(1);
            }
            int status = 0;
            ASSERT_EQ(waitpid(child, &status, 0), child);
            ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "step " << step;
            const bool saved = Config("Game") != old_file;
            if (saved) {
                EXPECT_THAT(Config("Game"), HasSubstr("edited.bin"));
                EXPECT_THAT(Config("Game"), HasSubstr(pending ? "Dumped]" : "Demo]"));
                EXPECT_THAT(Config("Game"),
                            testing::EndsWith(";# End of configuration File\r\n;# " +
                                              std::string(58, '-') + "\r\n"));
            }
            EXPECT_EQ(saved, step > 4) << "step " << step;
            EXPECT_EQ(Exists(InConfig("plugins.tmp")), pending) << "step " << step;
        }
    }
}

TEST_F(SaveTest, WhatCannotBeReadFailsTheSaveBeforeAnythingIsWritten) {
    Edit(false);
    std::filesystem::create_directory(InConfig("plugins.tmp"));
    EXPECT_FALSE(document.SaveConfig("Game", false, "Game"));
    EXPECT_EQ(Config("Game"), old_file);
    std::filesystem::remove(InConfig("plugins.tmp"));

    WriteConfig("Huge", std::string(kLargestConfigFile + 1, 'x'));
    EXPECT_FALSE(document.SaveConfig("Huge", false, "Game"));
    EXPECT_FALSE(document.SaveConfig("Game", false, "../Game"));
    // Lines that fit, but no longer with what a save adds to them.
    WriteConfig("Large", std::string(kLargestConfigFile - 100, '\n'));
    EXPECT_FALSE(document.SaveConfig("Large", false, "Game"));
    EXPECT_EQ(Config("Game"), old_file);
    EXPECT_FALSE(Exists(InHome("Game.dta")));
    EXPECT_TRUE(document.SaveConfig("No such source", false, "Game"));
    EXPECT_THAT(Config("Game"), Not(HasSubstr("Demo]")));
}

TEST_F(SaveTest, AThousandLoadsAndSavesKeepNothing) {
    WriteConfig("Game", old_file);
    const auto rounds = [&](int count) {
        for (int i = 0; i < count; ++i) {
            document.LoadConfig("Game");
            document.SaveConfig("Game", false, "Game");
        }
    };
    rounds(3);
    const auto before = LiveHeapBytes();
    rounds(1000);
    EXPECT_LE(LiveHeapBytes(), before + 4096);
}

}  // namespace
}  // namespace velto::test
