// Saving a configuration: the layout, the source of the plug-in lines, and what is left when a
// step fails or the process ends there.
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/app_startup.h"
#include "store/document_test.h"
#include "store/registry_dump.h"
#include "store/registry_editor.h"
#include "support/config_text.h"
#include "support/failing_files.h"
#include "support/heap.h"
#include "support/shown.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using At = FailingFiles::At;

constexpr const char* kPluginLines =
    ";#//GPU plugins\r\n"
    "\r\n"
    "[HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo]\r\n"
    "\"path\"=\"C:\\a\\\"\r\n"
    " ; not at the start, so not a comment\r\n";
constexpr const char* kDump =
    "REGEDIT4 \r\n;#//GPU plugins\r\n\r\n[HKEY_CURRENT_USER\\Dumped]\r\n\"a\"=hex:1\r\n;#\r\n";

struct NoWindow : StartupWindow {
    void OnLogLine(const std::string&) override {}
    void RunPathsDialog() override {}
};

class SaveTest : public DocumentTest {
  protected:
    // A configuration in hand that was edited and, on request, has a pending dump.
    void Edit(bool pending) {
        WriteConfig("Game", old_file);
        document.dirty = false;
        ASSERT_FALSE(document.LoadConfig("Game"));
        document.bios = "edited.bin";
        document.dirty = true;
        std::filesystem::remove(InConfig("plugins.tmp"));
        if (pending) WriteFile(InConfig("plugins.tmp"), kDump);
    }
    bool Save(const std::string& name) { return document.SaveConfig(name, false, name); }
    std::string SavedAgain(const std::string& name) {
        EXPECT_FALSE(document.LoadConfig(name));
        EXPECT_TRUE(Save(name));
        return Config(name);
    }
    std::vector<std::string> Names() const {
        return files->List(environment.ConfigFolder()).value();
    }

    const std::string old_file = ConfigText("1.58.152", {"bios = old.bin"}, {}, kPluginLines);
};

TEST_F(SaveTest, ASavedFileComesBackByteForByte) {
    for (const auto* name : {"Demo Disc", "Image Disc"}) {
        const auto text = ReadFile(BinaryFolder() + "/demo-home/config/" + name + ".dta");
        WriteConfig(name, text);
        EXPECT_EQ(SavedAgain(name), text);
    }
}

TEST_F(SaveTest, ASaveBringsAFileToTheCurrentVersionAndASecondOneChangesNothing) {
    const std::vector<std::string> options = {"psxid = slus_1",         "commandLine = -a=b",
                                              "memcard1 = \xE9 ; ' \"", "driveLetter = Exyz",
                                              "keys1 = 1,,3,x,-4,16",   "magicCFG = true"};
    WriteConfig("Game", ConfigText("1.58.152", options, {}, kPluginLines));
    const auto saved = SavedAgain("Game");
    for (const auto* line : {"fileVersion = 1.67.160 ", "psxid = NULL", "commandLine = -ab",
                             "memcard1 = \xE9 ; ' \"", "driveLetter = E"}) {
        EXPECT_THAT(saved, HasSubstr("\r\n; "s + line + "\r\n"));
    }
    EXPECT_THAT(saved, AllOf(HasSubstr(kPluginLines), Not(HasSubstr("magicCFG"))));
    EXPECT_EQ(SavedAgain("Game"), saved);
}

TEST_F(SaveTest, AMillionLinesAndLinesOfAMegabyteComeThrough) {
    const std::string megabyte(std::size_t{1} << 20, 'x');
    std::string lines = "\"" + megabyte + "\"\r\n";
    for (int i = 0; i < 1'000'000; ++i) lines += "\"a value of a plug-in\"=dword:0000002a\r\n";
    std::string repeated;
    while (repeated.size() < megabyte.size()) repeated += "; netFileName = ";
    const std::vector<std::string> options = {"bios = " + megabyte, repeated.substr(2)};
    WriteConfig("Game", ConfigText("1.67.160", options, {}, lines));
    const auto saved = SavedAgain("Game");
    EXPECT_EQ(document.bios, megabyte);
    EXPECT_EQ(document.netFileName, "NULL");
    EXPECT_NE(saved.find(lines), std::string::npos);
}

