#include "launch/direct_run.h"

#include <sys/wait.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launch/emulator_values.h"
#include "store/option_table.h"
#include "store/velto_settings.h"
#include "support/config_text.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::Contains;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Optional;
using testing::Value;

using Texts = std::vector<std::string>;
using Keys = std::vector<Key>;

const std::string kPluginKey = "Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo";

// "name=text" of each value that a file of the current version gives the emulator; none if it is
// corrupted.
Texts ValuesOf(const Texts& options, const Keys& left_out = {}) {
    const auto config = ReadDirectConfig(CConfigFile(ConfigText("1.67.160", options, left_out)));
    if (!config) return {};
    Texts values;
    for (const auto& write : config->values) {
        values.push_back(write.name + "=" + write.value.data.c_str());
    }
    return values;
}

TEST(EmulatorValues, TranslateEachOptionIntoTheEmulatorsOwnText) {
    const std::pair<Texts, Texts> cases[] = {
        {{"padAxis = 1, x,,", "padType = 1,0", "keys1 = 203", "keys2 = 1", "keys3 = 2"},
         {"GamepadAxis=1, x,,", "GamepadType=1,0", "Keys1=203", "Keys2=1", "Keys3=2"}},
        {{"keys4 = 44", "motorType = 3", "bMotorType = 4", "sMotorType = 5"},
         {"Keys4=44", "GamepadMotorType=3", "GamepadBMotorType=4", "GamepadSMotorType=5"}},
        {{"bios = NULL", "memcard1 = C:\\a.mcr", "memcard2 = b.mcr", "gpuFileName = NULL"},
         {"BiosName=NULL", "Memcard1=C:\\a.mcr", "Memcard2=b.mcr", "VideoPlugin=NULL"}},
        {{"gpuFileName = gpu\xE9.dll", "spuFileName = s.dll", "cdrFileName = w2k"},
         {"VideoPlugin=GPU\xE9.DLL", "SoundPlugin=S.DLL", "CdromPlugin=W2K"}},
        {{"netFileName = NULL", "enablePPF = true"}, {"NetPlugin=DISABLED", "AutoPpfLoad=0"}},
        {{"netFileName = net.dll", "enablePPF = yes"}, {"NetPlugin=NET.DLL", "AutoPpfLoad=255"}},
        {{"driveLetter = 0", "region = Autodetect"}, {"CdromLetter=0", "Country=255"}},
        {{"driveLetter = D:", "region = NTSC"}, {"CdromLetter=68", "Country=0"}},
        {{"driveLetter = \xC4", "region = ntsc"}, {"CdromLetter=68", "Country=1"}},  // 196 & 127
        {{"enableCDDA = false", "enableXA = no", "enableSpuIRQ = true", "multiTap = true"},
         {"SoundCDDA=0", "SoundXA=1", "SoundSpuIrq=1", "Multitap1=1"}},
        {{"enableCDDA = FALSE", "enableXA = false", "enableSpuIRQ = TRUE", "multiTap = false"},
         {"SoundCDDA=1", "SoundXA=0", "SoundSpuIrq=0", "Multitap1=0"}},
        {{"storeSubChannel = true"},
         {"SubchannelW2kCaching=1", "SubchannelW9xCaching=1", "SubchannelW2kCachingLG=0",
          "SubchannelW9xCachingLG=0", "SubchannelW9xCdromEnabled=0"}},
        {{"storeSubChannelLG = true"}, {"SubchannelW2kCachingLG=1", "SubchannelW9xCachingLG=1"}},
        {{"readSubChannel = true"}, {"SubchannelW2kCdromEnabled=1", "SubchannelW9xCdromEnabled=1"}},
    };
    for (const auto& [options, expected] : cases) {
        const auto values = ValuesOf(options);
        EXPECT_EQ(values.size(), 29U);
        EXPECT_THAT(values, IsSupersetOf(expected));
    }
}

TEST(EmulatorValues, GiveTheImagePluginAndNoOtherItsImage) {
    EXPECT_THAT(ValuesOf({"cdrFileName = CdrMooby2.DLL", "imageFileName = C:\\a b.bin"}),
                Contains("autorun=C:\\a b.bin"));
    for (const auto* name : {"ISO", "cdrmooby.dll", "NULL"}) {
        EXPECT_EQ(ValuesOf({"cdrFileName = "s + name}).size(), 29U) << name;
    }
}

TEST(EmulatorArguments, AppendTheImageOfTheInternalDriver) {
    EXPECT_EQ(EmulatorArguments("NULL", false, "C:\\a.iso"), "");
    EXPECT_EQ(EmulatorArguments("-x", false, "C:\\a.iso"), "-x");
    EXPECT_EQ(WithoutGui(EmulatorArguments("NULL", true, "C:\\a b.iso")),
              " -nogui  -loadbin \"C:\\a b.iso\"");
}

