#include "gamepad/input_codes.h"

#include <map>

#include <gtest/gtest.h>

namespace velto::test {
namespace {

TEST(InputCodes, HaveNamesForKeysSticksButtonsHatsAndAxes) {
    const std::map<int, std::string_view> names = {
        {-1, "None"},       {0, "None"},       {2, "1"},           {208, "DOWN ARROW"},
        {255, "None"},      {256, "J1 RIGHT"}, {259, "J1 UP"},     {260, "None"},
        {271, "None"},      {272, "J1 B00"},   {281, "J1 B09"},    {282, "J1 B10"},
        {287, "J1 B15"},    {288, "J2 RIGHT"}, {383, "J4 B15"},    {384, "POV1 UP"},
        {387, "POV1 LEFT"}, {388, "None"},     {483, "POV4 LEFT"}, {484, "None"},
        {512, "None"},
    };
    for (const auto& [code, name] : names) EXPECT_EQ(InputName(code), name) << code;
    int keys = 0;
    for (int code = 0; code < 256; ++code) keys += InputName(code) == kNoMapping ? 0 : 1;
    EXPECT_EQ(keys, 91);
    EXPECT_EQ(StickCode(4, StickDirection::Up), 355);
    EXPECT_EQ(ButtonCode(2, 0), 304);
    EXPECT_EQ(HatCode(4, HatDirection::Left), 483);
    EXPECT_EQ(AxisName(7), "V AXIS");
    for (const int code : {-1, 0, 8}) EXPECT_EQ(AxisName(code), "None") << code;
}

}  // namespace
}  // namespace velto::test
