// "Launch Epsxe": the emulator runs with one configuration in place of the user's own set-up, and
// that comes back when it ends.
//
// The steps up to the emulator's start are on the caller's thread, the user interface's. A worker
// thread waits for the emulator and gives the registry back; it talks through message boxes alone.
// The worker's duty outlives the editor: whoever ends the program first waits for it.
#pragma once

#include <functional>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "platform/process.h"
#include "plugins/plugin_catalogue.h"
#include "store/borrowed_branch.h"
#include "store/velto_doc.h"

namespace velto {

// Unloads the plug-ins that the record doesn't use.
void UnloadOtherPlugins(CPluginCatalogue& catalogue, const ConfigRecord& record);

class LaunchCycle {
  public:
    // `ended` is called on a worker's thread when a run has ended and the registry is as it was.
    explicit LaunchCycle(std::function<void()> ended) : ended_(std::move(ended)) {}
    // Waits.
    ~LaunchCycle() { Wait(); }
    LaunchCycle(const LaunchCycle&) = delete;
    LaunchCycle& operator=(const LaunchCycle&) = delete;

    // The button "Launch Epsxe", with the configuration's file and the document that has it in
    // hand. Unsaved changes are asked about, and reach the emulator without being saved. True once
    // the worker is on its way. False if nothing was launched: there is no file, the user says no,
    // a run is under way in whichever process (all without a word); or, after a message, the
    // configuration is a portable one, the user's state can't be saved, or the configuration's
    // values can't be written.
    bool OnRun(CVeltoDoc& document, const std::string& file, CPluginCatalogue& catalogue);

    // A plain start of the emulator, whose stored path is `path`, without any of those steps.
    // False, after a message, if there is no worker.
    bool LaunchEmulator(const std::string& path, const std::string& arguments);

    // The name of the configuration that runs; empty if none does. From any thread.
    std::string Running() const;

    // From now on no end is told any more; one that is being told is waited for.
    void StopTelling();
    // Returns when all workers have done their duty, which is when their emulators have ended.
    void Wait() { Join(true); }

  private:
    struct Launch {
        std::string path;  // as it is stored
        platform::ProcessRequest request;
        std::string name;  // of the configuration; empty for a plain start
        std::optional<BorrowedBranch> branch;
        // Taken on the starting thread, as whoever set it may be gone when the worker begins.
        platform::ProcessService& processes = platform::Processes();
    };
    struct Worker {
        std::string name;  // as above
        bool done = false;
        std::thread thread{};
    };

    // Made and joined by the thread that owns the cycle.
    bool Start(Launch launch);
    void LaunchThread(Launch& launch);
    void Finish(Worker& worker);
    // Joins the workers that have done their duty, or all.
    void Join(bool all);

    std::mutex telling_;  // guards the next one, and is held while it is called
    std::function<void()> ended_;
    mutable std::mutex mutex_;  // guards all workers, but for their threads
    std::list<Worker> workers_;
};

}  // namespace velto