TEST(CopyPluginLines, KeepsBannersAndRegistryLinesAndDropsTheFirstLine) {
    EXPECT_EQ(CopyPluginLines(""), "");
    EXPECT_EQ(CopyPluginLines("REGEDIT4"), "");
    const auto lines = "[first]\n\n[a]\n; b = c\n;# d\n;#\n;e\n;#//GPU\n;#///\n ;\rf\0\n\"g\""s;
    EXPECT_EQ(CopyPluginLines(lines), "\n[a]\n;#//GPU\n;#///\n ;\rf\0\n\"g\"\n"s);
}

TEST_F(SaveTest, OnlyThePluginLinesOfASavedFileReachTheRegistry) {
    Edit(false);
    ASSERT_TRUE(Save("Game"));
    ASSERT_EQ(RestoreFile("Game.dta", environment.ConfigFolder()), 0);
    EXPECT_EQ(StringOf("Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo", "path"), "C:\\a\\");
    std::string dump;
    DumpBranch(dump, "Software\\Vision Thing\\PSEmu Pro\\");
    EXPECT_EQ(dump, "\n[HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\GPU]\n");
}

TEST_F(SaveTest, AFileInOtherLettersIsReplacedInItsOwnSpelling) {
    WriteFile(InConfig("GAME.DTA"), old_file);
    ASSERT_FALSE(document.LoadConfig("game"));
    EXPECT_TRUE(Save("game"));
    EXPECT_THAT(Names(), testing::ElementsAre("GAME.DTA"));
    EXPECT_THAT(ReadFile(InConfig("GAME.DTA")), HasSubstr("1.67.160"));
}

// With and without a pending dump, portable or not.
class SaveStepsTest : public SaveTest, public testing::WithParamInterface<std::tuple<bool, bool>> {
  protected:
    bool SaveIt(FailingFiles& over) {
        const auto scope_of_the_save = With(over);
        return document.SaveConfig("Game", magic, destination);
    }
    void Prepare() {
        Edit(pending);
        WriteConfig("Portable", old_file);
    }
    // Counts the steps, and keeps what a save of them all gives.
    void SaveOnce() {
        Prepare();
        FailingFiles counting(*files, 0, At::Fail);
        ASSERT_TRUE(SaveIt(counting));
        EXPECT_EQ(document.dirty, magic);
        EXPECT_EQ(Exists(InConfig("plugins.tmp")), pending && magic);
        steps = counting.steps();
        new_file = Config(saved);
        EXPECT_THAT(new_file, HasSubstr(pending ? "plugins\r\n\r\n[HKEY_CURRENT_USER\\Dumped]\r\n"
                                                  "\"a\"=hex:1\r\n;#\r\n;# ------"
                                                : kPluginLines));
        EXPECT_THAT(new_file, AllOf(HasSubstr("edited.bin"), testing::EndsWith("----\r\n")));
        const auto mark = "; fileGroup = My Epsxe\r\n;#\r\n; magicCFG = true\r\n;# -";
        EXPECT_EQ(new_file.find(mark) != std::string::npos, magic);
        // The dump, or no dump and the source, each to its end; create, write, flush, rename,
        // flush the folder; delete the dump.
        EXPECT_EQ(steps, (pending ? 3 : 4) + 5 + (pending && !magic ? 1 : 0));
    }
    // What a save leaves that came to its end at this step.
    void ExpectNothingLostAt(int step) {
        const bool renamed = step > steps - (pending && !magic ? 2 : 1);
        EXPECT_EQ(Config(saved), renamed ? new_file : old_file);
        EXPECT_TRUE(!magic || Config("Game") == old_file);
        const auto dump = InConfig("plugins.tmp");
        EXPECT_EQ(Exists(dump) ? ReadFile(dump) : "", pending ? kDump : "");
    }

