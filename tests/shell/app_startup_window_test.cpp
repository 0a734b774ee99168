#include "shell/app_startup_window.h"

#include <QPlainTextEdit>

#include "shell/paths_dialog.h"
#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

using StartupWindowTest = HomeTest;

TEST_F(StartupWindowTest, ShowsTheFirstRunsSequenceAndClosesBehindIt) {
    SetValue(kSettingsKey, "installerReset", platform::DwordValue(1));
    CAppStartupWindow window;
    CAppStartup startup(environment.ConfigFolder(), window);
    const auto& log = *window.findChild<QPlainTextEdit*>();
    QTimer::singleShot(0, &window, [&] {
        OnDialog<CPathsDlg>([&](auto& dialog) {
            EXPECT_EQ(dialog.parent(), &window);
            EXPECT_TRUE(log.toPlainText().endsWith("Launching 1st time setup..."));
            QTest::keyClick(&window, Qt::Key_Escape);
            window.close();
            EXPECT_TRUE(window.isVisible()) << "the user can't end it";
        });
    });
    window.Run(startup);
    EXPECT_FALSE(window.isVisible() || CVeltoSettings().IsFirstRunDue());
    EXPECT_EQ(boxes.shown.at(0).icon, platform::BoxIcon::Information);
    EXPECT_EQ(boxes.shown.at(0).text,
              "              Welcome to Velto.\n\nAs this is the first time this application "
              "\nhas been run please take a few moments\nto configure the nesessary settings.");
    EXPECT_TRUE(log.toPlainText().startsWith(
        "Velto starting up....\nRegistry keys not detected.  Launching 1st time setup...\n"
        "Program settings written to registry.\n1st time setup complete.\n"
        "Continuing with startup\nChecking"));
    EXPECT_TRUE(log.toPlainText().endsWith("\nSystem Preparations complete."));
}

}  // namespace
}  // namespace velto::test
