#include "store/registry_editor.h"

#include <chrono>

#include "platform/environment.h"
#include "platform/message_box.h"
#include "platform/process.h"

namespace velto {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kFirstQuestionAfter{2000};

// True if the program has ended by itself at that moment.
bool EndsUntil(Clock::time_point moment, platform::ChildProcess& editor, RegistryEditorWait* wait) {
    constexpr milliseconds kBetweenRepaints{10};
    while (!editor.EndsWithin(kBetweenRepaints)) {
        if (Clock::now() >= moment) return false;
        if (wait != nullptr) wait->Repaint();
    }
    return true;
}

bool UserEnds(const std::string& program) {
    return platform::ConfirmLoss("The registry editor is taking long:\n" + program +
                                     "\n\nEnd it?  What it was asked to do then counts as failed.",
                                 "Registry editor");
}

void AwaitEnd(platform::ChildProcess& editor, const std::string& program,
              RegistryEditorWait* wait) {
    for (auto patience = kFirstQuestionAfter;; patience *= 2) {
        if (EndsUntil(Clock::now() + patience, editor, wait)) return;
        if (!UserEnds(program)) continue;
        editor.Kill();
        return;
    }
}

}  // namespace

EditorRun RunRegistryEditor(const std::string& parameters, const std::string& folder,
                            RegistryEditorWait* wait) {
    platform::ProcessRequest request;
    request.file = platform::HostEnvironment().registry_editor;
    request.parameters = parameters;
    request.folder = folder;
    request.ends_with_parent = true;
    const auto child = platform::Processes().Start(request);
    if (!child.ok()) return EditorRun::NotStarted;
    AwaitEnd(*child.value(), request.file, wait);
    const auto ended = child.value()->Wait();
    return ended.ok() && ended.value().success() ? EditorRun::Done : EditorRun::Failed;
}

}  // namespace velto
