// The live registry branch of emulator and plug-ins, borrowed: the user's state is saved in front,
// whoever borrowed it writes what he likes, and at the end the saved state is merged back.
//
// The backups stand in the configuration folder. Registry and folder are locked as long as the
// branch is borrowed, and `main.bak`, the backup of a run, too: so a run that lives is known from
// a backup that a process left behind, in whichever process and for whichever folder one asks. A
// backup whose merge failed is kept, and tried again by the next who borrows.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/file_lock.h"
namespace velto {

inline constexpr const char* kMainBackup = "main.bak";
inline constexpr const char* kPluginsBackup = "plugins.bak";

// What the merge of a backup may write.
inline constexpr const char* kMainScope = "HKEY_CURRENT_USER\\Software\\epsxe";
inline constexpr const char* kPluginsScope = "HKEY_CURRENT_USER\\Software\\Vision Thing";

// Deletes a backup that has been merged. In a folder that has turned read-only it is emptied:
// merged once more, later, it would take back what the user has changed since. An empty one counts
// as merged.
void DiscardBackup(const std::string& path);

// The right to work with the live branch and the backups of one folder, held by one at a time
// among all processes.
class BranchTurn {
  public:
    // Nothing while somebody else has it for this registry or this folder. `configDir` is a host
    // path without a separator at its end. File systems without locks count as free.
    static std::optional<BranchTurn> Take(const std::string& configDir);

  private:
    bool Lock(const std::string& path);

    std::vector<platform::FileLock> locks_;
};

// Whether the branch is borrowed, in this process or another.
inline bool IsRunUnderWay(const std::string& configDir) {
    return !BranchTurn::Take(configDir);
}

// Moves from one thread to another, but each call is on one.
class BorrowedBranch {
  public:
    // For a run of the emulator: `Software\epsxe` is saved to `main.bak`, then
    // `Software\Vision Thing` to `plugins.bak`. Backups that are found are merged back first.
    // Nothing, and no registry value changed but by these, without a word while a run is under
    // way, else after a message: what was found can't be merged, or a backup didn't come into
    // being. An editor that can't be started is told, and then there is no backup.
    static std::optional<BorrowedBranch> ForRun(const std::string& configDir);
    // For a change to plug-in settings: `Software\Vision Thing\PSEmu Pro` alone, to
    // `plugins.bak`; a `main.bak` that is found stays. Otherwise the same.
    static std::optional<BorrowedBranch> ForPlugins(const std::string& configDir);

    BorrowedBranch(BorrowedBranch&&) = default;
    BorrowedBranch& operator=(BorrowedBranch&&) = delete;
    BorrowedBranch(const BorrowedBranch&) = delete;
    BorrowedBranch& operator=(const BorrowedBranch&) = delete;
    // Gives the branch back if that wasn't done.
    ~BorrowedBranch();

    // Merges the backups that were made, and deletes those that could be merged. Nothing is done
    // if `main.bak` isn't the one that was made here any more: others have taken care of it. Once.
    void GiveBack();

  private:
    struct Branch {
        const char* file;
        std::string key;
        const char* scope;
    };

    BorrowedBranch(std::string configDir, BranchTurn turn)
        : config_dir_(std::move(configDir)), turn_(std::move(turn)) {}

    static std::optional<BorrowedBranch> Borrow(const std::string& configDir,
                                                std::initializer_list<Branch> branches);
    static bool MergeFound(const std::string& configDir, const Branch& branch);
    // False, after a message, if nothing may be changed now.
    bool Save(const Branch& branch);
    bool LockRun();
    void Delete(const std::vector<Branch>& backups);

    std::string config_dir_;
    BranchTurn turn_;
    std::vector<Branch> backups_;            // made and not given back
    std::optional<platform::FileLock> run_;  // on `main.bak`, if that was made
};

}  // namespace velto
