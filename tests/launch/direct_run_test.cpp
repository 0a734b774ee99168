#include "launch/direct_run.h"

#include <filesystem>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launch/emulator_values.h"
#include "store/key_table.h"
#include "store/velto_settings.h"
#include "support/config_text.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::IsEmpty;
using testing::Optional;

constexpr const char* kZeros16 = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";

std::map<std::string, std::string> ValuesOf(const std::string& text) {
    const auto config = ReadDirectConfig(CConfigFile(text));
    if (!config) return {};
    std::map<std::string, std::string> values;
    for (const auto& write : EmulatorValues(config->settings)) {
        values[write.name] = write.value.data.c_str();
    }
    return values;
}

TEST(EmulatorValues, TranslateEachOptionIntoTheEmulatorsOwnText) {
    struct Case {
        std::string option;
        std::map<std::string, std::string> values;
    };
    const Case cases[] = {
        {"enablePPF = true", {{"AutoPpfLoad", "0"}}},
        {"enablePPF = yes", {{"AutoPpfLoad", "255"}}},
        {"bios = NULL", {{"BiosName", "NULL"}}},
        {"driveLetter = 0", {{"CdromLetter", "0"}}},
        {"driveLetter = D:", {{"CdromLetter", "68"}}},
        {"driveLetter = \xC4", {{"CdromLetter", "68"}}},  // 196 without its eighth bit
        {"cdrFileName = w2kcdrcore", {{"CdromPlugin", "W2KCDRCORE"}}},
        {"region = Autodetect", {{"Country", "255"}}},
        {"region = NTSC", {{"Country", "0"}}},
        {"region = PAL", {{"Country", "1"}}},
        {"region = ntsc", {{"Country", "1"}}},
        {"memcard1 = C:\\cards\\a.mcr", {{"Memcard1", "C:\\cards\\a.mcr"}}},
        {"memcard2 = b.mcr", {{"Memcard2", "b.mcr"}}},
        {"enableCDDA = false", {{"SoundCDDA", "0"}}},
        {"enableCDDA = FALSE", {{"SoundCDDA", "1"}}},
        {"enableXA = no", {{"SoundXA", "1"}}},
        {"enableSpuIRQ = true", {{"SoundSpuIrq", "1"}}},
        {"enableSpuIRQ = TRUE", {{"SoundSpuIrq", "0"}}},
        {"spuFileName = spuX.dll", {{"SoundPlugin", "SPUX.DLL"}}},
        {"storeSubChannel = true",
         {{"SubchannelW2kCaching", "1"},
          {"SubchannelW9xCaching", "1"},
          {"SubchannelW2kCachingLG", "0"},
          {"SubchannelW9xCdromEnabled", "0"}}},
        {"storeSubChannelLG = true",
         {{"SubchannelW2kCachingLG", "1"}, {"SubchannelW9xCachingLG", "1"}}},
        {"readSubChannel = true",
         {{"SubchannelW2kCdromEnabled", "1"}, {"SubchannelW9xCdromEnabled", "1"}}},
        {"gpuFileName = NULL", {{"VideoPlugin", "NULL"}}},
        {"gpuFileName = gpu\xE9.dll", {{"VideoPlugin", "GPU\xE9.DLL"}}},
        {"netFileName = NULL", {{"NetPlugin", "DISABLED"}}},
        {"netFileName = net.dll", {{"NetPlugin", "NET.DLL"}}},
        {"padAxis = 1, x,,", {{"GamepadAxis", "1, x,,"}}},
        {"padType = 1,0", {{"GamepadType", "1,0"}}},
        {"motorType = 3", {{"GamepadMotorType", "3"}}},
        {"bMotorType = 4", {{"GamepadBMotorType", "4"}}},
        {"sMotorType = 5", {{"GamepadSMotorType", "5"}}},
        {"keys1 = 203", {{"Keys1", "203"}}},
        {"keys4 = 44", {{"Keys4", "44"}, {"Keys3", "1,2,3"}}},
        {"multiTap = true", {{"Multitap1", "1"}}},
    };
    for (const auto& c : cases) {
        const auto values = ValuesOf(ConfigText("1.67.160", {c.option}));
        EXPECT_EQ(values.size(), 29U);
        for (const auto& [name, text] : c.values) EXPECT_EQ(values.at(name), text) << c.option;
    }
}

