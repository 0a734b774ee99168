#include "shell/app_startup_window.h"

#include <QClipboard>
#include <QPlainTextEdit>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/paths_dialog.h"
#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

class StartupWindowTest : public HomeTest {};

TEST_F(StartupWindowTest, ShowsTheSequenceAndClosesBehindIt) {
    SetValue(kSettingsKey, "installerReset", platform::DwordValue(1));
    QApplication::clipboard()->setText("the user's");
    CAppStartupWindow window;
    CAppStartup startup(environment.ConfigFolder(), window);
    auto& log = *window.findChild<QPlainTextEdit*>();
    bool paths_shown = false;
    QTimer::singleShot(0, &window, [&] {
        OnDialog<CPathsDlg>([&](auto& dialog) {
            paths_shown = true;
            EXPECT_EQ(dialog.parent(), &window);
            EXPECT_EQ(log.toPlainText(),
                      "Velto starting up....\n"
                      "Registry keys not detected.  Launching 1st time setup...");
            QTest::keyClick(&window, Qt::Key_Escape);
            window.close();
            EXPECT_TRUE(window.isVisible()) << "the user can't end it";
            Type(FieldOf(dialog, "EPSXE Location:"), "C:\\epsxe.exe");
            Click(dialog, "OK");
        });
    });
    window.Run(startup);
    EXPECT_TRUE(paths_shown);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(CVeltoSettings().GetEmulatorPath(), "C:\\epsxe.exe");
    EXPECT_TRUE(log.toPlainText().endsWith("\nSystem Preparations complete."));
    EXPECT_TRUE(log.isReadOnly());
    EXPECT_EQ(QApplication::clipboard()->text(), "the user's");
}

}  // namespace
}  // namespace velto::test
