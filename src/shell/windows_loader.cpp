#include "shell/windows_loader.h"

#include <chrono>
#include <optional>
#include <utility>

#include "platform/display.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/module.h"

namespace velto {
namespace {

constexpr const char* kModule = "velto-windows.so";

std::string ModulePath(const std::string& program) {
    const auto real = platform::Files().RealPath(program);
    const auto folder = platform::FolderOf(real.ok() ? real.value() : program);
    auto beside = platform::JoinPath(folder, kModule);
    if (platform::Files().Info(beside).ok()) return beside;
    return platform::JoinPath(folder, std::string("../lib/velto/") + kModule);
}

}  // namespace

WindowsLoader::WindowsLoader(std::string program)
    : program_(std::move(program)),
      standard_error_(platform::MakeStandardErrorBoxes()),
      silent_(platform::MakeSilentWaiting()) {}

WindowsLoader::~WindowsLoader() {
    if (windows_ != nullptr) windows_->Close();
}

platform::BoxAnswer WindowsLoader::Show(const platform::MessageBox& box) {
    auto* const windows = Load();
    return windows == nullptr ? standard_error_->Show(box) : windows->Boxes().Show(box);
}

// Nothing is shown until its moment has come: most waits end before, and need no windows.
class WindowsLoader::LateWait : public platform::Wait {
  public:
    LateWait(WindowsLoader& loader, platform::WaitRequest request)
        : loader_(loader), request_(std::move(request)) {}

    bool Continue(std::optional<platform::WaitProgress> progress) override {
        if (std::chrono::steady_clock::now() - since_ < request_.shown_after) return true;
        if (!shown_) shown_ = Show();
        return shown_->Continue(progress);
    }

  private:
    std::unique_ptr<platform::Wait> Show() {
        request_.shown_after = {};
        auto* const windows = loader_.Load();
        return (windows == nullptr ? *loader_.silent_ : windows->Waiting()).Begin(request_);
    }

    WindowsLoader& loader_;
    platform::WaitRequest request_;
    const std::chrono::steady_clock::time_point since_ = std::chrono::steady_clock::now();
    std::unique_ptr<platform::Wait> shown_;
};

std::unique_ptr<platform::Wait> WindowsLoader::Begin(const platform::WaitRequest& request) {
    if (std::this_thread::get_id() != main_thread_) return silent_->Begin(request);
    return std::make_unique<LateWait>(*this, request);
}

bool WindowsLoader::RunEditor() {
    auto* const windows = Load();
    if (windows == nullptr) {
        if (!platform::HasDisplay()) {
            standard_error_->Show({"The editor needs a display.", "Velto"});
        }
        return false;
    }
    windows->RunEditor(platform::HostEnvironment().ConfigFolder());
    return true;
}

Windows* WindowsLoader::Load() {
    if (tried_) return windows_;
    tried_ = true;
    if (!platform::HasDisplay()) return nullptr;
    const auto function = platform::LoadModule(ModulePath(program_), kWindowsFunction);
    if (function.ok()) {
        windows_ = reinterpret_cast<WindowsFunction*>(function.value())();
    } else {
        standard_error_->Show({"Unable to show windows: " + function.error().text, "Velto"});
    }
    return windows_;
}

}  // namespace velto
