// One of the emulator's four controller ports: what is plugged in, how it rumbles, and which host
// inputs stand for its buttons and sticks.
//
// A plain record. Every field but `padNumber` is a code of gamepad/input_codes.h, 0 or more, but
// any number is kept as it is, also one that has no meaning there.
//
// The port travels in six lists of codes, as configurations and the emulator's registry hold them:
// one with its own buttons, five that all ports share. A list is plain decimal numbers of 0 to
// 2147483647 with a single comma between each two. Whatever else is found between commas, nothing
// included, reads as 0; leading zeros do no harm.
#pragma once

#include <string>
#include <string_view>

namespace velto {

inline constexpr int kPadCount = 4;

class CPad {
  public:
    // Takes 1 to 4. For anything else: a message box, and the number stays.
    void SetNumber(int number);

    // Port 1 is a classic pad on the keyboard; any other one is unplugged and has no mapping.
    void SetDefaults();

    // The 16 codes of the buttons, in the emulator's order: left, right, up, down, triangle,
    // circle, cross, square, L1, L2, R1, R2, start, select, L3, R3.
    std::string GetKeyString() const;

    // The 4 codes of the sticks: left X, left Y, right X, right Y.
    std::string GetAxisString() const;

    // Takes `keys` in the order of GetKeyString, and this port's share of the lists that begin
    // with port 1: four of `axes`, one of each other list. If one of the six is empty, all are
    // ignored, and the port has its defaults. A port without a number takes the keys alone.
    void Load(std::string_view keys, std::string_view axes, std::string_view motors,
              std::string_view big_motors, std::string_view small_motors, std::string_view types);

    bool operator==(const CPad&) const = default;

    int up = 0;
    int right = 0;
    int down = 0;
    int left = 0;
    int triangle = 0;
    int square = 0;
    int circle = 0;
    int l1 = 0;
    int l2 = 0;
    int l3 = 0;
    int r1 = 0;
    int r2 = 0;
    int r3 = 0;
    int start = 0;
    int select = 0;
    int leftAxisX = 0;
    int leftAxisY = 0;
    int rightAxisX = 0;
    int rightAxisY = 0;
    int padNumber = 0;  // the port, 1 to 4; 0 until it has one
    int cross = 0;
    int padType = 0;     // device type
    int bMotorType = 0;  // motor mode of the big (left) motor
    int sMotorType = 0;  // motor mode of the small (right) motor
    int motorType = 0;   // rumble interface
};

// The code as the list's last token.
void AppendCode(std::string& list, int code);

}  // namespace velto
