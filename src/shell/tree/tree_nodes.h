// The nodes of the configuration tree: groups, and the configurations in them.
//
// A configuration has pages below it, which are computed and have no nodes. TreeNodes owns all
// nodes and alone changes them; others hold them as constants, each until it is removed or the
// tree is rebuilt. Every change is made by the hands of the listener, so that a view can do what
// must come before and behind it.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "store/editor.h"

namespace velto {

struct PageRow;

struct TreeNode {
    NodeKind kind = NodeKind::Group;  // or Configuration
    std::string text{};               // bytes; a configuration's is its file's name without `.dta`
    TreeNode* parent = nullptr;       // null for the root alone
    std::size_t row = 0;              // among the parent's children
    std::vector<std::unique_ptr<TreeNode>> children{};
};

std::unique_ptr<TreeNode> MakeNode(NodeKind kind, std::string text);
std::unique_ptr<TreeNode> MakeRoot();
// Behind the parent's other children.
TreeNode& Append(TreeNode& parent, std::unique_ptr<TreeNode> node);
// Without regard to case, bytes deciding ties.
void SortChildren(TreeNode& parent);
// The node itself and all below it.
std::size_t CountConfigurations(const TreeNode& node);
// Whether the node is the group or below it.
bool IsWithin(const TreeNode& node, const TreeNode& group);

// A node as the user sees it: a group, a configuration, or one of the configuration's pages.
struct TreeItem {
    const TreeNode* node = nullptr;  // null: no item
    const PageRow* page = nullptr;   // null: the node itself

    bool operator==(const TreeItem&) const = default;
    NodeKind kind() const;     // Group, if there is no item
    std::string text() const;  // what the user reads
};

// Each call hands over a change, which has to be made exactly once; during it the tree may not be
// looked at.
class TreeListener {
  public:
    using Change = std::function<void()>;

    virtual ~TreeListener() = default;
    virtual void OnRebuild(const Change& rebuild) { rebuild(); }
    virtual void OnInsert(const TreeNode& /*parent*/, std::size_t /*row*/, const Change& insert) {
        insert();
    }
    virtual void OnRemove(const TreeNode& /*parent*/, std::size_t /*row*/, const Change& remove) {
        remove();
    }
    virtual void OnSort(const TreeNode& /*parent*/, const Change& sort) { sort(); }
    // The text has changed already.
    virtual void OnText(const TreeNode& /*node*/) {}
};

class TreeNodes {
  public:
    // Not owned. No change may come when it has gone.
    void SetListener(TreeListener& listener) { listener_ = &listener; }

    const TreeNode& root() const { return *root_; }
    // A group or configuration; null if there is none. Of several, the last one in the order of
    // the tree.
    const TreeNode* Find(const std::string& name, NodeKind kind) const;

    void Rebuild(std::unique_ptr<TreeNode> root);
    // Both sort what they add to.
    void Insert(const TreeNode& parent, std::unique_ptr<TreeNode> node);
    void Move(const TreeNode& node, const TreeNode& target);
    void SetText(const TreeNode& node, std::string text);

  private:
    TreeNode& Own(const TreeNode& node);
    std::unique_ptr<TreeNode> Take(TreeNode& node);

    std::unique_ptr<TreeNode> root_ = MakeRoot();
    TreeListener nobody_;
    TreeListener* listener_ = &nobody_;
};

}  // namespace velto