// What each version's files don't have, and what stands in its place.
TEST(DirectConfig, TakesForKeysOfLaterVersionsWhatThatVersionMeant) {
    const auto zeros = "=0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0"s;
    const Texts no_pads34 = {"Keys3" + zeros, "Keys4" + zeros, "Multitap1=0"};
    Texts no_pads = {"Keys1=203,205,200,208,32,45,44,31,17,18,19,20,47,46,16,21",
                     "Keys2" + zeros,
                     "GamepadAxis" + zeros,
                     "GamepadType=0,0,0,0",
                     "GamepadMotorType=0,0,0,0",
                     "GamepadBMotorType=0,0,0,0",
                     "GamepadSMotorType=0,0,0,0"};
    no_pads.insert(no_pads.end(), no_pads34.begin(), no_pads34.end());
    const Keys pads34 = {Key::keys3, Key::keys4, Key::multiTap};
    const Keys pads34_image = {Key::keys3, Key::keys4, Key::multiTap, Key::imageFileName};
    const Keys all = {Key::keys1,      Key::keys2,    Key::keys3,        Key::keys4,
                      Key::padAxis,    Key::padType,  Key::motorType,    Key::bMotorType,
                      Key::sMotorType, Key::multiTap, Key::imageFileName};
    const Keys never = {Key::fileVersion, Key::fileGroup, Key::magicCFG, Key::psxIdExt, Key::psxid};
    // The last version of each step, and one that is none.
    const std::tuple<std::string, Keys, Texts> cases[] = {
        {"1.51.152", all, no_pads},      {"1.58.152", pads34_image, no_pads34},
        {"1.63.152", pads34, no_pads34}, {"1.67.160", {}, {}},
        {"1.60.152A", {}, {}},
    };
    for (const auto& [version, absent, expected] : cases) {
        SCOPED_TRACE(version);
        const auto of_version = "fileVersion = " + version;
        const auto values = ValuesOf({of_version, "multiTap = true", "padType = 9",
                                      "cdrFileName = cdrmooby2.dll", "imageFileName = i.bin"});
        EXPECT_THAT(values, IsSupersetOf(expected));
        const bool no_image = Value(absent, Contains(Key::imageFileName));
        EXPECT_THAT(values, Contains(no_image ? "autorun=NULL" : "autorun=i.bin"));

        for (const auto& row : OptionTable()) {
            const bool optional =
                Value(absent, Contains(row.key)) || Value(never, Contains(row.key));
            // Without its own line a shorter key finds that of a longer one.
            Keys left_out = {row.key};
            if (row.key == Key::storeSubChannel) left_out.push_back(Key::storeSubChannelLG);
            EXPECT_EQ(ValuesOf({of_version}, left_out).empty(), !optional) << row.name;
        }
    }
    EXPECT_THAT(ValuesOf({}, {Key::fileVersion}), IsEmpty());
}

class DirectRunTest : public HomeTest {
  protected:
    DirectRunTest() {
        WriteFile(InHome("drive_c/emu/ePSXe.EXE"), "#!/bin/sh\nexit 0\n");
        std::filesystem::permissions(InHome("drive_c/emu/ePSXe.EXE"),
                                     std::filesystem::perms::owner_all);
        CVeltoSettings().SetEmulatorPath("C:\\emu\\ePSXe.EXE");
    }
    // Nobody else waits for the emulators that were started.
    ~DirectRunTest() override {
        while (waitpid(-1, nullptr, 0) > 0) {
        }
    }

    void WriteConfig(const std::string& name, const Texts& options = {},
                     const Keys& left_out = {}) {
        WriteFile(InConfig(name + ".dta"),
                  ConfigText("1.67.160", options, left_out,
                             ";#//GPU plugins\r\n\r\n[HKEY_CURRENT_USER\\" + kPluginKey +
                                 "]\r\n\"path\"=\"C:\\new\\\"\r\n"));
    }
    // What the plug-in lines of these files write.
    void ExpectMerged(bool merged) {
        EXPECT_EQ(StringOf(kPluginKey, "path"),
                  merged ? std::optional("C:\\new\\"s) : std::nullopt);
    }
    void ExpectOneBox(const std::string& text, const std::string& caption,
                      platform::BoxIcon icon = platform::BoxIcon::Error) {
        ASSERT_EQ(boxes.shown.size(), 1U);
        EXPECT_EQ(boxes.shown[0].text, text);
        EXPECT_EQ(boxes.shown[0].caption, caption);
        EXPECT_EQ(boxes.shown[0].icon, icon);
        EXPECT_EQ(boxes.shown[0].buttons, platform::BoxButtons::Ok);
        boxes.shown.clear();
    }
};

