// Loading a configuration, giving its changes up, and saving it: the layout, the source of the
// plug-in lines, and what is left when a step fails or the process ends there.
#include "store/velto_doc.h"

#include <filesystem>
#include <set>
#include <tuple>

#include <gmock/gmock.h>

#include "store/document_test.h"
#include "support/failing_files.h"
#include "support/forked_child.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using namespace testing;
using At = FailingFiles::At;

constexpr const char* kPluginLines =
    ";#//GPU plugins\r\n\r\n"
    "[HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo]\r\n"
    "\"path\"=\"C:\\a\\\"\r\n"
    " ; not at the start, so not a comment\r\n";
constexpr const char* kDump =
    "REGEDIT4 \r\n;#//GPU plugins\r\n\r\n[HKEY_CURRENT_USER\\Dumped]\r\n\"a\"=hex:1\r\n;#\r\n";

class DocTest : public DocumentTest {
  protected:
    DocTest() {
        WriteConfig("Game", old_file);
        WriteConfig("Other", ConfigText("1.67.160", {"bios = other"}));
        EXPECT_FALSE(document.LoadConfig("Game"));
    }
    // Game as it was, edited in hand and, on request, with a pending dump.
    void Edit(bool pending) {
        WriteConfig("Game", old_file);
        document.dirty = false;
        ASSERT_FALSE(document.LoadConfig("Game"));
        document.bios = "edited\n\x1F\x7F.bin";
        document.dirty = editor.enabled = true;
        std::filesystem::remove(dump);
        if (pending) WriteFile(dump, kDump);
    }
    // The configuration in hand and all that an edit brings about.
    std::string InHand() {
        return document.bios + (document.dirty ? " dirty" : "") + (editor.enabled ? " on" : "") +
               (Exists(dump) ? " pending" : "");
    }
    // What a load and a save make of this text.
    std::string Saved(const std::string& text) {
        WriteConfig("Game", text);
        EXPECT_FALSE(document.LoadConfig("Game"));
        EXPECT_TRUE(document.SaveConfig("Game", false, "Game"));
        return Config("Game");
    }

    const std::string dump = InConfig("plugins.tmp");
    const std::string old_file = ConfigText("1.58.152", {"bios = game"}, {}, kPluginLines);
    const std::string edited = "edited\n\x1F\x7F.bin dirty on pending";
};

