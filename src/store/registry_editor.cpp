#include "store/registry_editor.h"

#include <chrono>

#include "platform/environment.h"
#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/process.h"
#include "platform/waiting.h"

namespace velto {
namespace {

bool UserEnds(const std::string& program) {
    return platform::ConfirmLoss("The registry editor is taking long:\n" + program +
                                     "\n\nEnd it?  What it was asked to do then counts as failed.",
                                 "Registry editor");
}

void AwaitEnd(platform::ChildProcess& editor, const std::string& program) {
    constexpr std::chrono::milliseconds kShownAfter{2000};
    constexpr std::chrono::milliseconds kStep{10};
    const auto wait =
        platform::Waiting().Begin({.what = "Waiting for the registry editor:\n" + program,
                                   .can_stop = true,
                                   .shown_after = kShownAfter});
    while (!editor.EndsWithin(kStep)) {
        if (wait->Continue() || !UserEnds(program)) continue;
        editor.Kill();
        return;
    }
}

EditorRun Run(platform::ProcessRequest request) {
    request.file = platform::HostEnvironment().registry_editor;
    request.ends_with_parent = true;
    const auto child = platform::Processes().Start(request);
    if (!child.ok()) return EditorRun::NotStarted;
    AwaitEnd(*child.value(), request.file);
    const auto ended = child.value()->Wait();
    return ended.ok() && ended.value().success() ? EditorRun::Done : EditorRun::Failed;
}

}  // namespace

int BackupBranch(const std::string& key, const std::string& file, const std::string& folder) {
    const auto run =
        Run({.parameters = "/E " + platform::QuoteParameter(file) + " " + key, .folder = folder});
    if (run == EditorRun::Done && platform::IsRegular(platform::JoinPath(folder, file))) return 0;
    platform::Report("Unable to backup " + key + " settings");
    return run == EditorRun::NotStarted ? -1 : kNoBackup;
}

int RestoreFile(const std::string& file, const std::string& folder, const std::string& scope) {
    const auto run = MergeFile(file, folder, scope);
    if (run == EditorRun::NotStarted) platform::Report("Unable to restore settings");
    return run == EditorRun::Done ? 0 : -1;
}

EditorRun MergeFile(const std::string& file, const std::string& folder, const std::string& scope) {
    return Run({.parameters = " /S " + platform::QuoteParameter(file),
                .folder = folder,
                .variables = {{platform::kMergeScope, scope}}});
}

}  // namespace velto
