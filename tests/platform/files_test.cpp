#include <sys/stat.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/file_search.h"
#include "platform/line_ends.h"
#include "platform/stored_path.h"
#include "support/home_test.h"
#include "support/variables.h"

namespace velto::test {
namespace {

namespace fs = std::filesystem;

using namespace std::string_literals;
using testing::ElementsAre;
using testing::Pair;

TEST(DiskText, OnlyCrLfBecomesALineEndAndOnlyLfBecomesCrLf) {
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"a\r\nb\r\n", "a\nb\n", "a\r\nb\r\n"},
        {"lone\nfeed", "lone\nfeed", "lone\r\nfeed"},
        {"lone\rreturn\r", "lone\rreturn\r", "lone\rreturn\r"},
        {"two\r\r\n", "two\r\n", "two\r\r\n"},
        {"nul\0 and \x1A end"s, "nul\0 and \x1A end"s, "nul\0 and \x1A end"s},
    };
    for (const auto& [disk, memory, written] : cases) {
        EXPECT_EQ(platform::FromDiskText(disk), memory);
        EXPECT_EQ(platform::ToDiskText(memory), written);
    }
}

class SearchTest : public HomeTest {
  protected:
    // Empty if nothing is found.
    std::string Find(std::string_view name) {
        return platform::FindFile(environment.ConfigFolder(), name).value_or("");
    }
    std::vector<std::string> FindAll() {
        return platform::FindFilesEndingIn(environment.ConfigFolder(), ".dta");
    }
};

TEST_F(SearchTest, FindsTheExactSpellingFirstElseTheFirstInOrder) {
    for (const auto* name : {"game.dta", "Game.dta", "ZELDA.DTA", "*.dta", "b[1].dta"}) {
        WriteFile(InConfig(name), "");
    }
    EXPECT_EQ(Find("game.dta"), "game.dta");
    EXPECT_EQ(Find("GAME.DTA"), "Game.dta") << "bytes decide between equals";
    EXPECT_EQ(Find("zelda.dta"), "ZELDA.DTA");
    EXPECT_EQ(Find("*.dta"), "*.dta");
    EXPECT_EQ(Find("?ame.dta"), "");
    EXPECT_THAT(FindAll(), ElementsAre("*.dta", "b[1].dta", "Game.dta", "game.dta", "ZELDA.DTA"));
}

TEST_F(SearchTest, FindsOnlyRegularFilesAndLinksToThem) {
    fs::create_directory(InConfig("folder.dta"));
    ASSERT_EQ(mkfifo(InConfig("pipe.dta").c_str(), 0600), 0);
    WriteFile(InHome("real"), "");
    fs::create_symlink(InHome("real"), InConfig("link.dta"));
    fs::create_symlink(InHome("nowhere"), InConfig("dangling.dta"));
    EXPECT_THAT(FindAll(), ElementsAre("link.dta"));
    EXPECT_EQ(Find("pipe.dta") + Find("FOLDER.dta"), "");
}

TEST_F(SearchTest, ANameWithASeparatorIsNoNameWhateverTheDiskHolds) {
    WriteFile(InHome("outside.dta"), "");
    WriteFile(InConfig("back\\slash.dta"), "");
    for (const auto& name : {"../outside.dta"s, "back\\slash.dta"s, "a\0b.dta"s, ""s, ".."s,
                             InHome("outside.dta"), std::string(300, 'x')}) {
        EXPECT_EQ(Find(name), "") << name;
    }
}

TEST_F(SearchTest, HostPathGoesThroughTheDriveTableAndLooksUpSpellings) {
    WriteFile(InHome("drive_c/emu/ePSXe.EXE"), "");
    WriteFile(InHome("games/Disc One.bin"), "");
    fs::create_directory(InHome("drives"));
    fs::create_symlink(InHome("games"), InHome("drives/g:"));
    const std::pair<std::string, std::string> cases[] = {
        {"c:\\EMU\\epsxe.exe", InHome("drive_c/emu/ePSXe.EXE")},
        {"C:/emu/ePSXe.EXE", InHome("drive_c/emu/ePSXe.EXE")},
        {"C:\\emu\\memcards\\New.mcr", InHome("drive_c/emu/memcards/New.mcr")},
        {"G:\\disc one.BIN", InHome("drives/g:/Disc One.bin")},
        {"z:" + InHome("games/Disc One.bin"), InHome("games/Disc One.bin")},
        {"q:\\x", InHome("drives/q:/x")},
        {InHome("GAMES/disc one.bin"), InHome("games/Disc One.bin")},
        {"/with\\backslash", "/with\\backslash"},
        {"", ""},
    };
    for (const auto& [stored, host] : cases) EXPECT_EQ(platform::HostPath(stored), host) << stored;
}