TEST_F(DocTest, KnowsTheImageDriversByDisplayNameAndByReservedWord) {
    const std::tuple<std::string, std::string, bool, bool> cases[] = {
        {"iso", "Mooby2 cd disk image driver Version 2.8", true, false},
        {"x.dll", "Mooby2 cd disk image driver ", false, false},
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

TEST_F(DocTest, WhatCannotBeReadKeepsTheRecordAndSendsTheTreeBack) {
    EXPECT_TRUE(document.LoadConfig("Missing"));
    EXPECT_THAT(Shown(boxes), ElementsAre("File Not Found: Unable to open Missing.dta in folder " +
                                          environment.ConfigFolder()));
    EXPECT_TRUE(document.LoadConfig(""));
    EXPECT_FALSE(document.LoadConfig("My Epsxe"));
    EXPECT_EQ(document.bios, "game");
    EXPECT_FALSE(document.LoadConfig("OTHER"));
    EXPECT_EQ(document.bios, "other");
    EXPECT_THAT(boxes.shown, testing::IsEmpty());
}

TEST_F(DocTest, AFileWithRepairsWarnsAndIsNeverTreatedAsPortable) {
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

TEST_F(DocTest, ChangesAreLostOnlyIfTheUserMeansIt) {
    EXPECT_FALSE(document.WarnIfDirty());
    Edit(true);
    EXPECT_TRUE(document.LoadConfig("Other"));
    EXPECT_TRUE(boxes.shown.at(0).yes_is_destructive);
    EXPECT_FALSE(document.LoadConfig("Game")) << "the tree's way back";
    EXPECT_EQ(InHand(), edited);
    boxes.answers = {platform::BoxAnswer::Yes, platform::BoxAnswer::Yes};
    EXPECT_FALSE(document.LoadConfig("Other"));
    EXPECT_EQ(InHand(), "other");
    document.dirty = true;
    EXPECT_FALSE(document.LoadConfig("Game")) << "no dump is pending";

    Edit(true);
    editor.SelectByName("A Group", NodeKind::Group);
    EXPECT_TRUE(document.WarnIfDirty());
    EXPECT_FALSE(document.LoadConfig("Game")) << "the tree's way back";
    {
        FailingFiles full(*files, 1, At::Fail);
        const auto failing = With(full);
        EXPECT_FALSE(document.AcceptLoss());
    }
    EXPECT_EQ(boxes.shown.back().text, "Unable to delete plugins.tmp: No space left on device");
    EXPECT_EQ(InHand(), edited);
    boxes.answers = {platform::BoxAnswer::Yes};
    EXPECT_FALSE(document.WarnIfDirty());
    EXPECT_EQ(editor.refreshes, 1);
    EXPECT_EQ(InHand(), "game");
}

TEST_F(DocTest, ASaveBringsAFileToTheCurrentVersionAndASecondOneChangesNothing) {
    const auto current = ReadFile(BinaryFolder() + "/demo-home/config/Image Disc.dta");
    EXPECT_EQ(Saved(current), current);
    const std::vector<std::string> options = {"psxid = slus_1", "commandLine = -a=b",
                                              "memcard1 = \xE9 ; ' \"", "keys1 = 1,,3,x,-4,16",
                                              "magicCFG = true"};
    const auto saved = Saved(ConfigText("1.58.152", options, {}, kPluginLines));
    for (const auto* line : {"fileVersion = 1.67.160 ", "psxid = NULL", "commandLine = -ab",
                             "memcard1 = \xE9 ; ' \""}) {
        EXPECT_THAT(saved, HasSubstr("\r\n; "s + line + "\r\n"));
    }
    EXPECT_THAT(saved,
                testing::AllOf(HasSubstr(kPluginLines), HasSubstr("\r\n; magicCFG = true\r\n")));
    EXPECT_EQ(Saved(saved), saved);
}

TEST_F(DocTest, AnotherProgramsEditIsOverwrittenOnlyIfTheUserMeansIt) {
    editor.selected = "Game";
    Edit(true);
    EXPECT_TRUE(document.OnApply());
    EXPECT_TRUE(document.OnApply()) << "its own save is no other program's";
    EXPECT_TRUE(boxes.shown.empty());
    Edit(true);
    WriteConfig("Game", "theirs");
    boxes.answers = {platform::BoxAnswer::No, platform::BoxAnswer::Yes};
    EXPECT_FALSE(document.OnApply());
    EXPECT_EQ(Config("Game"), "theirs");
    EXPECT_TRUE(document.dirty && Exists(dump) && boxes.shown.at(0).yes_is_destructive);
    EXPECT_THAT(Shown(boxes),
                ElementsAre("File changed: The configuration Game has been changed by "
                            "another program. Do you want to overwrite it?"));
    EXPECT_TRUE(document.OnApply());
    EXPECT_THAT(Config("Game"), HasSubstr("Dumped"));
}

TEST(CopyPluginLines, KeepsBannersAndRegistryLinesAndDropsTheFirstLine) {
    EXPECT_EQ(CopyPluginLines("REGEDIT4"), "");
    const auto lines = "[first]\n\n[a]\n; b = c\n;# d\n;#\n;e\n;#//GPU\n;#///\n ;\rf\0\n\"g\""s;
    EXPECT_EQ(CopyPluginLines(lines), "\n[a]\n;#//GPU\n;#///\n ;\rf\0\n\"g\"\n"s);
}

// With and without a pending dump, portable or not.
class SaveStepsTest : public DocTest, public testing::WithParamInterface<std::tuple<bool, bool>> {
  protected:
    // Whether an edited configuration is saved although this step fails or ends the process.
    bool Save(int step, At at) {
        Edit(pending);
        WriteConfig("Portable", old_file);
        FailingFiles stepped(*files, step, at);
        const auto scope_of_the_save = With(stepped);
        return document.SaveConfig("Game", magic, destination);
    }
    // Behind a save that came to its end before it was done.
    void ExpectNothingLost() {
        EXPECT_TRUE(!magic || Config("Game") == old_file);
        EXPECT_EQ(Exists(dump) ? ReadFile(dump) : "", pending ? kDump : "");
        left.insert(Config(saved));
    }

    const bool pending = std::get<0>(GetParam());
    const bool magic = std::get<1>(GetParam());
    const std::string destination = magic ? InConfig("Portable") : "Game";
    const std::string saved = magic ? "Portable" : "Game";
    std::set<std::string> left;
};
INSTANTIATE_TEST_SUITE_P(Each, SaveStepsTest, testing::Combine(testing::Bool(), testing::Bool()));

TEST_P(SaveStepsTest, AFailureOrAKillLosesNothingAndTheNextStartDeletesNoConfiguration) {
    const auto message = "File Not Found: Unable to save settings to " + destination +
                         ".dta in folder " + environment.ConfigFolder();
    int step = 1;
    for (; step < 20 && !Save(step, At::Fail); ++step) {
        SCOPED_TRACE(step);
        EXPECT_THAT(Shown(boxes), ElementsAre(message));
        EXPECT_TRUE(document.dirty);
        ExpectNothingLost();
        ForkedChild killed([&](const auto&) { return Save(step, At::Kill) ? 1 : 2; });
        ASSERT_EQ(killed.Wait(), 0);
        ExpectNothingLost();
        Start();
        EXPECT_THAT(files->List(environment.ConfigFolder()).value(),
                    testing::UnorderedElementsAre("Game.dta", "Other.dta", "Portable.dta"));
        left.insert(Config(saved));
    }
    // The dump, or no dump and the source, each to its end; create, write, flush, rename,
    // flush the folder; delete the dump.
    EXPECT_EQ(step - 1, (pending ? 3 : 4) + 5 + (pending && !magic ? 1 : 0));
    EXPECT_EQ(document.dirty, magic);
    EXPECT_EQ(Exists(dump), pending && magic);
    const auto new_file = Config(saved);
    EXPECT_THAT(left, testing::UnorderedElementsAre(old_file, new_file));
    EXPECT_THAT(new_file, HasSubstr(pending ? "plugins\r\n\r\n[HKEY_CURRENT_USER\\Dumped]\r\n"
                                              "\"a\"=hex:1\r\n;#\r\n;# ------"
                                            : kPluginLines));
    EXPECT_THAT(new_file, testing::AllOf(HasSubstr("; bios = edited  \x7F.bin\r"),
                                         testing::EndsWith("-\r\n")));
    const auto mark = "; fileGroup = My Epsxe\r\n;#\r\n; magicCFG = true\r\n;# -";
    EXPECT_EQ(new_file.find(mark) != std::string::npos, magic);
}

TEST_F(DocTest, WhatIsTooLargeOrNoNameFailsTheSaveBeforeAnythingIsWritten) {
    Edit(false);
    WriteConfig("Huge", std::string(kLargestConfigFile + 1, 'x'));
    // Lines that fit, but no longer with what a save adds to them.
    WriteConfig("Large", "\n" + std::string(kLargestConfigFile - 100, 'x'));
    std::filesystem::create_directory(InConfig("Folder.dta"));
    for (const auto* source : {"Huge", "Large", "Folder", "../Game"}) {
        EXPECT_FALSE(document.SaveConfig(source, false, "Game")) << source;
    }
    EXPECT_FALSE(document.SaveConfig("Game", false, "../Game"));
    EXPECT_EQ(Config("Game"), old_file);
    EXPECT_FALSE(Exists(InHome("Game.dta")));
    EXPECT_TRUE(document.SaveConfig("No such source", false, "Game"));
    EXPECT_THAT(Config("Game"), testing::Not(HasSubstr("Demo]")));
}

}  // namespace
}  // namespace velto::test
