#include "platform/replace_file.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/failing_files.h"
#include "support/temporary_folder.h"

namespace velto::test {
namespace {

using platform::ErrorKind;
using platform::ReplaceFile;
using testing::AnyOf;
using testing::ElementsAre;

class ReplaceFileTest : public ::testing::Test {
  protected:
    std::vector<std::string> Names() const { return files->List(folder.path()).value(); }

    TemporaryFolder folder;
    std::unique_ptr<platform::FileService> files = platform::MakeFileService();
    std::string target = folder / "Game.dta";
};

TEST_F(ReplaceFileTest, AFailureOfAnyStepLeavesTheOldFileOrTheNewOneAndNothingElse) {
    WriteFile(target, "old");
    FailingFiles counting(*files, 0, FailingFiles::At::Fail);
    ASSERT_TRUE(ReplaceFile(counting, target, "new content").ok());
    ASSERT_GE(counting.steps(), 5) << "create, write, flush, rename, flush the folder";

    for (int step = 1; step <= counting.steps(); ++step) {
        WriteFile(target, "old");
        FailingFiles failing(*files, step, FailingFiles::At::Fail);
        const auto replaced = ReplaceFile(failing, target, "new content");
        ASSERT_FALSE(replaced.ok()) << "step " << step;
        EXPECT_EQ(replaced.error().kind, ErrorKind::Full);
        const bool renamed = step == counting.steps();
        EXPECT_EQ(ReadFile(target), renamed ? "new content" : "old") << "step " << step;
        EXPECT_THAT(Names(), ElementsAre("Game.dta")) << "step " << step;
    }
}

TEST_F(ReplaceFileTest, AProcessKilledAtAnyStepLeavesAWholeFileAndASweepRemovesTheRest) {
    for (int step = 1; step <= 5; ++step) {
        WriteFile(target, "old");
        const pid_t child = fork();
        if (child == 0) {
            FailingFiles killing(*files, step, FailingFiles::At::Kill);
            std::ignore = ReplaceFile(killing, target, "new content");
            _exit(1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "never reached step " << step;
        EXPECT_THAT(ReadFile(target), AnyOf("old", "new content")) << "step " << step;
        platform::SweepTemporaries(*files, folder.path());
        EXPECT_THAT(Names(), ElementsAre("Game.dta")) << "step " << step;
    }
}

TEST_F(ReplaceFileTest, FollowsALinkAndKeepsThePermissionBits) {
    std::filesystem::create_directory(folder / "elsewhere");
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
    EXPECT_EQ(ReplaceFile(*files, target, "new").error().kind, ErrorKind::Denied);
    EXPECT_EQ(ReadFile(target), "old");

    std::filesystem::create_symlink(folder / "unmounted/Game.dta", folder / "link.dta");
    EXPECT_EQ(ReplaceFile(*files, folder / "link.dta", "new").error().kind, ErrorKind::Unsuitable);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.dta"));

    ASSERT_EQ(mkfifo((folder / "pipe.dta").c_str(), 0600), 0);
    EXPECT_EQ(ReplaceFile(*files, folder / "pipe.dta", "new").error().kind, ErrorKind::Unsuitable);
    EXPECT_EQ(ReplaceFile(*files, folder.path(), "new").error().kind, ErrorKind::Unsuitable);
    EXPECT_EQ(ReplaceFile(*files, folder / "no/Game.dta", "new").error().kind, ErrorKind::NotFound);
}

TEST_F(ReplaceFileTest, WorksBesideTheLeftoversOfAProcessOfTheSameNumber) {
    for (int n = 0; n < 50; ++n) {
        WriteFile(folder / ("velto-" + std::to_string(getpid()) + "-" + std::to_string(n) + ".new"),
                  "");
    }
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
    const auto living = "velto-" + std::to_string(getpid()) + "-0.new";
    const std::vector<std::string> kept = {living,          "velto-x-0.new",
                                           "velto-12-.new", "velto-.new",
                                           "velto-0-0.new", "velto-999999999-0.new.dta"};
    for (const auto& name : kept) WriteFile(folder / name, "");
    WriteFile(folder / "velto-999999999-0.new", "");
    platform::SweepTemporaries(*files, folder.path());
    EXPECT_THAT(Names(), testing::UnorderedElementsAreArray(kept));
}

}  // namespace
}  // namespace velto::test
