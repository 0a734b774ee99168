#include "shell/tree/move_to_group_dialog.h"

#include <vector>

#include "widgets/owned.h"

namespace velto {
namespace {

void AddGroups(std::vector<std::string>& names, const TreeNode& group, const TreeNode& moved) {
    if (group.kind != NodeKind::Group || &group == &moved) return;
    names.push_back(group.text);
    for (const auto& child : group.children) AddGroups(names, *child, moved);
}

}  // namespace

CMoveToGroupDialog::CMoveToGroupDialog(const TreeNode& root, const TreeNode& moved, QWidget* parent)
    : FormDialog("Move to Group", parent), group_(MakeOwned<BytesCombo>()) {
    std::vector<std::string> names;
    AddGroups(names, root, moved);
    auto* const form = MakeOwned<QFormLayout>();
    contents().addLayout(form);
    AddRow(*form, "Move to &Group", *group_);
    group_->SetSorted(names);
    if (moved.parent != nullptr) group_->Select(moved.parent->text);
    AddOkButton();
}

}  // namespace velto
