// The door of the windows module.
#include <QApplication>
#include <QEventLoop>
#include <QIcon>
#include <memory>
#include <string>
#include <utility>

#include "shell/app_startup_window.h"
#include "shell/main_frame_window.h"
#include "shell/windows.h"
#include "widgets/box_presenter.h"
#include "widgets/wait_presenter.h"

namespace velto {
namespace {

class EditorModule : public Windows {
  public:
    EditorModule() : application_(std::make_unique<QApplication>(argument_count_, arguments_)) {
        QApplication::setApplicationName("velto");
        QApplication::setDesktopFileName("velto");
        QApplication::setWindowIcon(QIcon(":/icons/velto.svg"));
        // The editor lives on in the tray.
        QApplication::setQuitOnLastWindowClosed(false);
        boxes_ = std::make_unique<BoxPresenter>();
        waiting_ = std::make_unique<WaitPresenter>();
    }

    platform::MessageBoxes& Boxes() override { return *boxes_; }
    platform::WaitingService& Waiting() override { return *waiting_; }
    void RunEditor(const std::string& configDir) override;
    void Close() override;

  private:
    int argument_count_ = 1;
    char name_[6] = "velto";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> application_;
    std::unique_ptr<BoxPresenter> boxes_;
    std::unique_ptr<WaitPresenter> waiting_;
};

// Owned, but not by the end of the process: when the display goes, the window library ends the
// program from within, and nothing of it may be destroyed then.
EditorModule* module = nullptr;

// A run that is under way outlives all windows.
void EditorModule::RunEditor(const std::string& configDir) {
    auto splash = std::make_unique<CAppStartupWindow>();
    CAppStartup startup(configDir, *splash);
    splash->Run(startup);
    splash.reset();

    std::unique_ptr<CMainFrameWindow> frame;
    LaunchCycle launch([&frame] { frame->PostRunEnded(); });
    frame = std::make_unique<CMainFrameWindow>(configDir, startup.catalogue(), launch);
    QEventLoop loop;
    frame->Start([&loop] { loop.quit(); });
    loop.exec();

    launch.StopTelling();
    frame.reset();
    boxes_->Close();
    waiting_->Close();
    application_.reset();
    LeaveToNextProcess();
    launch.Wait();
}

void EditorModule::Close() {
    boxes_->Close();
    waiting_->Close();
    const std::unique_ptr<EditorModule> ended(std::exchange(module, nullptr));
}

}  // namespace
}  // namespace velto

extern "C" velto::Windows* VeltoWindows() {
    if (velto::module == nullptr) velto::module = std::make_unique<velto::EditorModule>().release();
    return velto::module;
}
