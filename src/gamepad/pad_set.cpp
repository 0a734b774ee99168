#include "gamepad/pad_set.h"

namespace velto {

CPadSet::CPadSet() {
    for (int number = 1; number <= kPadCount; ++number) At(number).SetNumber(number);
}

std::string CPadSet::GetAxisString() const {
    std::string list;
    for (const auto& pad : pads_) {
        if (!list.empty()) list += ',';
        list += pad.GetAxisString();
    }
    return list;
}

void CPadSet::SetPad(int number, std::string_view keys, std::string_view axes,
                     std::string_view motors, std::string_view big_motors,
                     std::string_view small_motors, std::string_view types) {
    if (number < 1 || number > kPadCount) return;
    At(number).Load(keys, axes, motors, big_motors, small_motors, types);
}

std::string CPadSet::ListOf(int CPad::*field) const {
    std::string list;
    for (const auto& pad : pads_) AppendCode(list, pad.*field);
    return list;
}

}  // namespace velto
