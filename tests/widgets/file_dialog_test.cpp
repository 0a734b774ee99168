#include "widgets/file_dialog.h"

#include <QFileDialog>
#include <QListView>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

constexpr const char* kFilters = "Executables (*.exe)|*.exe|All files (*.*)|*.*||";

class FileDialogTest : public HomeTest {
  protected:
    FileDialogTest() {
        EXPECT_TRUE(files->MakeFolders(InHome("drive_c/emu")).ok());
        for (const auto* file : {"ePSXe.EXE", "tool.exe", "readme.txt"}) {
            WriteFile(InHome("drive_c/emu/") + file, "MZ");
        }
    }

    // What the list shows under the filter of this number.
    static void ExpectShown(QFileDialog& dialog, int filter, const QStringList& expected) {
        auto& types = *dialog.findChild<QComboBox*>("fileTypeCombo");
        QTest::keyClick(&types, filter == 0 ? Qt::Key_Home : Qt::Key_End);
        const auto& list = *dialog.findChild<QListView*>("listView");
        QStringList names;
        const auto shows_them = [&] {
            names.clear();
            for (int i = 0; i < list.model()->rowCount(list.rootIndex()); ++i) {
                names += list.model()->index(i, 0, list.rootIndex()).data().toString();
            }
            names.sort();
            return names == expected;
        };
        EXPECT_TRUE(QTest::qWaitFor(shows_them)) << names.join(' ').toStdString();
    }
};

TEST_F(FileDialogTest, OpensAtTheStoredPathAndIgnoresCase) {
    OnDialog<QFileDialog>([&](auto& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Emulator");
        EXPECT_EQ(dialog.directory().path().toStdString(), InHome("drive_c/emu"));
        ExpectShown(dialog, 0, {"ePSXe.EXE", "tool.exe"});
        ExpectShown(dialog, 1, {"ePSXe.EXE", "readme.txt", "tool.exe"});
        const auto* const types = dialog.template findChild<QComboBox*>("fileTypeCombo");
        EXPECT_EQ(types->itemText(0), "Executables (*.exe)");
        EXPECT_EQ(types->itemText(1), "All files (*.*)");
        auto* const name = dialog.template findChild<QLineEdit*>("fileNameEdit");
        EXPECT_EQ(name->text(), "ePSXe.EXE");
        QTest::keyClick(name, Qt::Key_Return);
    });
    EXPECT_EQ(OpenFile(nullptr, "Emulator", kFilters, "C:\\Emu\\epsxe.exe"),
              InHome("drive_c/emu/ePSXe.EXE"));
}

TEST_F(FileDialogTest, StartsAtHomeWithoutAFolderAndGivesNothingOnCancel) {
    for (const auto* start : {"", "C:\\gone\\epsxe.exe"}) {
        OnDialog<QFileDialog>([&](auto& dialog) {
            EXPECT_EQ(dialog.directory().path(), QDir::homePath());
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        EXPECT_EQ(OpenFile(nullptr, "Emulator", kFilters, start), std::nullopt);
    }
}

TEST_F(FileDialogTest, FiltersKeepTheirTextsAndPatterns) {
    EXPECT_EQ(NameFilters("Image Files |*.bin;*.7z|All|*||"),
              QStringList({"Image Files  (*.[bB][iI][nN] *.7[zZ])", "All (*)"}));
    EXPECT_EQ(NameFilters(""), QStringList());
}

}  // namespace
}  // namespace velto::test
