#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "platform/linux/descriptor.h"
#include "platform/linux/system_error.h"

namespace velto::platform {
namespace {

Result<FileInfo> InfoOf(int outcome, const struct stat& status, const std::string& path) {
    if (outcome != 0) return SystemError(path);
    return FileInfo{S_ISREG(status.st_mode), S_ISDIR(status.st_mode),
                    static_cast<std::uint64_t>(status.st_size), status.st_mode & 07777U};
}

// Less the umask.
constexpr mode_t kNewFileMode = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;

Error NotRegular(const std::string& path) {
    return {ErrorKind::Unsuitable, path, "not a regular file"};
}

constexpr std::size_t kReadAtOnce = std::size_t{64} << 10;

class LinuxReader : public FileReader {
  public:
    LinuxReader(Descriptor file, std::string path)
        : file_(std::move(file)), path_(std::move(path)) {}

    Result<bool> Read(std::string& out, std::size_t limit) override {
        char bytes[kReadAtOnce];  // not filled: a small file would pay for all of it
        const auto wanted = std::min(limit, sizeof bytes);
        const auto count = Retrying([&] { return read(file_.get(), bytes, wanted); });
        if (count < 0) return SystemError(path_);
        out.append(bytes, static_cast<std::size_t>(count));
        return count > 0;
    }

  private:
    Descriptor file_;
    std::string path_;
};

class LinuxWriter : public FileWriter {
  public:
    LinuxWriter(Descriptor file, std::string path)
        : file_(std::move(file)), path_(std::move(path)) {}

    Status Write(std::string_view bytes) override {
        while (!bytes.empty()) {
            const auto count =
                Retrying([&] { return write(file_.get(), bytes.data(), bytes.size()); });
            if (count < 0) return SystemError(path_);
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        return {};
    }

    Status Flush() override {
        if (Retrying([&] { return fsync(file_.get()); }) != 0) return SystemError(path_);
        return {};
    }

  private:
    Descriptor file_;
    std::string path_;
};

Status FlushBy(int (*flush)(int), const std::string& folder) {
    const Descriptor open_folder(
        Retrying([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!open_folder.valid()) return SystemError(folder);
    if (Retrying([&] { return flush(open_folder.get()); }) != 0) return SystemError(folder);
    return {};
}

class LinuxFiles : public FileService {
  public:
    Result<FileInfo> Info(const std::string& path) override {
        struct stat status {};
        auto info = InfoOf(stat(path.c_str(), &status), status, path);
        if (!info.ok() && errno == ENOENT && lstat(path.c_str(), &status) == 0) {
            return Error{ErrorKind::Unsuitable, path, "a link that leads nowhere"};
        }
        return info;
    }

    Result<std::string> RealPath(const std::string& path) override {
        std::error_code error;
        const auto real = std::filesystem::canonical(path, error);
        if (error) return SystemError(path, error.value());
        return real.string();
    }

    Result<std::vector<std::string>> List(const std::string& folder) override {
        struct Close {
            void operator()(DIR* open) const { closedir(open); }
        };
        const std::unique_ptr<DIR, Close> open(opendir(folder.c_str()));
        if (!open) return SystemError(folder);
        std::vector<std::string> names;
        while (true) {
            errno = 0;
            const dirent* entry = readdir(open.get());
            if (entry == nullptr) break;
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..") names.emplace_back(name);
        }
        if (errno != 0) return SystemError(folder);
        return names;
    }

    Result<std::unique_ptr<FileReader>> Open(const std::string& path) override {
        // A pipe mustn't make this wait, nor a terminal become this process's own.
        Descriptor file(Retrying(
            [&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
        if (!file.valid()) return SystemError(path);
        struct stat status {};
        const auto info = InfoOf(fstat(file.get(), &status), status, path);
        if (!info.ok()) return info.error();
        if (!info.value().regular) return NotRegular(path);
        return std::unique_ptr<FileReader>(std::make_unique<LinuxReader>(std::move(file), path));
    }

    Result<std::unique_ptr<FileWriter>> Create(const std::string& path,
                                               std::optional<unsigned> mode) override {
        // The umask may take some of the bits away. Until all are there nobody else gets in.
        const mode_t first_mode = mode ? S_IRUSR | S_IWUSR : kNewFileMode;
        Descriptor file(Retrying([&] {
            return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, first_mode);
        }));
        if (!file.valid()) return SystemError(path);
        if (mode && fchmod(file.get(), *mode) != 0) {
            const auto error = SystemError(path);
            unlink(path.c_str());
            return error;
        }
        return std::unique_ptr<FileWriter>(std::make_unique<LinuxWriter>(std::move(file), path));
    }

    Result<std::unique_ptr<FileWriter>> OpenLog(const std::string& path, bool anew) override {
        const int flags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY |
                          (anew ? O_TRUNC : 0);
        Descriptor file(Retrying([&] { return open(path.c_str(), flags, kNewFileMode); }));
        if (!file.valid()) return SystemError(path);
        struct stat status {};
        const auto info = InfoOf(fstat(file.get(), &status), status, path);
        if (!info.ok()) return info.error();
        if (!info.value().regular) return NotRegular(path);
        return std::unique_ptr<FileWriter>(std::make_unique<LinuxWriter>(std::move(file), path));
    }

    Status CheckWritable(const std::string& path) override {
        const auto info = Info(path);
        if (!info.ok()) return info.error();
        // Somebody took the write bits away on purpose; that the superuser could write all the
        // same is no reason to.
        constexpr unsigned kAnyWriteBit = S_IWUSR | S_IWGRP | S_IWOTH;
        if ((info.value().mode & kAnyWriteBit) == 0) return SystemError(path, EACCES);
        if (access(path.c_str(), W_OK) != 0) return SystemError(path);
        return {};
    }

    Status Rename(const std::string& from, const std::string& to) override {
        if (rename(from.c_str(), to.c_str()) != 0) return SystemError(to);
        return {};
    }

    Status FlushFolder(const std::string& folder) override { return FlushBy(fsync, folder); }
    Status FlushFileSystem(const std::string& folder) override { return FlushBy(syncfs, folder); }

    Status Remove(const std::string& path) override {
        if (unlink(path.c_str()) != 0) return SystemError(path);
        return {};
    }

    Status Empty(const std::string& path) override {
        if (Retrying([&] { return truncate(path.c_str(), 0); }) != 0) return SystemError(path);
        return {};
    }

    Status MakeFolders(const std::string& folder) override {
        constexpr mode_t kMode = S_IRWXU | S_IRWXG | S_IRWXO;  // less the umask
        if (mkdir(folder.c_str(), kMode) == 0) return {};
        int error = errno;
        if (error == ENOENT && FolderOf(folder) != folder) {
            if (auto made = MakeFolders(FolderOf(folder)); !made.ok()) return made;
            if (mkdir(folder.c_str(), kMode) == 0) return {};
            error = errno;
        }
        // Also if another process was faster.
        const auto info = Info(folder);
        if (error == EEXIST && info.ok() && info.value().folder) return {};
        return SystemError(folder, error);
    }
};

}  // namespace

std::unique_ptr<FileService> MakeFileService() {
    return std::make_unique<LinuxFiles>();
}

}  // namespace velto::platform
