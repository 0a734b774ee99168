// The file service: single steps on the host's files, each of which a test can make fail.
//
// Paths are host paths (bytes, "/" between folders); relative ones count from the process's
// current directory. No call changes that directory. Every call may come from any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/result.h"

namespace velto::platform {

struct FileInfo {
    bool regular = false;
    bool folder = false;
    std::uint64_t size = 0;
    unsigned mode = 0;  // permission bits
};

// An open file, read from its start to its end. Closed by its destructor.
class FileReader {
  public:
    virtual ~FileReader() = default;
    // Appends up to `limit` bytes to `out`; false at the end of the file.
    virtual Result<bool> Read(std::string& out, std::size_t limit) = 0;
};

// A file being written. The destructor closes it without a word; what counts is Flush.
class FileWriter {
  public:
    virtual ~FileWriter() = default;
    virtual Status Write(std::string_view bytes) = 0;
    // Returns when what was written is on the disk.
    virtual Status Flush() = 0;
};

class FileService {
  public:
    virtual ~FileService() = default;

    // Follows links; one that leads nowhere is Unsuitable.
    virtual Result<FileInfo> Info(const std::string& path) = 0;
    // The path without links, "." and "..". Everything on it must exist.
    virtual Result<std::string> RealPath(const std::string& path) = 0;
    // Names in the folder, in no order, without "." and "..".
    virtual Result<std::vector<std::string>> List(const std::string& folder) = 0;

    // Regular files alone: a pipe or a folder is Unsuitable, and never blocks.
    virtual Result<std::unique_ptr<FileReader>> Open(const std::string& path) = 0;
    // Makes a file that mustn't exist yet, with these permission bits; without any, with those
    // that the user's umask gives a new file.
    virtual Result<std::unique_ptr<FileWriter>> Create(const std::string& path,
                                                       std::optional<unsigned> mode) = 0;
    // Opens a log to write at its end, and makes it if need be; `anew` empties it first. This and
    // Empty are the ways of this service that write into a file in place.
    virtual Result<std::unique_ptr<FileWriter>> OpenLog(const std::string& path, bool anew) = 0;
    // Whether this user may write the existing file.
    virtual Status CheckWritable(const std::string& path) = 0;

    virtual Status Rename(const std::string& from, const std::string& to) = 0;
    // Returns when the folder's entries are on the disk.
    virtual Status FlushFolder(const std::string& folder) = 0;
    // Returns when all that was written to the folder's file system is on the disk: for many files
    // much cheaper than a flush of each.
    virtual Status FlushFileSystem(const std::string& folder) = 0;
    virtual Status Remove(const std::string& path) = 0;
    // Leaves nothing in an existing file, which may stand in a folder that can't be written.
    virtual Status Empty(const std::string& path) = 0;
    // Makes the folder and those above it; success if it exists.
    virtual Status MakeFolders(const std::string& folder) = 0;
};

FileService& Files();

// The host's own files.
std::unique_ptr<FileService> MakeFileService();

// The whole file. More than `limit` bytes are TooLarge, and nothing of them is kept.
Result<std::string> ReadWhole(FileService& files, const std::string& path, std::size_t limit);

// Everything in front of the last "/" ("/" for a file in the root, "." where there is none),
// everything behind it, and the two put together.
std::string FolderOf(const std::string& path);
std::string NameOf(const std::string& path);
std::string JoinPath(const std::string& folder, std::string_view name);

}  // namespace velto::platform
