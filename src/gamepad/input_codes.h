// The emulator's codes for host inputs and controller settings, and what the user sees of them.
//
// An input code is one number for any key, button or direction that a controller's button can be
// tied to:
//
//   2 to 255                   the keyboard key with that DirectInput scan code, if it has a name
//   256 + 32 * (j - 1) + d     joystick j (1 to 4), stick direction d
//   272 + 32 * (j - 1) + b     joystick j, button b (0 to 15)
//   384 + 32 * (j - 1) + d     joystick j, direction d of its point-of-view hat
//
// All other numbers, 0 and keys without a name among them, mean no mapping.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace velto {

// The name of a code that means no mapping.
inline constexpr std::string_view kNoMapping = "None";

// The name of an input code, such as `LEFT CTRL`, `J1 B00` or `POV1 UP`.
std::string InputName(int code);

// The name of an axis code, which says what moves a controller's stick; joysticks aren't told
// apart.
std::string_view AxisName(int code);

enum class StickDirection { Right, Left, Down, Up };
enum class HatDirection { Up, Right, Down, Left };

// `joystick` is 1 to 4. A button above 15 has a code that means some other input or none.
int StickCode(int joystick, StickDirection direction);
int ButtonCode(int joystick, int button);
int HatCode(int joystick, HatDirection direction);

// What is plugged in, by `padType`.
inline constexpr int kClassicPad = 1;
inline constexpr std::array<std::string_view, 7> kDeviceTypes = {
    "Unplugged",
    "Classic",
    "Digimouse/Classic (F5 to Switch)",
    "Gun/Classic (F5 to Switch)",
    "DualShock/Classic (F5 to Switch)",
    "MouseT1/Classic (F5 to Switch)",
    "MouseT2/Classic (F5 to Switch)",
};

// What rumbles, by `motorType`.
inline constexpr std::array<std::string_view, 6> kRumbleInterfaces = {
    "None", "DirectX Joy1", "DirectX Joy2", "DirectX Joy3", "DirectX Joy4", "Burutter",
};

// How a motor rumbles, by `bMotorType` and `sMotorType`.
inline constexpr std::array<std::string_view, 3> kMotorModes = {"None", "Constant", "Sine"};

}  // namespace velto
