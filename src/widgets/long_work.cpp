#include "widgets/long_work.h"

#include <QApplication>
#include <algorithm>

#include "widgets/form.h"

namespace velto {
namespace {

constexpr int kShownAfterMilliseconds = 300;
constexpr int kLookAgainAfterMilliseconds = 50;
constexpr int kSteps = 1000;  // of the bar

}  // namespace

LongWork::LongWork(QWidget& parent) : parent_(parent) {
    end_.setSingleShot(true);
    QObject::connect(&end_, &QTimer::timeout, &parent, [this] { End(); });
}

bool LongWork::Report(const QString& what, std::size_t done, std::size_t total) {
    end_.stop();
    if (!since_.isValid()) since_.start();
    if (!window_ && since_.hasExpired(kShownAfterMilliseconds)) Show(what);
    if (window_) {
        const auto steps = std::max<std::size_t>(total, 1);
        window_->setValue(static_cast<int>(std::min(done, steps) * kSteps / steps));
    }
    end_.start(0);
    return !window_ || !window_->wasCanceled();
}

void LongWork::Show(const QString& what) {
    window_ = std::make_unique<QProgressDialog>(&parent_);
    window_->setWindowTitle("Velto");
    window_->setLabel(MakeLabel(what));
    window_->setWindowModality(Qt::ApplicationModal);
    window_->setRange(0, kSteps);
    window_->setAutoReset(false);
    window_->setAutoClose(false);
    window_->setMinimumDuration(0);
    window_->setValue(0);
}

// A box that the work shows stands in front of its window, and needs it.
void LongWork::End() {
    if (window_ && window_->isVisible() && QApplication::activeModalWidget() != window_.get()) {
        end_.start(kLookAgainAfterMilliseconds);
        return;
    }
    since_.invalidate();
    window_.reset();
}

}  // namespace velto
