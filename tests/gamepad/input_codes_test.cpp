#include "gamepad/input_codes.h"

#include <map>

#include <gtest/gtest.h>

namespace velto::test {
namespace {

TEST(InputName, TellsKeysStickDirectionsButtonsAndHatsApart) {
    const std::map<int, std::string_view> cases = {
        {0, "None"},        {2, "1"},           {29, "LEFT CTRL"}, {43, "UK,GER: '#' INTER: '\\'"},
        {83, "NUM ."},      {179, "NUM,"},      {256, "J1 RIGHT"}, {257, "J1 LEFT"},
        {258, "J1 DOWN"},   {259, "J1 UP"},     {260, "None"},     {271, "None"},
        {272, "J1 B00"},    {281, "J1 B09"},    {282, "J1 B10"},   {287, "J1 B15"},
        {288, "J2 RIGHT"},  {383, "J4 B15"},    {384, "POV1 UP"},  {385, "POV1 RIGHT"},
        {386, "POV1 DOWN"}, {387, "POV1 LEFT"}, {388, "None"},     {483, "POV4 LEFT"},
        {484, "None"},      {512, "None"},      {-1, "None"},      {2147483647, "None"},
    };
    for (const auto& [code, name] : cases) EXPECT_EQ(InputName(code), name) << code;
    const auto named = [](int first, int end) {
        int count = 0;
        for (int code = first; code < end; ++code) count += InputName(code) != kNoMapping ? 1 : 0;
        return count;
    };
    EXPECT_EQ(named(0, 256), 91);
    EXPECT_EQ(named(256, 384), 4 * (4 + 16));
    EXPECT_EQ(named(384, 1000), 4 * 4);
}

TEST(InputCode, IsTheOneThatTheEmulatorKnows) {
    EXPECT_EQ(StickCode(4, StickDirection::Up), 355);
    EXPECT_EQ(ButtonCode(2, 0), 304);
    EXPECT_EQ(HatCode(4, HatDirection::Left), 483);
}

TEST(AxisName, IsNoneOutsideTheSevenAxes) {
    const std::string_view names[] = {"None",  "None",   "X AXIS", "Y AXIS", "THROTTLE",
                                      "Y ROT", "RUDDER", "U AXIS", "V AXIS", "None"};
    for (int code = -1; code <= 8; ++code) EXPECT_EQ(AxisName(code), names[code + 1]) << code;
}

}  // namespace
}  // namespace velto::test
