// The ways in which options stand in the record, for the rows of the option table.
#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/ascii.h"
#include "store/config_file.h"
#include "store/list_text.h"
#include "store/option_table.h"

namespace velto::option_members {

inline std::string TextOf(const std::string& text) {
    return text;
}
inline std::string TextOf(char letter) {
    return {letter};
}
inline std::string TextOf(bool on) {
    return on ? "true" : "false";
}
inline std::string TextOf(const std::vector<std::string>& list) {
    return list.empty() ? std::string(kUnset) : JoinList(list, ',');
}

inline void Take(std::string& member, const OptionRow& /*row*/, const std::string& text) {
    member = text;
}
inline void Take(char& member, const OptionRow& /*row*/, const std::string& text) {
    member = text.front();
}
inline void Take(bool& member, const OptionRow& row, const std::string& text) {
    member = IsOn(row, text);
}
// A list holds its items in upper case.
inline void Take(std::vector<std::string>& member, const OptionRow& /*row*/,
                 const std::string& text) {
    if (text != kUnset) member = SplitList(platform::Upper(text), ',');
}

// A member of its own, by its type.
template <auto member>
constexpr OptionMember kOwn = {
    [](const ConfigRecord& record) { return TextOf(record.*member); },
    [](ConfigRecord& record, const OptionRow& row, const OptionTexts& texts) {
        Take(record.*member, row, texts[row.key]);
    },
};

// The buttons of a pad. Taking them takes the pad's share of the other lists.
template <int number>
constexpr OptionMember kPad = {
    [](const ConfigRecord& record) { return record.pads.At(number).GetKeyString(); },
    [](ConfigRecord& record, const OptionRow& row, const OptionTexts& texts) {
        record.pads.SetPad(number, texts[row.key], texts[Key::padAxis], texts[Key::motorType],
                           texts[Key::bMotorType], texts[Key::sMotorType], texts[Key::padType]);
    },
};

// A list of which each pad has a share.
template <std::string (CPadSet::*list)() const>
constexpr OptionMember kPadList = {
    [](const ConfigRecord& record) { return (record.pads.*list)(); },
};

// The one disc id of the first files: whatever it says is the list.
constexpr OptionMember kOldDiscId = {
    nullptr,
    [](ConfigRecord& record, const OptionRow& row, const OptionTexts& texts) {
        if (texts[Key::psxIdExt].empty()) record.psxIdExt = {platform::Upper(texts[row.key])};
    },
};

}  // namespace velto::option_members
