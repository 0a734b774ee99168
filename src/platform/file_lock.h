// A lock on a file or folder that exists, by which a process shows others that it is at work with
// it. It is advice: nothing else keeps anybody from the file.
//
// It ends with this object, or with the process, whatever ends that. It belongs to the file, not
// to its name: who replaces the file leaves the lock behind. A second lock of the same process
// meets the first one like that of another process.
#pragma once

#include <memory>
#include <string>

#include "platform/result.h"

namespace velto::platform {

class Descriptor;

class FileLock {
  public:
    FileLock(FileLock&& other) noexcept;
    FileLock& operator=(FileLock&& other) noexcept;
    ~FileLock();

    // Without waiting. AlreadyExists: somebody else holds it. Any other failure: it isn't known
    // whether somebody does.
    static Result<FileLock> Take(const std::string& path);

    // Whether the file of that name is the one that is locked.
    bool IsOn(const std::string& path) const;

    // For a child that is handed the lock (ProcessRequest::descriptors): it then lasts as long as
    // the one that lives longer.
    int descriptor() const;

  private:
    explicit FileLock(Descriptor file);

    std::unique_ptr<Descriptor> file_;
};

}  // namespace velto::platform
