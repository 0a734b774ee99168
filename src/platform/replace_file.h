// Replacing files as if the power could go: the target is the old file or the new one, whole.
//
// The new content goes to `velto-<pid>-<n>.new` in the target's folder, is flushed, and takes the
// target's name by a rename; then the folder is flushed. Links to the target are followed, its
// permission bits are kept, and a write-protected target is a failure.
#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "platform/result.h"

namespace velto::platform {

// One replacement under way, for content that is too large to hold in memory. Without a Commit
// that reached its rename the destructor removes the temporary, and the target is untouched.
class FileReplacement {
  public:
    static Result<std::unique_ptr<FileReplacement>> Begin(FileService& files,
                                                          const std::string& path);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    Status Write(std::string_view bytes);
    // Once. A failure before the rename leaves the old file; one of the last step, the flush of
    // the folder, leaves the new file in place.
    Status Commit();
    bool renamed() const { return renamed_; }

  private:
    friend class ReplacementBatch;
    FileReplacement(FileService& files, std::string target, std::string temporary,
                    std::unique_ptr<FileWriter> writer);
    void Close() { writer_.reset(); }
    Status Rename();

    FileService& files_;
    std::string target_;
    std::string temporary_;
    std::unique_ptr<FileWriter> writer_;
    bool renamed_ = false;
};

Status ReplaceFile(FileService& files, const std::string& path, std::string_view bytes);

// Many replacements at once: all are written, flushed together, and then renamed. Each target is
// the old file or the new one, whole; before Commit all are old. The destructor removes the
// temporaries that weren't renamed.
class ReplacementBatch {
  public:
    explicit ReplacementBatch(FileService& files) : files_(files) {}

    // Writes the new content of one file, which isn't on the disk yet when this returns.
    Status Add(const std::string& path, std::string_view bytes);
    // Once. The subject of a failure is the path, as it was added, of the first file that isn't
    // known to be replaced.
    Status Commit();
    // How many targets are the new file.
    std::size_t renamed() const { return renamed_; }

  private:
    struct Member {
        std::string path;
        std::unique_ptr<FileReplacement> replacement;
    };

    FileService& files_;
    std::vector<Member> members_;
    std::set<std::string> folders_;  // of the targets
    std::size_t renamed_ = 0;
};

// Removes the temporaries in `folder` whose process is gone. What can't be removed stays.
void SweepTemporaries(FileService& files, const std::string& folder);

}  // namespace velto::platform