TEST(EmulatorValues, GiveTheImagePluginAndNoOtherItsImage) {
    for (const auto* name : {"cdrmooby2.dll", "CdrMooby2.DLL"}) {
        const auto values = ValuesOf(
            ConfigText("1.67.160", {"cdrFileName = "s + name, "imageFileName = C:\\a b.bin"}));
        EXPECT_EQ(values.at("autorun"), "C:\\a b.bin");
    }
    for (const auto* name : {"ISO", "cdrmooby.dll", "NULL"}) {
        EXPECT_EQ(ValuesOf(ConfigText("1.67.160", {"cdrFileName = "s + name})).count("autorun"),
                  0U);
    }
}

TEST(EmulatorArguments, AppendTheImageOfTheInternalDriver) {
    EXPECT_EQ(EmulatorArguments("NULL", false, "C:\\a.iso"), "");
    EXPECT_EQ(EmulatorArguments("-x", false, "C:\\a.iso"), "-x");
    EXPECT_EQ(EmulatorArguments("-x", true, "C:\\a b.iso"), "-x -loadbin \"C:\\a b.iso\"");
    EXPECT_EQ(WithoutGui(EmulatorArguments("NULL", true, "C:\\a b.iso")),
              " -nogui  -loadbin \"C:\\a b.iso\"");
}

// What each version's files don't have, and what stands in its place.
TEST(DirectConfig, TakesForKeysOfLaterVersionsWhatThatVersionMeant) {
    const std::map<std::string, std::string> no_pads34 = {
        {"Keys3", kZeros16}, {"Keys4", kZeros16}, {"Multitap1", "0"}};
    const std::map<std::string, std::string> no_pads = {
        {"Keys1", "203,205,200,208,32,45,44,31,17,18,19,20,47,46,16,21"},
        {"Keys2", kZeros16},
        {"Keys3", kZeros16},
        {"Keys4", kZeros16},
        {"GamepadAxis", kZeros16},
        {"GamepadMotorType", "0,0,0,0"},
        {"GamepadBMotorType", "0,0,0,0"},
        {"GamepadSMotorType", "0,0,0,0"},
        {"GamepadType", "0,0,0,0"},
        {"Multitap1", "0"}};
    struct Case {
        std::vector<const char*> versions;
        std::vector<Key> absent;
        std::map<std::string, std::string> values;
    };
    const std::vector<Key> pads34 = {Key::keys3, Key::keys4, Key::multiTap};
    const std::vector<Key> pads34_image = {Key::keys3, Key::keys4, Key::multiTap,
                                           Key::imageFileName};
    const std::vector<Key> all = {Key::keys1,     Key::keys2,        Key::keys3,
                                  Key::keys4,     Key::padAxis,      Key::padType,
                                  Key::motorType, Key::bMotorType,   Key::sMotorType,
                                  Key::multiTap,  Key::imageFileName};
    const Case cases[] = {
        {{"1.5.152", "1.51.152"}, all, no_pads},
        {{"1.56.152", "1.57.152", "1.58.152"}, pads34_image, no_pads34},
        {{"1.59.152", "1.60.152", "1.60.152a", "1.61.152", "1.62.152", "1.63.152"},
         pads34,
         no_pads34},
        {{"1.64.152", "1.67.160", "1.60.152A", "2"}, {}, {}},
    };
    for (const auto& c : cases) {
        for (const std::string version : c.versions) {
            const auto current = ConfigText(
                "1.67.160", {"fileVersion = " + version, "multiTap = true", "padType = 9",
                             "cdrFileName = cdrmooby2.dll", "imageFileName = disc.bin"});
            const auto full = ValuesOf(current);
            for (const auto& [name, text] : c.values) EXPECT_EQ(full.at(name), text) << version;
            const bool has_image =
                std::find(c.absent.begin(), c.absent.end(), Key::imageFileName) == c.absent.end();
            EXPECT_EQ(full.at("autorun"), has_image ? "disc.bin" : "NULL") << version;

            for (const auto& row : KeyTable()) {
                const bool needed =
                    row.directNeeds && row.key != Key::fileVersion &&
                    std::find(c.absent.begin(), c.absent.end(), row.key) == c.absent.end();
                // Without its own line a shorter key finds that of a longer one.
                std::vector<Key> left_out = {row.key};
                if (row.key == Key::storeSubChannel) left_out.push_back(Key::storeSubChannelLG);
                const auto text = ConfigText("1.67.160", {"fileVersion = " + version}, left_out);
                EXPECT_EQ(ReadDirectConfig(CConfigFile(text)).has_value(), !needed)
                    << version << " without " << row.name;
            }
        }
    }
}

