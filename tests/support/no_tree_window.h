// Nobody looks at the tree.
#pragma once

#include <string>

#include "shell/tree/epsxe_tree.h"

namespace velto::test {

class NoTreeWindow : public TreeWindow {
  public:
    void Selected(const TreeItem&) override {}
    void Expand(const TreeNode&) override {}
    void PostPage(int) override {}
};

}  // namespace velto::test
