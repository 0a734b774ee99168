#include <map>

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "shell/tree/epsxe_tree.h"
#include "shell/tree/group_lists.h"

namespace velto {
namespace {

// False after a message. What is gone already is as it should be.
bool DeleteFile(const std::string& folder, const std::string& file) {
    const auto removed = platform::Files().Remove(platform::JoinPath(folder, file));
    if (removed.ok() || removed.error().kind == platform::ErrorKind::NotFound) return true;
    platform::Report("Unable to delete " + file + ": " + removed.error().text);
    return false;
}

// The files of all configurations by name, an exact ending before another spelling of it: asking
// the folder for one after the other would list it each time.
std::map<std::string, std::string> FilesByName(const std::string& folder) {
    std::map<std::string, std::string> files;
    for (auto& file : platform::FindFilesEndingIn(folder, kConfigEnding)) {
        const auto name = file.substr(0, file.size() - kConfigEnding.size());
        if (file.ends_with(kConfigEnding)) {
            files.insert_or_assign(name, std::move(file));
        } else {
            files.try_emplace(name, std::move(file));
        }
    }
    return files;
}

std::size_t CountConfigurations(const TreeNode& node) {
    std::size_t count = node.kind == NodeKind::Configuration ? 1 : 0;
    for (const auto& child : node.children) count += CountConfigurations(*child);
    return count;
}

// Deletes what is below a group, depth first, up to the first file that can't be deleted. A group
// leaves the lists when nothing is left in it.
class GroupDeletion {
  public:
    GroupDeletion(const std::string& folder, TreeWindow& window, GroupLists& lists)
        : folder_(folder), files_(FilesByName(folder)), window_(window), lists_(lists) {}

    void Delete(const TreeNode& group) {
        what_ = "Deleting group " + group.text;
        total_ = CountConfigurations(group);
        DeleteAll(group);
    }

  private:
    bool DeleteAll(const TreeNode& group) {
        for (const auto& child : group.children) {
            if (!(child->kind == NodeKind::Group ? DeleteAll(*child) : DeleteOne(*child))) {
                return false;
            }
        }
        if (group.parent != nullptr) lists_.Remove(group.text, group.parent->text);
        return true;
    }
    bool DeleteOne(const TreeNode& configuration) {
        if (!window_.Progress(what_, done_++, total_)) return false;
        const auto found = files_.find(configuration.text);
        // In a folder that can't be listed the system says why.
        return DeleteFile(folder_, found != files_.end()
                                       ? found->second
                                       : configuration.text + std::string(kConfigEnding));
    }

    const std::string& folder_;
    const std::map<std::string, std::string> files_;
    TreeWindow& window_;
    GroupLists& lists_;
    std::string what_;
    std::size_t done_ = 0;
    std::size_t total_ = 0;
};

// True if the user said yes, whatever came of it: what is left is read anew.
bool DeleteConfiguration(const std::string& folder, const TreeNode& node) {
    if (!platform::ConfirmLoss("Are you sure you wish to delete this file?", "Confirm Delete"))
        return false;
    DeleteFile(folder, FileOf(folder, node));
    return true;
}

bool DeleteGroup(CVeltoDoc& document, TreeWindow& window, const TreeNode& node) {
    if (!platform::ConfirmLoss(
            "This action will delete all configurations contained within this group. \nDo you "
            "wish to continue?",
            "Remove Group?")) {
        return false;
    }
    const auto before = GroupLists::Read(document.settings);
    auto lists = before;
    GroupDeletion(document.configDir, window, lists).Delete(node);
    if (lists.groups.size() != before.groups.size()) lists.Store(document.settings);
    return true;
}

}  // namespace

void CEpsxeTree::OnDelete() {
    const auto target = selected_;
    if (target.node == nullptr || !document_.GiveUpChanges()) return;
    const bool confirmed = NodeKind(target) == NodeKind::Group
                               ? DeleteGroup(document_, window_, *target.node)
                               : DeleteConfiguration(document_.configDir, *target.node);
    if (!confirmed) return;
    OnUpdate();
    document_.UpdatePages();
}

}  // namespace velto
