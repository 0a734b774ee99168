#include "shell/tray_window.h"

#include <QBuffer>
#include <QImageReader>
#include <utility>

namespace velto {
namespace {

constexpr int kLookMs = 1000;

// In all the sizes that the file holds.
QIcon TrayIcon(const std::string& file) {
    QByteArray bytes(file.data(), static_cast<qsizetype>(file.size()));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    QIcon icon;
    do {
        const auto image = reader.read();
        if (!image.isNull()) icon.addPixmap(QPixmap::fromImage(image));
    } while (reader.jumpToNextImage());
    return icon.isNull() ? QIcon(":/icons/tray.svg") : icon;
}

}  // namespace

TrayWindow::TrayWindow(const std::string& icon_file, QMenu& menu, Actions actions,
                       std::function<bool()> available)
    : image_(TrayIcon(icon_file)),
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
