#include "store/velto_doc.h"

#include <filesystem>
#include <map>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "store/document_test.h"
#include "support/config_text.h"
#include "support/failing_files.h"
#include "support/shown.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using platform::BoxAnswer;
using testing::ElementsAre;
using testing::IsEmpty;

// Steps of the version ladder.
enum Step { kFirst, kPads, kImage, kCurrent };
const std::pair<std::string, Step> kVersions[] = {
    {"1.5.152", kFirst},  {"1.51.152", kFirst}, {"1.56.152", kPads},  {"1.57.152", kPads},
    {"1.58.152", kPads},  {"1.59.152", kImage}, {"1.60.152", kImage}, {"1.60.152a", kImage},
    {"1.61.152", kImage}, {"1.62.152", kImage}, {"1.63.152", kImage}, {"1.67.160", kCurrent},
    {"9.9", kCurrent},    {"", kCurrent},
};

struct Rule {
    std::string value;     // none that a load would take by itself; empty: the key's name
    std::string replaced;  // what it takes where the key is missing or not of the version
    Step since = kFirst;
    std::string of_two{};  // what it takes of the value for pads 1 and 2 alone
};
const std::string kZeros = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";
const std::string kAxes = "1,2,3,4,5,6,7,8,";
const std::pair<std::vector<std::string>, Rule> kRules[] = {
    {{"fileGroup"}, {"A Group", "My Epsxe"}},
    {{"gpuFileName", "spuFileName", "cdrFileName", "netFileName", "memcard1", "memcard2", "bios",
      "commandLine"},
     {"", "NULL"}},
    {{"imageFileName"}, {"i.bin", "NULL", kImage}},
    {{"enableSound", "enableCDDA", "enableXA"}, {"false", "true"}},
    {{"enableSpuIRQ", "enablePPF", "readSubChannel", "autoplay"}, {"true", "false"}},
    {{"storeSubChannel", "storeSubChannelLG"}, {"true", "false"}},
    {{"driveLetter"}, {"E", "0"}},
    {{"region"}, {"PAL", "Autodetect"}},
    {{"keys1"}, {"1" + kZeros, "203,205,200,208,32,45,44,31,17,18,19,20,47,46,16,21", kPads}},
    {{"keys2"}, {"2" + kZeros, kZeros, kPads}},
    {{"keys3", "keys4"}, {"3" + kZeros, kZeros, kCurrent}},
    {{"padAxis"}, {kAxes + "9,1,2,3,4,5,6,7", kZeros, kPads, kAxes + "0,0,0,0,0,0,0,0"}},
    {{"padType"}, {"2,3,4,5", "1,0,0,0", kPads, "2,3,0,0"}},
    {{"motorType", "bMotorType", "sMotorType"}, {"1,2,3,4", "0,0,0,0", kPads, "1,2,0,0"}},
    {{"multiTap"}, {"true", "false", kCurrent}},
    {{"psxIdExt"}, {"SLUS_2", "NULL", kPads}},
};
const std::map<std::string, Rule> kKeys = [] {
    std::map<std::string, Rule> keys;
    for (const auto& [names, rule] : kRules) {
        for (const auto& name : names) {
            keys[name] = rule;
            if (rule.value.empty()) keys[name].value = name;
        }
    }
    return keys;
}();

// A file of this version, or without one, that says more than its version carries.
CConfigFile FileOf(const std::string& version, const std::string& missing = "") {
    CConfigFile file;
    if (!version.empty()) file.WriteEntry("fileVersion", version);
    for (const auto& [key, rule] : kKeys) {
        if (key != missing) file.WriteEntry(key, rule.value);
    }
    file.WriteEntry("psxid", "slus_1");
    return file;
}

LoadedRecord Load(const CConfigFile& file) {
    return ReadRecord(file, [](const std::string&) { return std::string(); });
}

