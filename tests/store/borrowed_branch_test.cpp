#include "store/borrowed_branch.h"

#include <filesystem>

#include <gmock/gmock.h>

#include "support/failing_files.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using Texts = std::vector<std::string>;
using testing::ElementsAre;

constexpr const char* kEmulator = "Software\\epsxe\\config";
constexpr const char* kPlugin = "Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo";
constexpr const char* kNoRestore = "Error: Unable to restore settings";
constexpr const char* kNoMain =
    "Error: Unable to backup HKEY_CURRENT_USER\\Software\\epsxe settings";
constexpr const char* kNoPlugins =
    "Error: Unable to backup \"HKEY_CURRENT_USER\\Software\\Vision Thing\" settings";

std::string Backup(const std::string& key, const std::string& value) {
    return "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\" + key + "]\r\n\"v\"=\"" + value + "\"\r\n";
}

class BorrowedBranchTest : public HomeTest {
  protected:
    void SetBoth(const std::string& value) {
        SetValue(kEmulator, "v", platform::StringValue(value));
        SetValue(kPlugin, "v", platform::StringValue(value));
    }
    // The values of the emulator and the plug-in.
    Texts Both() { return {*StringOf(kEmulator, "v"), *StringOf(kPlugin, "v")}; }
    Texts Files() { return files->List(folder).value(); }
    std::optional<BorrowedBranch> ForRun() { return BorrowedBranch::ForRun(folder); }
    // A registry editor of which the run of this number, from 1, does something else.
    void EditorWith(int run, const std::string& instead) {
        const auto runs = InHome("runs");
        std::filesystem::remove(runs);
        environment.registry_editor =
            Script("editor", "echo >> " + runs + "\nif [ $(wc -l < " + runs +
                                 ") = " + std::to_string(run) + " ]; then\n" + instead +
                                 "\nfi\nexec " + BinaryFolder() + "/velto-regedit \"$@\"");
    }

    const std::string folder = environment.ConfigFolder();
};

