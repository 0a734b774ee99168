// The dialog "New Configuration". It ends with OK when the file has been written.
#pragma once

#include <string>

#include "shell/tree/new_config.h"
#include "widgets/bytes_fields.h"
#include "widgets/form.h"

namespace velto {

class CNewConfigDialog : public FormDialog {
  public:
    // `new_config` isn't owned and takes the user's choice. `selected_group` is the tree's
    // selected group; anything that is no group stands for the root.
    CNewConfigDialog(CNewConfig& new_config, const std::string& selected_group,
                     QWidget* parent = nullptr);

    void accept() override;

  private:
    CNewConfig& new_config_;
    BytesEdit* name_;
    BytesCombo* group_;
};

}  // namespace velto
