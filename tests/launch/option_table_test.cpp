// Every option on every way that it takes: file, record, emulator, new file.
#include "store/option_table.h"

#include <gmock/gmock.h>

#include "launch/direct_run.h"
#include "launch/emulator_values.h"
#include "store/new_config_file.h"
#include "support/documents.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using Texts = std::vector<std::string>;

// Steps of the version ladder.
enum Step { kFirst, kPads, kImage, kCurrent };
const std::pair<std::string, Step> kVersions[] = {
    {"1.5.152", kFirst},  {"1.51.152", kFirst},    {"1.56.152", kPads},  {"1.57.152", kPads},
    {"1.58.152", kPads},  {"1.59.152", kImage},    {"1.60.152", kImage}, {"1.60.152a", kImage},
    {"1.61.152", kImage}, {"1.62.152", kImage},    {"1.63.152", kImage}, {"1.67.160", kCurrent},
    {"9.9", kCurrent},    {"1.60.152A", kCurrent}, {"", kCurrent},
};

const std::string kZeros = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";
const std::string kAxes = "1,2,3,4,5,6,7,8,";

struct Fact {
    std::string key;
    std::string text;      // none that anything takes by itself
    std::string standard;  // what a load and a new file take
    std::string value{};   // of the emulator; empty: none
    // What the emulator gets for these two; empty: the same.
    std::string given{};
    std::string given_standard{};
    Step since = kFirst;
    std::string of_two{};  // what pads 1 and 2 take of the text
    std::string before{};  // what a direct run takes before `since`, if not the standard
};

// In the order of the emulator's values.
const Fact kFacts[] = {
    {"enablePPF", "true", "false", "AutoPpfLoad", "0", "255"},
    {"bios", "b.bin", "NULL", "BiosName"},
    {"driveLetter", "E", "0", "CdromLetter", "69"},
    {"cdrFileName", "CdrMooby2.dll", "NULL", "CdromPlugin", "CDRMOOBY2.DLL"},
    {"region", "PAL", "Autodetect", "Country", "1", "255"},
    {"memcard1", "C:\\1.mcr", "NULL", "Memcard1"},
    {"memcard2", "C:\\2.mcr", "NULL", "Memcard2"},
    {"enableCDDA", "false", "true", "SoundCDDA", "0", "1"},
    {"spuFileName", "spu.dll", "NULL", "SoundPlugin", "SPU.DLL"},
    {"enableSpuIRQ", "true", "false", "SoundSpuIrq", "1", "0"},
    {"enableXA", "false", "true", "SoundXA", "0", "1"},
    {"storeSubChannel", "true", "false", "SubchannelW2kCaching", "1", "0"},
    {"storeSubChannelLG", "true", "false", "SubchannelW2kCachingLG", "1", "0"},
    {"readSubChannel", "true", "false", "SubchannelW2kCdromEnabled", "1", "0"},
    {"storeSubChannel", "true", "false", "SubchannelW9xCaching", "1", "0"},
    {"storeSubChannelLG", "true", "false", "SubchannelW9xCachingLG", "1", "0"},
    {"readSubChannel", "true", "false", "SubchannelW9xCdromEnabled", "1", "0"},
    {"gpuFileName", "gpu.dll", "NULL", "VideoPlugin", "GPU.DLL"},
    {"netFileName", "net.dll", "NULL", "NetPlugin", "NET.DLL", "DISABLED"},
    {"padAxis", kAxes + "9,1,2,3,4,5,6,7", kZeros, "GamepadAxis", "", "", kPads,
     kAxes + "0,0,0,0,0,0,0,0"},
    {"bMotorType", "1,2,3,4", "0,0,0,0", "GamepadBMotorType", "", "", kPads, "1,2,0,0"},
    {"motorType", "2,3,4,5", "0,0,0,0", "GamepadMotorType", "", "", kPads, "2,3,0,0"},
    {"sMotorType", "3,4,5,6", "0,0,0,0", "GamepadSMotorType", "", "", kPads, "3,4,0,0"},
    {"padType", "4,5,6,7", "1,0,0,0", "GamepadType", "", "", kPads, "4,5,0,0", "0,0,0,0"},
    {"keys1", "1" + kZeros, "203,205,200,208,32,45,44,31,17,18,19,20,47,46,16,21", "Keys1", "", "",
     kPads},
    {"keys2", "2" + kZeros, kZeros, "Keys2", "", "", kPads},
    {"keys3", "3" + kZeros, kZeros, "Keys3", "", "", kCurrent},
    {"keys4", "4" + kZeros, kZeros, "Keys4", "", "", kCurrent},
    {"multiTap", "true", "false", "Multitap1", "1", "0", kCurrent},
    {"imageFileName", "i.bin", "NULL", "autorun", "", "", kImage},  // the image plug-in's
    // Not the emulator's.
    {"fileGroup", "A Group", "My Epsxe"},
    {"enableSound", "false", "true"},
    {"commandLine", "-x", "NULL"},
    {"autoplay", "true", "false"},
    {"psxIdExt", "SLUS_2", "NULL", "", "", "", kPads},
};