TEST(DirectConfig, WithoutAVersionIsCorrupted) {
    EXPECT_FALSE(ReadDirectConfig(CConfigFile(ConfigText("1.67.160", {}, {Key::fileVersion}))));
    EXPECT_FALSE(ReadDirectConfig(CConfigFile()));
}

class DirectRunTest : public HomeTest {
  protected:
    DirectRunTest() {
        WriteFile(InHome("drive_c/emu/ePSXe.EXE"), "#!/bin/sh\nexit 0\n");
        std::filesystem::permissions(InHome("drive_c/emu/ePSXe.EXE"),
                                     std::filesystem::perms::owner_all);
        CVeltoSettings().SetEmulatorPath("C:\\emu\\ePSXe.EXE");
    }

    static std::string PluginLine(const std::string& value) {
        return ";#//GPU plugins\r\n\r\n[HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\GPU\\"
               "Demo]\r\n\"path\"=\"" +
               value + "\"\r\n";
    }
    std::optional<std::string> PluginPath() {
        return StringOf("Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo", "path");
    }
    void ExpectOneBox(const std::string& text, const std::string& caption,
                      platform::BoxIcon icon = platform::BoxIcon::Error) {
        ASSERT_EQ(boxes.shown.size(), 1U);
        EXPECT_EQ(boxes.shown[0].text, text);
        EXPECT_EQ(boxes.shown[0].caption, caption);
        EXPECT_EQ(boxes.shown[0].icon, icon);
        EXPECT_EQ(boxes.shown[0].buttons, platform::BoxButtons::Ok);
    }
};

TEST_F(DirectRunTest, MergesThePluginLinesWritesTheValuesAndStartsTheEmulator) {
    WriteFile(InConfig("A Game.dta"), ConfigText("1.67.160",
                                                 {"commandLine = -x", "cdrFileName = iso",
                                                  "imageFileName = C:\\d \xE9.bin", "bios = b.bin"},
                                                 {}, PluginLine("C:\\new\\q")));
    EXPECT_TRUE(RunDirect("A Game"));
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_THAT(PluginPath(), Optional("C:\\new\\q"s));
    EXPECT_THAT(StringOf(kEmulatorConfigKey, "BiosName"), Optional("b.bin"s));
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
    WriteFile(InConfig("Game.dta"), ConfigText("1.67.160"));
    EXPECT_TRUE(RunDirect("Game"));
    EXPECT_EQ(processes.requests.back().show, platform::ShowState::Shown);
    EXPECT_EQ(processes.requests.back().parameters, " -nogui ");
}

TEST_F(DirectRunTest, AFileThatIsNotThereInThisSpellingChangesNothing) {
    WriteFile(InConfig("Game.dta"), ConfigText("1.67.160", {}, {}, PluginLine("new")));
    WriteFile(InHome("outside.dta"), ConfigText("1.67.160", {}, {}, PluginLine("new")));
    const std::string sensitive = " does not exist. Remember that names are case sensitive.";
    const std::pair<std::string, std::string> cases[] = {
        {"game", "game.dta" + sensitive}, {"Gam", "Gam.dta does not exist"},
        {"", ".dta does not exist"},      {"../outside", "../outside.dta does not exist"},
        {"*", "*.dta does not exist"},    {InHome("outside"), InHome("outside.dta does not exist")},
    };
    for (const auto& [name, text] : cases) {
        boxes.shown.clear();
        EXPECT_FALSE(RunDirect(name));
        ExpectOneBox(text, "File not found");
    }
    EXPECT_THAT(processes.requests, IsEmpty());
    EXPECT_EQ(PluginPath(), std::nullopt);
}

