#include "store/velto_doc.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launch/direct_run.h"
#include "support/config_text.h"
#include "support/failing_files.h"
#include "support/fake_editor.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using platform::BoxAnswer;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kVersions[] = {"1.5.152",  "1.51.152", "1.56.152",  "1.57.152", "1.58.152",
                                     "1.59.152", "1.60.152", "1.60.152a", "1.61.152", "1.62.152",
                                     "1.63.152", "1.67.160", "9.9"};

LoadedRecord Load(const std::string& text) {
    return ReadRecord(CConfigFile(text), [](const std::string&) { return std::string(); });
}

// Keys that are read before the list of disc ids: what they lack isn't reported if that is there.
bool IsReadEarly(Key key) {
    return key <= Key::fileGroup || key == Key::imageFileName ||
           (key >= Key::keys1 && key <= Key::multiTap);
}

TEST(ReadRecord, ReplacesWhatAFileOfAnyVersionLacks) {
    for (const std::string version : kVersions) {
        const auto generation = GenerationOf(version);
        const auto whole = Load(ConfigText(version));
        EXPECT_FALSE(whole.corrupted) << version;
        EXPECT_EQ(whole.record.fileVersion, version);
        for (const auto& row : KeyTable()) {
            if (row.key == Key::magicCFG || row.key == Key::fileVersion) continue;
            std::vector<Key> left_out = {row.key};
            if (row.key == Key::storeSubChannel) left_out.push_back(Key::storeSubChannelLG);
            const auto loaded = Load(ConfigText(version, {}, left_out));
            const bool first = generation == FileGeneration::First;
            const bool expected = Carries(generation, row) && row.key != Key::psxid &&
                                  (first || !IsReadEarly(row.key));
            EXPECT_EQ(loaded.corrupted, expected) << version << " without " << row.name;
            EXPECT_EQ(loaded.record.fileGroup, kRootGroup);
            EXPECT_EQ(loaded.record.bios, "NULL");
            EXPECT_EQ(loaded.record.driveLetter, '0');
            EXPECT_EQ(loaded.record.region, "Autodetect");
            EXPECT_TRUE(loaded.record.enableSound);
            EXPECT_FALSE(loaded.record.enableSpuIRQ);
            EXPECT_EQ(loaded.record.pads.GetMotorString(), "0,0,0,0") << row.name;
        }
    }
}

TEST(ReadRecord, TakesDefaultPadsWhereTheVersionOrTheFileHasNone) {
    const auto default_keys = "203,205,200,208,32,45,44,31,17,18,19,20,47,46,16,21";
    const auto first = Load(ConfigText("1.51.152", {"psxid = slus_00001", "keys1 = 7",
                                                    "multiTap = true", "padType = 4"}))
                           .record;
    EXPECT_EQ(first.pads.At(1).GetKeyString(), default_keys);
    EXPECT_EQ(first.pads.GetTypeString(), "1,0,0,0");
    EXPECT_FALSE(first.multiTap);
    EXPECT_THAT(first.psxIdExt, ElementsAre("SLUS_00001"));

    const auto two_pads =
        Load(ConfigText("1.63.152", {"keys1 = 1,2", "keys3 = 9,9", "padType = 2,3,4,5"})).record;
    EXPECT_EQ(two_pads.pads.At(1).GetKeyString(), "1,2,0,0,0,0,0,0,0,0,0,0,0,0,0,0");
    EXPECT_EQ(two_pads.pads.At(3).GetKeyString(), "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0");
    EXPECT_EQ(two_pads.pads.GetTypeString(), "2,3,0,0");

    const auto no_keys = Load(ConfigText("1.67.160", {}, {Key::keys1, Key::padType})).record;
    EXPECT_EQ(no_keys.pads.At(1).GetKeyString(), default_keys);
    EXPECT_EQ(no_keys.pads.GetTypeString(), "1,0,0,0");
}

TEST(ReadRecord, ReportsTheEarlierKeysOnlyIfTheIdsAreMissingToo) {
    struct Case {
        const char* what;
        std::string text;
        bool corrupted;
    };
    const Case cases[] = {
        {"no version, no keys1", ConfigText("1.67.160", {}, {Key::fileVersion, Key::keys1}), false},
        {"no ids", ConfigText("1.67.160", {}, {Key::psxIdExt}), true},
        {"no version of a first file: its pads are missing keys",
         ConfigText("1.5.152", {}, {Key::fileVersion}), true},
        {"empty id of a first file", ConfigText("1.5.152", {}, {Key::psxid}), false},
        {"any text in a flag", ConfigText("1.67.160", {"enablePPF = maybe"}), false},
        {"nothing at all", "", true},
    };
    for (const auto& c : cases) EXPECT_EQ(Load(c.text).corrupted, c.corrupted) << c.what;
    EXPECT_THAT(Load(cases[3].text).record.psxIdExt, IsEmpty());
    EXPECT_FALSE(Load(cases[4].text).record.enablePPF);
}

