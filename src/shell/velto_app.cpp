#include "shell/velto_app.h"

#include <chrono>
#include <thread>
#include <tuple>

#include "launch/direct_run.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/instance.h"
#include "platform/message_box.h"
#include "platform/registry.h"
#include "shell/command_line.h"
#include "store/config_folder.h"
#include "store/velto_settings.h"

namespace velto {
namespace {

constexpr std::string_view kDirectFlag = "direct";

// A process that was killed may leave a child that holds its lock until it becomes a program of its
// own.
bool IsGoneInAMoment() {
    constexpr int kTimes = 5;
    constexpr std::chrono::milliseconds kPause{20};
    for (int times = 0; times < kTimes; ++times) {
        std::this_thread::sleep_for(kPause);
        const auto first = platform::Instance().Acquire();
        if (first.ok() && first.value()) return true;
    }
    return false;
}

}  // namespace

void CVeltoApp::InitInstance() {
    std::string flag;
    std::string parameter;
    CVeltoCommandLine(command_line_).Parse(flag, parameter);
    if ((!flag.empty() || !parameter.empty()) && flag != kDirectFlag) {
        platform::Report("-" + flag + " " + parameter + " is not a recognised command",
                         "Unknown Flag");
        return;
    }

    const auto first = platform::Instance().Acquire();
    if (!first.ok()) {
        platform::Report("Unable to tell whether Velto is running: " + first.error().subject +
                         ": " + first.error().text);
        return;
    }
    if (!first.value() && !MeetFirstProcess(flag, parameter)) return;

    if (!OpenRegistry()) return;
    // If it can't be made, the files in it aren't found.
    std::ignore = platform::Files().MakeFolders(platform::HostEnvironment().ConfigFolder());
    if (flag == kDirectFlag) {
        RunDirect(parameter);
    } else if (windows_.RunEditor()) {
        status_ = 0;
    }
}

bool CVeltoApp::MeetFirstProcess(const std::string& flag, const std::string& name) {
    if (flag == kDirectFlag) {
        const auto answer = platform::Instance().HandOver(name);
        if (answer == platform::HandOverResult::Answered) status_ = 0;
        // What can't be handed over because of its length can't be a file either.
        if (answer == platform::HandOverResult::Refused && name.size() > platform::kLongestName) {
            platform::Report(ConfigFolder::FileOf(name) + " does not exist", "File not found");
        }
        if (answer != platform::HandOverResult::NoneThere) return false;
    }
    if (IsGoneInAMoment()) return true;
    if (flag != kDirectFlag) platform::Report("Velto is already running.", "Already running");
    return false;
}

bool CVeltoApp::OpenRegistry() {
    // Making a user's registry is this host's installation, which asks for the first-run setup.
    const platform::RegistryWrite installed[] = {
        {std::string(platform::kCurrentUser).append(kSettingsKey), "installerReset",
         platform::DwordValue(1)}};
    const auto opened = platform::Registry().OpenStore(installed);
    if (opened.ok()) return true;
    platform::Report("Unable to open the registry " + opened.error().subject + ": " +
                     opened.error().text);
    return false;
}

void CVeltoApp::RunDirect(const std::string& name) {
    if (velto::RunDirect(name)) status_ = 0;
}

}  // namespace velto
