#include <map>

#include <gtest/gtest.h>

#include "gamepad/input_codes.h"
#include "gamepad/pad_set.h"

namespace velto::test {
namespace {

// In the order of SetPad.
using Lists = std::vector<std::string>;

Lists ListsOf(const CPadSet& pads, int number) {
    return {pads.At(number).GetKeyString(), pads.GetAxisString(),   pads.GetMotorString(),
            pads.GetBMotorString(),         pads.GetSMotorString(), pads.GetTypeString()};
}

void Set(CPadSet& pads, int number, const Lists& lists) {
    pads.SetPad(number, lists[0], lists[1], lists[2], lists[3], lists[4], lists[5]);
}

TEST(PadSet, HasTheKeyboardOnPortOneAloneIfOneListIsEmpty) {
    const std::string zeros = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";
    for (std::size_t empty = 0; empty < 6; ++empty) {
        CPadSet pads;
        for (const int number : {1, 2, 3, 4}) {
            Lists lists(6, "9,9,9,9");
            Set(pads, number, lists);
            lists[empty].clear();
            Set(pads, number, lists);
            EXPECT_EQ(pads.At(number).padNumber, number);
        }
        const std::string keyboard = "203,205,200,208,32,45,44,31,17,18,19,20,47,46,16,21";
        for (const int number : {1, 2, 3, 4}) {
            EXPECT_EQ(ListsOf(pads, number), (Lists{number == 1 ? keyboard : zeros, zeros,
                                                    "0,0,0,0", "0,0,0,0", "0,0,0,0", "1,0,0,0"}))
                << empty;
        }
    }
}

TEST(PadSet, ReadsBackWhatItWrites) {
    CPadSet pads;
    const Lists shared = {
        "", "1,2,3,4,5,6,7,0,10,11,12,13,14,15,16,17", "2,3,4,5", "0,1,2,1", "2,1,0,2", "4,1,6,0"};
    std::map<int, Lists> lists;
    for (const int number : {1, 2, 3, 4, 0, 5}) {
        lists[number] = shared;
        for (int key = 1; key <= 16; ++key) AppendCode(lists[number][0], 100 * number + key);
        Set(pads, number, lists[number]);
    }
    for (const int number : {1, 2, 3, 4}) EXPECT_EQ(ListsOf(pads, number), lists[number]);
    const auto& p = pads.At(3);
    const int buttons[] = {p.left, p.right, p.up, p.down, p.triangle, p.circle, p.cross, p.square,
                           p.l1,   p.l2,    p.r1, p.r2,   p.start,    p.select, p.l3,    p.r3};
    for (int key = 1; key <= 16; ++key) EXPECT_EQ(buttons[key - 1], 300 + key);
    EXPECT_EQ(pads.At(2).leftAxisX, 5);
    EXPECT_EQ(pads.At(2).rightAxisY, 0);

    lists[1][0] = "1,,007,2147483647,2147483648,-5,5x";
    Set(pads, 1, lists[1]);
    EXPECT_EQ(pads.At(1).GetKeyString(), "1,0,7,2147483647,0,0,0,0,0,0,0,0,0,0,0,0");
}

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
