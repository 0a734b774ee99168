// Loads the windows when the first of them is needed, and shows boxes without them where that
// isn't possible.
//
// It is the program's message boxes: with a display each is a window, without one a line on
// standard error. All but Show belongs to the main thread, and the first Show too.
#pragma once

#include <memory>
#include <string>

#include "platform/message_box.h"
#include "shell/windows.h"

namespace velto {

class WindowsLoader : public platform::MessageBoxes {
  public:
    // `program` is the program's own path: the module stands beside it, or, as installed, in
    // ../lib/velto.
    explicit WindowsLoader(std::string program);
    ~WindowsLoader() override;
    WindowsLoader(const WindowsLoader&) = delete;
    WindowsLoader& operator=(const WindowsLoader&) = delete;

    platform::BoxAnswer Show(const platform::MessageBox& box) override;

    // The editor from its start to its end. False if it can't start, which is reported.
    bool RunEditor();

  private:
    // Null, after a line on standard error where that isn't for want of a display.
    Windows* Load();

    std::string program_;
    std::unique_ptr<platform::MessageBoxes> standard_error_;
    Windows* windows_ = nullptr;
    bool tried_ = false;
};

}  // namespace velto
