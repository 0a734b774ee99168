// The tree of groups and configurations: the way to a configuration, and what is in hand.
//
// Nothing of it is stored as a tree. The groups are two lists of the settings, the place of a
// configuration is the key `fileGroup` of its own file, and both are read anew at each rebuild.
//
// The tree changes the files of the document's folder and the lists of the settings, and never the
// one without the other: what the system refuses is reported, and tree, files and settings stay in
// agreement. All calls come on the user interface thread.
#pragma once

#include <string>
#include <vector>

#include "shell/panes/panes.h"
#include "shell/tree/tree_nodes.h"
#include "store/velto_doc.h"

namespace velto {

// What the tree asks of the window that shows it. Not owned by the tree.
class TreeWindow {
  public:
    virtual ~TreeWindow() = default;
    // The tree's selection is this item now; the window follows without telling the tree.
    virtual void Selected(const TreeItem& item) = 0;
    virtual void Expand(const TreeNode& node) = 0;
    // Shows the page of this number (0 to 8) after the present event has been handled.
    virtual void PostPage(int page) = 0;
};

class CEpsxeTree {
  public:
    // The window and the pages must outlive the tree; the document's editor gets its answers from
    // the tree.
    CEpsxeTree(CVeltoDoc& document, TreeWindow& window, PageTable pages);

    const TreeNodes& nodes() const { return nodes_; }
    void SetListener(TreeListener& listener) { nodes_.SetListener(listener); }

    PageTable pages() const { return pages_; }
    // Those that stand below each configuration.
    const std::vector<const PageRow*>& own_pages() const { return own_pages_; }
    // The row that the item stands for in the table of the pages: its image is there.
    const PageRow& RowOf(const TreeItem& item) const;
    // The number of the page that the right pane shows for the item.
    int PageNumber(const TreeItem& item) const;

    // Reads groups and configurations anew and selects the root.
    void OnUpdate();

    TreeItem GetSelectedItem() const { return selected_; }
    TreeItem GetPreviousItem() const { return lastSelected; }
    // Of a page, its configuration's.
    std::string GetSelectedConfigName() const;
    // With `.dta`. With a group selected: a message, and empty.
    std::string GetSelectedConfigFile() const;

    // Selects the item, as a click does: loads the configuration if it isn't the one in hand.
    // False if the user refused, or the file can't be read: then the item before is selected
    // again, or the root if there is none.
    bool Select(const TreeItem& item);
    // Selects the group or configuration of this name. False if there is none, or as above.
    bool SelectByName(const std::string& name, NodeKind kind);

    // Adds the node of a new file, which exists already, sorts its siblings and selects it.
    void AddConfiguration(const std::string& name, const std::string& group);
    // A new group: lists, node, selection. `parent` is a group's name.
    void AddGroup(const std::string& name, const std::string& parent);

    // Whether the item can be renamed and moved at all.
    static bool CanChange(const TreeItem& item);
    // Ends the editing of a label. False, after a message where there is one: the old text stays,
    // or, if a group's files couldn't all be rewritten, the tree has been read anew.
    bool Rename(const TreeItem& item, const std::string& text);

    // The command "Delete Config/Group" on the selected item, with its questions.
    void OnDelete();

    // Whether the item is shown as a place to drop on.
    static bool IsDropTarget(const TreeNode& dragged, const TreeItem& item);
    // Moves the dragged group or configuration below the target, if that is a group outside of
    // what is dragged. False if nothing was moved.
    bool Drop(const TreeNode& dragged, const TreeItem& target);

  private:
    bool Enter(const TreeItem& item);
    bool MayEnter(const TreeItem& item);
    bool RenameConfiguration(const TreeNode& node, const std::string& text);
    bool RenameGroup(const TreeNode& node, const std::string& text);
    bool RewriteFiles(const TreeNode& group, const std::string& text);
    void FollowInHand(const std::string& from, const std::string& to);
    void SetText(const TreeNode& node, const std::string& text);
    bool MoveConfiguration(const TreeNode& node, const TreeNode& target);
    bool MoveGroup(const TreeNode& node, const TreeNode& target);
    void Move(const TreeNode& node, const TreeNode& target);

    CVeltoDoc& document_;
    TreeWindow& window_;
    PageTable pages_;
    std::vector<const PageRow*> own_pages_;
    TreeNodes nodes_;
    TreeItem selected_;
    TreeItem lastSelected;
};

}  // namespace velto
