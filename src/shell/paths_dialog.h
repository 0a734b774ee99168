// The dialog "Set Emulation Paths": where the emulator and two other front ends' tools are.
//
// OK writes all three settings as they stand in the fields, untested; Cancel writes nothing.
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

}  // namespace velto
