// The dialog "Select Tray Icon": the file of the icon that the next start shows in the tray.
#pragma once

#include "store/velto_settings.h"
#include "widgets/form.h"

namespace velto {

class CTrayIconDlg : public FormDialog {
  public:
    explicit CTrayIconDlg(QWidget* parent = nullptr);

    void accept() override;

  private:
    void Browse();

    CVeltoSettings settings_;
    BytesEdit* file_;
};

}  // namespace velto
