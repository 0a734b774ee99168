#include "shell/paths_dialog.h"

#include <QFileDialog>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

class PathsDialogTest : public HomeTest {
  protected:
    PathsDialogTest() {
        EXPECT_TRUE(files->MakeFolders(InHome("emu")).ok());
        WriteFile(InHome("emu/epsxe.exe"), "MZ");
        WriteFile(InHome("emu/tray.ico"), "icon");
        settings.SetEmulatorPath(InHome("emu/old.exe"));
        settings.SetCutorPath("D:\\caf\xE9\\cutor.exe");
        settings.SetIconFile(InHome("emu/old.ico"));
    }

    static void Choose(const QString& name) {
        OnDialog<QFileDialog>([name](auto& dialog) {
            auto& edit = *dialog.template findChild<QLineEdit*>("fileNameEdit");
            Type(edit, name);
            QTest::keyClick(&edit, Qt::Key_Return);
        });
    }
    static void Cancel() {
        OnDialog<QFileDialog>([](auto& dialog) { dialog.reject(); });
    }

    CVeltoSettings settings;
};

TEST_F(PathsDialogTest, OkStoresTheFieldsAsTheyStand) {
    CPathsDlg dialog;
    dialog.show();
    EXPECT_EQ(dialog.windowTitle(), "Set Emulation Paths");
    Type(FieldOf(dialog, "BATARD Location: (Optional)"), " not tested ");
    Choose("epsxe");  // gets its ending
    Click(dialog, "Browse...", 0);
    EXPECT_EQ(settings.GetEmulatorPath(), InHome("emu/old.exe")) << "not before OK";
    Click(dialog, "OK");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(settings.GetEmulatorPath(), InHome("emu/epsxe.exe"));
    EXPECT_EQ(settings.GetCutorPath(), "D:\\caf\xE9\\cutor.exe");
    EXPECT_EQ(settings.GetBatardPath(), " not tested ");
}

TEST_F(PathsDialogTest, CancelOfTheFileDialogBringsTheStoredPathBack) {
    CPathsDlg dialog;
    dialog.show();
    auto& field = FieldOf(dialog, "EPSXE Location:");
    Type(field, "typed");
    Cancel();
    Click(dialog, "Browse...", 0);
    EXPECT_EQ(field.text().toStdString(), InHome("emu/old.exe"));
    Type(field, "typed");
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(settings.GetEmulatorPath(), InHome("emu/old.exe"));
}

TEST_F(PathsDialogTest, TheTrayIconIsStoredWithAWord) {
    CTrayIconDlg dialog;
    dialog.show();
    auto& field = FieldOf(dialog, "Icon Location");
    Type(field, "typed");
    Cancel();
    Click(dialog, "Browse...");
    EXPECT_EQ(field.text().toStdString(), InHome("emu/old.ico"));
    Choose("tray");
    Click(dialog, "Browse...");
    EXPECT_TRUE(boxes.shown.empty());
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(settings.GetIconFile(), InHome("emu/tray.ico"));
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(boxes.shown[0].text, "You may need restart in order for this change to take effect");
    EXPECT_EQ(boxes.shown[0].caption, "Icon Selection Updated");
    EXPECT_EQ(boxes.shown[0].icon, platform::BoxIcon::None);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

}  // namespace
}  // namespace velto::test
