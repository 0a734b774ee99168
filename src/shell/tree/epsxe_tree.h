// The tree of groups and configurations: the way to a configuration, and what is in hand.
//
// Nothing of it is stored as a tree. The groups are two lists of the settings, the place of a
// configuration is the key `fileGroup` of its own file, and both are read anew at each rebuild.
// A configuration has pages below it, which are computed and have no nodes.
//
// The tree owns its nodes. It changes the files of the document's folder and the lists of the
// settings, and never the one without the other: what the system refuses is reported, and tree,
// files and settings stay in agreement. All calls come on the user interface thread.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "shell/panes/panes.h"
#include "store/editor.h"
#include "store/velto_doc.h"

namespace velto {

struct TreeNode {
    NodeKind kind = NodeKind::Group;  // or Configuration
    std::string text{};               // bytes; a configuration's is its file's name without `.dta`
    TreeNode* parent = nullptr;       // null for the root alone
    std::size_t row = 0;              // among the parent's children
    std::vector<std::unique_ptr<TreeNode>> children{};
};

// A node as the user sees it: a group, a configuration, or one of the configuration's pages.
struct TreeItem {
    TreeNode* node = nullptr;       // null: no item
    const PageRow* page = nullptr;  // null: the node itself
    bool operator==(const TreeItem&) const = default;
};

// What the tree asks of the window that shows it. Not owned by the tree.
class TreeWindow {
  public:
    virtual ~TreeWindow() = default;
    // Around each change. Between two calls of a pair the tree may not be looked at.
    virtual void BeginRebuild() = 0;
    virtual void EndRebuild() = 0;
    virtual void BeginInsert(const TreeNode& parent, std::size_t row) = 0;
    virtual void EndInsert() = 0;
    virtual void BeginRemove(const TreeNode& parent, std::size_t row) = 0;
    virtual void EndRemove() = 0;
    virtual void BeginSort(TreeNode& parent) = 0;
    virtual void EndSort(TreeNode& parent) = 0;
    virtual void TextChanged(const TreeNode& node) = 0;

    // The tree's selection is this item now; the window follows without telling the tree.
    virtual void Selected(const TreeItem& item) = 0;
    virtual void Expand(const TreeNode& node) = 0;
    // Shows the page of this number (0 to 8) after the present event has been handled.
    virtual void PostPage(int page) = 0;
    // Work on many files: `done` of `total`, told for each file. False: the user stops it.
    virtual bool Progress(const std::string& what, std::size_t done, std::size_t total) = 0;
};

class CEpsxeTree {
  public:
    // The window and the pages must outlive the tree; the document's editor gets its answers from
    // the tree.
    CEpsxeTree(CVeltoDoc& document, TreeWindow& window, PageTable pages);

    // Reads groups and configurations anew and selects the root.
    void OnUpdate();

    const TreeNode& root() const { return *root_; }
    // The node of a group or configuration; null if there is none. Of several, the last one in
    // the order of the tree.
    TreeNode* Find(const std::string& name, velto::NodeKind kind);
    static velto::NodeKind NodeKind(const TreeItem& item);
    // What the user reads.
    static std::string TextOf(const TreeItem& item);

    PageTable pages() const { return pages_; }
    // Those that stand below each configuration.
    const std::vector<const PageRow*>& own_pages() const { return own_pages_; }
    // The row that the item stands for in the table of the pages: its image is there.
    const PageRow& RowOf(const TreeItem& item) const;
    // The number of the page that the right pane shows for the item.
    int PageNumber(const TreeItem& item) const;

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
    // Selects the group or configuration that Find gives. False if there is none, or as above.
    bool SelectByName(const std::string& name, velto::NodeKind kind);

    // Adds the node of a new file, which exists already, sorts its siblings and selects it.
    void AddConfiguration(const std::string& name, const std::string& group);
    // A new group: lists, node, selection. `parent` is a group's name.
    void AddGroup(const std::string& name, const std::string& parent);

    static bool CanRename(const TreeItem& item);
    // Ends the editing of a label. False, after a message where there is one: the old text stays,
    // or, if a group's files couldn't all be rewritten, the tree has been read anew.
    bool Rename(const TreeItem& item, const std::string& text);

    // The command "Delete Config/Group" on the selected item, with its questions.
    void OnDelete();

    static bool CanDrag(const TreeItem& item);
    // Whether the item is shown as a place to drop on.
    static bool IsDropTarget(const TreeNode& dragged, const TreeItem& item);
    // Moves the dragged group or configuration below the target, if that is a group outside of
    // what is dragged. False if nothing was moved.
    bool Drop(TreeNode& dragged, const TreeItem& target);

  private:
    bool Enter(const TreeItem& item);
    bool MayEnter(const TreeItem& item);
    TreeNode& Insert(TreeNode& parent, std::unique_ptr<TreeNode> node);
    std::unique_ptr<TreeNode> Take(TreeNode& node);
    static void Sort(TreeNode& parent);

    bool RenameConfiguration(TreeNode& node, const std::string& text);
    bool RenameGroup(TreeNode& node, const std::string& text);
    bool RewriteFiles(const TreeNode& group, const std::string& text);
    bool MoveConfiguration(TreeNode& node, TreeNode& target);
    bool MoveGroup(TreeNode& node, TreeNode& target);
    void Move(TreeNode& node, TreeNode& target);

    CVeltoDoc& document_;
    TreeWindow& window_;
    PageTable pages_;
    std::vector<const PageRow*> own_pages_;
    std::unique_ptr<TreeNode> root_;
    TreeItem selected_;
    TreeItem lastSelected;
};

// The name of a configuration's file, in the spelling that the folder has for its ending.
std::string FileOf(const std::string& folder, const TreeNode& configuration);

// The ten characters that no name of a group or configuration may hold, and the names that the
// tree keeps for itself.
bool HasInvalidCharacters(std::string_view name);
bool IsReservedName(std::string_view name);

}  // namespace velto
