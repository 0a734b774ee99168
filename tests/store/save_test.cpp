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
#include "support/config_text.h"
#include "support/failing_files.h"

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
        std::filesystem::remove(dump);
        if (pending) WriteFile(dump, kDump);
    }
    // What a load and a save make of this text.
    std::string Saved(const std::string& text) {
        WriteConfig("Game", text);
        EXPECT_FALSE(document.LoadConfig("Game"));
        EXPECT_TRUE(document.SaveConfig("Game", false, "Game"));
        return Config("Game");
    }

    const std::string dump = InConfig("plugins.tmp");
    const std::string old_file = ConfigText("1.58.152", {"bios = old.bin"}, {}, kPluginLines);
};

TEST_F(SaveTest, ASaveBringsAFileToTheCurrentVersionAndASecondOneChangesNothing) {
    for (const auto* name : {"Demo Disc", "Image Disc"}) {
        const auto text = ReadFile(BinaryFolder() + "/demo-home/config/" + name + ".dta");
        EXPECT_EQ(Saved(text), text);
    }
    const std::vector<std::string> options = {"psxid = slus_1", "commandLine = -a=b",
                                              "memcard1 = \xE9 ; ' \"", "keys1 = 1,,3,x,-4,16",
                                              "magicCFG = true"};
    const auto saved = Saved(ConfigText("1.58.152", options, {}, kPluginLines));
    for (const auto* line : {"fileVersion = 1.67.160 ", "psxid = NULL", "commandLine = -ab",
                             "memcard1 = \xE9 ; ' \""}) {
        EXPECT_THAT(saved, HasSubstr("\r\n; "s + line + "\r\n"));
    }
    EXPECT_THAT(saved, AllOf(HasSubstr(kPluginLines), Not(HasSubstr("magicCFG"))));
    EXPECT_EQ(Saved(saved), saved);
}

TEST(CopyPluginLines, KeepsBannersAndRegistryLinesAndDropsTheFirstLine) {
    EXPECT_EQ(CopyPluginLines(""), "");
    EXPECT_EQ(CopyPluginLines("REGEDIT4"), "");
    const auto lines = "[first]\n\n[a]\n; b = c\n;# d\n;#\n;e\n;#//GPU\n;#///\n ;\rf\0\n\"g\""s;
    EXPECT_EQ(CopyPluginLines(lines), "\n[a]\n;#//GPU\n;#///\n ;\rf\0\n\"g\"\n"s);
}

// With and without a pending dump, portable or not.
class SaveStepsTest : public SaveTest, public testing::WithParamInterface<std::tuple<bool, bool>> {
  protected:
    void Prepare() {
        Edit(pending);
        WriteConfig("Portable", old_file);
    }
    // Whether a save succeeds with this step; `steps` is their number then.
    bool Save(int step, At at) {
        FailingFiles stepped(*files, step, at);
        const auto scope_of_the_save = With(stepped);
        const bool done = document.SaveConfig("Game", magic, destination);
        steps = stepped.steps();
        return done;
    }
    void SaveInAChild(int step) {
        const pid_t child = fork();
        if (child == 0) _exit(Save(step, At::Kill) ? 1 : 2);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    // What a save leaves that came to its end at one of these steps.
    void ExpectNothingLost(bool renamed) {
        EXPECT_EQ(Config(saved), renamed ? new_file : old_file);
        EXPECT_TRUE(!magic || Config("Game") == old_file);
        EXPECT_EQ(Exists(dump) ? ReadFile(dump) : "", pending ? kDump : "");
    }
    void StartAgain() {
        registry = platform::MakeSqliteRegistry(environment.RegistryFile());
        ASSERT_TRUE(registry->OpenStore({}).ok());
        const auto next_start = With(*files);
        NoWindow window;
        CAppStartup(environment.ConfigFolder(), window).Run();
    }

    const bool pending = std::get<0>(GetParam());
    const bool magic = std::get<1>(GetParam());
    const std::string destination = magic ? InConfig("Portable") : "Game";
    const std::string saved = magic ? "Portable" : "Game";
    std::string new_file;
    int steps = 0;
};
INSTANTIATE_TEST_SUITE_P(Each, SaveStepsTest, testing::Combine(testing::Bool(), testing::Bool()));

TEST_P(SaveStepsTest, AFailureOrAKillLosesNothingAndTheNextStartDeletesNoConfiguration) {
    Prepare();
    ASSERT_TRUE(Save(0, At::Fail));
    EXPECT_EQ(document.dirty, magic);
    EXPECT_EQ(Exists(dump), pending && magic);
    new_file = Config(saved);
    EXPECT_THAT(new_file, HasSubstr(pending ? "plugins\r\n\r\n[HKEY_CURRENT_USER\\Dumped]\r\n"
                                              "\"a\"=hex:1\r\n;#\r\n;# ------"
                                            : kPluginLines));
    EXPECT_THAT(new_file, AllOf(HasSubstr("edited.bin"), testing::EndsWith("----\r\n")));
    const auto mark = "; fileGroup = My Epsxe\r\n;#\r\n; magicCFG = true\r\n;# -";
    EXPECT_EQ(new_file.find(mark) != std::string::npos, magic);
    // The dump, or no dump and the source, each to its end; create, write, flush, rename,
    // flush the folder; delete the dump.
    const int behind_the_rename = pending && !magic ? 2 : 1;
    const int all = (pending ? 3 : 4) + 4 + behind_the_rename;
    EXPECT_EQ(steps, all);

    const auto message = "File Not Found: Unable to save settings to " + destination +
                         ".dta in folder " + environment.ConfigFolder();
    registry.reset();
    for (int step = 1; step <= all; ++step) {
        SCOPED_TRACE(step);
        Prepare();
        EXPECT_FALSE(Save(step, At::Fail));
        EXPECT_THAT(Shown(boxes), testing::ElementsAre(message));
        EXPECT_TRUE(document.dirty);
        ExpectNothingLost(step > all - behind_the_rename);
        Prepare();
        SaveInAChild(step);
        ExpectNothingLost(step > all - behind_the_rename);
        ASSERT_NO_FATAL_FAILURE(StartAgain());
        registry.reset();
        EXPECT_THAT(files->List(environment.ConfigFolder()).value(),
                    testing::UnorderedElementsAre("Game.dta", "Portable.dta"));
        EXPECT_EQ(Config(saved), step > all - behind_the_rename ? new_file : old_file);
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

}  // namespace
}  // namespace velto::test
