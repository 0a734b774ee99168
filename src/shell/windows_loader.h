// Loads the windows when the first of them is needed, and does without them where that isn't
// possible.
//
// It is the program's message boxes and its waiting: with a display each box is a window, without
// one a line on standard error; what is waited for for long is shown, or isn't. Show and Begin may
// be called from any thread, but the first Show, and all else, belongs to the main thread, which
// makes this.
#pragma once

#include <memory>
#include <string>
#include <thread>

#include "platform/message_box.h"
#include "platform/waiting.h"
#include "shell/windows.h"

namespace velto {

class WindowsLoader : public platform::MessageBoxes, public platform::WaitingService {
  public:
    // `program` is the program's own path: the module stands beside it, or, as installed, in
    // ../lib/velto.
    explicit WindowsLoader(std::string program);
    ~WindowsLoader() override;
    WindowsLoader(const WindowsLoader&) = delete;
    WindowsLoader& operator=(const WindowsLoader&) = delete;

    platform::BoxAnswer Show(const platform::MessageBox& box) override;
    // The windows are loaded when the wait would be shown.
    std::unique_ptr<platform::Wait> Begin(const platform::WaitRequest& request) override;

    // The editor from its start to its end. False if it can't start, which is reported.
    bool RunEditor();

  private:
    class LateWait;

    // Null, after a line on standard error where that isn't for want of a display.
    Windows* Load();

    std::string program_;
    const std::thread::id main_thread_ = std::this_thread::get_id();
    std::unique_ptr<platform::MessageBoxes> standard_error_;
    std::unique_ptr<platform::WaitingService> silent_;
    Windows* windows_ = nullptr;
    bool tried_ = false;
};

}  // namespace velto
