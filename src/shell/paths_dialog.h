// The dialogs for stored paths: "Set Emulation Paths", where the emulator and two other front ends'
// tools are, and "Select Tray Icon", the file of the icon that the next start shows in the tray.
//
// OK writes the fields as they stand, untested; Cancel writes nothing.
#pragma once

#include "store/velto_settings.h"
#include "widgets/form.h"

namespace velto {

class CPathsDlg : public FormDialog {
  public:
    explicit CPathsDlg(QWidget* parent = nullptr);

    void accept() override;

  private:
    CVeltoSettings settings_;
    BytesEdit* emulator_;
    BytesEdit* cutor_;
    BytesEdit* batard_;
};

class CTrayIconDlg : public FormDialog {
  public:
    explicit CTrayIconDlg(QWidget* parent = nullptr);

    void accept() override;

  private:
    CVeltoSettings settings_;
    BytesEdit* file_;
};

}  // namespace velto
