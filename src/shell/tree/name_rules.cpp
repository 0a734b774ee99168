#include "shell/tree/name_rules.h"

#include <algorithm>
#include <iterator>

#include "store/config_record.h"

namespace velto {

bool CheckNameGiven(std::string_view name, platform::BoxIcon icon) {
    if (!name.empty()) return true;
    platform::Report("No name specified.", "Error", icon);
    return false;
}

bool CheckCharacters(std::string_view name) {
    if (name.find_first_of("\\/:?\"<>|;*") == std::string_view::npos) return true;
    platform::Report(
        "Config names cannot contain any of the following characters, "
        "\\/:?\"<>|;*",
        "Invalid Characters", platform::BoxIcon::Warning);
    return false;
}

bool CheckNotReserved(std::string_view name) {
    constexpr std::string_view kReserved[] = {kRootGroup,    "Graphics", "Sound",
                                              "MemoryCards", "NetPlay",  "GamePad"};
    if (std::find(std::begin(kReserved), std::end(kReserved), name) == std::end(kReserved)) {
        return true;
    }
    platform::Report("Illegal Filename.");
    return false;
}

}  // namespace velto
