// The main frame's small dialogs: the question before the program ends, and the about box.
#pragma once

#include "widgets/form.h"

class QCheckBox;

namespace velto {

class CExitDialog : public FormDialog {
  public:
    explicit CExitDialog(QWidget* parent = nullptr);

    void accept() override;

    // The user never wants to be asked again. Only after OK.
    bool dontAskAgain = false;

  private:
    QCheckBox* dont_ask_;
};

class CAboutDlg : public FormDialog {
  public:
    explicit CAboutDlg(QWidget* parent = nullptr);
};

}  // namespace velto