TEST(ReadRecord, ReplacesWhatAFileOfAnyVersionLacksAndKeepsTheRest) {
    for (const auto& [version, step] : kVersions) {
        for (const auto& [missing, its] : kKeys) {
            SCOPED_TRACE("version " + version + " without " + missing);
            const auto [record, corrupted] = Load(FileOf(version, missing));
            EXPECT_EQ(record.fileVersion, version.empty() ? "1.67.160" : version);
            const auto saved = WriteRecord(record, "", false);
            for (const auto& [key, rule] : kKeys) {
                auto expected = rule.value;
                if (step < kCurrent && !rule.of_two.empty()) expected = rule.of_two;
                if (rule.since > step || key == missing) expected = rule.replaced;
                if (key == "psxIdExt" && step == kFirst) expected = "SLUS_1";
                EXPECT_EQ(saved.ReadEntry(key), expected) << key;
            }
            // What is read before the disc ids isn't reported if these are there, and for
            // storeSubChannel the longer key's line is taken.
            const bool early = missing == "fileGroup" || its.since != kFirst;
            EXPECT_EQ(corrupted, its.since <= step && missing != "storeSubChannel" &&
                                     (step == kFirst || !early || missing == "psxIdExt"));
        }
    }
}

TEST(ReadRecord, TakesAnyTextInAFlagAndAnEmptyId) {
    const auto [record, corrupted] = Load(
        CConfigFile(ConfigText("1.5.152", {"enablePPF = maybe", "enableXA = 0"}, {Key::psxid})));
    EXPECT_FALSE(corrupted);
    EXPECT_FALSE(record.enablePPF);
    EXPECT_TRUE(record.enableXA);
    EXPECT_THAT(record.psxIdExt, IsEmpty());
    EXPECT_TRUE(Load(CConfigFile()).corrupted);
}

class LoadTest : public DocumentTest {
  protected:
    LoadTest() {
        WriteConfig("Game", ConfigText("1.67.160", {"bios = game"}));
        WriteConfig("Other", ConfigText("1.67.160", {"bios = other"}));
        EXPECT_FALSE(document.LoadConfig("Game"));
    }
    void MakeDirty() {
        document.bios = "edited";
        document.dirty = true;
        editor.enabled = true;
        WriteFile(InConfig("plugins.tmp"), "REGEDIT4 \r\n");
    }
    void ExpectClean(const std::string& bios, bool clean = true) {
        EXPECT_EQ(document.bios, bios);
        EXPECT_EQ(document.dirty, !clean);
        EXPECT_EQ(editor.enabled, !clean);
        EXPECT_EQ(Exists(InConfig("plugins.tmp")), !clean);
    }
    void ExpectStillEdited() { ExpectClean("edited", false); }
};

