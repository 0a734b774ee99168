// The two lists of the settings that hold the groups of the tree: entry i of `parents` names the
// group that contains entry i of `groups`. A parent stands before its children.
//
// The lists may come from anywhere: of different lengths, with unknown parents, with duplicates.
// An entry whose parent is missing or unknown is still an entry, and found by its name.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "store/velto_settings.h"

namespace velto {

struct TreeNode;

struct GroupLists {
    std::vector<std::string> groups{};
    std::vector<std::string> parents{};

    static GroupLists Read(const CVeltoSettings& settings);
    // The groups below this root, each behind its parent.
    static GroupLists Of(const TreeNode& root);

    bool Holds(const std::string& name) const;
    // The group `from` below `parent`, and all mentions of it as a parent. False if there is none.
    bool Rename(const std::string& from, const std::string& to, const std::string& parent);
    // False if there is none.
    bool Remove(const std::string& name, const std::string& parent);

    // False if the settings don't hold the lists afterwards.
    bool Store(CVeltoSettings& settings) const;

  private:
    std::vector<std::size_t> EntriesOf(const std::string& name, const std::string& parent) const;
};

}  // namespace velto
