#include "platform/libraries.h"

#include <algorithm>
#include <csignal>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/linux/library_process.h"
#include "platform/process.h"

namespace velto::platform {
namespace {

using Functions = std::span<const LibraryFunction>;
using Kind = LibraryMessageKind;

// Beside Velto itself.
constexpr const char* kProgramName = "velto-plugin";

LibraryMessage CallOf(std::uint64_t handle, Functions functions) {
    LibraryMessage request{Kind::Call, {handle}};
    for (const auto& function : functions) {
        request.numbers.push_back(static_cast<std::uint64_t>(function.result));
        request.texts.push_back(function.name);
    }
    return request;
}

// The Call's part of an answer, from number `first` on; nothing if it hasn't the form that it must
// have.
std::optional<LibraryAnswer> ReadAnswer(const LibraryMessage& message, std::size_t first,
                                        std::size_t functions) {
    const auto& numbers = message.numbers;
    const bool called = numbers.size() == first + 2 * functions;
    if ((!called && numbers.size() != first + functions) ||
        message.texts.size() != (called ? functions : 0)) {
        return {};
    }
    LibraryAnswer answer;
    for (std::size_t i = 0; i < functions; ++i) {
        answer.addresses.push_back(FunctionAddress{numbers[first + i]});
        if (!called) continue;
        answer.results.push_back(
            {static_cast<std::uint32_t>(numbers[first + functions + i]), message.texts[i]});
    }
    return answer;
}

// A loaded library. One thread at a time uses it.
struct Loaded {
    std::shared_ptr<LibraryProcess> process;
    std::uint64_t handle = 0;  // the program's own
    bool scanned = false;      // the program is a scan's
    // What it was called with along with its load, and what it answered.
    std::vector<LibraryFunction> called{};
    std::optional<Result<LibraryAnswer>> answer{};
};

class LinuxLibraries : public LibraryService {
  public:
    LinuxLibraries(ProcessService& processes, std::string program,
                   std::chrono::milliseconds answer_time)
        : processes_(processes), program_(std::move(program)), answer_time_(answer_time) {
        // A library that has ended its program would take this one along at the next request.
        std::signal(SIGPIPE, SIG_IGN);
    }

    Result<LibraryHandle> Load(const std::string& folder, const std::string& file) override {
        // Without a folder it would be looked for in the current directory.
        if (folder.empty() || !IsFileName(file) || file.size() > kLongestLibraryText) {
            return Error{ErrorKind::Malformed, file, "Not the name of a file in a folder"};
        }
        auto home = HomeFor(folder);
        if (!home.ok()) return home.error();
        auto& loaded = home.value();
        const auto done = loaded->scanned ? LoadAndCall(*loaded, file) : LoadAlone(*loaded, file);
        if (!done.ok()) return Error{done.error().kind, file, done.error().text};
        const std::lock_guard lock(mutex_);
        const LibraryHandle handle{++last_handle_};
        loaded_.emplace(handle, std::move(loaded));
        return handle;
    }

    Result<LibraryAnswer> Call(LibraryHandle library, Functions functions) override {
        const auto loaded = Get(library);
        if (!loaded) return NotLoaded();
        if (loaded->answer && std::ranges::equal(loaded->called, functions)) {
            return *std::exchange(loaded->answer, std::nullopt);
        }
        loaded->process->Send(CallOf(loaded->handle, functions));
        const auto message = loaded->process->Receive(!loaded->scanned);
        if (!message.ok()) return message.error();
        auto answer = ReadAnswer(message.value(), 0, functions.size());
        if (!answer) return loaded->process->Refuse();
        return std::move(*answer);
    }

    Status Free(LibraryHandle library) override {
        const auto loaded = Get(library);
        if (!loaded) return NotLoaded();
        loaded->process->Send({Kind::Free, {loaded->handle}});
        const auto done = loaded->process->Receive();
        if (!done.ok() && loaded->process->alive()) return done.error();
        const std::lock_guard lock(mutex_);
        loaded_.erase(library);
        return {};
    }

    std::unique_ptr<LibraryScan> BeginScan(const std::string& folder,
                                           Functions functions) override {
        const std::lock_guard lock(mutex_);
        scan_folder_ = folder;
        scan_functions_.assign(functions.begin(), functions.end());
        return std::make_unique<Scan>(*this);
    }

  private:
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

    // A library of the folder, still to be loaded, with its program.
    Result<std::shared_ptr<Loaded>> HomeFor(const std::string& folder) {
        const std::lock_guard lock(mutex_);
        auto loaded = std::make_shared<Loaded>();
        loaded->scanned = scan_folder_ == folder;
        if (loaded->scanned) loaded->called = scan_functions_;
        if (loaded->scanned && scan_process_ && scan_process_->alive()) {
            loaded->process = scan_process_;
            return loaded;
        }
        auto started = LibraryProcess::Start(processes_, program_, folder, answer_time_);
        if (!started.ok()) return started.error();
        loaded->process = std::move(started).value();
        if (loaded->scanned) scan_process_ = loaded->process;
        return loaded;
    }

    static Status LoadAlone(Loaded& loaded, const std::string& file) {
        loaded.process->Send({Kind::Load, {0}, {file}});
        const auto message = loaded.process->Receive();
        if (!message.ok()) return message.error();
        if (message.value().numbers.size() != 1) return loaded.process->Refuse();
        loaded.handle = message.value().numbers[0];
        return {};
    }

    // A failure is one of the load. One of the call is the call's answer.
    static Status LoadAndCall(Loaded& loaded, const std::string& file) {
        auto& process = *loaded.process;
        process.Send({Kind::Load, {1}, {file}});
        process.Send(CallOf(0, loaded.called));
        const auto message = process.Receive();
        if (!message.ok()) {
            // With the Call still in the pipe it was the load that killed it.
            if (process.alive() || process.leftRequests()) return message.error();
            loaded.answer = message.error();
            return {};
        }
        const auto& numbers = message.value().numbers;
        if (numbers.empty()) return process.Refuse();
        loaded.handle = numbers[0];
        if (numbers.size() == 1) {
            loaded.answer = Error{ErrorKind::Malformed, file, "It gives no proper text"};
        } else if (auto answer = ReadAnswer(message.value(), 1, loaded.called.size())) {
            loaded.answer = std::move(*answer);
        } else {
            loaded.answer = process.Refuse();
        }
        return {};
    }

    // Null if there is no such library.
    std::shared_ptr<Loaded> Get(LibraryHandle library) {
        const std::lock_guard lock(mutex_);
        const auto found = loaded_.find(library);
        return found == loaded_.end() ? nullptr : found->second;
    }

    static Error NotLoaded() { return {ErrorKind::NotFound, "library", "It isn't loaded"}; }

    ProcessService& processes_;
    const std::string program_;
    const std::chrono::milliseconds answer_time_;

    std::mutex mutex_;  // of all below
    std::map<LibraryHandle, std::shared_ptr<Loaded>> loaded_;
    std::uint64_t last_handle_ = 0;
    std::optional<std::string> scan_folder_;  // while there is a scan
    std::vector<LibraryFunction> scan_functions_;
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
