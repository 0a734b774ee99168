// Nobody looks at the tree.
#pragma once

#include <string>

#include "shell/tree/epsxe_tree.h"

namespace velto::test {

class NoTreeWindow : public TreeWindow {
  public:
    void BeginRebuild() override {}
    void EndRebuild() override {}
    void BeginInsert(const TreeNode&, std::size_t) override {}
    void EndInsert() override {}
    void BeginRemove(const TreeNode&, std::size_t) override {}
    void EndRemove() override {}
    void BeginSort(TreeNode&) override {}
    void EndSort(TreeNode&) override {}
    void TextChanged(const TreeNode&) override {}
    void Selected(const TreeItem&) override {}
    void Expand(const TreeNode&) override {}
    void PostPage(int) override {}
    bool Progress(const std::string&, std::size_t, std::size_t) override { return true; }
};

}  // namespace velto::test
