// The question before the program ends.
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

}  // namespace velto