TEST_F(LoadTest, ReadsTheFileOnceAndLeavesItAsItIs) {
    const auto text = ConfigText("1.5.152", {"bios = first.bin"});
    WriteConfig("First", text);
    FailingFiles counting(*files, 0, FailingFiles::At::Fail);
    const auto counted = With(counting);
    EXPECT_FALSE(document.LoadConfig("First"));
    EXPECT_EQ(document.bios, "first.bin");
    EXPECT_THAT(counting.opened, ElementsAre(InConfig("First.dta")));
    EXPECT_EQ(counting.steps(), 3) << "it is opened and read to its end";
    EXPECT_EQ(Config("First"), text);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(LoadTest, KnowsTheImageDriversByDisplayNameAndByReservedWord) {
    const std::tuple<std::string, std::string, bool, bool> cases[] = {
        {"x.dll", "Mooby2 cd disk image driver Version 2.8", true, false},
        {"iso", "Mooby2 cd disk image driver Version 2.8", true, false},
        {"x.dll", "Mooby2 cd disk image driver 2.8", false, false},
        {"x.dll", "Mooby2 cd disk image driver  Version 2.8", false, false},
        {"Iso", "", false, true},
        {"ISO2", "", false, false},
    };
    for (const auto& [plugin, display_name, mooby, internal] : cases) {
        WriteConfig("Cd", ConfigText("1.67.160", {"cdrFileName = " + plugin}));
        editor.display_names = {{plugin, display_name}};
        EXPECT_FALSE(document.LoadConfig("Cd"));
        EXPECT_EQ(document.cdrIsMooby, mooby) << display_name;
        EXPECT_EQ(document.cdrIsInternalIso, internal) << plugin;
    }
}

TEST_F(LoadTest, WhatCannotBeReadKeepsTheRecordAndSendsTheTreeBack) {
    std::filesystem::create_directory(InConfig("Folder.dta"));
    WriteFile(InHome("outside.dta"), ConfigText("1.67.160"));
    for (const std::string name : {"Missing", "Folder", "../outside"}) {
        EXPECT_TRUE(document.LoadConfig(name));
        EXPECT_THAT(Shown(boxes), ElementsAre("File Not Found: Unable to open " + name +
                                              ".dta in folder " + environment.ConfigFolder()));
    }
    EXPECT_TRUE(document.LoadConfig(""));
    EXPECT_FALSE(document.LoadConfig("My Epsxe"));
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_EQ(document.bios, "game");

    WriteFile(InConfig("SHOUT.DTA"), ConfigText("1.67.160", {"bios = loud"}));
    EXPECT_FALSE(document.LoadConfig("shout"));
    EXPECT_EQ(document.bios, "loud");
}

TEST_F(LoadTest, AFileWithRepairsWarnsAndIsNeverTreatedAsPortable) {
    WriteConfig("Broken", ConfigText("1.67.160", {"magicCFG = true"}, {Key::bios}));
    WriteConfig("Portable", ConfigText("1.67.160", {"magicCFG = true"}));
    EXPECT_FALSE(document.LoadConfig("Broken"));
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(boxes.shown[0].icon, platform::BoxIcon::Warning);
    EXPECT_THAT(
        Shown(boxes),
        ElementsAre(
            "File Corrupted: One or more errors where detected in this configuration.  Default "
            "settings have been "
            "used for the corrupted values.  It is recommended that you review all settings and "
            "change as necessary"));
    EXPECT_FALSE(document.dirty);
    EXPECT_FALSE(document.LoadConfig("Portable"));
    EXPECT_THAT(editor.adapted, ElementsAre("Portable"));
}

TEST_F(LoadTest, AnotherSelectionAsksAndARefusalIsAskedOnce) {
    MakeDirty();
    EXPECT_TRUE(document.LoadConfig("Other"));
    EXPECT_TRUE(boxes.shown.at(0).yes_is_destructive);
    EXPECT_FALSE(document.LoadConfig("Game")) << "the tree's way back";
    EXPECT_THAT(Shown(boxes),
                ElementsAre("Switch view?: Warning: This action will cause your current changes to "
                            "be lost.  Do you wish to continue?"));
    ExpectStillEdited();

    editor.previous = NodeKind::Page;
    boxes.answers = {BoxAnswer::No, BoxAnswer::Yes};
    EXPECT_TRUE(document.LoadConfig("Other"));
    EXPECT_FALSE(document.LoadConfig("Other")) << "no way back to swallow";
    ExpectClean("other");
}

TEST_F(LoadTest, LeavingForAGroupResetsTheConfigurationInHandByItsOwnName) {
    EXPECT_FALSE(document.WarnIfDirty());
    EXPECT_THAT(boxes.shown, IsEmpty());

    MakeDirty();
    editor.SelectByName("A Group", NodeKind::Group);
    boxes.answers = {BoxAnswer::No, BoxAnswer::Yes};
    EXPECT_TRUE(document.WarnIfDirty());
    ExpectStillEdited();
    EXPECT_FALSE(document.LoadConfig("Game")) << "the tree's way back";
    EXPECT_FALSE(document.WarnIfDirty());
    EXPECT_EQ(editor.refreshes, 1);
    ExpectClean("game");
    EXPECT_EQ(boxes.shown.size(), 2U);
}

TEST_F(LoadTest, APendingDumpThatCannotBeRemovedKeepsTheChangesInHand) {
    MakeDirty();
    FailingFiles failing(*files, 1, FailingFiles::At::Fail);
    const auto failed = With(failing);
    boxes.answers = {BoxAnswer::Yes};
    EXPECT_TRUE(document.LoadConfig("Other"));
    EXPECT_EQ(Shown(boxes).back(), "Error: Unable to delete plugins.tmp: No space left on device");
    EXPECT_FALSE(document.LoadConfig("Game")) << "the tree's way back";
    ExpectStillEdited();
}

TEST_F(LoadTest, AResetTakesTheSelectedConfigurationAndAsksNothing) {
    editor.SelectByName("Other", NodeKind::Page);
    MakeDirty();
    EXPECT_TRUE(document.OnReset());
    EXPECT_EQ(editor.refreshes, 1);
    ExpectClean("other");
    EXPECT_THAT(boxes.shown, IsEmpty());
}

}  // namespace
}  // namespace velto::test