TEST_F(DirectRunTest, MergesThePluginLinesWritesTheValuesAndStartsTheEmulator) {
    // An option line that ends in a backslash is only a comment.
    WriteConfig("A Game", {"commandLine = -x", "cdrFileName = iso",
                           "imageFileName = C:\\d \xE9.bin", "memcard1 = C:\\cards\\"});
    EXPECT_TRUE(RunDirect("A Game"));
    EXPECT_THAT(boxes.shown, IsEmpty());
    ExpectMerged(true);
    EXPECT_THAT(StringOf(kEmulatorConfigKey, "Memcard1"), Optional("C:\\cards\\"s));
    EXPECT_THAT(StringOf(kEmulatorConfigKey, "Multitap1"), Optional("0"s));
    ASSERT_EQ(processes.requests.size(), 2U) << "the registry editor and the emulator";
    const auto& emulator = processes.requests[1];
    EXPECT_EQ(emulator.file, InHome("drive_c/emu/ePSXe.EXE"));
    EXPECT_EQ(emulator.parameters, " -nogui -x -loadbin \"C:\\d \xE9.bin\"");
    EXPECT_EQ(emulator.folder, InHome("drive_c/emu"));
    EXPECT_EQ(emulator.show, platform::ShowState::Hidden);
    EXPECT_FALSE(emulator.ends_with_parent);
}

TEST_F(DirectRunTest, ShowsTheEmulatorIfItsLogWindowIsOffAndSkipsItsGuiInAnyCase) {
    CVeltoSettings().SetLogWindow(false);
    CVeltoSettings().SetGuiBypassed(false);
    WriteConfig("Game");
    EXPECT_TRUE(RunDirect("Game"));
    EXPECT_EQ(processes.requests.back().show, platform::ShowState::Shown);
    EXPECT_EQ(processes.requests.back().parameters, " -nogui ");
}

TEST_F(DirectRunTest, AFileThatIsNotThereInThisSpellingChangesNothing) {
    WriteConfig("Game");
    WriteConfig("../outside");
    const std::string sensitive = " does not exist. Remember that names are case sensitive.";
    const std::pair<std::string, std::string> cases[] = {
        {"game", "game.dta" + sensitive}, {"Gam", "Gam.dta does not exist"},
        {"", ".dta does not exist"},      {"../outside", "../outside.dta does not exist"},
        {"*", "*.dta does not exist"},    {InHome("outside"), InHome("outside.dta does not exist")},
    };
    for (const auto& [name, text] : cases) {
        EXPECT_FALSE(RunDirect(name));
        ExpectOneBox(text, "File not found");
    }
    EXPECT_THAT(processes.requests, IsEmpty());
    ExpectMerged(false);
}

TEST_F(DirectRunTest, APortableFileIsRefusedBehindTheMerge) {
    WriteConfig("Game", {"magicCFG = true"});
    EXPECT_FALSE(RunDirect("Game"));
    ExpectOneBox(
        "Personal preferences not verified.\n  You need to run this file via the editor at least "
        "once before using command lines.",
        "MagicCFG", platform::BoxIcon::None);
    ExpectMerged(true);
    EXPECT_EQ(StringOf(kEmulatorConfigKey, "BiosName"), std::nullopt);
    EXPECT_EQ(processes.requests.size(), 1U);
}

TEST_F(DirectRunTest, ACorruptedFileIsRefusedBehindTheMerge) {
    WriteConfig("key missing", {}, {Key::autoplay});
    WriteFile(InConfig("empty.dta"), "");
    WriteFile(InConfig("binary.dta"), "\0\x1A\xFF\r\r\n\0"s);
    WriteConfig("NUL", {"commandLine = -a\0b"s});
    WriteConfig("text too long", {"bios = " + std::string(std::size_t{1} << 20, 'b')});
    WriteFile(InConfig("too large.dta"), std::string(kLargestConfigFile + 1, 'x'));
    for (const auto* name :
         {"key missing", "empty", "binary", "NUL", "text too long", "too large"}) {
        SCOPED_TRACE(name);
        const auto text = ReadFile(InConfig(name + ".dta"s));
        processes.requests.clear();
        EXPECT_FALSE(RunDirect(name));
        ExpectOneBox("File Corrupted.  Please repair then try again", "File Corrupted");
        EXPECT_EQ(ReadFile(InConfig(name + ".dta"s)), text);
        EXPECT_EQ(processes.requests.size(), 1U) << "never the emulator";
    }
    ExpectMerged(true);
    EXPECT_EQ(StringOf(kEmulatorConfigKey, "BiosName"), std::nullopt);
}

TEST_F(DirectRunTest, WithoutARegistryEditorItTellsAndGoesOn) {
    environment.registry_editor = InHome("missing");
    WriteConfig("Game");
    EXPECT_TRUE(RunDirect("Game"));
    ExpectOneBox("Unable to restore settings", "Error");
}

TEST_F(DirectRunTest, TellsWhereItLookedForTheEmulator) {
    WriteConfig("Game");
    WriteFile(InHome("drive_c/text.exe"), "no program");
    for (const std::string path : {"C:\\missing\\e.exe", "", "C:\\emu", "C:\\text.exe"}) {
        CVeltoSettings().SetEmulatorPath(path);
        EXPECT_FALSE(RunDirect("Game"));
        ExpectOneBox("Unable to locate Epsxe at " + path, "Error");
    }
}

}  // namespace
}  // namespace velto::test
