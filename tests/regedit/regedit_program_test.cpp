// The registry editor as scripts and other programs run it.
#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/run_program.h"
#include "support/temporary_folder.h"

namespace velto::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

using Arguments = std::vector<std::string>;

const std::string kText =
    "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\a b]\r\n\"c\"=\"d\"\r\n\r\n";

class RegeditProgramTest : public ::testing::Test {
  protected:
    ProgramResult Run(const Arguments& arguments) const {
        ProgramRun run{
            {BinaryFolder() + "/velto-regedit"}, {{"VELTO_HOME", folder / "home"}}, folder.path()};
        run.command.insert(run.command.end(), arguments.begin(), arguments.end());
        return RunProgram(run);
    }
    void ExpectSilence(const Arguments& arguments) const {
        const auto result = Run(arguments);
        EXPECT_EQ(result.status, 0) << arguments[1];
        EXPECT_THAT(result.out + result.err, IsEmpty()) << arguments[1];
    }
    // It fails with one line that holds the message.
    void ExpectFailure(const Arguments& arguments, const std::string& message) const {
        const auto result = Run(arguments);
        EXPECT_EQ(result.status, 1) << message;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
        EXPECT_THAT(result.err, HasSubstr(message));
        EXPECT_THAT(result.out, IsEmpty());
    }

    TemporaryFolder folder;
};

TEST_F(RegeditProgramTest, MergesAndExportsFilesOfTheCurrentFolder) {
    // Whatever stands behind the verb is a file's name.
    for (const std::string file : {"main.bak", "-x", "--help", "@plain"}) {
        WriteFile(folder / file, kText);
        for (const auto& verb : {"/S", "/s"}) ExpectSilence({verb, file});
        WriteFile(folder / file, "");
        ExpectSilence({"/e", file, "HKEY_CURRENT_USER\\software\\A B\\"});
        EXPECT_EQ(ReadFile(folder / file), kText) << file;
    }
    EXPECT_TRUE(Exists(folder / "home/registry.db"));
}

TEST_F(RegeditProgramTest, CountsSkippedLinesAndSucceeds) {
    WriteFile(folder / "bad.reg", kText + "what\n\"x\"=y\n\"e\"=\"f\"\n");
    const auto merged = Run({"/S", folder / "bad.reg"});
    EXPECT_EQ(merged.status, 0);
    EXPECT_EQ(merged.err,
              "Merged " + (folder / "bad.reg") + "; skipped 2 lines that couldn't be read\n");
    ExpectSilence({"/E", "out.reg", "HKEY_CURRENT_USER\\Software"});
    EXPECT_THAT(ReadFile(folder / "out.reg"), EndsWith("\"c\"=\"d\"\r\n\"e\"=\"f\"\r\n\r\n"));
}

TEST_F(RegeditProgramTest, TellsInOneLineWhyItFailed) {
    WriteFile(folder / "text.reg", kText);
    WriteFile(folder / "unknown.reg", "REGEDIT5\r\n");
    WriteFile(folder / "old.reg", "old");
    ExpectSilence({"/S", "text.reg"});
    const std::pair<Arguments, const char*> samples[] = {
        {{"/X", "text.reg"}, "/X"},
        {{"text.reg"}, "text.reg"},
        {{"/S"}, "/S FILE"},
        {{"/S", "text.reg", "text.reg"}, "/S FILE"},
        {{"/E", "old.reg"}, "/E FILE KEY"},
        {{"/S", "none.reg"}, "none.reg: No such file"},
        {{"/S", "unknown.reg"}, "unknown.reg: the first line"},
        {{"/S", "home"}, "home: "},
        {{"/E", "old.reg", "HKEY_CURRENT_USER\\None"}, "HKEY_CURRENT_USER\\None"},
        {{"/E", "old.reg", "Software"}, "Software"},
        {{"/E", "none/new.reg", "HKEY_CURRENT_USER"}, "none/new.reg: No such file"},
    };
    for (const auto& [arguments, message] : samples) ExpectFailure(arguments, message);
    EXPECT_EQ(ReadFile(folder / "old.reg"), "old");

    const std::string no_database = "no database, but something of the user's";
    WriteFile(folder / "home/registry.db", no_database);
    ExpectFailure({"/S", "text.reg"},
                  "Unable to open the registry " + (folder / "home/registry.db") + ": ");
    EXPECT_EQ(ReadFile(folder / "home/registry.db"), no_database);
}

TEST_F(RegeditProgramTest, SaysWhatItDoesWhenAsked) {
    const auto help = Run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, HasSubstr("/E FILE KEY"));
    EXPECT_THAT(help.err, IsEmpty());
    const auto nothing = Run({});
    EXPECT_EQ(nothing.status, 1);
    EXPECT_EQ(nothing.err, help.out);
}

}  // namespace
}  // namespace velto::test
