#include "portable/misc_settings_view.h"

#include <QFileDialog>

#include "support/documents.h"
#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

class MiscSettingsTest : public HomeTest, public FakeEditor {
  protected:
    CVeltoDoc document{environment.ConfigFolder(), *this};
    CMiscSettingsView page{document, *this};
};

TEST_F(MiscSettingsTest, AnEditIsInTheRecordAtOnceAndThePageFollowsIt) {
    selected = "<b>caf\xE9</b>";
    document.bios = "caf\xE9.bin";
    page.Refresh();
    auto& line = FieldOf(page, "Command Line");
    EXPECT_EQ(page.accessibleName(), "<b>caf\u00E9</b>");
    EXPECT_EQ(FieldOf(page, "Bios File").text(), "caf\u00E9.bin");
    EXPECT_EQ(line.text(), "") << "nothing for NULL";
    EXPECT_FALSE(document.dirty || enabled) << "showing it is no edit";
    Type(line, "-slowboot \u00E9");
    EXPECT_EQ(document.commandLine, "-slowboot \xC3\xA9");
    EXPECT_TRUE(document.dirty && enabled);
    EXPECT_EQ(document.bios, "caf\xE9.bin");
    line.clear();
    EXPECT_EQ(document.commandLine, "NULL");
}

TEST_F(MiscSettingsTest, TheSearchForABiosBeginsAtTheEmulatorsFolderForThem) {
    const auto folder = InHome("drive_c/emu/BIOS");
    WriteFile(folder + "/scph.bin", "bios");
    document.bios = "C:\\old.bin";
    const std::pair<std::string, std::string> cases[] = {
        {InHome("epsxe"), document.bios},  // no such folder
        {InHome("drive_c/emu/epsxe"), InHome("drive_c/emu/bios/*.bin")},
        {"C:\\emu\\ePSXe.EXE", "C:\\emu\\bios\\*.bin"},
    };
    for (const auto& [emulator, start] : cases) {
        document.settings.SetEmulatorPath(emulator);
        EXPECT_EQ(CMiscSettings(document, *this).BiosSearchStart(), start);
    }
    OnDialog<QFileDialog>([&](auto& dialog) {
        EXPECT_EQ(dialog.directory().path().toStdString(), folder);
        auto& edit = *dialog.template findChild<QLineEdit*>("fileNameEdit");
        Type(edit, "scph");
        QTest::keyClick(&edit, Qt::Key_Return);
    });
    Click(page, "Browse");
    EXPECT_EQ(document.bios, folder + "/scph.bin");
    OnDialog<QFileDialog>([](auto& dialog) { dialog.reject(); });
    Click(page, "Browse");
    EXPECT_EQ(document.bios, folder + "/scph.bin");
}

}  // namespace
}  // namespace velto::test
