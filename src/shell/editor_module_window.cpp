// The door of the windows module.
#include <QApplication>
#include <QEventLoop>
#include <QIcon>
#include <memory>
#include <string>

#include "shell/main_frame_window.h"
#include "shell/startup_window.h"
#include "shell/windows.h"
#include "widgets/box_presenter.h"

namespace velto {
namespace {

class EditorModule : public Windows {
  public:
    EditorModule() : application_(argument_count_, arguments_) {
        QApplication::setApplicationName("velto");
        QApplication::setDesktopFileName("velto");
        QApplication::setWindowIcon(QIcon(":/icons/velto.svg"));
        // The editor lives on in the tray.
        QApplication::setQuitOnLastWindowClosed(false);
        boxes_ = std::make_unique<BoxPresenter>();
    }

    platform::MessageBoxes& Boxes() override { return *boxes_; }
    void RunEditor(const std::string& configDir) override;
    void Close() override;

  private:
    int argument_count_ = 1;
    char name_[6] = "velto";
    char* arguments_[2] = {name_, nullptr};
    QApplication application_;
    std::unique_ptr<BoxPresenter> boxes_;
};

std::unique_ptr<EditorModule> module;

void EditorModule::RunEditor(const std::string& configDir) {
    CAppStartupWindow splash;
    CAppStartup startup(configDir, splash);
    splash.Run(startup);
    CMainFrameWindow frame(configDir, startup.catalogue());
    QEventLoop loop;
    frame.Start([&loop] { loop.quit(); });
    loop.exec();
}

void EditorModule::Close() {
    boxes_->Close();
    module.reset();
}

}  // namespace
}  // namespace velto

extern "C" velto::Windows* VeltoWindows() {
    if (!velto::module) velto::module = std::make_unique<velto::EditorModule>();
    return velto::module.get();
}
