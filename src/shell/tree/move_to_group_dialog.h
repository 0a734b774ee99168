// The dialog "Move to Group": the group to move a configuration or a group to, for those who
// don't drag. The caller moves it.
#pragma once

#include <string>

#include "shell/tree/tree_nodes.h"
#include "widgets/bytes_fields.h"
#include "widgets/form.h"

namespace velto {

class CMoveToGroupDialog : public FormDialog {
  public:
    // Offers all groups of the tree but `moved` and those below it; first its present one.
    CMoveToGroupDialog(const TreeNode& root, const TreeNode& moved, QWidget* parent);

    std::string group() const { return group_->bytes(); }

  private:
    BytesCombo* group_;
};

}  // namespace velto
