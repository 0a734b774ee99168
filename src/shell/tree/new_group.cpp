#include "shell/tree/new_group.h"

#include <algorithm>

#include "platform/message_box.h"
#include "shell/tree/name_rules.h"
#include "store/config_record.h"

namespace velto {

std::vector<std::string> GroupChoices(const CVeltoSettings& settings) {
    auto groups = settings.GetGroups();
    groups.insert(groups.begin(), std::string(kRootGroup));
    return groups;
}

bool CNewGroup::OnOk(const std::string& new_name, const std::string& parent_group) {
    if (!CheckNameGiven(new_name, platform::BoxIcon::Warning)) return false;
    if (!CheckCharacters(new_name) || !CheckNotReserved(new_name)) return false;
    const auto groups = settings_.GetGroups();
    if (std::find(groups.begin(), groups.end(), new_name) != groups.end()) {
        platform::Report("Group Already Exists", "Group Exists", platform::BoxIcon::Warning);
        return false;
    }
    name = new_name;
    parent = parent_group;
    return true;
}

}  // namespace velto
