// The about box.
#pragma once

#include "widgets/form.h"

namespace velto {

class CAboutDlg : public FormDialog {
  public:
    explicit CAboutDlg(QWidget* parent = nullptr);
};

}  // namespace velto
