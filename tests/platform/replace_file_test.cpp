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
using testing::ElementsAre;

class ReplaceFileTest : public ::testing::Test {
  protected:
    std::vector<std::string> Names() const { return files->List(folder.path()).value(); }

    TemporaryFolder folder;
    std::unique_ptr<platform::FileService> files = platform::MakeFileService();
    std::string target = folder / "Game.dta";
};

TEST_F(ReplaceFileTest, AFailureOrADeathAtAnyStepLeavesAWholeFile) {
    constexpr int kSteps = 5;  // create, write, flush, rename, flush the folder
    for (int step = 1; step <= kSteps; ++step) {
        SCOPED_TRACE(step);
        const auto* const whole = step == kSteps ? "new content" : "old";
        WriteFile(target, "old");
        FailingFiles failing(*files, step, FailingFiles::At::Fail);
        const auto replaced = ReplaceFile(failing, target, "new content");
        ASSERT_FALSE(replaced.ok());
        EXPECT_EQ(replaced.error().kind, ErrorKind::Full);
        EXPECT_EQ(ReadFile(target), whole);
        EXPECT_THAT(Names(), ElementsAre("Game.dta"));

        WriteFile(target, "old");
        ForkedChild child([&](const auto&) {
            FailingFiles killing(*files, step, FailingFiles::At::Kill);
            std::ignore = ReplaceFile(killing, target, "new content");
            return 1;
        });
        ASSERT_EQ(child.Wait(), 0) << "it never reached the step";
        EXPECT_EQ(ReadFile(target), whole);
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
    EXPECT_EQ(files->Open("/dev/null").error().kind, ErrorKind::Unsuitable);
    EXPECT_EQ(files->OpenLog("/dev/null", false).error().kind, ErrorKind::Unsuitable);
}

TEST_F(ReplaceFileTest, ASweepLeavesTheTemporariesOfLivingProcessesAndTheUsersFiles) {
    const std::vector<std::string> kept = {"velto-" + std::to_string(getpid()) + "-0.new",
                                           "velto-x-0.new",
                                           "velto-12-.new",
                                           "velto-.new",
                                           "velto-0-0.new",
                                           "velto-999999999-0.new.dta"};
    for (const auto& name : kept) WriteFile(folder / name, "");
    WriteFile(folder / "velto-999999999-0.new", "");
    platform::SweepTemporaries(*files, folder.path());
    EXPECT_THAT(Names(), testing::UnorderedElementsAreArray(kept));
}

}  // namespace
}  // namespace velto::test
