#include "widgets/box_presenter.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QThread>
#include <condition_variable>
#include <mutex>
#include <optional>

#include "widgets/deferred.h"
#include "widgets/owned.h"
#include "widgets/text.h"

namespace velto {
namespace {

using platform::BoxAnswer;
using platform::BoxButtons;
using platform::BoxIcon;

QMessageBox::Icon IconOf(BoxIcon icon) {
    switch (icon) {
        case BoxIcon::Error:
            return QMessageBox::Critical;
        case BoxIcon::Warning:
            return QMessageBox::Warning;
        case BoxIcon::Question:
            return QMessageBox::Question;
        case BoxIcon::Information:
            return QMessageBox::Information;
        case BoxIcon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

void AddButtons(QMessageBox& window, const platform::MessageBox& box) {
    if (box.buttons == BoxButtons::Ok) {
        window.addButton(QMessageBox::Ok)->setText("&OK");
        return;
    }
    window.addButton(QMessageBox::Yes)->setText("&Yes");
    window.addButton(QMessageBox::No)->setText("&No");
    window.setEscapeButton(QMessageBox::No);
    window.setDefaultButton(box.yes_is_destructive ? QMessageBox::No : QMessageBox::Yes);
}

BoxAnswer ShowHere(const platform::MessageBox& box) {
    // Its parent may be deleted while it is open, and it with that.
    const QPointer<QMessageBox> window = MakeOwned<QMessageBox>(WindowInFront());
    window->setTextFormat(Qt::PlainText);
    window->setIcon(IconOf(box.icon));
    window->setWindowTitle(FromBytes(box.caption));
    window->setText(Breakable(FromBytes(box.text)));
    AddButtons(*window, box);
    const auto pressed = window->exec();
    const std::unique_ptr<QMessageBox> ended(window);
    if (box.buttons == BoxButtons::Ok) return BoxAnswer::Ok;
    return pressed == QMessageBox::Yes ? BoxAnswer::Yes : BoxAnswer::No;
}

struct Request {
    platform::MessageBox box;
    bool on_screen = false;
    std::optional<BoxAnswer> answer{};
};

}  // namespace

QWidget* WindowInFront() {
    auto* const modal = QApplication::activeModalWidget();
    auto* const front = modal != nullptr ? modal : QApplication::activeWindow();
    return front != nullptr && front->isVisible() ? front->window() : nullptr;
}

struct BoxPresenter::Waiting {
    std::mutex mutex;  // guards all requests too
    std::condition_variable changed;
    bool closed = false;
    QObject here;  // what has been posted and not begun is dropped with it
};

BoxPresenter::BoxPresenter()
    : waiting_(std::make_unique<Waiting>()), standard_error_(platform::MakeStandardErrorBoxes()) {}

BoxPresenter::~BoxPresenter() {
    Close();
}

BoxAnswer BoxPresenter::Show(const platform::MessageBox& box) {
    const auto request = std::make_shared<Request>(Request{box});
    std::unique_lock lock(waiting_->mutex);
    // Not asked for once it may be on its way out.
    auto* const application = waiting_->closed ? nullptr : QCoreApplication::instance();
    if (application != nullptr && application->thread() == QThread::currentThread()) {
        lock.unlock();
        return ShowHere(box);
    }
    if (application != nullptr) {
        PostTo(waiting_->here, [request, waiting = waiting_.get()] {
            std::unique_lock guard(waiting->mutex);
            if (waiting->closed) return;
            request->on_screen = true;
            guard.unlock();
            const auto answer = ShowHere(request->box);
            guard.lock();
            request->answer = answer;
            waiting->changed.notify_all();
        });
        waiting_->changed.wait(
            lock, [&] { return request->answer || (waiting_->closed && !request->on_screen); });
    }
    lock.unlock();
    return request->answer ? *request->answer : standard_error_->Show(box);
}

void BoxPresenter::Close() {
    const std::lock_guard lock(waiting_->mutex);
    waiting_->closed = true;
    waiting_->changed.notify_all();
}

}  // namespace velto
