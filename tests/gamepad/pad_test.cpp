#include <map>

#include <gtest/gtest.h>

#include "gamepad/pad_set.h"

namespace velto::test {
namespace {

using Lists = std::vector<std::string>;

const std::string kZeros = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";

// In the order of SetPad.
Lists SharedLists(const CPadSet& pads) {
    return {pads.GetAxisString(), pads.GetMotorString(), pads.GetBMotorString(),
            pads.GetSMotorString(), pads.GetTypeString()};
}

void Set(CPadSet& pads, int number, const std::string& keys, const Lists& shared) {
    pads.SetPad(number, keys, shared[0], shared[1], shared[2], shared[3], shared[4]);
}

TEST(PadSet, HasTheKeyboardOnPortOneAloneIfOneListIsEmpty) {
    for (std::size_t empty = 0; empty < 6; ++empty) {
        SCOPED_TRACE(empty);
        CPadSet pads;
        for (const int number : {1, 2, 3, 4}) {
            Set(pads, number, "9", {kZeros, "9,9,9,9", "9,9,9,9", "9,9,9,9", "9,9,9,9"});
            Lists lists(6, "7,7,7,7");
            lists[empty].clear();
            pads.SetPad(number, lists[0], lists[1], lists[2], lists[3], lists[4], lists[5]);
            EXPECT_EQ(pads.At(number).GetKeyString(),
                      number == 1 ? "203,205,200,208,32,45,44,31,17,18,19,20,47,46,16,21" : kZeros);
            EXPECT_EQ(pads.At(number).padNumber, number);
        }
        EXPECT_EQ(SharedLists(pads), (Lists{kZeros, "0,0,0,0", "0,0,0,0", "0,0,0,0", "1,0,0,0"}));
    }
}

TEST(PadSet, ReadsBackWhatItWrites) {
    CPadSet pads;
    const Lists shared = {"1,2,3,4,5,6,7,0,10,11,12,13,14,15,16,17", "2,3,4,5", "0,1,2,1",
                          "2,1,0,2", "4,1,6,0"};
    std::map<int, std::string> keys;
    for (const int number : {1, 2, 3, 4, 0, 5}) {
        for (int key = 1; key <= 16; ++key) AppendCode(keys[number], 100 * number + key);
        Set(pads, number, keys[number], shared);
    }
    for (const int number : {1, 2, 3, 4}) EXPECT_EQ(pads.At(number).GetKeyString(), keys[number]);
    EXPECT_EQ(SharedLists(pads), shared);
    const auto& p = pads.At(3);
    const int buttons[] = {p.left, p.right, p.up, p.down, p.triangle, p.circle, p.cross, p.square,
                           p.l1,   p.l2,    p.r1, p.r2,   p.start,    p.select, p.l3,    p.r3};
    for (int key = 1; key <= 16; ++key) EXPECT_EQ(buttons[key - 1], 300 + key);
    EXPECT_EQ(pads.At(2).leftAxisX, 5);
    EXPECT_EQ(pads.At(2).rightAxisY, 0);

    Set(pads, 1, "1,,007,2147483647,2147483648,-5,5x", shared);
    EXPECT_EQ(pads.At(1).GetKeyString(), "1,0,7,2147483647,0,0,0,0,0,0,0,0,0,0,0,0");
}

}  // namespace
}  // namespace velto::test
