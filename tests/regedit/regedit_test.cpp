// Exports and merges between real files and a real store, and as scripts run the program for them.
#include "regedit/regedit.h"

#include <tuple>

#include <gmock/gmock.h>

#include "support/failing_files.h"
#include "support/failing_registry.h"
#include "support/home_test.h"
#include "support/recorded_registry.h"
#include "support/run_program.h"

namespace velto::test {
namespace {

using namespace testing;

using Arguments = std::vector<std::string>;

class RegeditTest : public HomeTest {
  protected:
    std::string Content() {
        Recorder recorder;
        std::ignore = registry->Visit("HKEY_CURRENT_USER", recorder);
        return recorder.text;
    }
    // The program's status, and what it says at both outputs.
    std::pair<int, std::string> Run(const Arguments& arguments,
                                    const std::optional<std::string>& within = {}) const {
        ProgramRun run{
            {environment.registry_editor}, {{"VELTO_HOME", InHome("home")}}, home_folder.path()};
        // No program inherits it from this one.
        if (within)
            run.command.insert(run.command.begin(),
                               {"/usr/bin/env", "VELTO_MERGE_SCOPE=" + *within});
        run.command.insert(run.command.end(), arguments.begin(), arguments.end());
        const auto result = RunProgram(run);
        EXPECT_EQ(result.out.empty(), arguments != Arguments{"--help"});
        return {result.status, result.out + result.err};
    }