TEST(StoredPath, IsCutAtItsOwnSeparator) {
    const std::pair<std::string, std::string> cases[] = {
        {"C:\\emu\\ePSXe.EXE", "C:\\emu\\"},
        {"/home/u\\x/e", "/home/u\\x/"},
        {"C:/emu/e.exe", "C:/emu/"},
        {"C:/emu\\e.exe", "C:/emu\\"},
        {"e.exe", ""},
    };
    for (const auto& [stored, folder] : cases) EXPECT_EQ(platform::StoredFolder(stored), folder);
}

// What is read with these variables alone and from the given folder.
platform::Environment ReadWith(Variables::List list, const std::string& folder) {
    for (const auto* name :
         {"VELTO_HOME", "VELTO_DRIVES", "VELTO_RUNNER", "VELTO_REGEDIT", "XDG_DATA_HOME"}) {
        list.insert(list.begin(), {name, ""});
    }
    const Variables variables(std::move(list));
    const auto before = fs::current_path();
    fs::current_path(folder);
    auto environment = platform::ReadEnvironment(*platform::MakeFileService());
    fs::current_path(before);
    return environment;
}

TEST(Environment, MakesEveryPathAbsoluteAndHandsItOnInThatForm) {
    const TemporaryFolder here;
    WriteFile(here / "bin/editor", "");
    fs::permissions(here / "bin/editor", fs::perms::owner_all);
    const auto environment = ReadWith({{"VELTO_HOME", "./data/"},
                                       {"VELTO_DRIVES", "./letters"},
                                       {"VELTO_REGEDIT", "editor"},
                                       {"VELTO_RUNNER", "no-such-runner"},
                                       {"PATH", ":/nowhere:bin"}},
                                      here.path());
    EXPECT_EQ(environment.home, here / "data");
    EXPECT_EQ(environment.drives, here / "letters");
    EXPECT_EQ(environment.registry_editor, here / "bin/editor");
    EXPECT_EQ(environment.runner, "no-such-runner") << "to be a failure when it is started";
    EXPECT_THAT(
        environment.child_variables,
        ElementsAre(Pair("VELTO_HOME", environment.home), Pair("VELTO_DRIVES", environment.drives),
                    Pair("VELTO_RUNNER", environment.runner),
                    Pair("VELTO_REGEDIT", environment.registry_editor)));
    EXPECT_EQ(ReadWith({{"VELTO_HOME", "link/../data"}}, here.path()).home, here / "link/../data")
        << "what lies behind a link isn't known by its name";
}

TEST(Environment, StartsInTheCurrentFolderOnlyIfThatHoldsConfigurations) {
    const TemporaryFolder here;
    const auto start_folder = [&] {
        return ReadWith({{"VELTO_HOME", here / "data"}}, here.path()).start_folder;
    };
    WriteFile(here / "config", "a file is no folder");
    EXPECT_EQ(start_folder(), here / "data");
    fs::remove(here / "config");
    fs::create_directory(here / "config");
    EXPECT_EQ(start_folder(), here.path());
}

TEST(Environment, FindsTheDataFolderOfTheDesktop) {
    const TemporaryFolder here;
    EXPECT_EQ(ReadWith({{"XDG_DATA_HOME", here.path()}}, "/").home, here / "velto");
    EXPECT_EQ(ReadWith({{"XDG_DATA_HOME", "relative"}, {"HOME", here.path()}}, "/").home,
              here / ".local/share/velto");
}

}  // namespace
}  // namespace velto::test
