#include "store/borrowed_branch.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/failing_files.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

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
    std::vector<std::string> Both() {
        return {StringOf(kEmulator, "v").value_or(""), StringOf(kPlugin, "v").value_or("")};
    }
    std::vector<std::string> Files() { return files->List(folder).value(); }
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

TEST_F(BorrowedBranchTest, ARunThatHoldsTheBackupIsLeftAlone) {
    EXPECT_TRUE(ForRun()) << "there is nothing to save yet";
    SetBoth("user's");
    auto run = ForRun();
    ASSERT_TRUE(run);
    EXPECT_THAT(Files(), UnorderedElementsAre("main.bak", "plugins.bak"));
    SetBoth("borrowed");
    EXPECT_FALSE(ForRun());
    EXPECT_FALSE(BorrowedBranch::ForPlugins(folder));
    EXPECT_TRUE(IsRunUnderWay(folder));
    EXPECT_THAT(Both(), ElementsAre("borrowed", "borrowed"));
    run.reset();
    EXPECT_THAT(Both(), ElementsAre("user's", "user's")) << "given back by the destructor";
    EXPECT_THAT(Files(), IsEmpty());
    EXPECT_FALSE(IsRunUnderWay(folder));
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(BorrowedBranchTest, WhatIsFoundIsMergedFirstOrNothingIsBorrowed) {
    const auto borrows = [&](const std::string& main, const std::string& plugins) {
        SetBoth("borrowed");
        WriteFile(InConfig("main.bak"), main);
        WriteFile(InConfig("plugins.bak"), plugins);
        return ForRun().has_value();
    };
    const auto main = Backup(kEmulator, "kept");
    const auto plugins = Backup(kPlugin, "kept");
    EXPECT_FALSE(borrows("cut short", plugins));
    EXPECT_THAT(Files(), ElementsAre("main.bak"));
    EXPECT_FALSE(borrows(main, "cut short"));
    EXPECT_THAT(Files(), ElementsAre("plugins.bak"));
    EXPECT_THAT(Shown(boxes), ElementsAre(kNoRestore, kNoRestore));
    EXPECT_TRUE(borrows(main, plugins));
    EXPECT_THAT(Both(), ElementsAre("kept", "kept"));
    environment.registry_editor = InHome("missing");
    EXPECT_FALSE(borrows("cut short", "cut short"));
    EXPECT_THAT(Shown(boxes), ElementsAre(kNoRestore)) << "once";
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

TEST_F(BorrowedBranchTest, WithoutABackupNothingIsBorrowedAndNoneIsLeft) {
    SetBoth("user's");
    WriteFile(InHome("half"), Backup(kEmulator, "half"));
    const auto half = "cp " + InHome("half") + " \"$2\"; ";
    for (const auto& instead : {"exit 0"s, "exit 1"s, half + "exit 1", half + "kill -9 $$"}) {
        for (const int run : {1, 2}) {
            EditorWith(run, instead);
            EXPECT_FALSE(ForRun()) << instead;
            EXPECT_THAT(Shown(boxes), ElementsAre(run == 1 ? kNoMain : kNoPlugins));
            EXPECT_THAT(Files(), IsEmpty());
            EXPECT_THAT(Both(), ElementsAre("user's", "user's"));
        }
    }
    EditorWith(1, half + "flock \"$2\" sleep 1 & sleep 0.2; exit 0");
    EXPECT_FALSE(ForRun());
    EXPECT_THAT(Shown(boxes), ElementsAre(testing::HasSubstr("Unable to lock ")));
    EXPECT_THAT(Files(), IsEmpty());
}

TEST_F(BorrowedBranchTest, ABackupWhoseMergeFailedIsKept) {
    for (const int failing : {3, 4}) {
        SetBoth("user's");
        EditorWith(failing, "exit 1");
        auto run = ForRun();
        ASSERT_TRUE(run);
        SetBoth("borrowed");
        run->GiveBack();
        EXPECT_THAT(Files(), ElementsAre(failing == 3 ? "main.bak" : "plugins.bak"));
        EXPECT_FALSE(IsRunUnderWay(folder));
        EXPECT_TRUE(ForRun());
        EXPECT_THAT(Both(), ElementsAre("user's", "user's"));
    }
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(BorrowedBranchTest, BackupsThatCannotBeDeletedAreMergedOnceAndStopTheNextRun) {
    // A folder that turns read-only during the run.
    class Undeletable : public FailingFiles {
      public:
        using FailingFiles::FailingFiles;
        platform::Status Remove(const std::string& path) override {
            return platform::Error{platform::ErrorKind::Denied, path, "Read-only file system"};
        }
    } undeletable(*files, 0, FailingFiles::At::Fail);
    {
        const auto read_only = With(undeletable);
        SetBoth("user's");
        EXPECT_TRUE(ForRun());
        SetBoth("changed since");
        EXPECT_FALSE(ForRun());
        EXPECT_THAT(Shown(boxes), ElementsAre(kNoRestore));
    }
    EXPECT_TRUE(ForRun());
    EXPECT_THAT(Both(), ElementsAre("changed since", "changed since"));
    EXPECT_THAT(Files(), IsEmpty());
}

TEST_F(BorrowedBranchTest, OnlyTheBackupThatWasMadeHereIsMerged) {
    auto run = ForRun();
    ASSERT_TRUE(run);
    SetBoth("borrowed");
    std::filesystem::remove(InConfig("main.bak"));
    WriteFile(InConfig("main.bak"), Backup(kEmulator, "another's"));
    run->GiveBack();
    EXPECT_THAT(Both(), ElementsAre("borrowed", "borrowed"));
    EXPECT_THAT(Files(), UnorderedElementsAre("main.bak", "plugins.bak"));
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
    EXPECT_THAT(Files(), IsEmpty());

    EditorWith(1, "sleep 0.2");
    waiting.stop_at = 1;
    EXPECT_TRUE(ForRun());
    EXPECT_EQ(boxes.shown.size(), 3U) << "answered No";
}

}  // namespace
}  // namespace velto::test
