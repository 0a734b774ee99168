#include "gamepad/input_codes.h"

#include <algorithm>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velto::test {
namespace {

TEST(InputName, TellsKeysStickDirectionsButtonsAndHatsApart) {
    struct Case {
        int code;
        std::string_view name;
    };
    const Case cases[] = {
        {0, "None"},         {2, "1"},           {11, "0"},
        {29, "LEFT CTRL"},   {57, "SPACE"},      {43, "UK,GER: '#' INTER: '\\'"},
        {83, "NUM ."},       {179, "NUM,"},      {86, "UK GER: '\\'"},
        {256, "J1 RIGHT"},   {257, "J1 LEFT"},   {258, "J1 DOWN"},
        {259, "J1 UP"},      {272, "J1 B00"},    {281, "J1 B09"},
        {282, "J1 B10"},     {287, "J1 B15"},    {288, "J2 RIGHT"},
        {304, "J2 B00"},     {383, "J4 B15"},    {384, "POV1 UP"},
        {385, "POV1 RIGHT"}, {386, "POV1 DOWN"}, {387, "POV1 LEFT"},
        {416, "POV2 UP"},    {483, "POV4 LEFT"},
    };
    for (const auto& [code, name] : cases) EXPECT_EQ(InputName(code), name) << code;
}

TEST(InputName, IsNoneForEscapeCapsLockTheGapsAndWhatNoBlockHolds) {
    for (const int code : {1, 58, 69, 199, 211, 255, 260, 271, 292, 303, 388, 415, 420, 484, 512,
                           -1, -256, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(InputName(code), kNoMapping) << code;
    }
}

TEST(InputName, IsThereFor91KeysAndEveryInputOfFourJoysticks) {
    const auto named = [](int first, int end) {
        int count = 0;
        for (int code = first; code < end; ++code) count += InputName(code) != kNoMapping ? 1 : 0;
        return count;
    };
    EXPECT_EQ(named(0, 256), 91);
    EXPECT_EQ(named(256, 384), 4 * (4 + 16));
    EXPECT_EQ(named(384, 1000), 4 * 4);

    std::set<std::string> names;
    for (int code = 256; code < 1000; ++code) names.insert(InputName(code));
    EXPECT_EQ(names.size(), 4U * (4 + 16) + 4 * 4 + 1) << "two inputs have one name";
}

TEST(InputCode, IsTheOneThatItsNameStandsFor) {
    for (int joystick = 1; joystick <= 4; ++joystick) {
        const auto number = std::to_string(joystick);
        EXPECT_EQ(InputName(StickCode(joystick, StickDirection::Left)), "J" + number + " LEFT");
        EXPECT_EQ(InputName(StickCode(joystick, StickDirection::Down)), "J" + number + " DOWN");
        EXPECT_EQ(InputName(ButtonCode(joystick, 7)), "J" + number + " B07");
        EXPECT_EQ(InputName(HatCode(joystick, HatDirection::Left)), "POV" + number + " LEFT");
        EXPECT_EQ(InputName(HatCode(joystick, HatDirection::Right)), "POV" + number + " RIGHT");
    }
    EXPECT_EQ(ButtonCode(2, 0), 304);
}

TEST(AxisName, IsNoneOutsideTheSevenAxes) {
    const std::string_view names[] = {"None",  "None",   "X AXIS", "Y AXIS", "THROTTLE",
                                      "Y ROT", "RUDDER", "U AXIS", "V AXIS", "None"};
    for (int code = -1; code <= 8; ++code) EXPECT_EQ(AxisName(code), names[code + 1]) << code;
    EXPECT_EQ(AxisName(256), "None");
}

}  // namespace
}  // namespace velto::test