TEST(ReadRecord, KnowsTheImageDriversByDisplayNameAndByReservedWord) {
    struct Case {
        std::string file;
        std::string display_name;
        bool mooby;
        bool internal;
    };
    const Case cases[] = {
        {"x.dll", "Mooby2 cd disk image driver Version 2.8", true, false},
        {"iso", "Mooby2 cd disk image driver Version 2.8", true, false},
        {"x.dll", "Mooby2 cd disk image driver 2.8", false, false},
        {"x.dll", "Mooby2 cd disk image driver  Version 2.8", false, false},
        {"cdrmooby2.dll", "", false, false},
        {"Iso", "", false, true},
        {"ISO2", "", false, false},
    };
    for (const auto& c : cases) {
        const CConfigFile file(ConfigText("1.67.160", {"cdrFileName = " + c.file}));
        const auto record = ReadRecord(file, [&](const std::string& name) {
                                return name == c.file ? c.display_name : "";
                            }).record;
        EXPECT_EQ(record.cdrIsMooby, c.mooby) << c.display_name;
        EXPECT_EQ(record.cdrIsInternalIso, c.internal) << c.file;
    }
}

TEST(ReadRecord, AgreesWithTheDirectRunOnEveryFileThatThisTakes) {
    for (const std::string version : kVersions) {
        const CConfigFile file(ConfigText(
            version, {"enableCDDA = no", "enableXA = false", "enableSpuIRQ = true", "region = PAL",
                      "driveLetter = E", "imageFileName = i.bin", "storeSubChannelLG = true",
                      "bios = b", "commandLine = -x", "gpuFileName = g.dll", "multiTap = true"}));
        const auto direct = ReadDirectConfig(file);
        ASSERT_TRUE(direct) << version;
        const auto& settings = direct->settings;
        const auto record = Load(file.text()).record;
        const auto tie = [](const auto& s) {
            return std::tie(s.enablePPF, s.bios, s.driveLetter, s.cdrFileName, s.region, s.memcard1,
                            s.memcard2, s.enableCDDA, s.spuFileName, s.enableSpuIRQ, s.enableXA,
                            s.storeSubChannel, s.storeSubChannelLG, s.readSubChannel, s.gpuFileName,
                            s.netFileName, s.multiTap, s.imageFileName);
        };
        EXPECT_EQ(tie(settings), tie(record)) << version;
        EXPECT_EQ(direct->commandLine, record.commandLine);
        if (GenerationOf(version) != FileGeneration::First) continue;
        EXPECT_EQ(settings.keys1, record.pads.At(1).GetKeyString());
        EXPECT_EQ(settings.keys4, record.pads.At(4).GetKeyString());
        EXPECT_EQ(settings.padAxis, record.pads.GetAxisString());
    }
}

class DocumentTest : public HomeTest {
  protected:
    void WriteConfig(const std::string& name, const std::string& text) {
        WriteFile(InConfig(name + ".dta"), text);
    }
    void MakeDirty() {
        document.bios = "edited";
        document.dirty = true;
        editor.enabled = true;
        WriteFile(InConfig("plugins.tmp"), "REGEDIT4 \r\n");
    }
    void ExpectClean() {
        EXPECT_FALSE(document.dirty);
        EXPECT_FALSE(editor.enabled);
        EXPECT_FALSE(Exists(InConfig("plugins.tmp")));
    }

    FakeEditor editor;
    CVeltoDoc document{environment.ConfigFolder(), editor};
};

