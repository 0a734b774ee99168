// A new group of the tree: its name and the group that holds it, with the tests that they pass.
//
// Nothing is stored here: the caller adds the group to lists and tree.
#pragma once

#include <string>
#include <vector>

#include "store/velto_settings.h"

namespace velto {

// All groups, the root included: what a new group or configuration can be put into.
std::vector<std::string> GroupChoices(const CVeltoSettings& settings);

class CNewGroup {
  public:
    std::vector<std::string> Groups() const { return GroupChoices(settings_); }

    // Takes the user's choice. False, after a message, if the name can't be had.
    bool OnOk(const std::string& new_name, const std::string& parent_group);

    std::string name;
    std::string parent;

  private:
    CVeltoSettings settings_;
};

}  // namespace velto
