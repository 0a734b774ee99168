#include "store/borrowed_branch.h"

#include <tuple>

#include "platform/environment.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/process.h"
#include "platform/registry.h"
#include "store/registry_editor.h"

namespace velto {
namespace {

using platform::FileLock;
using platform::JoinPath;

bool IsTaken(const platform::Result<FileLock>& lock) {
    return !lock.ok() && lock.error().kind == platform::ErrorKind::AlreadyExists;
}

}  // namespace

void DiscardBackup(const std::string& path) {
    const auto removed = platform::Files().Remove(path);
    if (removed.ok() || removed.error().kind == platform::ErrorKind::NotFound) return;
    std::ignore = platform::Files().Empty(path);
}

// Two homes may share a configuration folder, and two folders a registry. (The folder of the
// registry is locked: SQLite loses its own locks if another descriptor of its file is closed.)
std::optional<BranchTurn> BranchTurn::Take(const std::string& configDir) {
    BranchTurn turn;
    const bool free = turn.Lock(platform::FolderOf(platform::HostEnvironment().RegistryFile())) &&
                      turn.Lock(configDir) &&
                      !IsTaken(FileLock::Take(JoinPath(configDir, kMainBackup)));
    if (!free) return {};
    return turn;
}

bool BranchTurn::Lock(const std::string& path) {
    for (const auto& lock : locks_) {
        if (lock.IsOn(path)) return true;
    }
    auto lock = FileLock::Take(path);
    if (IsTaken(lock)) return false;
    if (lock.ok()) locks_.push_back(std::move(lock).value());
    return true;
}

std::optional<BorrowedBranch> BorrowedBranch::ForRun(const std::string& configDir) {
    return Borrow(configDir, {{kMainBackup, kMainScope, kMainScope},
                              {kPluginsBackup, kPluginsScope, kPluginsScope}});
}

std::optional<BorrowedBranch> BorrowedBranch::ForPlugins(const std::string& configDir) {
    const auto key = std::string(kPluginsScope) + "\\PSEmu Pro";
    return Borrow(configDir, {{kPluginsBackup, key, kPluginsScope}});
}

BorrowedBranch::~BorrowedBranch() {
    if (backups_.empty()) return;
    GiveBack();
}

void BorrowedBranch::GiveBack() {
    auto merged = std::exchange(backups_, {});
    // Both are held until the backups are gone.
    const auto turn = std::move(turn_);
    const auto run = std::move(run_);
    if (run && !run->IsOn(JoinPath(config_dir_, kMainBackup))) return;
    std::erase_if(merged, [&](const Branch& branch) {
        return RestoreFile(branch.file, config_dir_, branch.scope) != 0;
    });
    Delete(merged);
}

std::optional<BorrowedBranch> BorrowedBranch::Borrow(const std::string& configDir,
                                                     std::initializer_list<Branch> branches) {
    auto turn = BranchTurn::Take(configDir);
    if (!turn) return {};
    bool all_merged = true;
    for (const auto& branch : branches) {
        all_merged = MergeFound(configDir, branch) && all_merged;
    }
    if (!all_merged) {
        platform::Report("Unable to restore settings");
        return {};
    }
    BorrowedBranch borrowed(configDir, *std::move(turn));
    for (const auto& branch : branches) {
        if (!borrowed.Save(branch)) return {};
    }
    return borrowed;
}

// What can't be deleted would be taken for the next backup.
bool BorrowedBranch::MergeFound(const std::string& configDir, const Branch& branch) {
    const auto path = JoinPath(configDir, branch.file);
    const auto info = platform::Files().Info(path);
    if (!info.ok() || !info.value().regular) return true;
    const bool merged = info.value().size == 0 ||
                        MergeFile(branch.file, configDir, branch.scope) == EditorRun::Done;
    if (merged) DiscardBackup(path);
    return merged && !platform::Files().Info(path).ok();
}

bool BorrowedBranch::Save(const Branch& branch) {
    // What isn't there can't be exported.
    std::ignore = platform::Registry().CreateKey(branch.key);
    const bool quoted = branch.key.find(' ') != std::string::npos;
    const auto result = BackupBranch(quoted ? platform::QuoteParameter(branch.key) : branch.key,
                                     branch.file, config_dir_);
    if (result == -1) return true;
    backups_.push_back(branch);
    if (result == 0 && (branch.file != kMainBackup || LockRun())) return true;
    // Nothing has been changed yet, and half a backup must never be merged.
    Delete(std::exchange(backups_, {}));
    return false;
}

bool BorrowedBranch::LockRun() {
    auto lock = FileLock::Take(JoinPath(config_dir_, kMainBackup));
    if (!lock.ok()) {
        platform::Report("Unable to lock " + lock.error().subject + ": " + lock.error().text);
        return false;
    }
    run_ = std::move(lock).value();
    return true;
}

void BorrowedBranch::Delete(const std::vector<Branch>& backups) {
    for (const auto& branch : backups) {
        DiscardBackup(JoinPath(config_dir_, branch.file));
    }
}

}  // namespace velto
