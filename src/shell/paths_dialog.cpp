#include "shell/paths_dialog.h"

#include "widgets/file_dialog.h"

namespace velto {
namespace {

constexpr const char* kFilters = "Executables (*.exe)|*.exe|All files (*.*)|*.*||";

struct Location {
    const char* label;
    const char* browse;
    const char* title;  // of the file dialog
    std::string (CVeltoSettings::*stored)() const;
};

constexpr Location kEmulator = {"&EPSXE Location:", "B&rowse...", "EPSXE Location",
                                &CVeltoSettings::GetEmulatorPath};
constexpr Location kCutor = {"EPSXE&CUTOR Location: (Optional)", "Br&owse...",
                             "EPSXECUTOR Location", &CVeltoSettings::GetCutorPath};
constexpr Location kBatard = {"&BATARD Location: (Optional)", "Bro&wse...", "BATARD Location",
                              &CVeltoSettings::GetBatardPath};

BytesEdit* AddLocation(QFormLayout& form, const CVeltoSettings& settings,
                       const Location& location) {
    const auto row = AddPathRow(form, location.label, location.browse);
    row.field->SetBytes((settings.*location.stored)());
    // A cancelled file dialog leaves the stored path, whatever was typed.
    QObject::connect(row.browse, &QPushButton::clicked, row.field, [row, &settings, &location] {
        const auto stored = (settings.*location.stored)();
        row.field->SetBytes(OpenFile(row.field, location.title, kFilters, stored).value_or(stored));
    });
    return row.field;
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
    settings_.SetCutorPath(cutor_->bytes());
    settings_.SetEmulatorPath(emulator_->bytes());
    settings_.SetBatardPath(batard_->bytes());
    FormDialog::accept();
}

}  // namespace velto
