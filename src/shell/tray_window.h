// The icon in the tray, for as long as the desktop has a tray.
//
// Desktops lose and get their trays while programs run, and tell nobody: this looks every second.
#pragma once

#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>

namespace velto {

class TrayWindow {
  public:
    struct Actions {
        std::function<void()> show_editor;  // the user clicked on the icon
        std::function<void()> tray_gone;    // the tray, and the icon with it, has disappeared
    };

    // `icon_file` is the content of an icon's file; the program's own icon shows if it holds none.
    // The menu isn't owned. `available` tells whether there is a tray.
    TrayWindow(const std::string& icon_file, QMenu& menu, Actions actions,
               std::function<bool()> available = &QSystemTrayIcon::isSystemTrayAvailable);

    // Whether the icon is there: the way back to a hidden editor.
    bool present() const { return icon_ != nullptr; }

  private:
    void Look();
    void ShowIcon();

    QIcon image_;
    QMenu& menu_;
    Actions actions_;
    std::function<bool()> available_;
    std::unique_ptr<QSystemTrayIcon> icon_;
    QTimer look_;
};

}  // namespace velto
