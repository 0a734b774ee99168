#include "shell/tree/new_config_dialog.h"

#include "store/config_record.h"
#include "widgets/owned.h"

namespace velto {

CNewConfigDialog::CNewConfigDialog(CNewConfig& new_config, const std::string& selected_group,
                                   QWidget* parent)
    : FormDialog("New Configuration", parent),
      new_config_(new_config),
      name_(MakeOwned<BytesEdit>()),
      group_(MakeOwned<BytesCombo>()) {
    auto* const form = MakeOwned<QFormLayout>();
    contents().addLayout(form);
    AddRow(*form, "&Name", *name_);
    AddRow(*form, "&Group", *group_);
    group_->SetSorted(new_config.Groups());
    group_->Select(kRootGroup);
    group_->Select(selected_group);
    AddOkButton();
}

void CNewConfigDialog::accept() {
    if (new_config_.OnOk(name_->bytes(), group_->bytes())) FormDialog::accept();
}

}  // namespace velto
