// Shows message boxes with Qt, on the user interface thread, whichever thread asks.
//
// Made on that thread, behind the QApplication; Close() or the destructor comes before the
// application's end. From then on a box goes to standard error, one that waits to be shown too, as
// does every box while there is no application: no thread waits for windows that are gone.
#pragma once

#include <memory>

#include "platform/message_box.h"

class QWidget;

namespace velto {

// The dialog, or else the window, that the user has in front of all; null if there is none.
QWidget* WindowInFront();

class BoxPresenter : public platform::MessageBoxes {
  public:
    BoxPresenter();
    ~BoxPresenter() override;
    BoxPresenter(const BoxPresenter&) = delete;
    BoxPresenter& operator=(const BoxPresenter&) = delete;

    // The box belongs to the dialog, or else the window, that the user has in front; it blocks
    // that, and the asking thread.
    platform::BoxAnswer Show(const platform::MessageBox& box) override;

    // The windows close.
    void Close();

  private:
    struct Waiting;

    std::unique_ptr<Waiting> waiting_;
    std::unique_ptr<platform::MessageBoxes> standard_error_;
};

}  // namespace velto
