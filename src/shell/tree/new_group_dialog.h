// The dialog "New Group". The caller adds the group to lists and tree.
#pragma once

#include <string>

#include "shell/tree/new_group.h"
#include "widgets/bytes_fields.h"
#include "widgets/form.h"

namespace velto {

class CNewGroupDialog : public FormDialog {
  public:
    // `new_group` isn't owned and takes the user's choice. `selected_group` is the tree's
    // selected group; anything that is no group stands for the root.
    CNewGroupDialog(CNewGroup& new_group, const std::string& selected_group,
                    QWidget* parent = nullptr);

    void accept() override;

  private:
    CNewGroup& new_group_;
    BytesEdit* name_;
    BytesCombo* parent_;
};

}  // namespace velto
