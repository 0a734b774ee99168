#include "gamepad/input_codes.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace velto {
namespace {

struct Key {
    int code;
    std::string_view name;
};

// clang-format off
constexpr Key kKeys[] = {
    {2, "1"}, {3, "2"}, {4, "3"}, {5, "4"}, {6, "5"}, {7, "6"}, {8, "7"}, {9, "8"}, {10, "9"},
    {11, "0"}, {12, "-"}, {13, "="}, {14, "BACKSPACE"}, {15, "TAB"}, {16, "Q"}, {17, "W"},
    {18, "E"}, {19, "R"}, {20, "T"}, {21, "Y"}, {22, "U"}, {23, "I"}, {24, "O"}, {25, "P"},
    {26, "["}, {27, "]"}, {28, "ENTER"}, {29, "LEFT CTRL"}, {30, "A"}, {31, "S"}, {32, "D"},
    {33, "F"}, {34, "G"}, {35, "H"}, {36, "J"}, {37, "K"}, {38, "L"}, {39, ";"}, {40, "'"},
    {41, "GRAVE"}, {42, "LEFT SHIFT"}, {43, "UK,GER: '#' INTER: '\\'"}, {44, "Z"}, {45, "X"},
    {46, "C"}, {47, "V"}, {48, "B"}, {49, "N"}, {50, "M"}, {51, ","}, {52, "."}, {53, "/"},
    {54, "RIGHT SHIFT"}, {55, "*"}, {56, "LEFT ALT"}, {57, "SPACE"}, {71, "NUM7"}, {72, "NUM8"},
    {73, "NUM9"}, {74, "-"}, {75, "NUM4"}, {76, "NUM5"}, {77, "NUM6"}, {78, "+"}, {79, "NUM1"},
    {80, "NUM2"}, {81, "NUM3"}, {82, "NUM0"}, {83, "NUM ."}, {86, "UK GER: '\\'"}, {112, "KANA"},
    {121, "CONVERT"}, {123, "NO CONVERT"}, {125, "YEN"}, {141, "NUM ="}, {145, "AT"}, {146, ":"},
    {147, "_"}, {148, "KANJI"}, {149, "STOP"}, {150, "AX"}, {151, "UNLABELED"}, {156, "NUM ENTER"},
    {157, "RIGHT CTRL"}, {179, "NUM,"}, {181, "/"}, {184, "RIGHT ALT"}, {200, "UP ARROW"},
    {203, "LEFT ARROW"}, {205, "RIGHT ARROW"}, {208, "DOWN ARROW"},
};
// clang-format on

constexpr std::array<std::string_view, 8> kAxes = {
    "None", "X AXIS", "Y AXIS", "THROTTLE", "Y ROT", "RUDDER", "U AXIS", "V AXIS",
};

// By StickDirection and HatDirection.
constexpr std::array<std::string_view, 4> kStickDirections = {"RIGHT", "LEFT", "DOWN", "UP"};
constexpr std::array<std::string_view, 4> kHatDirections = {"UP", "RIGHT", "DOWN", "LEFT"};

constexpr int kJoysticks = 4;
constexpr int kJoystickStep = 32;
constexpr int kFirstStick = 256;
constexpr int kFirstButton = 16;  // behind the joystick's first code
constexpr int kDirections = 4;
constexpr int kFirstHat = 384;
static_assert(kFirstStick + kJoysticks * kJoystickStep == kFirstHat);

constexpr int CodeOf(int first, int joystick, int place) {
    return first + kJoystickStep * (joystick - 1) + place;
}

template <std::size_t size>
std::string NameAt(const std::array<std::string_view, size>& names, int place) {
    return std::string(names.at(static_cast<std::size_t>(place)));
}

std::string_view KeyName(int code) {
    const auto* const key =
        std::find_if(std::begin(kKeys), std::end(kKeys), [=](auto& k) { return k.code == code; });
    return key == std::end(kKeys) ? kNoMapping : key->name;
}

// `offset` counts from the first stick's code.
std::string StickOrButtonName(int offset) {
    const auto joystick = "J" + std::to_string(offset / kJoystickStep + 1) + ' ';
    const int place = offset % kJoystickStep;
    if (place < kDirections) return joystick + NameAt(kStickDirections, place);
    const int button = place - kFirstButton;
    if (button < 0) return std::string(kNoMapping);
    return joystick + (button < 10 ? "B0" : "B") + std::to_string(button);
}

// `offset` counts from the first hat's code.
std::string HatName(int offset) {
    const int joystick = offset / kJoystickStep + 1;
    const int place = offset % kJoystickStep;
    if (joystick > kJoysticks || place >= kDirections) return std::string(kNoMapping);
    return "POV" + std::to_string(joystick) + ' ' + NameAt(kHatDirections, place);
}

}  // namespace

std::string InputName(int code) {
    if (code < kFirstStick) return std::string(KeyName(code));
    if (code < kFirstHat) return StickOrButtonName(code - kFirstStick);
    return HatName(code - kFirstHat);
}

std::string_view AxisName(int code) {
    const auto place = static_cast<std::size_t>(code);  // of a negative code, behind all names
    return place < kAxes.size() ? kAxes.at(place) : kNoMapping;
}

int StickCode(int joystick, StickDirection direction) {
    return CodeOf(kFirstStick, joystick, static_cast<int>(direction));
}

int ButtonCode(int joystick, int button) {
    return CodeOf(kFirstStick, joystick, kFirstButton + button);
}

int HatCode(int joystick, HatDirection direction) {
    return CodeOf(kFirstHat, joystick, static_cast<int>(direction));
}

}  // namespace velto
