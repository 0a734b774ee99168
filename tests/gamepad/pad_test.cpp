#include <chrono>

#include <gtest/gtest.h>

#include "gamepad/input_codes.h"
#include "gamepad/pad_set.h"
#include "platform/host.h"
#include "support/shown.h"

namespace velto::test {
namespace {

constexpr auto kKeyboard = "203,205,200,208,32,45,44,31,17,18,19,20,47,46,16,21";
constexpr auto kSixteenZeros = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";

// The four shared lists of one code a port, then the axes.
std::vector<std::string> SharedLists(const CPadSet& pads) {
    return {pads.GetTypeString(), pads.GetMotorString(), pads.GetBMotorString(),
            pads.GetSMotorString(), pads.GetAxisString()};
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
    const std::vector<std::string> shared = {"1,0,0,0", "0,0,0,0", "0,0,0,0", "0,0,0,0",
                                             kSixteenZeros};
    EXPECT_EQ(SharedLists(pads), shared);
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
    for (const int number : {4, 0, 5, -1}) pad.SetNumber(number);
    EXPECT_EQ(pad.padNumber, 4);
    EXPECT_EQ(boxes.shown.at(0).icon, platform::BoxIcon::Error);
    EXPECT_EQ(Shown(boxes), std::vector<std::string>(3, "Error: Invalid Controller"));
}

TEST(Pad, WritesEveryTokenAsAPlainNumber) {
    const std::pair<std::string_view, std::string> cases[] = {
        {"1,,3", "1,0,3"},
        {",2", "0,2,0"},
        {"007,0000000000000000000012,000", "7,12,0"},
        {"2147483647,2147483648,99999999999999999999", "2147483647,0,0"},
        {"-5,+5, 5", "0,0,0"},
        {"5x,5 ,3", "0,0,3"},
        {std::string_view("1\0,2\0,3", 7), "0,0,3"},
    };
    for (const auto& [keys, first_three] : cases) {
        CPad pad;
        pad.Load(keys, "0", "0", "0", "0", "0");
        EXPECT_EQ(pad.GetKeyString(), first_three + ",0,0,0,0,0,0,0,0,0,0,0,0,0") << keys;
    }
}

TEST(PadSet, ReadsNoMoreOfAListThanItsShare) {
    const std::string share = "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16";
    const auto list = share + std::string(1'000'000, ',');
    CPadSet pads;
    const auto before = std::chrono::steady_clock::now();
    for (int load = 0; load < 1000; ++load) pads.SetPad(4, list, list, list, list, list, list);
    // It takes milliseconds; with all million tokens, minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(3));
    EXPECT_EQ(pads.At(4).GetKeyString(), share);
    EXPECT_EQ(pads.At(4).GetAxisString(), "13,14,15,16");
}

TEST(PadSet, ReadsBackWhatItWrites) {
    CPadSet pads;
    const std::vector<std::string> shared = {"4,1,6,0", "2,3,4,5", "0,1,2,1", "2,1,0,2",
                                             "1,2,3,4,5,6,7,0,10,11,12,13,14,15,16,17"};
    std::string keys[6];
    for (const int number : {1, 2, 3, 4, 0, 5}) {
        for (int key = 1; key <= 16; ++key) {
            keys[number] += (key > 1 ? "," : "") + std::to_string(100 * number + key);
        }
        pads.SetPad(number, keys[number], shared[4], shared[1], shared[2], shared[3], shared[0]);
    }
    for (const int number : {1, 2, 3, 4}) EXPECT_EQ(pads.At(number).GetKeyString(), keys[number]);
    EXPECT_EQ(SharedLists(pads), shared);
    const auto& p = pads.At(3);
    const int buttons[] = {p.left, p.right, p.up, p.down, p.triangle, p.circle, p.cross, p.square,
                           p.l1,   p.l2,    p.r1, p.r2,   p.start,    p.select, p.l3,    p.r3};
    for (int key = 1; key <= 16; ++key) EXPECT_EQ(buttons[key - 1], 300 + key);
    EXPECT_EQ(pads.At(2).leftAxisX, 5);
    EXPECT_EQ(pads.At(2).rightAxisY, 0);
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
