#include "shell/paths_dialog.h"

#include <QFileDialog>

#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

// Browses, and types a name there; an empty one cancels.
void Browse(const QDialog& dialog, const QString& name) {
    OnDialog<QFileDialog>([name](auto& files) {
        auto& edit = *files.template findChild<QLineEdit*>("fileNameEdit");
        if (name.isEmpty()) return files.reject();
        Type(edit, name);
        QTest::keyClick(&edit, Qt::Key_Return);
    });
    Click(dialog, "Browse...");
}

using PathsDialogTest = HomeTest;

TEST_F(PathsDialogTest, OkStoresTheFieldsAsTheyStand) {
    EXPECT_TRUE(files->MakeFolders(InHome("emu")).ok());
    for (const auto* file : {"emu/epsxe.exe", "emu/tray.ico"}) WriteFile(InHome(file), "MZ");
    CVeltoSettings settings;
    settings.SetEmulatorPath(InHome("emu/old.exe"));
    CPathsDlg paths;
    paths.show();
    Type(FieldOf(paths, "BATARD Location: (Optional)"), " not tested ");
    Browse(paths, "epsxe");  // gets its ending
    auto& cutor = FieldOf(paths, "EPSXECUTOR Location: (Optional)");
    cutor.setText(QString(260, 'c'));
    Click(paths, "OK");
    EXPECT_EQ(settings.GetEmulatorPath(), InHome("emu/old.exe")) << "not before a whole OK";
    EXPECT_EQ(Shown(boxes).size(), 1U) << "the registry would lose it";
    cutor.setText("D:\\cutor.exe");
    Click(paths, "OK");
    EXPECT_EQ(settings.GetEmulatorPath(), InHome("emu/epsxe.exe"));
    EXPECT_EQ(settings.GetCutorPath(), "D:\\cutor.exe");
    EXPECT_EQ(settings.GetBatardPath(), " not tested ");

    settings.SetIconFile(InHome("emu/old.ico"));
    CTrayIconDlg dialog;
    dialog.show();
    auto& field = FieldOf(dialog, "Icon Location");
    Type(field, "typed");
    Browse(dialog, "");
    EXPECT_EQ(field.text().toStdString(), InHome("emu/old.ico")) << "the stored one is back";
    Browse(dialog, "tray");
    EXPECT_TRUE(boxes.shown.empty());
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(settings.GetIconFile(), InHome("emu/tray.ico"));
    EXPECT_EQ(boxes.shown.at(0).text,
              "You may need restart in order for this change to take effect");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

}  // namespace
}  // namespace velto::test