// A file of this version, or without one, that says more than its version carries.
CConfigFile FileOf(const std::string& version, const std::string& missing = "") {
    CConfigFile file;
    if (!version.empty()) file.WriteEntry("fileVersion", version);
    for (const auto& fact : kFacts) {
        if (fact.key != missing) file.WriteEntry(fact.key, fact.text);
    }
    file.WriteEntry("psxid", "slus_1");
    return file;
}

LoadedRecord Load(const CConfigFile& file) {
    return ReadRecord(file, [](const std::string&) { return std::string(); });
}

// "name=text" of each.
Texts Lines(const std::vector<platform::RegistryWrite>& values) {
    Texts lines;
    for (const auto& value : values) lines.push_back(value.name + "=" + value.value.data.c_str());
    return lines;
}

// The same, of the values of a configuration whose options these texts are.
template <class TextOf>
Texts Expected(TextOf text_of) {
    Texts lines;
    for (const auto& fact : kFacts) {
        const std::string text = text_of(fact);
        const auto& given = text == fact.text       ? fact.given
                            : text == fact.standard ? fact.given_standard
                                                    : text;
        if (!fact.value.empty()) lines.push_back(fact.value + "=" + (given.empty() ? text : given));
    }
    return lines;
}

TEST(Options, ComeFromAFileOfAnyVersionToTheRecordAndTheEmulator) {
    // Three keys give two values each; version, mark and old disc id aren't told of.
    ASSERT_EQ(std::size(kFacts), kKeyCount);
    for (const auto& [version, step] : kVersions) {
        for (const auto& its : kFacts) {
            const auto& missing = its.key;
            SCOPED_TRACE("version " + version + " without " + missing);
            const auto file = FileOf(version, missing);
            const auto loaded_text = [&, step = step](const Fact& fact) {
                if (fact.key == "psxIdExt" && step == kFirst) return std::string("SLUS_1");
                if (fact.key == missing || fact.since > step) return fact.standard;
                return step < kCurrent && !fact.of_two.empty() ? fact.of_two : fact.text;
            };
            const auto direct_text = [&, step = step](const Fact& fact) {
                if (fact.since > step && !fact.before.empty()) return fact.before;
                return fact.since > step || fact.key == missing ? fact.standard : fact.text;
            };

            const auto [record, corrupted] = Load(file);
            EXPECT_EQ(record.fileVersion, version.empty() ? "1.67.160" : version);
            const auto saved = WriteRecord(record, "", false);
            for (const auto& fact : kFacts) {
                EXPECT_EQ(saved.ReadEntry(fact.key), loaded_text(fact)) << fact.key;
            }
            EXPECT_EQ(Lines(EmulatorValues(TextsOf(record), true)), Expected(loaded_text));

            // For storeSubChannel the longer key's line is taken, and what stands in front of the
            // disc ids isn't reported if these are there.
            const bool lacks = its.since <= step && missing != "storeSubChannel";
            const bool early = missing == "fileGroup" || its.since != kFirst;
            EXPECT_EQ(corrupted, lacks && (step == kFirst || !early || missing == "psxIdExt"));
            const bool own = missing == "fileGroup" || missing == "psxIdExt";
            const auto direct = ReadDirectConfig(file);
            ASSERT_EQ(direct.has_value(), !version.empty() && (!lacks || own));
            if (direct) {
                EXPECT_EQ(Lines(direct->values), Expected(direct_text));
            }
        }
    }
}

