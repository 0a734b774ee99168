#include <sys/stat.h>

#include <filesystem>

#include <gmock/gmock.h>

#include "platform/file_search.h"
#include "platform/replace_file.h"
#include "platform/stored_path.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

namespace fs = std::filesystem;

using namespace std::string_literals;
using platform::ErrorKind;
using platform::ReplaceFile;
using namespace testing;

class FilesTest : public HomeTest {
  protected:
    std::vector<std::string> Names() const { return files->List(folder).value(); }

    const std::string folder = environment.ConfigFolder();
    const std::string target = InConfig("Game.dta");
};

TEST_F(FilesTest, ASearchFindsFilesAloneInAnyCaseAndTheExactSpellingFirst) {
    for (const auto* name :
         {"game.dta", "Game.dta", "ZELDA.DTA", "*.dta", "back\\slash.dta", "../outside.dta"}) {
        WriteFile(InConfig(name), "");
    }
    fs::create_directory(InConfig("folder.dta"));
    fs::create_symlink(InHome("outside.dta"), InConfig("link.dta"));
    fs::create_symlink(InHome("nowhere"), InConfig("dangling.dta"));
    const std::pair<std::string, std::string> cases[] = {
        {"game.dta", "game.dta"},   {"GAME.DTA", "Game.dta"},  // bytes decide between equals
        {"zelda.dta", "ZELDA.DTA"}, {"LINK.dta", "link.dta"}, {"?ame.dta", ""},
        {"FOLDER.dta", ""},         {"../outside.dta", ""},   {InHome("outside.dta"), ""},
        {"back\\slash.dta", ""},    {"game.dta\0x"s, ""},     {"..", ""},
    };
    for (const auto& [name, found] : cases) {
        EXPECT_EQ(platform::FindFile(folder, name).value_or(""), found) << name;
    }
    EXPECT_THAT(
        platform::FindFilesEndingIn(folder, ".dta"),
        ElementsAre("*.dta", "back\\slash.dta", "Game.dta", "game.dta", "link.dta", "ZELDA.DTA"));
}

TEST_F(FilesTest, AStoredPathIsCutAtItsSeparatorAndOpenedThroughTheDriveTable) {
    WriteFile(InHome("drive_c/emu/ePSXe.EXE"), "");
    WriteFile(InHome("games/Disc One.bin"), "");
    fs::create_directory(InHome("drives"));
    fs::create_symlink(InHome("games"), InHome("drives/g:"));
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"c:\\EMU\\epsxe.exe", "c:\\EMU\\", InHome("drive_c/emu/ePSXe.EXE")},
        {"C:/emu/ePSXe.EXE", "C:/emu/", InHome("drive_c/emu/ePSXe.EXE")},
        {"C:/emu\\cards\\New.mcr", "C:/emu\\cards\\", InHome("drive_c/emu/cards/New.mcr")},
        {"G:\\disc one.BIN", "G:\\", InHome("drives/g:/Disc One.bin")},
        {"z:" + InHome("games/x"), "z:" + InHome("games/"), InHome("games/x")},
        {"A:\\x", "A:\\", InHome("drives/a:/x")},
        {InHome("GAMES/disc one.bin"), InHome("GAMES/"), InHome("games/Disc One.bin")},
        {"/with\\backslash", "/", "/with\\backslash"},
        {"", "", ""},
    };
    for (const auto& [stored, cut, host] : cases) {
        EXPECT_EQ(platform::StoredFolder(stored), cut);
        EXPECT_EQ(platform::HostPath(stored), host) << stored;
    }
}

platform::Environment ReadWith(const Variables::List& list) {
    const Variables variables(list);
    return platform::ReadEnvironment(*platform::MakeFileService());
}

