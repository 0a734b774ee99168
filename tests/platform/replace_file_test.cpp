#include "platform/replace_file.h"

#include <sys/stat.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/failing_files.h"
#include "support/forked_child.h"
#include "support/temporary_folder.h"

namespace velto::test {
namespace {

using platform::ErrorKind;
using platform::ReplaceFile;
using testing::AnyOf;
using testing::ElementsAre;

std::string Temporary(pid_t owner, int number) {
    return "velto-" + std::to_string(owner) + "-" + std::to_string(number) + ".new";
}

class ReplaceFileTest : public ::testing::Test {
  protected:
    std::vector<std::string> Names() const { return files->List(folder.path()).value(); }

    TemporaryFolder folder;
    std::unique_ptr<platform::FileService> files = platform::MakeFileService();
    std::string target = folder / "Game.dta";
};

TEST_F(ReplaceFileTest, AFailureOfAnyStepLeavesTheOldFileOrTheNewOneAndNothingElse) {
    constexpr int kSteps = 5;  // create, write, flush, rename, flush the folder
    for (int step = 1; step <= kSteps; ++step) {
        SCOPED_TRACE(step);
        WriteFile(target, "old");
        FailingFiles failing(*files, step, FailingFiles::At::Fail);
        const auto replaced = ReplaceFile(failing, target, "new content");
        ASSERT_FALSE(replaced.ok());
        EXPECT_EQ(replaced.error().kind, ErrorKind::Full);
        EXPECT_EQ(ReadFile(target), step == kSteps ? "new content" : "old");
        EXPECT_THAT(Names(), ElementsAre("Game.dta"));
    }
}

TEST_F(ReplaceFileTest, AProcessKilledAtAnyStepLeavesAWholeFileAndASweepRemovesTheRest) {
    for (int step = 1; step <= 5; ++step) {
        SCOPED_TRACE(step);
        WriteFile(target, "old");
        ForkedChild child([&](const auto&) {
            FailingFiles killing(*files, step, FailingFiles::At::Kill);
            std::ignore = ReplaceFile(killing, target, "new content");
            return 1;
        });
        ASSERT_EQ(child.Wait(), 0) << "it never reached the step";
        EXPECT_THAT(ReadFile(target), AnyOf("old", "new content"));
        platform::SweepTemporaries(*files, folder.path());
        EXPECT_THAT(Names(), ElementsAre("Game.dta"));
    }
}

TEST_F(ReplaceFileTest, FollowsALinkAndKeepsThePermissionBits) {
    const auto real = folder / "elsewhere/Game.dta";
    WriteFile(real, "old");
    ASSERT_EQ(chmod(real.c_str(), 0604), 0);
    std::filesystem::create_symlink(real, target);
    ASSERT_TRUE(ReplaceFile(*files, target, "new").ok());
    EXPECT_TRUE(std::filesystem::is_symlink(target));
    EXPECT_EQ(ReadFile(real), "new");
    EXPECT_EQ(files->Info(real).value().mode, 0604U);
}

TEST_F(ReplaceFileTest, RefusesWhatMustNotBeReplaced) {
    WriteFile(target, "old");
    ASSERT_EQ(chmod(target.c_str(), 0444), 0);
    std::filesystem::create_symlink(folder / "unmounted/Game.dta", folder / "link.dta");
    ASSERT_EQ(mkfifo((folder / "pipe.dta").c_str(), 0600), 0);
    const std::pair<std::string, ErrorKind> cases[] = {
        {target, ErrorKind::Denied},
        {folder / "link.dta", ErrorKind::Unsuitable},
        {folder / "pipe.dta", ErrorKind::Unsuitable},
        {folder.path(), ErrorKind::Unsuitable},
        {folder / "no/Game.dta", ErrorKind::NotFound},
    };
    const auto before = Names();
    for (const auto& [path, kind] : cases) {
        EXPECT_EQ(ReplaceFile(*files, path, "new").error().kind, kind) << path;
    }
    EXPECT_EQ(ReadFile(target), "old");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.dta"));
    EXPECT_EQ(Names(), before);
}

TEST_F(ReplaceFileTest, WorksBesideTheLeftoversOfAProcessOfTheSameNumber) {
    for (int n = 0; n < 50; ++n) WriteFile(folder / Temporary(getpid(), n), "");
    EXPECT_TRUE(ReplaceFile(*files, target, "new").ok());
    EXPECT_EQ(ReadFile(target), "new");
}

TEST_F(ReplaceFileTest, ANewFileHasThePermissionsOfTheUsersUmask) {
    const mode_t before = umask(077);
    const auto replaced = ReplaceFile(*files, target, "private");
    umask(before);
    ASSERT_TRUE(replaced.ok());
    EXPECT_EQ(files->Info(target).value().mode, 0600U);
}

TEST_F(ReplaceFileTest, ASweepLeavesTheTemporariesOfLivingProcessesAndTheUsersFiles) {
    constexpr pid_t kGone = 999'999'999;
    const std::vector<std::string> kept = {Temporary(getpid(), 0), "velto-x-0.new",
                                           "velto-12-.new",        "velto-.new",
                                           Temporary(0, 0),        Temporary(kGone, 0) + ".dta"};
    for (const auto& name : kept) WriteFile(folder / name, "");
    WriteFile(folder / Temporary(kGone, 0), "");
    platform::SweepTemporaries(*files, folder.path());
    EXPECT_THAT(Names(), testing::UnorderedElementsAreArray(kept));
}

}  // namespace
}  // namespace velto::test