TEST_F(DirectRunTest, APortableFileIsRefusedBehindTheMerge) {
    WriteFile(InConfig("Game.dta"),
              ConfigText("1.67.160", {"magicCFG = true"}, {}, PluginLine("new")));
    EXPECT_FALSE(RunDirect("Game"));
    ExpectOneBox(
        "Personal preferences not verified.\n  You need to run this file via the editor at least "
        "once before using command lines.",
        "MagicCFG", platform::BoxIcon::None);
    EXPECT_THAT(PluginPath(), Optional("new"s));
    EXPECT_EQ(StringOf(kEmulatorConfigKey, "BiosName"), std::nullopt);
    EXPECT_EQ(processes.requests.size(), 1U);
}

TEST_F(DirectRunTest, ACorruptedFileIsRefusedBehindTheMerge) {
    const std::pair<const char*, std::string> cases[] = {
        {"a key is missing", ConfigText("1.67.160", {}, {Key::autoplay}, PluginLine("new"))},
        {"empty", ""},
        {"binary", "\0\x1A\xFF\r\r\n\0"s},
        {"an argument with a NUL", ConfigText("1.67.160", {"commandLine = -a\0b"s})},
        {"a text no registry string holds",
         ConfigText("1.67.160", {"bios = " + std::string(std::size_t{1} << 20, 'b')})},
        {"larger than any configuration", std::string(kLargestConfigFile + 1, 'x')},
    };
    for (const auto& [what, text] : cases) {
        boxes.shown.clear();
        WriteFile(InConfig("Game.dta"), text);
        EXPECT_FALSE(RunDirect("Game")) << what;
        ExpectOneBox("File Corrupted.  Please repair then try again", "File Corrupted");
        EXPECT_EQ(ReadFile(InConfig("Game.dta")), text) << what;
    }
    EXPECT_THAT(PluginPath(), Optional("new"s));
    EXPECT_EQ(StringOf(kEmulatorConfigKey, "BiosName"), std::nullopt);
    EXPECT_EQ(processes.requests.size(), std::size(cases)) << "never the emulator";
}

TEST_F(DirectRunTest, AnOptionLineThatEndsInABackslashIsOnlyAComment) {
    WriteFile(InConfig("Game.dta"),
              ConfigText("1.67.160", {"memcard1 = C:\\cards\\"}, {}, PluginLine("C:\\shaders\\")));
    EXPECT_TRUE(RunDirect("Game"));
    EXPECT_THAT(StringOf(kEmulatorConfigKey, "Memcard1"), Optional("C:\\cards\\"s));
    EXPECT_THAT(PluginPath(), Optional("C:\\shaders\\"s));
}

TEST_F(DirectRunTest, WithoutARegistryEditorItTellsAndGoesOn) {
    environment.registry_editor = InHome("missing");
    WriteFile(InConfig("Game.dta"), ConfigText("1.67.160"));
    EXPECT_TRUE(RunDirect("Game"));
    ExpectOneBox("Unable to restore settings", "Error");
}

TEST_F(DirectRunTest, TellsWhereItLookedForTheEmulator) {
    WriteFile(InConfig("Game.dta"), ConfigText("1.67.160"));
    WriteFile(InHome("drive_c/text.exe"), "no program");
    for (const std::string path : {"C:\\missing\\e.exe", "", "C:\\emu", "C:\\text.exe"}) {
        CVeltoSettings().SetEmulatorPath(path);
        boxes.shown.clear();
        EXPECT_FALSE(RunDirect("Game"));
        ExpectOneBox("Unable to locate Epsxe at " + path, "Error");
    }
}

}  // namespace
}  // namespace velto::test
