#include "store/velto_doc.h"

#include <filesystem>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "store/document_test.h"
#include "support/config_text.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using platform::BoxAnswer;
using testing::ElementsAre;
using testing::IsEmpty;

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
    EXPECT_EQ(boxes.shown.at(0).icon, platform::BoxIcon::Warning);
    EXPECT_THAT(Shown(boxes),
                ElementsAre("File Corrupted: One or more errors where detected in this "
                            "configuration.  Default settings have been used for the corrupted "
                            "values.  It is recommended that you review all settings and change "
                            "as necessary"));
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

    document.dirty = true;
    boxes.answers = {BoxAnswer::Yes};
    EXPECT_FALSE(document.LoadConfig("Game")) << "no dump is pending";
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

}  // namespace
}  // namespace velto::test
