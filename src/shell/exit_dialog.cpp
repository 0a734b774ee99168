#include "shell/exit_dialog.h"

#include <QCheckBox>
#include <QLabel>

#include "widgets/owned.h"

namespace velto {

CExitDialog::CExitDialog(QWidget* parent)
    : FormDialog("Exit Velto?", parent),
      dont_ask_(MakeOwned<QCheckBox>("&Do not ask this question in the future.")) {
    contents().addWidget(MakeLabel(
        "Closing Velto will prevent it from autoplaying psx cds.  Do you wish to continue?", true));
    contents().addWidget(dont_ask_);
    AddOkButton();
}

void CExitDialog::accept() {
    dontAskAgain = dont_ask_->isChecked();
    FormDialog::accept();
}

}  // namespace velto
