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
using testing::StartsWith;

class RegeditProgramTest : public ::testing::Test {
  protected:
    ProgramResult Run(const std::vector<std::string>& arguments) const {
        ProgramRun run{
            {BinaryFolder() + "/velto-regedit"}, {{"VELTO_HOME", folder / "home"}}, folder.path()};
        run.command.insert(run.command.end(), arguments.begin(), arguments.end());
        return RunProgram(run);
    }

    TemporaryFolder folder;
};

const std::string kText =
    "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\a b]\r\n\"c\"=\"d\"\r\n\r\n";

TEST_F(RegeditProgramTest, MergesAndExportsFilesOfTheCurrentFolder) {
    // Whatever stands behind the verb is a file's name.
    for (const std::string file : {"main.bak", "-x", "--help", "@plain"}) {
        WriteFile(folder / file, kText);
        for (const std::string verb : {"/S", "/s"}) {
            const auto merged = Run({verb, file});
            EXPECT_EQ(merged.status, 0) << file;
            EXPECT_THAT(merged.out + merged.err, IsEmpty()) << file;
        }
        WriteFile(folder / file, "");
        const auto exported = Run({"/e", file, "HKEY_CURRENT_USER\\software\\A B\\"});
        EXPECT_EQ(exported.status, 0) << exported.err;
        EXPECT_THAT(exported.out + exported.err, IsEmpty());
        EXPECT_EQ(ReadFile(folder / file), kText) << file;
    }
    EXPECT_TRUE(Exists(folder / "home/registry.db"));
}

TEST_F(RegeditProgramTest, CountsSkippedLinesAndSucceeds) {
    WriteFile(folder / "bad.reg", kText + "what\n\"x\"=y\n\"e\"=\"f\"\n");
    const auto merged = Run({"/S", folder / "bad.reg"});
    EXPECT_EQ(merged.status, 0);
    EXPECT_EQ(std::count(merged.err.begin(), merged.err.end(), '\n'), 1) << merged.err;
    EXPECT_THAT(merged.err, HasSubstr("skipped 2 lines"));
    ASSERT_EQ(Run({"/E", "out.reg", "HKEY_CURRENT_USER\\Software"}).status, 0);
    EXPECT_THAT(ReadFile(folder / "out.reg"), EndsWith("\"c\"=\"d\"\r\n\"e\"=\"f\"\r\n\r\n"));
}

TEST_F(RegeditProgramTest, TellsInOneLineWhyItFailed) {
    WriteFile(folder / "text.reg", kText);
    WriteFile(folder / "unknown.reg", "REGEDIT5\r\n");
    WriteFile(folder / "old.reg", "old");
    const struct {
        std::vector<std::string> arguments;
        const char* message;
    } samples[] = {
        {{"/X", "text.reg"}, "/X"},
        {{"text.reg"}, "text.reg"},
        {{"/S"}, "/S FILE"},
        {{"/S", "text.reg", "text.reg"}, "/S FILE"},
        {{"/E", "old.reg"}, "/E FILE KEY"},
        {{"/E", "old.reg", "HKEY_CURRENT_USER\\Software\\a", "b"}, "/E FILE KEY"},
        {{"/S", "none.reg"}, "none.reg: No such file"},
        {{"/S", "unknown.reg"}, "unknown.reg: the first line"},
        {{"/S", "home"}, "home: "},
        {{"/E", "old.reg", "HKEY_CURRENT_USER\\None"}, "HKEY_CURRENT_USER\\None"},
        {{"/E", "old.reg", "Software"}, "Software"},
        {{"/E", "none/new.reg", "HKEY_CURRENT_USER"}, "none/new.reg: No such file"},
    };
    ASSERT_EQ(Run({"/S", "text.reg"}).status, 0);
    for (const auto& sample : samples) {
        const auto result = Run(sample.arguments);
        EXPECT_EQ(result.status, 1) << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
        EXPECT_THAT(result.err, HasSubstr(sample.message));
        EXPECT_THAT(result.out, IsEmpty());
    }
    EXPECT_EQ(ReadFile(folder / "old.reg"), "old");
}

TEST_F(RegeditProgramTest, RefusesToRunOnAFileThatIsNoRegistry) {
    WriteFile(folder / "text.reg", kText);
    WriteFile(folder / "home/registry.db", "no database, but something of the user's");
    const auto merged = Run({"/S", "text.reg"});
    EXPECT_EQ(merged.status, 1);
    EXPECT_THAT(merged.err,
                StartsWith("Unable to open the registry " + (folder / "home/registry.db") + ": "));
    EXPECT_THAT(ReadFile(folder / "home/registry.db"), StartsWith("no database"));
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
