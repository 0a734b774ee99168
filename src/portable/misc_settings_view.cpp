#include "portable/misc_settings_view.h"

#include "widgets/file_dialog.h"
#include "widgets/owned.h"
#include "widgets/text.h"

namespace velto {

CMiscSettingsView::CMiscSettingsView(CVeltoDoc& document, Editor& editor)
    : editor_(editor), settings_(document, editor), command_line_(MakeOwned<BytesEdit>()) {
    auto& form = *AddGroup(contents(), "General Epsxe Settings");
    const auto bios = AddPathRow(form, "&Bios File", "Br&owse");
    bios_ = bios.field;
    AddRow(form, "&Command Line", *command_line_);
    connect(bios_, &QLineEdit::textChanged, this,
            [this] { settings_.OnBiosChanged(bios_->bytes()); });
    connect(command_line_, &QLineEdit::textChanged, this,
            [this] { settings_.OnCommandLineChanged(command_line_->bytes()); });
    connect(bios.browse, &QPushButton::clicked, this, [this] { BrowseBios(); });
}

void CMiscSettingsView::Refresh() {
    settings_.loading = true;
    SetHeading(FromBytes(editor_.GetSelectedConfigName()));
    bios_->SetBytes(settings_.Bios());
    command_line_->SetBytes(settings_.CommandLine());
    settings_.loading = false;
}

void CMiscSettingsView::BrowseBios() {
    const auto path =
        OpenFile(this, "Bios File", "Bios rom (*.bin)|*.bin||", settings_.BiosSearchStart());
    if (path) bios_->setText(FromBytes(*path));
}

}  // namespace velto
