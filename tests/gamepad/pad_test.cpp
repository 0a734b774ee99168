#include <chrono>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "gamepad/input_codes.h"
#include "gamepad/pad_set.h"
#include "platform/host.h"
#include "support/scripted_boxes.h"

namespace velto::test {
namespace {

constexpr auto kKeyboard = "203,205,200,208,32,45,44,31,17,18,19,20,47,46,16,21";
constexpr auto kSixteenZeros = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";

CPad LoadedPad(int number, std::string_view keys, std::string_view axes = "0",
               std::string_view types = "0") {
    CPad pad;
    pad.SetNumber(number);
    pad.Load(keys, axes, "0", "0", "0", types);
    return pad;
}

TEST(Pad, IsTheKeyboardByDefaultOnPortOneAndUnpluggedOnTheOthers) {
    CPadSet pads;
    for (int number = 1; number <= 4; ++number) {
        auto& pad = pads.At(number);
        pad.up = pad.rightAxisY = pad.motorType = pad.bMotorType = pad.sMotorType = pad.padType = 9;
        pad.SetDefaults();
        EXPECT_EQ(pad.GetKeyString(), number == 1 ? kKeyboard : kSixteenZeros);
        EXPECT_EQ(pad.padNumber, number);
    }
    EXPECT_EQ(pads.GetTypeString(), "1,0,0,0");
    EXPECT_EQ(pads.GetAxisString(), kSixteenZeros);
    for (const auto& motors :
         {pads.GetMotorString(), pads.GetBMotorString(), pads.GetSMotorString()}) {
        EXPECT_EQ(motors, "0,0,0,0");
    }
}

TEST(Pad, HasItsDefaultsIfOneListIsEmpty) {
    for (int empty = 0; empty < 6; ++empty) {
        std::string lists[] = {"7", "7,7,7,7,7", "7,7", "7,7", "7,7", "7,7"};
        lists[empty].clear();
        for (const int number : {1, 2}) {
            CPad pad;
            pad.SetNumber(number);
            auto expected = pad;
            expected.SetDefaults();
            pad.Load(lists[0], lists[1], lists[2], lists[3], lists[4], lists[5]);
            EXPECT_EQ(pad, expected) << "list " << empty << ", pad " << number;
        }
    }
}

TEST(Pad, RefusesANumberOutsideOneToFour) {
    ScriptedBoxes boxes;
    platform::HostServices services;
    services.boxes = &boxes;
    const platform::HostScope scope(services);
    CPad pad;
    pad.SetNumber(4);
    for (const int number : {0, 5, -1}) pad.SetNumber(number);
    EXPECT_EQ(pad.padNumber, 4);
    ASSERT_EQ(boxes.shown.size(), 3U);
    EXPECT_EQ(boxes.shown[0].text, "Invalid Controller");
    EXPECT_EQ(boxes.shown[0].caption, "Error");
    EXPECT_EQ(boxes.shown[0].icon, platform::BoxIcon::Error);
}

TEST(Pad, WritesEveryTokenAsAPlainNumber) {
    struct Case {
        std::string_view keys;
        std::string written;  // the first three tokens; the others are 0
    };
    const Case cases[] = {
        {"1,,3", "1,0,3"},
        {",2", "0,2,0"},
        {"1,2,3,", "1,2,3"},
        {"007,0000000000000000000012,000", "7,12,0"},
        {"2147483647,2147483648,99999999999999999999", "2147483647,0,0"},
        {"-5,+5,-0", "0,0,0"},
        {" 5,5 ,5\r", "0,0,0"},
        {"5x,0x10,1.5", "0,0,0"},
        {"5;6;7,8", "0,8,0"},
        {std::string_view("1\0,2\0,3", 7), "0,0,3"},
    };
    for (const auto& [keys, written] : cases) {
        EXPECT_EQ(LoadedPad(1, keys).GetKeyString(), written + std::string(kSixteenZeros + 5))
            << keys;
    }
}

TEST(Pad, ReadsNoMoreOfAListThanItsShare) {
    const std::string share = "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16";
    const auto list = share + std::string(1'000'000, ',');
    const auto before = std::chrono::steady_clock::now();
    for (int load = 0; load < 1000; ++load) {
        const auto pad = LoadedPad(4, list, list, list);
        ASSERT_EQ(pad.GetKeyString(), share);
        ASSERT_EQ(pad.GetAxisString(), "13,14,15,16");
        ASSERT_EQ(pad.padType, 4);
    }
    // It takes milliseconds; with all million tokens, minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(3));
}

TEST(PadSet, ReadsBackWhatItWrites) {
    CPadSet pads;
    const std::string axes = "1,2,3,4,5,6,7,0,10,11,12,13,14,15,16,17";
    std::string keys[4];
    for (int number = 1; number <= 4; ++number) {
        auto& list = keys[number - 1];
        for (int key = 1; key <= 16; ++key) {
            list += (key > 1 ? "," : "") + std::to_string(100 * number + key);
        }
        pads.SetPad(number, list, axes, "2,3,4,5", "0,1,2,1", "2,1,0,2", "4,1,6,0");
    }
    const auto before = pads;
    pads.SetPad(0, "9", "9", "9", "9", "9", "9");
    pads.SetPad(5, "9", "9", "9", "9", "9", "9");
    EXPECT_EQ(pads, before);

    for (int number = 1; number <= 4; ++number) {
        EXPECT_EQ(pads.At(number).GetKeyString(), keys[number - 1]);
    }
    const auto& p = pads.At(3);
    const int buttons[] = {p.left, p.right, p.up, p.down, p.triangle, p.circle, p.cross, p.square,
                           p.l1,   p.l2,    p.r1, p.r2,   p.start,    p.select, p.l3,    p.r3};
    for (int key = 1; key <= 16; ++key) EXPECT_EQ(buttons[key - 1], 300 + key);
    EXPECT_EQ(pads.GetAxisString(), axes);
    EXPECT_EQ(pads.GetMotorString(), "2,3,4,5");
    EXPECT_EQ(pads.GetBMotorString(), "0,1,2,1");
    EXPECT_EQ(pads.GetSMotorString(), "2,1,0,2");
    EXPECT_EQ(pads.GetTypeString(), "4,1,6,0");
    EXPECT_EQ(AxisName(pads.At(2).leftAxisX), "RUDDER");
    EXPECT_EQ(AxisName(pads.At(2).rightAxisX), "V AXIS");
    EXPECT_EQ(AxisName(pads.At(2).rightAxisY), "None");
}

TEST(PadSet, ForgetsWhatAPadHadWhenItsShareIsMissing) {
    CPadSet pads;
    pads.SetPad(3, "9", "1,2,3,4,5,6,7,8,9,10,11,12", "1,2,3", "1,2,3", "1,2,3", "1,2,3");
    pads.SetPad(3, "8", "1,2,3,4,5,6,7,8,9", "1,2", "1,2", "1,2", "1,2");
    EXPECT_EQ(pads.At(3).GetKeyString(), "8" + std::string(kSixteenZeros + 1));
    EXPECT_EQ(pads.At(3).GetAxisString(), "9,0,0,0");
    EXPECT_EQ(pads.GetTypeString(), "0,0,0,0");
}

}  // namespace
}  // namespace velto::test
