#include "shell/tree/deletion.h"

#include <map>
#include <memory>

#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/waiting.h"
#include "shell/tree/group_lists.h"

namespace velto {
namespace {

using platform::Status;

// What is gone already is as it should be.
Status Remove(const ConfigFolder& folder, const std::string& file) {
    const auto removed = platform::Files().Remove(folder.PathOf(file));
    if (removed.ok() || removed.error().kind == platform::ErrorKind::NotFound) return {};
    return platform::Error{removed.error().kind, file, removed.error().text};
}

void ReportFailure(const Status& removed) {
    if (removed.ok()) return;
    platform::Report("Unable to delete " + removed.error().subject + ": " + removed.error().text);
}

class GroupDeletion {
  public:
    GroupDeletion(const ConfigFolder& folder, GroupLists& lists, const TreeNode& group)
        : folder_(folder),
          files_(folder.Spellings()),
          lists_(lists),
          total_(CountConfigurations(group)),
          wait_(platform::Waiting().Begin({"Deleting group " + group.text, true})) {}

    // False: something is left. Why, unless the user has stopped it, failure() tells.
    bool Delete(const TreeNode& group) {
        for (const auto& child : group.children) {
            if (!(child->kind == NodeKind::Group ? Delete(*child) : DeleteOne(child->text))) {
                return false;
            }
        }
        if (group.parent != nullptr) lists_.Remove(group.text, group.parent->text);
        return true;
    }
    const Status& failure() const { return failure_; }

  private:
    bool DeleteOne(const std::string& name) {
        if (!wait_->Continue({{done_++, total_}})) return false;
        const auto found = files_.find(name);
        // In a folder that can't be listed the system says why.
        failure_ =
            Remove(folder_, found != files_.end() ? found->second : ConfigFolder::FileOf(name));
        return failure_.ok();
    }

    const ConfigFolder& folder_;
    const std::map<std::string, std::string> files_;
    GroupLists& lists_;
    const std::size_t total_;
    std::size_t done_ = 0;
    const std::unique_ptr<platform::Wait> wait_;
    Status failure_;
};

Status DeleteBelow(const ConfigFolder& folder, GroupLists& lists, const TreeNode& group) {
    GroupDeletion deletion(folder, lists, group);
    deletion.Delete(group);
    return deletion.failure();
}

}  // namespace

void DeleteConfiguration(const ConfigFolder& folder, const std::string& name) {
    ReportFailure(Remove(folder, folder.Spelled(name)));
}

void DeleteGroup(const ConfigFolder& folder, CVeltoSettings& settings, const TreeNode& group) {
    const auto before = GroupLists::Read(settings);
    auto lists = before;
    const auto deleted = DeleteBelow(folder, lists, group);
    // The waiting has ended: nothing stands between the user and the message.
    ReportFailure(deleted);
    if (lists.groups.size() != before.groups.size()) lists.Store(settings);
}

}  // namespace velto
