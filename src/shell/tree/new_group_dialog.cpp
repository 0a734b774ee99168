#include "shell/tree/new_group_dialog.h"

#include "store/config_record.h"
#include "widgets/owned.h"

namespace velto {

CNewGroupDialog::CNewGroupDialog(CNewGroup& new_group, const std::string& selected_group,
                                 QWidget* parent)
    : FormDialog("New Group", parent),
      new_group_(new_group),
      name_(MakeOwned<BytesEdit>()),
      parent_(MakeOwned<BytesCombo>()) {
    auto* const form = MakeOwned<QFormLayout>();
    contents().addLayout(form);
    AddRow(*form, "&New Group Name", *name_);
    AddRow(*form, "Create in &Group", *parent_);
    parent_->SetSorted(new_group.Groups());
    parent_->Select(kRootGroup);
    parent_->Select(selected_group);
    AddOkButton();
}

void CNewGroupDialog::accept() {
    if (new_group_.OnOk(name_->bytes(), parent_->bytes())) FormDialog::accept();
}

}  // namespace velto