TEST_F(DocumentTest, ALoadReadsTheFileOnceAndLeavesItAsItIs) {
    const auto text = ConfigText("1.5.152", {"bios = first.bin"});
    WriteConfig("Game", text);
    FailingFiles counting(*files, 0, FailingFiles::At::Fail);
    const platform::HostScope counted(
        {&environment, &counting, drives.get(), registry.get(), &processes, nullptr, &boxes});
    EXPECT_FALSE(document.LoadConfig("Game"));
    EXPECT_EQ(document.bios, "first.bin");
    EXPECT_THAT(counting.opened, ElementsAre(InConfig("Game.dta")));
    EXPECT_EQ(counting.steps(), 0);
    EXPECT_EQ(ReadFile(InConfig("Game.dta")), text);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(DocumentTest, ALoadThatCannotReadKeepsTheRecordAndSendsTheTreeBack) {
    WriteConfig("Game", ConfigText("1.67.160", {"bios = kept"}));
    ASSERT_FALSE(document.LoadConfig("Game"));
    std::filesystem::create_directory(InConfig("Folder.dta"));
    WriteFile(InHome("outside.dta"), ConfigText("1.67.160"));
    for (const std::string name : {"Missing", "Folder", "../outside"}) {
        boxes.shown.clear();
        EXPECT_TRUE(document.LoadConfig(name));
        ASSERT_EQ(boxes.shown.size(), 1U) << name;
        EXPECT_EQ(boxes.shown[0].text,
                  "Unable to open " + name + ".dta in folder " + environment.ConfigFolder());
        EXPECT_EQ(boxes.shown[0].caption, "File Not Found");
        EXPECT_EQ(document.bios, "kept");
    }
    boxes.shown.clear();
    EXPECT_TRUE(document.LoadConfig(""));
    EXPECT_FALSE(document.LoadConfig("My Epsxe"));
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_EQ(document.bios, "kept");

    WriteFile(InConfig("SHOUT.DTA"), ConfigText("1.67.160", {"bios = loud"}));
    EXPECT_FALSE(document.LoadConfig("shout"));
    EXPECT_EQ(document.bios, "loud");
}

TEST_F(DocumentTest, AFileWithRepairsWarnsAndIsNeverTreatedAsPortable) {
    WriteConfig("Broken", ConfigText("1.67.160", {"magicCFG = true"}, {Key::bios}));
    WriteConfig("Portable", ConfigText("1.67.160", {"magicCFG = true"}));
    EXPECT_FALSE(document.LoadConfig("Broken"));
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(
        boxes.shown[0].text,
        "One or more errors where detected in this configuration.  Default settings have been "
        "used for the corrupted values.  It is recommended that you review all settings and "
        "change as necessary");
    EXPECT_EQ(boxes.shown[0].caption, "File Corrupted");
    EXPECT_EQ(boxes.shown[0].icon, platform::BoxIcon::Warning);
    EXPECT_FALSE(document.dirty);
    EXPECT_THAT(editor.adapted, IsEmpty());
    EXPECT_FALSE(document.LoadConfig("Portable"));
    EXPECT_THAT(editor.adapted, ElementsAre("Portable"));
}

TEST_F(DocumentTest, AnotherSelectionAsksAndARefusalIsAskedOnce) {
    WriteConfig("Game", ConfigText("1.67.160", {"bios = game"}));
    WriteConfig("Other", ConfigText("1.67.160", {"bios = other"}));
    document.LoadConfig("Game");
    MakeDirty();
    boxes.answers = {BoxAnswer::No};
    EXPECT_TRUE(document.LoadConfig("Other"));
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(boxes.shown[0].text,
              "Warning: This action will cause your current changes to be lost.  Do you wish to "
              "continue?");
    EXPECT_EQ(boxes.shown[0].caption, "Switch view?");
    EXPECT_TRUE(boxes.shown[0].yes_is_destructive);
    EXPECT_FALSE(document.LoadConfig("Game")) << "the tree's way back";
    EXPECT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(document.bios, "edited");
    EXPECT_TRUE(document.dirty);
    EXPECT_TRUE(Exists(InConfig("plugins.tmp")));

    editor.previous = NodeKind::Page;
    boxes.answers = {BoxAnswer::No, BoxAnswer::Yes};
    EXPECT_TRUE(document.LoadConfig("Other"));
    EXPECT_FALSE(document.LoadConfig("Other")) << "no way back to swallow";
    EXPECT_EQ(document.bios, "other");
    ExpectClean();
}

TEST_F(DocumentTest, LeavingForAGroupResetsTheConfigurationInHandByItsOwnName) {
    WriteConfig("Game", ConfigText("1.67.160", {"bios = game"}));
    document.LoadConfig("Game");
    EXPECT_FALSE(document.WarnIfDirty());
    EXPECT_THAT(boxes.shown, IsEmpty());

    MakeDirty();
    editor.SelectByName("A Group", NodeKind::Group);
    boxes.answers = {BoxAnswer::No, BoxAnswer::Yes};
    EXPECT_TRUE(document.WarnIfDirty());
    EXPECT_EQ(document.bios, "edited");
    EXPECT_FALSE(document.LoadConfig("Game")) << "the tree's way back";
    EXPECT_FALSE(document.WarnIfDirty());
    EXPECT_EQ(document.bios, "game");
    EXPECT_EQ(editor.refreshes, 1);
    ExpectClean();
    EXPECT_EQ(boxes.shown.size(), 2U);
}

TEST_F(DocumentTest, APendingDumpThatCannotBeRemovedKeepsTheChangesInHand) {
    WriteConfig("Game", ConfigText("1.67.160", {"bios = game"}));
    document.LoadConfig("Game");
    MakeDirty();
    FailingFiles failing(*files, 1, FailingFiles::At::Fail);
    const platform::HostScope scope_with_failure(
        {&environment, &failing, drives.get(), registry.get(), &processes, nullptr, &boxes});
    boxes.answers = {BoxAnswer::Yes};
    EXPECT_TRUE(document.LoadConfig("Game"));
    EXPECT_EQ(boxes.shown.back().text, "Unable to delete plugins.tmp: No space left on device");
    EXPECT_TRUE(document.dirty);
    EXPECT_EQ(document.bios, "edited");
    EXPECT_FALSE(document.LoadConfig("Game")) << "the tree's way back";
}

TEST_F(DocumentTest, AResetTakesTheSelectedConfigurationAndAsksNothing) {
    WriteConfig("Game", ConfigText("1.67.160", {"bios = game"}));
    editor.SelectByName("Game", NodeKind::Page);
    MakeDirty();
    EXPECT_TRUE(document.OnReset());
    EXPECT_EQ(document.bios, "game");
    EXPECT_EQ(editor.refreshes, 1);
    ExpectClean();
    EXPECT_THAT(boxes.shown, IsEmpty());
}

}  // namespace
}  // namespace velto::test
