#include "shell/tree/epsxe_tree.h"

#include <algorithm>
#include <utility>

#include "platform/ascii.h"
#include "platform/file_search.h"
#include "shell/tree/group_lists.h"

namespace velto {
namespace {

TreeNode* LastMatch(TreeNode& node, const std::string& name, NodeKind kind) {
    for (std::size_t row = node.children.size(); row-- > 0;) {
        if (auto* match = LastMatch(*node.children[row], name, kind)) return match;
    }
    return node.kind == kind && node.text == name ? &node : nullptr;
}

void Renumber(const TreeNode& parent, std::size_t from) {
    for (std::size_t row = from; row < parent.children.size(); ++row) {
        parent.children[row]->row = row;
    }
}

}  // namespace

CEpsxeTree::CEpsxeTree(CVeltoDoc& document, TreeWindow& window, PageTable pages)
    : document_(document), window_(window), pages_(pages), root_(std::make_unique<TreeNode>()) {
    root_->text = kRootGroup;
    for (const auto& row : pages_) {
        if (row.of == PageOf::OwnNode) own_pages_.push_back(&row);
    }
}

TreeNode* CEpsxeTree::Find(const std::string& name, velto::NodeKind kind) {
    return LastMatch(*root_, name, kind);
}

velto::NodeKind CEpsxeTree::NodeKind(const TreeItem& item) {
    if (item.node == nullptr) return NodeKind::Group;
    return item.page == nullptr ? item.node->kind : NodeKind::Page;
}

std::string CEpsxeTree::TextOf(const TreeItem& item) {
    if (item.node == nullptr) return {};
    return item.page == nullptr ? item.node->text : std::string(item.page->text);
}

// A file that appeared behind the tree's back, or a group that isn't in it, is met by reading
// everything anew.
void CEpsxeTree::AddConfiguration(const std::string& name, const std::string& group) {
    if (Find(name, NodeKind::Configuration) != nullptr) {
        OnUpdate();
    } else {
        auto* const parent = Find(group, NodeKind::Group);
        auto node = std::make_unique<TreeNode>();
        node->kind = NodeKind::Configuration;
        node->text = name;
        Insert(parent != nullptr ? *parent : *root_, std::move(node));
    }
    SelectByName(name, NodeKind::Configuration);
}

void CEpsxeTree::AddGroup(const std::string& name, const std::string& parent) {
    auto& settings = document_.settings;
    // In lists of different lengths a new entry wouldn't meet its parent. An empty one may be one
    // that couldn't be read.
    const auto before = GroupLists::Read(settings);
    const bool readable = !before.groups.empty() && !before.parents.empty();
    if (readable && before.groups.size() != before.parents.size()) {
        GroupLists::Of(*root_).Store(settings);
    }
    settings.AddGroup(name, parent);
    if (!GroupLists::Read(settings).Holds(name)) return;

    if (auto* const above = Find(parent, NodeKind::Group)) {
        auto node = std::make_unique<TreeNode>();
        node->text = name;
        Insert(*above, std::move(node));
    } else {
        OnUpdate();
    }
    SelectByName(name, NodeKind::Group);
}

// Sorts the parent's children.
TreeNode& CEpsxeTree::Insert(TreeNode& parent, std::unique_ptr<TreeNode> node) {
    auto& inserted = *node;
    auto& children = parent.children;
    window_.BeginInsert(parent, children.size());
    inserted.parent = &parent;
    inserted.row = children.size();
    children.push_back(std::move(node));
    window_.EndInsert();

    window_.BeginSort(parent);
    Sort(parent);
    window_.EndSort(parent);
    return inserted;
}

std::unique_ptr<TreeNode> CEpsxeTree::Take(TreeNode& node) {
    auto& parent = *node.parent;
    const auto row = node.row;
    window_.BeginRemove(parent, row);
    auto taken = std::move(parent.children[row]);
    parent.children.erase(parent.children.begin() + static_cast<std::ptrdiff_t>(row));
    Renumber(parent, row);
    window_.EndRemove();
    return taken;
}

void CEpsxeTree::Sort(TreeNode& parent) {
    std::stable_sort(
        parent.children.begin(), parent.children.end(),
        [](const auto& a, const auto& b) { return platform::LessIgnoringCase(a->text, b->text); });
    Renumber(parent, 0);
}

// A file whose name differs elsewhere is another configuration.
std::string FileOf(const std::string& folder, const TreeNode& configuration) {
    auto file = configuration.text + std::string(kConfigEnding);
    const auto found = platform::FindFile(folder, file);
    return found && found->starts_with(configuration.text) ? *found : file;
}

bool HasInvalidCharacters(std::string_view name) {
    return name.find_first_of("\\/:?\"<>|;*") != std::string_view::npos;
}

bool IsReservedName(std::string_view name) {
    constexpr std::string_view kReserved[] = {kRootGroup,    "Graphics", "Sound",
                                              "MemoryCards", "NetPlay",  "GamePad"};
    return std::find(std::begin(kReserved), std::end(kReserved), name) != std::end(kReserved);
}

}  // namespace velto