TEST_F(BorrowedBranchTest, NothingIsBorrowedWithoutBackupsAndNoneThatIsNeededIsLost) {
    WriteFile(InHome("half"), Backup(kEmulator, "half"));
    const auto half = "cp " + InHome("half") + " \"$2\"; ";
    const auto main = Backup(kEmulator, "kept");
    const auto plugins = Backup(kPlugin, "kept");
    const auto no_lock =
        "Error: Unable to lock " + InConfig("main.bak") + ": Resource temporarily unavailable";
    const struct {
        const char* name;
        Texts told;  // if nothing is borrowed
        Texts left, values;
        int run;
        std::string instead, main{}, plugins{};  // the backups that are found
        int failing_step = 0;                    // of those on files
    } cases[] = {
        {"found", {}, {}, {"kept", "kept"}, 0, ":", main, plugins},
        {"cut", {kNoRestore}, {"main.bak"}, {"user's", "kept"}, 0, ":", "x", plugins},
        {"cut, too", {kNoRestore}, {"plugins.bak"}, {"kept", "user's"}, 0, ":", main, "x"},
        {"none made", {kNoMain}, {}, {"user's", "user's"}, 1, "exit 0"},
        {"a half", {kNoPlugins}, {}, {"user's", "user's"}, 2, half + "exit 1"},
        {"a crash", {kNoMain}, {}, {"user's", "user's"}, 1, half + "kill -9 $$"},
        {"no lock",
         {no_lock},
         {},
         {"user's", "user's"},
         1,
         half + "flock $2 sleep 1 & sleep 0.2; exit 0"},
        {"not merged", {}, {"main.bak"}, {"borrowed", "user's"}, 3, "exit 1"},
        {"nor those", {}, {"plugins.bak"}, {"user's", "borrowed"}, 4, "exit 1"},
        {"one that stays", {kNoRestore}, {"main.bak"}, {"kept", "user's"}, 0, ":", main, "", 1},
        {"emptied at least", {}, {"main.bak"}, {"user's", "user's"}, 0, ":", "", "", 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        SetBoth("user's");
        WriteFile(InConfig("main.bak"), c.main);
        WriteFile(InConfig("plugins.bak"), c.plugins);
        EditorWith(c.run, c.instead);
        {
            FailingFiles stepped(*files, c.failing_step, FailingFiles::At::Fail);
            const auto on_disk = With(stepped);
            const auto run = ForRun();
            EXPECT_EQ(run.has_value(), c.told.empty());
            if (run) SetBoth("borrowed");
        }
        EXPECT_EQ(Shown(boxes), c.told);
        EXPECT_EQ(Files(), c.left);
        EXPECT_EQ(Both(), c.values);
        EXPECT_FALSE(IsRunUnderWay(folder));
    }
    EXPECT_EQ(ReadFile(InConfig("main.bak")), "") << "or it would be merged again";
    for (const auto* file : {"main.bak", "plugins.bak"}) WriteFile(InConfig(file), "x");
    environment.registry_editor = InHome("missing");
    EXPECT_FALSE(ForRun());
    EXPECT_THAT(Shown(boxes), ElementsAre(kNoRestore)) << "once";
}

TEST_F(BorrowedBranchTest, OneAtATimeHasARegistryOrAFolder) {
    std::filesystem::create_directories(InHome("other/config"));
    EXPECT_TRUE(ForRun()) << "there is nothing to save yet";
    EXPECT_TRUE(BorrowedBranch::ForPlugins(folder));
    auto run = ForRun();
    ASSERT_TRUE(run);
    SetBoth("borrowed");
    EXPECT_FALSE(ForRun());
    EXPECT_FALSE(BorrowedBranch::ForPlugins(folder));
    EXPECT_TRUE(IsRunUnderWay(InHome("other/config")));
    environment.home = InHome("other");
    EXPECT_TRUE(IsRunUnderWay(folder));
    EXPECT_FALSE(IsRunUnderWay(InHome("other/config"))) << "for a registry of its own";
    environment.home = home_folder.path();

    std::filesystem::remove(InConfig("main.bak"));
    WriteFile(InConfig("main.bak"), Backup(kEmulator, "another's"));
    run->GiveBack();
    EXPECT_THAT(Both(), ElementsAre("borrowed", "borrowed")) << "others take care of it";
    EXPECT_THAT(Files(), testing::UnorderedElementsAre("main.bak", "plugins.bak"));
    EXPECT_THAT(boxes.shown, testing::IsEmpty());
}

TEST_F(BorrowedBranchTest, AChangeToPluginSettingsBorrowsTheirBranchAlone) {
    SetBoth("user's");
    WriteFile(InConfig("main.bak"), "of a run whose merge failed");
    auto branch = BorrowedBranch::ForPlugins(folder);
    ASSERT_TRUE(branch);
    EXPECT_EQ(processes.requests.at(0).parameters,
              "/E \"plugins.bak\" \"HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\"");
    SetBoth("borrowed");
    branch->GiveBack();
    EXPECT_THAT(Both(), ElementsAre("borrowed", "user's"));
    EXPECT_THAT(Files(), ElementsAre("main.bak"));
}

TEST_F(BorrowedBranchTest, AnEditorThatHangsIsEndedIfTheUserMeansIt) {
    EditorWith(1, "exec sleep 60");
    waiting.stop_at = 1;
    boxes.answers = {platform::BoxAnswer::Yes};
    EXPECT_FALSE(ForRun());
    EXPECT_TRUE(waiting.begun.at(0).can_stop);
    EXPECT_THAT(waiting.begun[0].what, testing::HasSubstr(environment.registry_editor));
    ASSERT_EQ(boxes.shown.size(), 2U);
    EXPECT_EQ("Error: " + boxes.shown[1].text, kNoMain);
    EXPECT_THAT(Files(), testing::IsEmpty());

    EditorWith(1, "sleep 0.2");
    waiting.stop_at = 1;
    EXPECT_TRUE(ForRun());
    EXPECT_EQ(boxes.shown.size(), 3U) << "answered No";
}

}  // namespace
}  // namespace velto::test
