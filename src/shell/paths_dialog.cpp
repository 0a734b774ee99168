#include "shell/paths_dialog.h"

#include <string>

#include "platform/message_box.h"
#include "widgets/file_dialog.h"

namespace velto {
namespace {

constexpr const char* kPrograms = "Executables (*.exe)|*.exe|All files (*.*)|*.*||";
constexpr const char* kIcons = "Icon Files (*.ico)|*.ico|All files (*.*)|*.*||";

struct Location {
    const char* label;
    const char* browse;
    const char* title;  // of the file dialog
    const char* filters;
    std::string (CVeltoSettings::*stored)() const;
};

constexpr Location kEmulator = {"&EPSXE Location:", "B&rowse...", "EPSXE Location", kPrograms,
                                &CVeltoSettings::GetEmulatorPath};
constexpr Location kCutor = {"EPSXE&CUTOR Location: (Optional)", "Br&owse...",
                             "EPSXECUTOR Location", kPrograms, &CVeltoSettings::GetCutorPath};
constexpr Location kBatard = {"&BATARD Location: (Optional)", "Bro&wse...", "BATARD Location",
                              kPrograms, &CVeltoSettings::GetBatardPath};
constexpr Location kTrayIcon = {"&Icon Location", "&Browse...", "Icon Location", kIcons,
                                &CVeltoSettings::GetIconFile};

BytesEdit* AddLocation(QFormLayout& form, const CVeltoSettings& settings,
                       const Location& location) {
    const auto row = AddPathRow(form, location.label, location.browse);
    row.field->SetBytes((settings.*location.stored)());
    // A cancelled file dialog leaves the stored path, whatever was typed.
    QObject::connect(row.browse, &QPushButton::clicked, row.field, [row, &settings, &location] {
        const auto stored = (settings.*location.stored)();
        row.field->SetBytes(
            OpenFile(row.field, location.title, location.filters, stored).value_or(stored));
    });
    return row.field;
}

// The registry would lose it.
bool IsTooLong(BytesEdit& field) {
    if (field.bytes().size() <= CVeltoSettings::kLongestText) return false;
    platform::Report("This location is too long.  It can have up to " +
                     std::to_string(CVeltoSettings::kLongestText) + " bytes.");
    field.setFocus();
    return true;
}

}  // namespace

CPathsDlg::CPathsDlg(QWidget* parent) : FormDialog("Set Emulation Paths", parent) {
    auto& form = *AddGroup(contents(), "Locations");
    emulator_ = AddLocation(form, settings_, kEmulator);
    cutor_ = AddLocation(form, settings_, kCutor);
    batard_ = AddLocation(form, settings_, kBatard);
    AddOkButton();
}

void CPathsDlg::accept() {
    for (auto* const field : {emulator_, cutor_, batard_}) {
        if (IsTooLong(*field)) return;
    }
    settings_.SetCutorPath(cutor_->bytes());
    settings_.SetEmulatorPath(emulator_->bytes());
    settings_.SetBatardPath(batard_->bytes());
    FormDialog::accept();
}

CTrayIconDlg::CTrayIconDlg(QWidget* parent)
    : FormDialog("Select Tray Icon", parent),
      file_(AddLocation(*AddGroup(contents(), "Select Icon"), settings_, kTrayIcon)) {
    AddOkButton();
}

void CTrayIconDlg::accept() {
    if (IsTooLong(*file_)) return;
    settings_.SetIconFile(file_->bytes());
    platform::Report("You may need restart in order for this change to take effect",
                     "Icon Selection Updated", platform::BoxIcon::None);
    FormDialog::accept();
}

}  // namespace velto