    const std::string file = InHome("text.reg");
};

TEST_F(RegeditTest, AMergeAddsAndOverwritesOrFailsAsAWholeAndRemovesNothing) {
    WriteFile(file,
              "REGEDIT4\n[HKEY_CURRENT_USER\\A]\n\"one\"=\"1\"\n\"two\"=\"2\"\n"
              "[HKEY_CURRENT_USER\\B]\n\"three\"=\"3\"\n");
    ASSERT_TRUE(regedit::MergeFile(*files, *registry, file).ok());
    const auto before = Content();
    WriteFile(file,
              "REGEDIT4\n[hkey_current_user\\a]\n\"TWO\"=dword:2\n\"four\"=\"4\"\n\"one\"=-\n"
              "[-HKEY_CURRENT_USER\\B]\n[HKEY_CURRENT_USER\\A\\Empty]\n");
    constexpr int kReads = 3;   // open the file, read it, look for more
    constexpr int kWrites = 5;  // two keys, two values and the commit
    for (int step = 1; step <= kReads + kWrites; ++step) {
        FailingFiles failing_files(*files, step, FailingFiles::At::Fail);
        const int spared = step > kReads ? step - kReads - 1 : kWrites;
        FailingRegistry failing_store(*registry, RegistryCall::Step, "", spared);
        EXPECT_FALSE(regedit::MergeFile(failing_files, failing_store, file).ok()) << step;
        EXPECT_EQ(Content(), before) << step;
    }
    EXPECT_EQ(regedit::MergeFile(*files, *registry, file).value().skipped, 0U);
    EXPECT_EQ(Content(),
              "[HKEY_CURRENT_USER]\n[HKEY_CURRENT_USER\\A]\none=1:1%00\ntwo=4:%02%00%00%00\n"
              "four=1:4%00\n[HKEY_CURRENT_USER\\A\\Empty]\n[HKEY_CURRENT_USER\\B]\nthree=1:3%00\n");
}

TEST_F(RegeditTest, AnExportMovesAKeyWithAllBelowItToAnotherStore) {
    const std::string head = "REGEDIT4\r\n\r\n";
    const std::string text =
        "[HKEY_CURRENT_USER\\Software\\Moved]\r\n@=\"\"\r\n"
        "\"@\"=\"c:\\\\x\\\\\"\r\n\"\xE9 ;=\"=hex(1):61,0a\r\n"
        "\"b\"=hex:0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,\\\r\n"
        "  0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,\\\r\n"
        "  0a,0a\r\n\r\n"
        "[HKEY_CURRENT_USER\\Software\\Moved\\ a];b]\r\n\"d\"=dword:000001a7\r\n"
        "\"e\"=hex(80000010):\r\n\"f\"=hex(4):01\r\n\r\n"
        "[HKEY_CURRENT_USER\\Software\\Moved\\ a];b\\None]\r\n\r\n";
    WriteFile(file, head + "[HKEY_CURRENT_USER\\Software\\MovedNot]\r\n" + text);
    ASSERT_EQ(regedit::MergeFile(*files, *registry, file).value().skipped, 0U);
    const auto* const key = "hkey_current_user\\SOFTWARE\\moved\\";
    ASSERT_TRUE(regedit::ExportKey(*files, *registry, file, key).ok());
    EXPECT_EQ(ReadFile(file), head + text);

    const auto other = platform::MakeSqliteRegistry(InHome("other.db"));
    ASSERT_TRUE(other->OpenStore({}).ok());
    EXPECT_EQ(regedit::MergeFile(*files, *other, file).value().skipped, 0U);
    ASSERT_TRUE(regedit::ExportKey(*files, *other, file, "HKEY_CURRENT_USER\\Software").ok());
    EXPECT_EQ(ReadFile(file), head + "[HKEY_CURRENT_USER\\Software]\r\n\r\n" + text);
}

MATCHER_P(IsOneLineWith, text, "") {
    return arg.find(text) != std::string::npos && arg.find('\n') == arg.size() - 1;
}

const std::string kText =
    "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\a b]\r\n\"c\"=\"d\"\r\n\r\n";

TEST_F(RegeditTest, AsAProgramMergesAndExportsFilesOfTheCurrentFolder) {
    // Whatever stands behind the verb is a file's name.
    for (const std::string name : {"main.bak", "--help", "@plain"}) {
        WriteFile(InHome(name), kText);
        for (const auto* verb : {"/S", "/s"}) EXPECT_THAT(Run({verb, name}), Pair(0, ""));
        WriteFile(InHome(name), "");
        EXPECT_THAT(Run({"/e", name, "HKEY_CURRENT_USER\\software\\A B\\"}), Pair(0, ""));
        EXPECT_EQ(ReadFile(InHome(name)), kText) << name;
    }
    WriteFile(InHome("bad.reg"), kText + "what\n\"x\"=y\n\"e\"=\"f\"\n");
    EXPECT_THAT(Run({"/S", "bad.reg"}),
                Pair(0, "Merged bad.reg; skipped 2 lines that couldn't be read\n"));
}

TEST_F(RegeditTest, AsAProgramWritesOnlyWhatItsScopeNames) {
    const std::string key = "HKEY_CURRENT_USER\\Software\\a b";
    const std::string above = "HKEY_CURRENT_USER\\software\\";
    WriteFile(InHome("text.reg"), kText);
    for (const auto& within :
         {above + "a", key + "\\", above + ";-" + above + "A B", "-" + above}) {
        EXPECT_THAT(Run({"/S", "text.reg"}, within),
                    Pair(0, "Merged text.reg; passed over 2 lines outside of what it may write\n"));
    }
    for (const std::string unreadable : {"", "Software", "HKEY_CURRENT_USER;"}) {
        EXPECT_THAT(Run({"/S", "text.reg"}, unreadable),
                    Pair(1, IsOneLineWith("text.reg: VELTO_MERGE_SCOPE is no list of keys")));
    }
    EXPECT_THAT(Run({"/E", "out.reg", key}), Pair(1, IsOneLineWith(key)));
    for (const auto& within : {above, above + "A B;-" + above + "a", key + ";" + above + "c"}) {
        EXPECT_THAT(Run({"/S", "text.reg"}, within), Pair(0, ""));
    }
    EXPECT_THAT(Run({"/E", "out.reg", key}), Pair(0, ""));
}

TEST_F(RegeditTest, AsAProgramTellsInOneLineWhyItFailedAndWhatItDoesWhenAsked) {
    WriteFile(InHome("text.reg"), kText);
    WriteFile(InHome("unknown.reg"), "REGEDIT5\r\n");
    WriteFile(InHome("old.reg"), "old");
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
    EXPECT_EQ(ReadFile(InHome("old.reg")), "old");

    const auto database = InHome("home/registry.db");
    WriteFile(database, "no database, but something of the user's");
    EXPECT_THAT(Run({"/S", "text.reg"}),
                Pair(1, IsOneLineWith("Unable to open the registry " + database + ": ")));
    const auto help = Run({"--help"});
    EXPECT_THAT(help, Pair(0, HasSubstr("/E FILE KEY")));
    EXPECT_THAT(Run({}), Pair(1, help.second));
}

}  // namespace
}  // namespace velto::test