TEST(Environment, MakesEveryPathAbsoluteAndHandsItOnInThatForm) {
    const TemporaryFolder here;
    WriteFile(here / "bin/editor", "");
    fs::permissions(here / "bin/editor", fs::perms::owner_all);
    const auto before = fs::current_path();
    fs::current_path(here.path());
    const auto environment = ReadWith({{"VELTO_HOME", "./data/"},
                                       {"VELTO_DRIVES", "./letters"},
                                       {"VELTO_REGEDIT", "editor"},
                                       {"VELTO_RUNNER", "no-such-runner"},
                                       {"PATH", ":/nowhere:bin"}});
    EXPECT_EQ(environment.home, here / "data");
    EXPECT_EQ(environment.drives, here / "letters");
    EXPECT_EQ(environment.registry_editor, here / "bin/editor");
    EXPECT_EQ(environment.runner, "no-such-runner") << "to be a failure when it is started";
    EXPECT_THAT(
        environment.child_variables,
        ElementsAre(Pair("VELTO_HOME", environment.home), Pair("VELTO_DRIVES", environment.drives),
                    Pair("VELTO_RUNNER", environment.runner),
                    Pair("VELTO_REGEDIT", environment.registry_editor)));
    EXPECT_EQ(environment.start_folder, here / "data");
    fs::create_directory(here / "config");
    const auto other = ReadWith({{"VELTO_HOME", "link/../data"}});
    EXPECT_EQ(other.home, here / "link/../data") << "what lies behind a link isn't known";
    EXPECT_EQ(other.start_folder, here.path());
    EXPECT_EQ(ReadWith({{"VELTO_HOME", ""}, {"XDG_DATA_HOME", here.path()}}).home, here / "velto");
    EXPECT_EQ(ReadWith({{"VELTO_HOME", ""}, {"XDG_DATA_HOME", "x"}, {"HOME", here.path()}}).home,
              here / ".local/share/velto");
    fs::current_path(before);
}

TEST_F(FilesTest, AReplacementFollowsALinkAndKeepsThePermissionBits) {
    const auto real = InConfig("elsewhere/Game.dta");
    WriteFile(real, "old");
    ASSERT_EQ(chmod(real.c_str(), 0604), 0);
    fs::create_symlink(real, target);
    ASSERT_TRUE(ReplaceFile(*files, target, "new").ok());
    EXPECT_TRUE(fs::is_symlink(target));
    EXPECT_EQ(ReadFile(real), "new");
    EXPECT_EQ(files->Info(real).value().mode, 0604U);
}

TEST_F(FilesTest, AReplacementRefusesWhatMustNotBeReplaced) {
    WriteFile(target, "old");
    ASSERT_EQ(chmod(target.c_str(), 0444), 0);
    fs::create_symlink(InConfig("unmounted/Game.dta"), InConfig("link.dta"));
    ASSERT_EQ(mkfifo((InConfig("pipe.dta")).c_str(), 0600), 0);
    const std::pair<std::string, ErrorKind> cases[] = {
        {target, ErrorKind::Denied},
        {InConfig("link.dta"), ErrorKind::Unsuitable},
        {InConfig("pipe.dta"), ErrorKind::Unsuitable},
        {folder, ErrorKind::Unsuitable},
        {InConfig("no/Game.dta"), ErrorKind::NotFound},
    };
    const auto before = Names();
    for (const auto& [path, kind] : cases) {
        EXPECT_EQ(ReplaceFile(*files, path, "new").error().kind, kind) << path;
    }
    EXPECT_EQ(ReadFile(target), "old");
    EXPECT_TRUE(fs::is_symlink(InConfig("link.dta")));
    EXPECT_EQ(Names(), before);
    EXPECT_EQ(files->Open("/dev/null").error().kind, ErrorKind::Unsuitable);
    EXPECT_EQ(files->OpenLog("/dev/null", false).error().kind, ErrorKind::Unsuitable);
}

TEST_F(FilesTest, ASweepLeavesTheTemporariesOfLivingProcessesAndTheUsersFiles) {
    std::vector<std::string> kept = {
        "velto-x-0.new", "velto-12-.new",         "velto-.new",
        "velto-0-0.new", "velto-999999999-0.dta", "other-999999999-0.new"};
    kept.push_back("velto-" + std::to_string(getpid()) + "-0.new");
    for (const auto& name : kept) WriteFile(InConfig(name), "");
    WriteFile(InConfig("velto-999999999-0.new"), "");
    platform::SweepTemporaries(*files, folder);
    EXPECT_THAT(Names(), testing::UnorderedElementsAreArray(kept));
}

}  // namespace
}  // namespace velto::test
