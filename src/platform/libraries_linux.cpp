#include <map>
#include <mutex>
#include <utility>

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/libraries.h"
#include "platform/library_process_linux.h"
#include "platform/process.h"

namespace velto::platform {
namespace {

using Kind = LibraryMessageKind;

// Beside Velto itself.
constexpr const char* kProgramName = "velto-plugin";

class LinuxLibraries : public LibraryService {
  public:
    LinuxLibraries(ProcessService& processes, std::string program,
                   std::chrono::milliseconds answer_time)
        : processes_(processes), program_(std::move(program)), answer_time_(answer_time) {}

    Result<LibraryHandle> Load(const std::string& folder, const std::string& file) override {
        if (!IsFileName(file) || file.size() > kLongestLibraryText) {
            return Error{ErrorKind::Malformed, file, "Not the name of a file"};
        }
        auto home = HomeFor(folder);
        if (!home.ok()) return home.error();
        const auto answer = home.value().process->Ask({Kind::Load, {}, {file}}, {1, 0});
        if (!answer.ok()) return Error{answer.error().kind, file, answer.error().text};
        auto loaded = std::move(home).value();
        loaded.handle = answer.value().numbers[0];
        const std::lock_guard lock(mutex_);
        const LibraryHandle handle{++last_handle_};
        loaded_.emplace(handle, std::move(loaded));
        return handle;
    }

    Result<std::vector<FunctionAddress>> Find(LibraryHandle library,
                                              std::span<const std::string_view> names) override {
        const auto loaded = Get(library);
        if (!loaded.process) return NotLoaded();
        const auto answer = loaded.process->Ask(
            {Kind::Find, {loaded.handle}, {names.begin(), names.end()}}, {names.size(), 0});
        if (!answer.ok()) return answer.error();
        std::vector<FunctionAddress> found;
        for (const auto address : answer.value().numbers) found.push_back(FunctionAddress{address});
        return found;
    }

    Result<std::vector<FunctionAnswer>> Call(LibraryHandle library,
                                             std::span<const FunctionCall> calls) override {
        const auto loaded = Get(library);
        if (!loaded.process) return NotLoaded();
        LibraryMessage request{Kind::Call};
        for (const auto& call : calls) {
            request.numbers.push_back(static_cast<std::uint64_t>(call.address));
            request.numbers.push_back(static_cast<std::uint64_t>(call.result));
        }
        const auto answer =
            loaded.process->Ask(request, {calls.size(), calls.size()}, !loaded.scanned);
        if (!answer.ok()) return answer.error();
        std::vector<FunctionAnswer> results;
        for (std::size_t i = 0; i < calls.size(); ++i) {
            results.push_back(
                {static_cast<std::uint32_t>(answer.value().numbers[i]), answer.value().texts[i]});
        }
        return results;
    }

    Status Free(LibraryHandle library) override {
        const auto loaded = Get(library);
        if (!loaded.process) return NotLoaded();
        const auto answer = loaded.process->Ask({Kind::Free, {loaded.handle}}, {});
        if (!answer.ok() && loaded.process->alive()) return answer.error();
        const std::lock_guard lock(mutex_);
        loaded_.erase(library);
        return {};
    }

    std::unique_ptr<LibraryScan> BeginScan(const std::string& folder) override {
        const std::lock_guard lock(mutex_);
        scan_folder_ = folder;
        return std::make_unique<Scan>(*this);
    }

  private:
    // Where a library is loaded. Whoever uses it holds its program.
    struct Loaded {
        std::shared_ptr<LibraryProcess> process;
        bool scanned = false;      // the program is a scan's
        std::uint64_t handle = 0;  // the program's own
    };

    class Scan : public LibraryScan {
      public:
        explicit Scan(LinuxLibraries& libraries) : libraries_(libraries) {}
        ~Scan() override { libraries_.EndScan(); }
        Scan(const Scan&) = delete;
        Scan& operator=(const Scan&) = delete;

      private:
        LinuxLibraries& libraries_;
    };

    void EndScan() {
        const std::lock_guard lock(mutex_);
        scan_folder_.reset();
        // Libraries that nobody has freed keep it, dead.
        if (scan_process_) scan_process_->End();
        scan_process_.reset();
    }

    // The program for a library of the folder.
    Result<Loaded> HomeFor(const std::string& folder) {
        const std::lock_guard lock(mutex_);
        const bool scanned = scan_folder_ == folder;
        if (scanned && scan_process_ && scan_process_->alive()) return Loaded{scan_process_, true};
        auto started = LibraryProcess::Start(processes_, program_, folder, answer_time_);
        if (!started.ok()) return started.error();
        const std::shared_ptr<LibraryProcess> process = std::move(started).value();
        if (scanned) scan_process_ = process;
        return Loaded{process, scanned};
    }

    // Without a program if there is no such library.
    Loaded Get(LibraryHandle library) {
        const std::lock_guard lock(mutex_);
        const auto found = loaded_.find(library);
        return found == loaded_.end() ? Loaded{} : found->second;
    }

    static Error NotLoaded() { return {ErrorKind::NotFound, "library", "It isn't loaded"}; }

    ProcessService& processes_;
    const std::string program_;
    const std::chrono::milliseconds answer_time_;

    std::mutex mutex_;  // of all below
    std::map<LibraryHandle, Loaded> loaded_;
    std::uint64_t last_handle_ = 0;
    std::optional<std::string> scan_folder_;
    std::shared_ptr<LibraryProcess> scan_process_;
};

}  // namespace

std::unique_ptr<LibraryService> MakeLibraryService(ProcessService& processes,
                                                   const std::string& program,
                                                   std::chrono::milliseconds answer_time) {
    return std::make_unique<LinuxLibraries>(processes, JoinPath(FolderOf(program), kProgramName),
                                            answer_time);
}

}  // namespace velto::platform
