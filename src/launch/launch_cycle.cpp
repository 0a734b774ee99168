#include "launch/launch_cycle.h"

#include <algorithm>
#include <system_error>
#include <tuple>

#include "launch/direct_run.h"
#include "launch/emulator_values.h"
#include "platform/ascii.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/process.h"
#include "platform/stored_path.h"
#include "store/registry_editor.h"

namespace velto {
namespace {

bool ConfirmLoss() {
    return platform::ConfirmLoss(
        "This action will cause your unsaved changes to be lost.  Continue?", "Discard changes?");
}

platform::ProcessRequest RequestFor(const std::string& path, const std::string& arguments) {
    const CVeltoSettings settings;
    platform::ProcessRequest request;
    request.file = platform::HostPath(path);
    request.parameters = arguments == kUnset ? "" : arguments;
    if (settings.IsGuiBypassed()) request.parameters = WithoutGui(request.parameters);
    request.folder = platform::HostPath(settings.GetEmulatorFolder());
    return request;
}

}  // namespace

void UnloadOtherPlugins(CPluginCatalogue& catalogue, const ConfigRecord& record) {
    const auto used = {&record.gpuFileName, &record.spuFileName, &record.cdrFileName,
                       &record.netFileName};
    for (auto& plugin : catalogue.plugins()) {
        const bool is_used = std::any_of(used.begin(), used.end(), [&](const auto* file) {
            return platform::EqualsIgnoringCase(*file, plugin.GetFileName());
        });
        // One that can't be unloaded stays: it runs in a process of its own.
        if (!is_used) std::ignore = plugin.Unload();
    }
}

bool LaunchCycle::OnRun(CVeltoDoc& document, const std::string& file, CPluginCatalogue& catalogue) {
    if (file.empty() || (document.dirty && !ConfirmLoss())) return false;
    if (document.IsPortable()) {
        ReportPortable();
        return false;
    }
    auto branch = BorrowedBranch::ForRun(document.configDir.path());
    if (!branch) return false;
    const auto name = ConfigFolder::NameOf(file);
    RestoreFile(document.configDir.Find(name).value_or(file), document.configDir.path(),
                kConfigurationScope);
    // Behind the merge, which may bring in an image of its own.
    if (!WriteEmulatorValues(name, EmulatorValues(TextsOf(document), document.cdrIsMooby))) {
        return false;
    }
    const auto arguments =
        EmulatorArguments(document.commandLine, document.cdrIsInternalIso, document.imageFileName);
    UnloadOtherPlugins(catalogue, document);
    const auto path = document.settings.GetEmulatorPath();
    return Start({path, RequestFor(path, arguments), name, std::move(branch)});
}

bool LaunchCycle::LaunchEmulator(const std::string& path, const std::string& arguments) {
    return Start({path, RequestFor(path, arguments), {}, {}});
}

std::string LaunchCycle::Running() const {
    const std::lock_guard lock(mutex_);
    for (const auto& worker : workers_) {
        if (!worker.done && !worker.name.empty()) return worker.name;
    }
    return {};
}

void LaunchCycle::StopTelling() {
    const std::lock_guard lock(telling_);
    ended_ = nullptr;
}

bool LaunchCycle::Start(Launch launch) {
    Join(false);
    std::unique_lock lock(mutex_);
    auto& worker = workers_.emplace_back(Worker{launch.name});
    lock.unlock();
    try {
        worker.thread = std::thread([this, &worker, launch = std::move(launch)]() mutable {
            LaunchThread(launch);
            Finish(worker);
        });
    } catch (const std::system_error& failure) {
        lock.lock();
        workers_.pop_back();
        lock.unlock();
        platform::Report(std::string("Unable to start Epsxe: ") + failure.what());
        return false;
    }
    return true;
}

void LaunchCycle::LaunchThread(Launch& launch) {
    const auto emulator = launch.processes.Start(launch.request);
    if (emulator.ok()) {
        std::ignore = emulator.value()->Wait();
    } else {
        ReportNotStarted(launch.path, emulator.error());
    }
    if (launch.branch) launch.branch->GiveBack();
}

void LaunchCycle::Finish(Worker& worker) {
    std::unique_lock lock(mutex_);
    const bool was_run = !worker.name.empty();
    worker.done = true;
    lock.unlock();
    const std::lock_guard telling(telling_);
    if (was_run && ended_) ended_();
}

void LaunchCycle::Join(bool all) {
    std::list<Worker> joined;
    std::unique_lock lock(mutex_);
    for (auto worker = workers_.begin(); worker != workers_.end();) {
        const auto next = std::next(worker);
        if (all || worker->done) joined.splice(joined.end(), workers_, worker);
        worker = next;
    }
    lock.unlock();
    for (auto& worker : joined) worker.thread.join();
}

}  // namespace velto
