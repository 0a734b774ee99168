#include "shell/tray_icon_dialog.h"

#include "platform/message_box.h"
#include "widgets/file_dialog.h"

namespace velto {

CTrayIconDlg::CTrayIconDlg(QWidget* parent) : FormDialog("Select Tray Icon", parent) {
    const auto row =
        AddPathRow(*AddGroup(contents(), "Select Icon"), "&Icon Location", "&Browse...");
    file_ = row.field;
    file_->SetBytes(settings_.GetIconFile());
    connect(row.browse, &QPushButton::clicked, this, [this] { Browse(); });
    AddOkButton();
}

// A cancelled file dialog leaves the stored path, whatever was typed.
void CTrayIconDlg::Browse() {
    const auto stored = settings_.GetIconFile();
    file_->SetBytes(
        OpenFile(this, "Icon Location", "Icon Files (*.ico)|*.ico|All files (*.*)|*.*||", stored)
            .value_or(stored));
}

void CTrayIconDlg::accept() {
    settings_.SetIconFile(file_->bytes());
    platform::Report("You may need restart in order for this change to take effect",
                     "Icon Selection Updated", platform::BoxIcon::None);
    FormDialog::accept();
}

}  // namespace velto
