// Shows what the logic waits for in a small window, on the user interface thread.
//
// The window is modal: while it is shown nothing reaches the windows below it, and a box that is
// asked for stands in front of it. It takes the focus from this program's windows alone: a dialog
// of a plug-in, another process, keeps its own.
//
// Made on that thread, behind the QApplication; Close() or the destructor comes before the
// application's end, and no Wait outlives this. From then on, and on any other thread, nothing is
// shown.
#pragma once

#include <memory>

#include "platform/waiting.h"

class QThread;

namespace velto {

class WaitPresenter : public platform::WaitingService {
  public:
    WaitPresenter();

    std::unique_ptr<platform::Wait> Begin(const platform::WaitRequest& request) override;

    // The windows close.
    void Close() { closed_ = true; }

  private:
    const QThread* thread_;
    bool closed_ = false;  // for that thread alone
    std::unique_ptr<platform::WaitingService> silent_;
};

}  // namespace velto
