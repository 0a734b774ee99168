#include "shell/tray_window.h"

#include <utility>

namespace velto {
namespace {

constexpr int kLookMs = 1000;

}  // namespace

TrayWindow::TrayWindow(QIcon icon, QMenu& menu, Actions actions, std::function<bool()> available)
    : image_(std::move(icon)),
      menu_(menu),
      actions_(std::move(actions)),
      available_(std::move(available)) {
    Look();
    QObject::connect(&look_, &QTimer::timeout, &menu_, [this] { Look(); });
    look_.start(kLookMs);
}

void TrayWindow::Look() {
    const bool there = available_();
    if (there == present()) return;
    if (there) {
        ShowIcon();
    } else {
        icon_.reset();
        actions_.tray_gone();
    }
}

// An icon that was there before a tray came never shows, so each tray gets a new one.
void TrayWindow::ShowIcon() {
    icon_ = std::make_unique<QSystemTrayIcon>(image_);
    icon_->setToolTip("Velto");
    icon_->setContextMenu(&menu_);
    QObject::connect(
        icon_.get(), &QSystemTrayIcon::activated, &menu_,
        [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) {
                actions_.show_editor();
            }
        });
    icon_->show();
}

}  // namespace velto
