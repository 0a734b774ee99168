#include "shell/tree/new_config.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/tree/new_group.h"
#include "store/config_record.h"
#include "support/failing_files.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using platform::BoxIcon;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class NewConfigTest : public HomeTest {
  protected:
    void SetPad(const char* value, const std::string& text) {
        SetValue(kEmulatorConfigKey, value, platform::StringValue(text));
    }
    std::vector<std::string> Files() { return files->List(environment.ConfigFolder()).value(); }

    CNewConfig new_config{environment.ConfigFolder()};
};

TEST_F(NewConfigTest, TheFileStartsFromTheEmulatorsPads) {
    SetPad("KEYS1", "1,2,3");
    SetPad("Keys2", std::string(260, '2'));
    SetPad("Keys3", std::string(259, '3'));
    SetPad("GamepadAxis", "4,5\0,6"s);
    SetValue(kEmulatorConfigKey, "GamepadType", platform::DwordValue(1));
    SetPad("Multitap1", "1");
    ASSERT_TRUE(new_config.OnOk("Crash B", "Jump & Run"));
    EXPECT_EQ(new_config.name, "Crash B");
    EXPECT_EQ(new_config.group, "Jump & Run");
    EXPECT_THAT(Files(), ElementsAre("Crash B.dta"));

    const auto text = ReadFile(InConfig("Crash B.dta"));
    const std::string rule = ";# " + std::string(58, '-') + "\r\n";
    const std::string slashes = ";#" + std::string(59, '/') + "\r\n";
    EXPECT_TRUE(text.starts_with(
        "REGEDIT4\r\n;# Velto configuration file\r\n;# Lines beginning with ';#' are comments\r\n"
        ";# Lines beginning with ';' are Velto's options\r\n"
        ";# Lines beginning with ';#//' are plugin comments\r\n"
        ";# Lines without any symbols are plugin registry entries\r\n;#\r\n" +
        rule + ";# Important Velto Internals\r\n" + rule + ";#\r\n; fileVersion = 1.67.160 \r\n" +
        "; fileGroup = Jump & Run \r\n;#\r\n" + rule + ";# Graphics Section\r\n" + rule +
        ";#\r\n; gpuFileName = NULL \r\n;#\r\n"));
    EXPECT_THAT(text,
                HasSubstr(";# NetPlay Section\r\n" + rule + ";#\r\n; netFileName = NULL \r\n"));
    EXPECT_THAT(text,
                HasSubstr("; keys1 = 1,2,3 \r\n; keys2 =  \r\n; keys3 = " + std::string(259, '3') +
                          " \r\n; keys4 =  \r\n; padAxis = 4,5 \r\n"
                          "; padType =  \r\n; motorType =  \r\n; bMotorType =  \r\n"
                          "; sMotorType =  \r\n; multiTap = true \r\n;#\r\n"));
    EXPECT_TRUE(text.ends_with(
        rule +
        ";# Obsolete Section\r\n;# Entries in here are retained for backwards compatibility"
        "\r\n" +
        rule + ";#\r\n; psxid = NULL \r\n;#\r\n" + rule + ";# Plugin Section\r\n" + rule +
        ";#\r\n" + slashes + ";#//GPU plugins\r\n" + slashes + ";#\r\n" + slashes +
        ";#//CDR plugins\r\n" + slashes + ";#\r\n" + slashes + ";#//SPU plugins\r\n" + slashes +
        rule + ";# End of configuration File\r\n" + rule));

    const auto record =
        ReadRecord(CConfigFile::Open(InConfig("Crash B.dta")).value(), [](const auto&) {
            return ""s;
        }).record;
    EXPECT_EQ(record.fileGroup, "Jump & Run");
    EXPECT_TRUE(record.enableXA);
    EXPECT_FALSE(record.enableSpuIRQ);
    EXPECT_EQ(record.region, "Autodetect");
}

TEST_F(NewConfigTest, ANameThatCannotBeHadIsToldInTheOrderOfTheTests) {
    WriteFile(InConfig("sound.dta"), "the user's");
    const struct {
        std::string name;
        std::string text;
        std::string caption;
        BoxIcon icon;
    } rows[] = {
        {"", "No name specified.", "Error", BoxIcon::Error},
        {"a;b", "Config names cannot contain any of the following characters, \\/:?\"<>|;*",
         "Invalid Characters", BoxIcon::Warning},
        {"SOUND", "Filename already exists.", "Error", BoxIcon::Error},
        {"Sound", "Filename already exists.", "Error", BoxIcon::Error},
        {"Graphics", "Illegal Filename.", "Error", BoxIcon::Error},
        {std::string(252, 'n'),
         "Unable to create " + std::string(252, 'n') + ".dta: File name too long", "Error",
         BoxIcon::Error},
        {"a\0b"s, "Unable to create a\0b.dta: no name of a file"s, "Error", BoxIcon::Error},
    };
    for (const auto& row : rows) {
        boxes.shown.clear();
        EXPECT_FALSE(new_config.OnOk(row.name, "My Epsxe"));
        ASSERT_EQ(boxes.shown.size(), 1U) << row.name;
        EXPECT_EQ(boxes.shown[0].text, row.text);
        EXPECT_EQ(boxes.shown[0].caption, row.caption);
        EXPECT_EQ(boxes.shown[0].icon, row.icon);
    }
    EXPECT_EQ(new_config.name, "");
    EXPECT_THAT(Files(), ElementsAre("sound.dta"));
    EXPECT_EQ(ReadFile(InConfig("sound.dta")), "the user's");
}

TEST_F(NewConfigTest, AFailedStepLeavesNothingBehindAndCanBeTriedAgain) {
    int step = 1;
    for (bool created = false; !created; ++step) {
        ASSERT_LT(step, 20);
        FailingFiles failing(*files, step, FailingFiles::At::Fail);
        const auto failing_scope = With(failing);
        boxes.shown.clear();
        created = new_config.OnOk("Game", "My Epsxe");
        if (created) break;
        EXPECT_THAT(boxes.shown, testing::SizeIs(1));
        EXPECT_THAT(Files(), IsEmpty()) << step;
    }
    EXPECT_GT(step, 4);
    EXPECT_THAT(Files(), ElementsAre("Game.dta"));
}

TEST_F(NewConfigTest, AGroupsNamePassesTheTestsOfARename) {
    CVeltoSettings().AddGroup("Action", "My Epsxe");
    CNewGroup group;
    EXPECT_THAT(group.Groups(), ElementsAre("My Epsxe", "Action"));
    const struct {
        const char* name;
        const char* caption;
        BoxIcon icon;
    } rows[] = {{"", "Error", BoxIcon::Warning},
                {"a/b", "Invalid Characters", BoxIcon::Warning},
                {"My Epsxe", "Error", BoxIcon::Error},
                {"Action", "Group Exists", BoxIcon::Warning}};
    for (const auto& row : rows) {
        boxes.shown.clear();
        EXPECT_FALSE(group.OnOk(row.name, "My Epsxe"));
        ASSERT_EQ(boxes.shown.size(), 1U) << row.name;
        EXPECT_EQ(boxes.shown[0].caption, row.caption);
        EXPECT_EQ(boxes.shown[0].icon, row.icon);
    }
    EXPECT_EQ(group.name + group.parent, "");
    EXPECT_TRUE(group.OnOk("action", "Action"));
    EXPECT_EQ(group.name, "action");
    EXPECT_EQ(group.parent, "Action");
}

}  // namespace
}  // namespace velto::test
