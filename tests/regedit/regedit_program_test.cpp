// The registry editor as scripts and other programs run it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/run_program.h"
#include "support/temporary_folder.h"

namespace velto::test {
namespace {

using testing::HasSubstr;
using testing::Pair;

using Arguments = std::vector<std::string>;

MATCHER_P(IsOneLineWith, text, "") {
    return arg.find(text) != std::string::npos && arg.find('\n') == arg.size() - 1;
}

const std::string kText =
    "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\a b]\r\n\"c\"=\"d\"\r\n\r\n";

class RegeditProgramTest : public ::testing::Test {
  protected:
    // Its status, and what it says at both outputs.
    std::pair<int, std::string> Run(const Arguments& arguments) const {
        ProgramRun run{
            {BinaryFolder() + "/velto-regedit"}, {{"VELTO_HOME", folder / "home"}}, folder.path()};
        run.command.insert(run.command.end(), arguments.begin(), arguments.end());
        const auto result = RunProgram(run);
        EXPECT_EQ(result.out.empty(), arguments != Arguments{"--help"});
        return {result.status, result.out + result.err};
    }

    TemporaryFolder folder;
};

TEST_F(RegeditProgramTest, MergesAndExportsFilesOfTheCurrentFolder) {
    // Whatever stands behind the verb is a file's name.
    for (const std::string file : {"main.bak", "--help", "@plain"}) {
        WriteFile(folder / file, kText);
        for (const auto* verb : {"/S", "/s"}) EXPECT_THAT(Run({verb, file}), Pair(0, ""));
        WriteFile(folder / file, "");
        EXPECT_THAT(Run({"/e", file, "HKEY_CURRENT_USER\\software\\A B\\"}), Pair(0, ""));
        EXPECT_EQ(ReadFile(folder / file), kText) << file;
    }
    WriteFile(folder / "bad.reg", kText + "what\n\"x\"=y\n\"e\"=\"f\"\n");
    EXPECT_THAT(Run({"/S", "bad.reg"}),
                Pair(0, "Merged bad.reg; skipped 2 lines that couldn't be read\n"));
}

TEST_F(RegeditProgramTest, TellsInOneLineWhyItFailedAndWhatItDoesWhenAsked) {
    WriteFile(folder / "text.reg", kText);
    WriteFile(folder / "unknown.reg", "REGEDIT5\r\n");
    WriteFile(folder / "old.reg", "old");
    ASSERT_THAT(Run({"/S", "text.reg"}), Pair(0, ""));
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
    for (const auto& [arguments, message] : samples) {
        EXPECT_THAT(Run(arguments), Pair(1, IsOneLineWith(message)));
    }
    EXPECT_EQ(ReadFile(folder / "old.reg"), "old");

    const std::string no_database = "no database, but something of the user's";
    const auto database = folder / "home/registry.db";
    WriteFile(database, no_database);
    EXPECT_THAT(Run({"/S", "text.reg"}),
                Pair(1, IsOneLineWith("Unable to open the registry " + database + ": ")));
    EXPECT_EQ(ReadFile(database), no_database);

    const auto help = Run({"--help"});
    EXPECT_THAT(help, Pair(0, HasSubstr("/E FILE KEY")));
    EXPECT_THAT(Run({}), Pair(1, help.second));
}

}  // namespace
}  // namespace velto::test
