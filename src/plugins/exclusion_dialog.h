// The dialog "Exclusion List": file names of libraries that the plug-in scan leaves out.
//
// Each change is stored at once and takes effect at the next start.
#pragma once

#include <string>
#include <vector>

#include "store/velto_settings.h"
#include "widgets/bytes_fields.h"
#include "widgets/form.h"

namespace velto {

class CExclusionDlg : public FormDialog {
  public:
    explicit CExclusionDlg(QWidget* parent = nullptr);

    // Every way out of the dialog: tells when the changes apply.
    void reject() override;

  private:
    void Add();
    void Remove();

    CVeltoSettings settings_;
    BytesList* entries_;
    BytesEdit* file_name_;
};

}  // namespace velto