    const bool pending = std::get<0>(GetParam());
    const bool magic = std::get<1>(GetParam());
    const std::string destination = magic ? InConfig("Portable") : "Game";
    const std::string saved = magic ? "Portable" : "Game";
    std::string new_file;
    int steps = 0;
};
INSTANTIATE_TEST_SUITE_P(Each, SaveStepsTest, testing::Combine(testing::Bool(), testing::Bool()));

TEST_P(SaveStepsTest, AFailureIsReportedAndLosesNothing) {
    SaveOnce();
    for (int step = 1; step <= steps; ++step) {
        SCOPED_TRACE(step);
        Prepare();
        FailingFiles failing(*files, step, At::Fail);
        EXPECT_FALSE(SaveIt(failing));
        const auto message = "File Not Found: Unable to save settings to " + destination +
                             ".dta in folder " + environment.ConfigFolder();
        EXPECT_THAT(Shown(boxes), testing::ElementsAre(message));
        ExpectNothingLostAt(step);
        EXPECT_TRUE(document.dirty);
        EXPECT_EQ(Names().size(), pending ? 3U : 2U) << "no temporary is left";
    }
}

TEST_P(SaveStepsTest, AKillLosesNothingAndTheNextStartDeletesNoConfiguration) {
    SaveOnce();
    registry.reset();
    for (int step = 1; step <= steps; ++step) {
        SCOPED_TRACE(step);
        Prepare();
        const pid_t child = fork();
        if (child == 0) {
            FailingFiles killing(*files, step, At::Kill);
            SaveIt(killing);
            _exit(1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        ExpectNothingLostAt(step);

        const auto game = Config("Game");
        const auto portable = Config("Portable");
        registry = platform::MakeSqliteRegistry(environment.RegistryFile());
        ASSERT_TRUE(registry->OpenStore({}).ok());
        {
            const auto next_start = With(*files);
            NoWindow window;
            CAppStartup(environment.ConfigFolder(), window).Run();
        }
        registry.reset();
        EXPECT_THAT(Names(), testing::UnorderedElementsAre("Game.dta", "Portable.dta"));
        EXPECT_EQ(Config("Game"), game);
        EXPECT_EQ(Config("Portable"), portable);
    }
}

TEST_F(SaveTest, WhatIsTooLargeOrNoNameFailsTheSaveBeforeAnythingIsWritten) {
    Edit(false);
    WriteConfig("Huge", std::string(kLargestConfigFile + 1, 'x'));
    // Lines that fit, but no longer with what a save adds to them.
    WriteConfig("Large", "\n" + std::string(kLargestConfigFile - 100, 'x'));
    std::filesystem::create_directory(InConfig("Folder.dta"));
    for (const auto* source : {"Huge", "Large", "Folder", "../Game"}) {
        EXPECT_FALSE(document.SaveConfig(source, false, "Game")) << source;
    }
    EXPECT_FALSE(document.SaveConfig("Game", false, "../Game"));
    EXPECT_EQ(Config("Game"), old_file);
    EXPECT_FALSE(Exists(InHome("Game.dta")));
    EXPECT_TRUE(document.SaveConfig("No such source", false, "Game"));
    EXPECT_THAT(Config("Game"), Not(HasSubstr("Demo]")));
}

TEST_F(SaveTest, AThousandLoadsAndSavesKeepNothing) {
    WriteConfig("Game", old_file);
    const auto rounds = [&](int count) {
        for (int i = 0; i < count; ++i) SavedAgain("Game");
    };
    rounds(3);
    const auto before = LiveHeapBytes();
    rounds(1000);
    EXPECT_LE(LiveHeapBytes(), before + 4096);
}

}  // namespace
}  // namespace velto::test
