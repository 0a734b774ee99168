#include "shell/tree/new_config.h"

#include <gmock/gmock.h>

#include "shell/tree/new_group.h"
#include "support/failing_files.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using platform::BoxIcon;
using namespace testing;

class NewConfigTest : public HomeTest {
  protected:
    std::vector<std::string> Files() { return files->List(environment.ConfigFolder()).value(); }

    CNewConfig new_config{ConfigFolder(environment.ConfigFolder())};
};

TEST_F(NewConfigTest, TheFileStartsFromTheEmulatorsPads) {
    const std::string longest(259, '3');
    const std::pair<const char*, std::string> pads[] = {
        {"Keys2", longest + "3"}, {"Keys3", longest}, {"GamepadAxis", "4,5\0,6"s}};
    for (const auto& [value, text] : pads) {
        SetValue(kEmulatorConfigKey, value, platform::StringValue(text));
    }
    SetValue(kEmulatorConfigKey, "GamepadType", platform::DwordValue(1));
    ASSERT_TRUE(new_config.OnOk("Crash B", "Jump & Run"));
    EXPECT_EQ(new_config.name + " in " + new_config.group, "Crash B in Jump & Run");

    const auto text = ReadFile(InConfig("Crash B.dta"));
    EXPECT_THAT(text, HasSubstr("\r\n; keys2 =  \r\n; keys3 = " + longest +
                                " \r\n; keys4 =  \r\n; padAxis = 4,5 \r\n; padType =  \r\n"));
    // Unlike those of a saved file:
    const auto rule = ";# " + std::string(58, '-') + "\r\n";
    const auto slashes = ";#" + std::string(59, '/') + "\r\n";
    EXPECT_THAT(text, HasSubstr(rule + ";# NetPlay Section\r\n" + rule));
    EXPECT_THAT(text, HasSubstr(slashes + ";#\r\n" + slashes + ";#//SPU plugins\r\n" + slashes +
                                rule + ";# End of configuration File\r\n" + rule));
}

TEST_F(NewConfigTest, ANameThatCannotBeHadIsToldInTheOrderOfTheTests) {
    WriteFile(InConfig("sound.dta"), "the user's");
    CVeltoSettings().AddGroup("Action", "My Epsxe");
    CNewGroup new_group;
    EXPECT_THAT(new_group.Groups(), ElementsAre("My Epsxe", "Action"));
    const std::string too_long(252, 'n');
    const struct {
        bool group;
        std::string name, box;  // how it begins
        BoxIcon icon = BoxIcon::Error;
    } rows[] = {
        {false, "", "Error: No name specified."},
        {false, "a;b", "Invalid Characters", BoxIcon::Warning},
        {false, "SOUND", "Error: Filename already exists."},
        {false, "Sound", "Error: Filename already exists."},
        {false, "Graphics", "Error: Illegal Filename."},
        {false, too_long, "Error: Unable to create " + too_long + ".dta: File name too long"},
        {false, "a\0b"s, "Error: Unable to create a\0b.dta: no name of a file"s},
        {true, "", "Error: No name specified.", BoxIcon::Warning},
        {true, "a/b", "Invalid Characters", BoxIcon::Warning},
        {true, "My Epsxe", "Error: Illegal Filename."},
        {true, "Action", "Group Exists", BoxIcon::Warning},
    };
    for (const auto& row : rows) {
        EXPECT_FALSE(row.group ? new_group.OnOk(row.name, "My Epsxe")
                               : new_config.OnOk(row.name, "My Epsxe"));
        ASSERT_FALSE(boxes.shown.empty());
        EXPECT_EQ(boxes.shown[0].icon, row.icon);
        EXPECT_THAT(Shown(boxes), ElementsAre(StartsWith(row.box)));
    }
    EXPECT_EQ(new_config.name + new_group.name, "");
    EXPECT_THAT(Files(), ElementsAre("sound.dta"));
    EXPECT_EQ(ReadFile(InConfig("sound.dta")), "the user's");
    EXPECT_TRUE(new_group.OnOk("action", "Action"));
    EXPECT_EQ(new_group.name + " in " + new_group.parent, "action in Action");
}

TEST_F(NewConfigTest, AFailedStepLeavesNothingBehind) {
    int step = 1;
    for (bool created = false; !created; ++step) {
        FailingFiles failing(*files, step, FailingFiles::At::Fail);
        const auto failing_now = With(failing);
        created = new_config.OnOk("Game", "My Epsxe");
        EXPECT_EQ(Shown(boxes).size() + Files().size(), 1U) << "a message, or the file";
        EXPECT_EQ(Files().size(), created ? 1U : 0U);
    }
    EXPECT_GT(step, 5);
}

}  // namespace
}  // namespace velto::test
