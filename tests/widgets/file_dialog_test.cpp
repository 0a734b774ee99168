#include "widgets/file_dialog.h"

#include <QFileDialog>
#include <QListView>

#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

constexpr const char* kFilters = "Executables (*.exe)|*.exe|All files (*.*)|*.*||";
using FileDialogTest = HomeTest;

// What the list shows under the filter that this key steps to.
void ExpectShown(const QFileDialog& dialog, Qt::Key filter, const QStringList& expected) {
    QTest::keyClick(dialog.findChild<QComboBox*>("fileTypeCombo"), filter);
    const auto& list = *dialog.findChild<QListView*>("listView");
    const auto shows_them = [&] {
        QStringList names;
        for (int i = 0; i < list.model()->rowCount(list.rootIndex()); ++i) {
            names += list.model()->index(i, 0, list.rootIndex()).data().toString();
        }
        names.sort();
        return names == expected;
    };
    EXPECT_TRUE(QTest::qWaitFor(shows_them)) << expected.join(' ').toStdString();
}

TEST_F(FileDialogTest, OpensAtTheStoredPathOrAtHomeAndIgnoresCase) {
    EXPECT_TRUE(files->MakeFolders(InHome("drive_c/emu")).ok());
    for (const auto* file : {"ePSXe.EXE", "tool.exe", "readme.txt"}) {
        WriteFile(InHome("drive_c/emu/") + file, "MZ");
    }
    OnDialog<QFileDialog>([&](auto& dialog) {
        EXPECT_EQ(dialog.directory().path().toStdString(), InHome("drive_c/emu"));
        ExpectShown(dialog, Qt::Key_Home, {"ePSXe.EXE", "tool.exe"});
        ExpectShown(dialog, Qt::Key_End, {"ePSXe.EXE", "readme.txt", "tool.exe"});
        const auto* const types = dialog.template findChild<QComboBox*>("fileTypeCombo");
        EXPECT_EQ(types->itemText(0), "Executables (*.exe)");
        auto* const name = dialog.template findChild<QLineEdit*>("fileNameEdit");
        EXPECT_EQ(name->text(), "ePSXe.EXE");
        QTest::keyClick(name, Qt::Key_Return);
    });
    EXPECT_EQ(OpenFile(nullptr, "Emulator", kFilters, "C:\\Emu\\epsxe.exe"),
              InHome("drive_c/emu/ePSXe.EXE"));
    OnDialog<QFileDialog>([](auto& dialog) {
        EXPECT_EQ(dialog.directory().path(), QDir::homePath());
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(OpenFile(nullptr, "Emulator", kFilters, "C:\\gone\\epsxe.exe"), std::nullopt);
    EXPECT_EQ(NameFilters("Image Files |*.bin;*.7z|All|*||"),
              QStringList({"Image Files  (*.[bB][iI][nN] *.7[zZ])", "All (*)"}));
}

}  // namespace
}  // namespace velto::test
