#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/file_search.h"
#include "platform/host.h"
#include "platform/stored_path.h"
#include "platform/text.h"
#include "support/home_test.h"
#include "support/temporary_folder.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::Optional;

TEST(DiskText, OnlyCrLfBecomesALineEndAndOnlyLfBecomesCrLf) {
    struct Case {
        std::string disk;
        std::string memory;
        std::string written;
    };
    const Case cases[] = {
        {"a\r\nb\r\n", "a\nb\n", "a\r\nb\r\n"},
        {"lone\nfeed", "lone\nfeed", "lone\r\nfeed"},
        {"lone\rreturn\r", "lone\rreturn\r", "lone\rreturn\r"},
        {"two\r\r\n", "two\r\n", "two\r\r\n"},
        {"nul\0 and \x1A end"s, "nul\0 and \x1A end"s, "nul\0 and \x1A end"s},
        {"", "", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(platform::FromDiskText(c.disk), c.memory);
        EXPECT_EQ(platform::ToDiskText(c.memory), c.written);
    }
}

class SearchTest : public HomeTest {
  protected:
    std::optional<std::string> Find(std::string_view name) {
        return platform::FindFile(*files, environment.ConfigFolder(), name);
    }
};

TEST_F(SearchTest, FindsTheExactSpellingFirstElseTheFirstInOrder) {
    for (const auto* name : {"game.dta", "Game.dta", "ZELDA.DTA", "*.dta", "b[1].dta"}) {
        WriteFile(InConfig(name), "");
    }
    EXPECT_THAT(Find("game.dta"), Optional("game.dta"s));
    EXPECT_THAT(Find("Game.dta"), Optional("Game.dta"s));
    EXPECT_THAT(Find("GAME.DTA"), Optional("Game.dta"s)) << "bytes decide between equals";
    EXPECT_THAT(Find("zelda.dta"), Optional("ZELDA.DTA"s));
    EXPECT_THAT(Find("*.dta"), Optional("*.dta"s));
    EXPECT_EQ(Find("?ame.dta"), std::nullopt);
    EXPECT_THAT(platform::FindFilesEndingIn(*files, environment.ConfigFolder(), ".dta"),
                ElementsAre("*.dta", "b[1].dta", "Game.dta", "game.dta", "ZELDA.DTA"));
}

TEST_F(SearchTest, FindsOnlyRegularFilesAndLinksToThem) {
    std::filesystem::create_directory(InConfig("folder.dta"));
    ASSERT_EQ(mkfifo(InConfig("pipe.dta").c_str(), 0600), 0);
    WriteFile(InHome("real"), "");
    std::filesystem::create_symlink(InHome("real"), InConfig("link.dta"));
    std::filesystem::create_symlink(InHome("nowhere"), InConfig("dangling.dta"));
    EXPECT_THAT(platform::FindFilesEndingIn(*files, environment.ConfigFolder(), ".dta"),
                ElementsAre("link.dta"));
    EXPECT_EQ(Find("pipe.dta"), std::nullopt);
    EXPECT_EQ(Find("folder.dta"), std::nullopt);
}

TEST_F(SearchTest, ANameWithASeparatorIsNoNameWhateverTheDiskHolds) {
    WriteFile(InHome("outside.dta"), "");
    WriteFile(InConfig("back\\slash.dta"), "");
    for (const auto& name : {"../outside.dta"s, "back\\slash.dta"s, "a\0b.dta"s, ""s, ".."s,
                             InHome("outside.dta"), std::string(300, 'x')}) {
        EXPECT_EQ(Find(name), std::nullopt) << name;
    }
}

TEST_F(SearchTest, HostPathGoesThroughTheDriveTableAndLooksUpSpellings) {
    WriteFile(InHome("drive_c/emu/ePSXe.EXE"), "");
    WriteFile(InHome("games/Disc One.bin"), "");
    std::filesystem::create_directory(InHome("drives"));
    std::filesystem::create_symlink(InHome("games"), InHome("drives/g:"));
    struct Case {
        std::string stored;
        std::string host;
    };
    const Case cases[] = {
        {"C:\\emu\\ePSXe.EXE", InHome("drive_c/emu/ePSXe.EXE")},
        {"c:\\EMU\\epsxe.exe", InHome("drive_c/emu/ePSXe.EXE")},
        {"C:/emu/epsxe.exe", InHome("drive_c/emu/ePSXe.EXE")},
        {"C:\\emu\\memcards\\New.mcr", InHome("drive_c/emu/memcards/New.mcr")},
        {"G:\\disc one.BIN", InHome("drives/g:/Disc One.bin")},
        {"z:" + InHome("games/Disc One.bin"), InHome("games/Disc One.bin")},
        {"q:\\x", InHome("drives/q:/x")},
        {InHome("GAMES/disc one.bin"), InHome("games/Disc One.bin")},
        {"/with\\backslash", "/with\\backslash"},
        {"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(platform::HostPath(c.stored), c.host) << c.stored;
}

TEST(StoredPath, IsCutAtItsOwnSeparator) {
    struct Case {
        std::string stored;
        std::string folder;
    };
    const Case cases[] = {
        {"C:\\emu\\ePSXe.EXE", "C:\\emu\\"},
        {"/home/u/emu/ePSXe", "/home/u/emu/"},
        {"/home/u\\x/e", "/home/u\\x/"},
        {"C:/emu/e.exe", "C:/emu/"},
        {"C:/emu\\e.exe", "C:/emu\\"},
        {"e.exe", ""},
        {"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(platform::StoredFolder(c.stored), c.folder) << c.stored;
}

// Reads the environment with the given variables set and from the given folder.
platform::Environment ReadWith(const std::vector<std::pair<const char*, std::string>>& variables,
                               const std::string& folder) {
    for (const auto* name :
         {"VELTO_HOME", "VELTO_DRIVES", "VELTO_RUNNER", "VELTO_REGEDIT", "XDG_DATA_HOME"}) {
        unsetenv(name);
    }
    for (const auto& [name, value] : variables) setenv(name, value.c_str(), 1);
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    const auto files = platform::MakeFileService();
    auto environment = platform::ReadEnvironment(*files);
    std::filesystem::current_path(before);
    return environment;
}

TEST(Environment, MakesEveryPathAbsoluteAndHandsItOnInThatForm) {
    const TemporaryFolder here;
    WriteFile(here / "bin/editor", "");
    std::filesystem::permissions(here / "bin/editor", std::filesystem::perms::owner_all);
    const auto environment = ReadWith({{"VELTO_HOME", "./data/"},
                                       {"VELTO_DRIVES", "./letters"},
                                       {"VELTO_REGEDIT", "editor"},
                                       {"VELTO_RUNNER", "no-such-runner"},
                                       {"PATH", ":/nowhere:bin"}},
                                      here.path());
    EXPECT_EQ(environment.home, here / "data");
    EXPECT_EQ(environment.drives, here / "letters");
    EXPECT_EQ(environment.registry_editor, here / "bin/editor");
    EXPECT_EQ(ReadWith({{"VELTO_HOME", "link/../data"}}, here.path()).home, here / "link/../data")
        << "what lies behind a link isn't known by its name";
    EXPECT_EQ(environment.runner, "no-such-runner") << "to be a failure when it is started";
    using Variable = std::pair<std::string, std::string>;
    EXPECT_THAT(environment.child_variables,
                ElementsAre(Variable("VELTO_HOME", here / "data"),
                            Variable("VELTO_DRIVES", here / "letters"),
                            Variable("VELTO_RUNNER", "no-such-runner"),
                            Variable("VELTO_REGEDIT", here / "bin/editor")));
}

TEST(Environment, StartsInTheCurrentFolderOnlyIfThatHoldsConfigurations) {
    const TemporaryFolder here;
    const auto data = here / "data";
    EXPECT_EQ(ReadWith({{"VELTO_HOME", data}}, here.path()).start_folder, data);
    WriteFile(here / "config", "a file is no folder");
    EXPECT_EQ(ReadWith({{"VELTO_HOME", data}}, here.path()).start_folder, data);
    std::filesystem::remove(here / "config");
    std::filesystem::create_directory(here / "config");
    EXPECT_EQ(ReadWith({{"VELTO_HOME", data}}, here.path()).start_folder, here.path());
}

TEST(Environment, FindsTheDataFolderOfTheDesktop) {
    const TemporaryFolder here;
    EXPECT_EQ(ReadWith({{"XDG_DATA_HOME", here.path()}}, "/").home, here / "velto");
    EXPECT_EQ(ReadWith({{"XDG_DATA_HOME", "relative"}, {"HOME", here.path()}}, "/").home,
              here / ".local/share/velto");
}

}  // namespace
}  // namespace velto::test
