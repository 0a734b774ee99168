#include "portable/misc_settings.h"

#include <gtest/gtest.h>

#include "support/fake_editor.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using MiscSettingsTest = HomeTest;

TEST_F(MiscSettingsTest, TheSearchForABiosBeginsAtTheEmulatorsFolderForThem) {
    FakeEditor editor;
    CVeltoDoc document(environment.ConfigFolder(), editor);
    CMiscSettings misc(document, editor);
    ASSERT_TRUE(files->MakeFolders(InHome("emu/BIOS")).ok());
    ASSERT_TRUE(files->MakeFolders(InHome("drive_c/emu/bios")).ok());
    const std::pair<std::string, std::string> cases[] = {
        {InHome("emu/epsxe"), InHome("emu/bios/*.bin")},
        {"C:\\emu\\ePSXe.EXE", "C:\\emu\\bios\\*.bin"},
        {InHome("epsxe"), "D:\\old.bin"},  // no such folder
        {"", "D:\\old.bin"},
    };
    document.bios = "D:\\old.bin";
    for (const auto& [emulator, start] : cases) {
        document.settings.SetEmulatorPath(emulator);
        EXPECT_EQ(misc.BiosSearchStart(), start) << emulator;
    }
}

}  // namespace
}  // namespace velto::test
