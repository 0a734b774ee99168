#include "widgets/wait_presenter.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QProgressBar>
#include <QThread>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "widgets/box_presenter.h"
#include "widgets/form.h"
#include "widgets/owned.h"
#include "widgets/text.h"

namespace velto {
namespace {

// Where no window is in front the user works with another program; the editor may still be seen.
QWidget* WindowBelow() {
    if (auto* const front = WindowInFront()) return front;
    const auto windows = QApplication::topLevelWidgets();
    const auto seen = std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->isVisible() && window->windowType() == Qt::Window;
    });
    return seen == windows.end() ? nullptr : *seen;
}

class WaitWindow : public FormDialog {
  public:
    WaitWindow(const platform::WaitRequest& request, QWidget* parent)
        : FormDialog("Velto", parent),
          can_stop_(request.can_stop),
          bar_(MakeOwned<QProgressBar>()) {
        constexpr int kColumns = 40;
        setModal(true);
        setAttribute(Qt::WA_ShowWithoutActivating);
        setWindowFlag(Qt::WindowDoesNotAcceptFocus);
        shown_.start();
        setMinimumWidth(fontMetrics().averageCharWidth() * kColumns);
        auto* const what = MakeLabel(Breakable(FromBytes(request.what)), true);
        what->setBuddy(bar_);
        contents().addWidget(what);
        bar_->setRange(0, 0);
        bar_->setTextVisible(false);
        contents().addWidget(bar_);
        if (can_stop_) AddStopButton();
    }

    // The bar is busy if it isn't known.
    void SetProgress(const std::optional<platform::WaitProgress>& progress) {
        constexpr int kSteps = 1000;
        bar_->setMaximum(progress ? kSteps : 0);
        if (!progress) return;
        const auto total = std::max<std::size_t>(progress->total, 1);
        bar_->setValue(static_cast<int>(std::min(progress->done, total) * kSteps / total));
    }

    // A window of another program that has the focus keeps it. Whether one has isn't known at
    // first: no event was handled until now, and a change of the focus takes its moment.
    void TakeFocus() {
        constexpr int kKnownAfter = 200;
        if (!windowHandle()->flags().testFlag(Qt::WindowDoesNotAcceptFocus)) return;
        if (!shown_.hasExpired(kKnownAfter)) return;
        windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus, false);
        if (QApplication::activeWindow() != nullptr) activateWindow();
    }

    // Whether the user has asked to stop, once each time.
    bool TakeStop() { return std::exchange(stop_, false); }

    // The button, Escape and the close box. It stays until the wait ends.
    void reject() override { stop_ = can_stop_; }

  private:
    void AddStopButton() {
        auto* const stop = MakeButton("&Stop");
        contents().addWidget(stop, 0, Qt::AlignRight);
        connect(stop, &QPushButton::clicked, this, [this] { reject(); });
    }

    const bool can_stop_;
    QProgressBar* bar_;
    QElapsedTimer shown_;
    bool stop_ = false;
};

class WindowWait : public platform::Wait {
  public:
    explicit WindowWait(platform::WaitRequest request) : request_(std::move(request)) {
        since_.start();
    }
    ~WindowWait() override { const std::unique_ptr<WaitWindow> ended(window_.data()); }
    WindowWait(const WindowWait&) = delete;
    WindowWait& operator=(const WindowWait&) = delete;

    bool Continue(std::optional<platform::WaitProgress> progress) override {
        if (since_.elapsed() < request_.shown_after.count()) return true;
        if (!window_) {
            window_ = MakeOwned<WaitWindow>(request_, WindowBelow());
            window_->show();
        }
        window_->SetProgress(progress);
        window_->TakeFocus();
        QCoreApplication::processEvents();
        return !window_ || !window_->TakeStop();
    }

  private:
    const platform::WaitRequest request_;
    QElapsedTimer since_;
    // The window below may be deleted while it waits, and this one with it.
    QPointer<WaitWindow> window_;
};

}  // namespace

WaitPresenter::WaitPresenter()
    : thread_(QThread::currentThread()), silent_(platform::MakeSilentWaiting()) {}

std::unique_ptr<platform::Wait> WaitPresenter::Begin(const platform::WaitRequest& request) {
    const bool shown = QThread::currentThread() == thread_ && !closed_;
    if (!shown) return silent_->Begin(request);
    return std::make_unique<WindowWait>(request);
}

}  // namespace velto
