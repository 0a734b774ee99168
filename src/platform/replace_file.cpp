#include "platform/replace_file.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <optional>
#include <tuple>
#include <utility>

namespace velto::platform {
namespace {

constexpr std::string_view kPrefix = "velto-";
constexpr std::string_view kSuffix = ".new";

std::string TemporaryName() {
    static std::atomic<unsigned> counter = 0;
    return std::string(kPrefix) + std::to_string(getpid()) + "-" + std::to_string(counter++) +
           std::string(kSuffix);
}

// The process that a temporary's name tells; nothing if it is no such name.
std::optional<pid_t> OwnerOf(std::string_view name) {
    if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix)) return {};
    name.remove_prefix(kPrefix.size());
    name.remove_suffix(kSuffix.size());
    pid_t owner = 0;
    unsigned count = 0;
    const char* const end = name.data() + name.size();
    const auto number = std::from_chars(name.data(), end, owner);
    if (number.ec != std::errc() || owner <= 0 || number.ptr == end || *number.ptr != '-')
        return {};
    const auto rest = std::from_chars(number.ptr + 1, end, count);
    if (rest.ec != std::errc() || rest.ptr != end) return {};
    return owner;
}

bool IsGone(pid_t process) {
    return kill(process, 0) != 0 && errno == ESRCH;
}

}  // namespace

FileReplacement::FileReplacement(FileService& files, std::string target, std::string temporary,
                                 std::unique_ptr<FileWriter> writer)
    : files_(files),
      target_(std::move(target)),
      temporary_(std::move(temporary)),
      writer_(std::move(writer)) {}

Result<std::unique_ptr<FileReplacement>> FileReplacement::Begin(FileService& files,
                                                                const std::string& path) {
    std::string target = path;
    std::optional<unsigned> mode;
    const auto old = files.Info(path);
    if (old.ok()) {
        if (!old.value().regular) return Error{ErrorKind::Unsuitable, path, "not a regular file"};
        if (auto writable = files.CheckWritable(path); !writable.ok()) return writable.error();
        auto real = files.RealPath(path);
        if (!real.ok()) return real.error();
        target = std::move(real).value();
        mode = old.value().mode;
    } else if (old.error().kind != ErrorKind::NotFound) {
        return old.error();
    }

    // A killed process of the same number may have left some.
    constexpr int kAttempts = 1000;
    std::string temporary;
    Result<std::unique_ptr<FileWriter>> writer = Error{};
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        temporary = JoinPath(FolderOf(target), TemporaryName());
        writer = files.Create(temporary, mode);
        if (writer.ok() || writer.error().kind != ErrorKind::AlreadyExists) break;
    }
    if (!writer.ok()) return Error{writer.error().kind, path, writer.error().text};
    return std::unique_ptr<FileReplacement>(new FileReplacement(
        files, std::move(target), std::move(temporary), std::move(writer).value()));
}

FileReplacement::~FileReplacement() {
    writer_.reset();
    if (!renamed_) std::ignore = files_.Remove(temporary_);
}

Status FileReplacement::Write(std::string_view bytes) {
    return writer_->Write(bytes);
}

Status FileReplacement::Commit() {
    if (auto flushed = writer_->Flush(); !flushed.ok()) return flushed;
    Close();
    if (auto renamed = Rename(); !renamed.ok()) return renamed;
    return files_.FlushFolder(FolderOf(target_));
}

Status FileReplacement::Rename() {
    auto renamed = files_.Rename(temporary_, target_);
    renamed_ = renamed.ok();
    return renamed;
}

Status ReplaceFile(FileService& files, const std::string& path, std::string_view bytes) {
    auto replacement = FileReplacement::Begin(files, path);
    if (!replacement.ok()) return replacement.error();
    if (auto written = replacement.value()->Write(bytes); !written.ok()) return written;
    return replacement.value()->Commit();
}

Status ReplacementBatch::Add(const std::string& path, std::string_view bytes) {
    auto begun = FileReplacement::Begin(files_, path);
    if (!begun.ok()) return begun.error();
    auto& replacement = *begun.value();
    if (auto written = replacement.Write(bytes); !written.ok()) return written;
    replacement.Close();
    folders_.insert(FolderOf(replacement.target_));
    members_.push_back({path, std::move(begun).value()});
    return {};
}

Status ReplacementBatch::Commit() {
    if (members_.empty()) return {};
    // Behind the last rename it is a flush that failed, and none is known to be on the disk.
    const auto failure = [this](const Status& status) {
        const auto first = renamed_ < members_.size() ? renamed_ : 0;
        return Error{status.error().kind, members_[first].path, status.error().text};
    };
    // All contents before the first name: one that reached the disk without its content would be an
    // empty file after a power cut.
    for (const auto& folder : folders_) {
        if (auto flushed = files_.FlushFileSystem(folder); !flushed.ok()) return failure(flushed);
    }
    for (const auto& member : members_) {
        if (auto done = member.replacement->Rename(); !done.ok()) return failure(done);
        ++renamed_;
    }
    for (const auto& folder : folders_) {
        if (auto flushed = files_.FlushFolder(folder); !flushed.ok()) return failure(flushed);
    }
    return {};
}

void SweepTemporaries(FileService& files, const std::string& folder) {
    const auto names = files.List(folder);
    if (!names.ok()) return;
    for (const auto& name : names.value()) {
        const auto owner = OwnerOf(name);
        if (owner && IsGone(*owner)) std::ignore = files.Remove(JoinPath(folder, name));
    }
}

}  // namespace velto::platform
