#include "shell/tree/name_rules.h"

#include "shell/tree/epsxe_tree.h"

namespace velto {

bool CheckNameGiven(std::string_view name, platform::BoxIcon icon) {
    if (!name.empty()) return true;
    platform::Report("No name specified.", "Error", icon);
    return false;
}

bool CheckCharacters(std::string_view name) {
    if (!HasInvalidCharacters(name)) return true;
    platform::Report(
        "Config names cannot contain any of the following characters, "
        "\\/:?\"<>|;*",
        "Invalid Characters", platform::BoxIcon::Warning);
    return false;
}

bool CheckNotReserved(std::string_view name) {
    if (!IsReservedName(name)) return true;
    platform::Report("Illegal Filename.");
    return false;
}

}  // namespace velto
