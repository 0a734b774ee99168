#include "platform/message_box.h"
#include "shell/tree/epsxe_tree.h"

namespace velto {

std::string CEpsxeTree::GetSelectedConfigName() const {
    return selected_.node == nullptr ? std::string() : selected_.node->text;
}

std::string CEpsxeTree::GetSelectedConfigFile() const {
    if (NodeKind(selected_) == NodeKind::Group) {
        platform::Report("No Configuration has been selected");
        return {};
    }
    return GetSelectedConfigName() + std::string(kConfigEnding);
}

bool CEpsxeTree::Select(const TreeItem& item) {
    if (item.node == nullptr) return false;
    if (item == selected_ || Enter(item)) return true;
    const TreeItem back = lastSelected.node != nullptr ? lastSelected : TreeItem{root_.get()};
    if (!Enter(back)) {
        // Its file can't be read any more. The record is still the one that was read from it.
        window_.Selected(back);
    }
    return false;
}

bool CEpsxeTree::SelectByName(const std::string& name, velto::NodeKind kind) {
    return Select({Find(name, kind)});
}

// On the way back as well: the document counts on the load of a configuration that it refused to
// leave.
bool CEpsxeTree::Enter(const TreeItem& item) {
    selected_ = item;
    if (!MayEnter(item)) return false;
    lastSelected = item;
    window_.Selected(item);
    window_.PostPage(PageNumber(item));
    return true;
}

bool CEpsxeTree::MayEnter(const TreeItem& item) {
    const auto from = NodeKind(lastSelected);
    if (NodeKind(item) == NodeKind::Group) {
        return from == NodeKind::Group || !document_.WarnIfDirty();
    }
    const bool another_page = lastSelected.node == item.node &&
                              (NodeKind(item) == NodeKind::Page || from == NodeKind::Page);
    return another_page || !document_.LoadConfig(GetSelectedConfigName());
}

const PageRow& CEpsxeTree::RowOf(const TreeItem& item) const {
    if (item.page != nullptr) return *item.page;
    if (item.node == root_.get()) return RowFor(pages_, PageOf::Root);
    return RowFor(
        pages_, NodeKind(item) == NodeKind::Configuration ? PageOf::Configuration : PageOf::Group);
}

int CEpsxeTree::PageNumber(const TreeItem& item) const {
    // A file of the root's name can't be loaded: it has no page of its own either.
    const bool root = item.page == nullptr && item.node->text == kRootGroup;
    return root ? RowFor(pages_, PageOf::Root).number : RowOf(item).number;
}

}  // namespace velto
