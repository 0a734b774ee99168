// The dialogs "New Configuration" and "New Group": a name, and the group to put it into.
//
// What they fill in isn't owned and takes the user's choice; while it doesn't, the dialog stays
// open. `selected_group` is the tree's selected group; anything that is no group stands for the
// root.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "shell/tree/new_config.h"
#include "shell/tree/new_group.h"
#include "widgets/bytes_fields.h"
#include "widgets/form.h"

namespace velto {

class NewNodeDialog : public FormDialog {
  public:
    void accept() override;

  protected:
    using OnOk = std::function<bool(const std::string& name, const std::string& group)>;
    struct Labels {
        const char* name;
        const char* group;
    };
    NewNodeDialog(const char* caption, const Labels& labels, const std::vector<std::string>& groups,
                  const std::string& selected_group, OnOk on_ok, QWidget* parent);

  private:
    BytesEdit* name_;
    BytesCombo* group_;
    OnOk on_ok_;
};

// Ends with OK when the file has been written.
class CNewConfigDialog : public NewNodeDialog {
  public:
    CNewConfigDialog(CNewConfig& new_config, const std::string& selected_group,
                     QWidget* parent = nullptr);
};

// The caller adds the group to lists and tree.
class CNewGroupDialog : public NewNodeDialog {
  public:
    CNewGroupDialog(CNewGroup& new_group, const std::string& selected_group,
                    QWidget* parent = nullptr);
};

}  // namespace velto