TEST(Options, GiveTheDiscIdsInUpperCaseAndNoneWhereNoneIsSet) {
    const std::tuple<std::string, std::string, Texts> cases[] = {
        {"1.67.160", "psxIdExt = slus_123,,abc", {"SLUS_123", "ABC"}},
        {"1.67.160", "psxIdExt = NULL", {}},
        {"1.51.152", "psxid = ", {}},
    };
    for (const auto& [version, option, ids] : cases) {
        const CConfigFile file(ConfigText(version, {option}, {Key::psxid}));
        EXPECT_EQ(Load(file).record.psxIdExt, ids);
        EXPECT_TRUE(!Load(file).corrupted && ReadDirectConfig(file)) << version;
    }
}

TEST(Options, AreReadForTheirExactText) {
    const std::pair<std::string, std::string> cases[] = {
        {"gpuFileName = gpu\xE9.dll", "VideoPlugin=GPU\xE9.DLL"},
        {"netFileName = null", "NetPlugin=DISABLED"},
        {"driveLetter = \xC4:", "CdromLetter=68"},  // 196 & 127
        {"region = NTSC", "Country=0"},
        {"region = ntsc", "Country=1"},
        {"enableCDDA = FALSE", "SoundCDDA=1"},
        {"enableSpuIRQ = TRUE", "SoundSpuIrq=0"},
        {"padAxis = 1, x,,", "GamepadAxis=1, x,,"},
        // The first line that holds the key, without what makes it an option.
        {"bios\t=\t-a=  \rb \t", "BiosName=-a  \rb"},
        {"# see ; bios = a; bios = b", "BiosName=; # see   a  b"},
        {"biosLG = true", "BiosName=LG  true"},
        {"Bios = x\nbios = x\n\"bios\"=\"x\"", "BiosName=NULL"},
    };
    for (const auto& [option, value] : cases) {
        const auto config = ReadDirectConfig(CConfigFile(ConfigText("1.67.160", {option})));
        EXPECT_THAT(Lines(config.value().values), testing::Contains(value));
        EXPECT_EQ(config->values.size(), EmulatorValueNames().size()) << "no image plug-in";
    }
}

class NewFile : public HomeTest {};

TEST_F(NewFile, HasTheStandardsAndTheEmulatorsPads) {
    const auto record = Load(FileOf("1.67.160")).record;
    EXPECT_TRUE(WriteEmulatorValues("Game", EmulatorValues(TextsOf(record), false)));
    const auto file = NewConfigFile("A Group");
    for (const auto& fact : kFacts) {
        const bool pads = (fact.since == kPads || fact.since == kCurrent) && !fact.value.empty();
        EXPECT_EQ(file.ReadEntry(fact.key),
                  pads || fact.key == "fileGroup" ? fact.text : fact.standard);
    }
    EXPECT_FALSE(Load(file).corrupted);
    EXPECT_EQ(file.FindEntryLine("REGEDIT4"), 0);
    EXPECT_EQ(file.FindEntryLine("x y"), -1);
    EXPECT_THAT(Shown(boxes), testing::ElementsAre(
                                  "Entry not found: Unable to read x y from this configuration"));
}

}  // namespace
}  // namespace velto::test
