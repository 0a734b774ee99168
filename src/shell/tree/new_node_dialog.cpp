#include "shell/tree/new_node_dialog.h"

#include <utility>

#include "store/config_record.h"
#include "widgets/owned.h"

namespace velto {

NewNodeDialog::NewNodeDialog(const char* caption, const Labels& labels,
                             const std::vector<std::string>& groups,
                             const std::string& selected_group, OnOk on_ok, QWidget* parent)
    : FormDialog(caption, parent),
      name_(MakeOwned<BytesEdit>()),
      group_(MakeOwned<BytesCombo>()),
      on_ok_(std::move(on_ok)) {
    auto* const form = MakeOwned<QFormLayout>();
    contents().addLayout(form);
    AddRow(*form, labels.name, *name_);
    AddRow(*form, labels.group, *group_);
    group_->SetSorted(groups);
    group_->Select(kRootGroup);
    group_->Select(selected_group);
    AddOkButton();
}

void NewNodeDialog::accept() {
    if (on_ok_(name_->bytes(), group_->bytes())) FormDialog::accept();
}

CNewConfigDialog::CNewConfigDialog(CNewConfig& new_config, const std::string& selected_group,
                                   QWidget* parent)
    : NewNodeDialog(
          "New Configuration", {"&Name", "&Group"}, new_config.Groups(), selected_group,
          [&](const auto& name, const auto& group) { return new_config.OnOk(name, group); },
          parent) {}

CNewGroupDialog::CNewGroupDialog(CNewGroup& new_group, const std::string& selected_group,
                                 QWidget* parent)
    : NewNodeDialog(
          "New Group", {"&New Group Name", "Create in &Group"}, new_group.Groups(), selected_group,
          [&](const auto& name, const auto& group) { return new_group.OnOk(name, group); },
          parent) {}

}  // namespace velto
