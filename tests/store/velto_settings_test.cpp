#include "store/velto_settings.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/failing_registry.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using platform::RegistryType;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

class SettingsTest : public HomeTest {
  protected:
    void Set(std::string_view name, const platform::RegistryValue& value) {
        SetValue(kSettingsKey, name, value);
    }
    CVeltoSettings settings;
};

TEST_F(SettingsTest, WithoutAnyValueGiveTheDefaults) {
    EXPECT_EQ(settings.GetEmulatorPath(), "");
    EXPECT_EQ(settings.GetPluginFolder(), "");
    EXPECT_TRUE(settings.IsGuiBypassed());
    EXPECT_TRUE(settings.IsShownOnLoad());
    EXPECT_FALSE(settings.IsAltDetect());
    EXPECT_TRUE(settings.IsStatusBarOn());
    EXPECT_TRUE(settings.IsToolBarOn());
    EXPECT_TRUE(settings.ShouldConfirmExit());
    EXPECT_FALSE(settings.IsFirstRunDue());
    EXPECT_EQ(settings.GetAutoplayDefault(), 0U);
    EXPECT_EQ(settings.GetWindowSize().cx, 0U);
    EXPECT_THAT(settings.GetGroups(), IsEmpty());
    EXPECT_FALSE(settings.HasExclusionList());
    EXPECT_TRUE(settings.IsLogWindowOn());
}

TEST_F(SettingsTest, AnotherObjectSeesEveryWriteAtOnce) {
    const CVeltoSettings other;
    settings.SetEmulatorPath("C:\\emu\\ePSXe.EXE");
    settings.SetCutorPath("C:\\cutor.exe");
    settings.SetBatardPath("/opt/batard/batard.exe");
    settings.SetIconFile("C:\\velto.ico");
    settings.SetGuiBypassed(false);
    settings.SetShownOnLoad(false);
    settings.SetAltDetect(true);
    settings.SetStatusBarOn(false);
    settings.SetToolBarOn(false);
    settings.SetConfirmOff();
    settings.SetAutoplayDefault(2);
    settings.SetWindowSize(800, 600);
    settings.SetWindowPos(-20, 7);
    EXPECT_EQ(other.GetEmulatorPath(), "C:\\emu\\ePSXe.EXE");
    EXPECT_EQ(other.GetEmulatorFolder(), "C:\\emu\\");
    EXPECT_EQ(other.GetPluginFolder(), "C:\\emu\\plugins\\");
    EXPECT_EQ(other.GetCutorPath(), "C:\\cutor.exe");
    EXPECT_EQ(other.GetBatardFolder(), "/opt/batard/");
    EXPECT_EQ(other.GetIconFile(), "C:\\velto.ico");
    EXPECT_FALSE(other.IsGuiBypassed());
    EXPECT_FALSE(other.IsShownOnLoad());
    EXPECT_TRUE(other.IsAltDetect());
    EXPECT_FALSE(other.IsStatusBarOn());
    EXPECT_FALSE(other.IsToolBarOn());
    EXPECT_FALSE(other.ShouldConfirmExit());
    EXPECT_EQ(other.GetAutoplayDefault(), 2U);
    EXPECT_EQ(other.GetWindowSize().cx, 800U);
    EXPECT_EQ(other.GetWindowSize().cy, 600U);
    EXPECT_EQ(other.GetWindowPos().x, -20);
    EXPECT_EQ(other.GetWindowPos().y, 7);
    settings.SetEmulatorPath("/home/u/emu/ePSXe");
    EXPECT_EQ(other.GetPluginFolder(), "/home/u/emu/plugins/") << "in the path's own style";
}

TEST_F(SettingsTest, OnlyTheNumberOneAsksForTheFirstRun) {
    Set("installerReset", platform::DwordValue(1));
    EXPECT_TRUE(settings.IsFirstRunDue());
    Set("installerReset", platform::DwordValue(2));
    EXPECT_FALSE(settings.IsFirstRunDue());
}

TEST_F(SettingsTest, AValueOfAnotherTypeOrLengthReadsAsTheDefault) {
    Set("epsxe", {RegistryType::ExpandString, "C:\\x\0"s});
    EXPECT_EQ(settings.GetEmulatorPath(), "");
    Set("nogui", platform::StringValue("0"));
    EXPECT_TRUE(settings.IsGuiBypassed());
    Set("showOnLoad", {RegistryType::Dword, "\0\0"s});
    EXPECT_TRUE(settings.IsShownOnLoad());
    Set("AUTOPLAY DEFAULT", platform::DwordValue(7));
    EXPECT_EQ(settings.GetAutoplayDefault(), 7U) << "names ignore case";
}

TEST_F(SettingsTest, StringsFitIntoABufferOf260BytesWithTheirEnd) {
    const std::string longest(259, 'x');
    Set("epsxe", platform::StringValue(longest));
    EXPECT_EQ(settings.GetEmulatorPath(), longest);
    Set("epsxe", platform::StringValue(longest + "x"));
    EXPECT_EQ(settings.GetEmulatorPath(), "");
    Set("epsxe", {RegistryType::String, longest});
    EXPECT_EQ(settings.GetEmulatorPath(), longest) << "stored without its end";
    Set("epsxe", {RegistryType::String, longest + "x"});
    EXPECT_EQ(settings.GetEmulatorPath(), "");
    Set("epsxe", {RegistryType::String, "short\0rest\0"s});
    EXPECT_EQ(settings.GetEmulatorPath(), "short");
}

TEST_F(SettingsTest, GroupsAreRemovedByNameAndParentTogether) {
    Set("groups", platform::StringValue("a;;b;c;b;"));
    Set("parents", platform::StringValue("My Epsxe;a;a;My Epsxe;"));
    EXPECT_THAT(settings.GetGroups(), ElementsAre("a", "b", "c", "b"));
    settings.RemoveGroup("b", "x");
    EXPECT_EQ(settings.GetGroups().size(), 4U);
    settings.AddGroup("b", "a");
    settings.RemoveGroup("b", "a");
    EXPECT_THAT(settings.GetGroups(), ElementsAre("a", "c", "b"));
    EXPECT_THAT(settings.GetParents(), ElementsAre("My Epsxe", "a", "My Epsxe"));
    EXPECT_THAT(StringOf(kSettingsKey, "groups"), Optional("a;c;b;"s));
}

TEST_F(SettingsTest, AListThatNoReadCouldTakeIsNotWritten) {
    settings.AddGroup("kept", "My Epsxe");
    settings.SetGroups({std::string(999'998, 'x')}, {"p"});
    EXPECT_EQ(settings.GetGroups().front().size(), 999'998U);
    settings.SetGroups({std::string(999'999, 'x')}, {"q"});
    EXPECT_EQ(settings.GetGroups().front().size(), 999'998U);
    EXPECT_THAT(settings.GetParents(), ElementsAre("p"));
}

TEST_F(SettingsTest, ExclusionsCompareByteForByteAndAnEmptyListIsAList) {
    settings.SetExclusionList({"zlib.dll", "AUDIOW32.DLL"});
    EXPECT_TRUE(settings.IsExcluded("AUDIOW32.DLL"));
    EXPECT_FALSE(settings.IsExcluded("audiow32.dll"));
    EXPECT_FALSE(settings.IsExcluded("zlib"));
    EXPECT_THAT(StringOf(kSettingsKey, "excluded"), Optional("zlib.dll;AUDIOW32.DLL;"s));
    settings.SetExclusionList({});
    EXPECT_TRUE(settings.HasExclusionList());
    EXPECT_THAT(settings.GetExclusionList(), IsEmpty());
    settings.SetExclusionList({std::string(400, 'x')});
    EXPECT_TRUE(settings.HasExclusionList());
    Set("excluded", platform::DwordValue(1));
    EXPECT_FALSE(settings.HasExclusionList());

    FailingRegistry failing(*registry, RegistryCall::Query, std::string(kSettingsKey), 0);
    const platform::HostScope failed(
        {&environment, files.get(), drives.get(), &failing, &processes, nullptr, &boxes});
    EXPECT_TRUE(CVeltoSettings().HasExclusionList()) << "or the defaults would replace it";
}

TEST_F(SettingsTest, TheLogWindowToggleReadsWhatItWrote) {
    settings.SetLogWindow(false);
    EXPECT_FALSE(settings.IsLogWindowOn());
    EXPECT_THAT(StringOf(kEmulatorConfigKey, "Logswindow"), Optional("0"s));
    settings.SetLogWindow(true);
    EXPECT_TRUE(settings.IsLogWindowOn());
    EXPECT_THAT(StringOf(kEmulatorConfigKey, "Logswindow"), Optional("1"s));
    SetValue(kEmulatorConfigKey, "nodebug", platform::StringValue("00"));
    EXPECT_TRUE(settings.IsLogWindowOn()) << "only the text 0 hides it";
}

TEST_F(SettingsTest, ABackupGivesTheBranchBackTypeByType) {
    const auto key = "Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo";
    SetValue(key, "size", platform::DwordValue(640));
    SetValue(key, "path", platform::StringValue("C:\\a \"b\""));
    ASSERT_EQ(settings.BackupBranch("\"HKEY_CURRENT_USER\\Software\\Vision Thing\"", "plugins.bak",
                                    environment.ConfigFolder()),
              0);
    SetValue(key, "size", platform::StringValue("changed"));
    SetValue(key, "path", platform::StringValue("changed"));
    SetValue(key, "new", platform::StringValue("stays"));

    EXPECT_EQ(settings.RestoreFile("plugins.bak", environment.ConfigFolder()), 0);

    const auto open = registry->OpenKey("HKEY_CURRENT_USER\\"s + key);
    EXPECT_EQ(open.value()->Query("size").value(), platform::DwordValue(640));
    EXPECT_THAT(StringOf(key, "path"), Optional("C:\\a \"b\""s));
    EXPECT_THAT(StringOf(key, "new"), Optional("stays"s)) << "a merge removes nothing";
    EXPECT_EQ(processes.requests[0].parameters,
              "/E \"plugins.bak\" \"HKEY_CURRENT_USER\\Software\\Vision Thing\"");
    EXPECT_EQ(processes.requests[1].parameters, " /S \"plugins.bak\"");
    EXPECT_EQ(processes.requests[1].folder, environment.ConfigFolder());
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(SettingsTest, OnlyAnEditorThatCannotBeStartedIsReported) {
    EXPECT_EQ(settings.RestoreFile("missing.bak", environment.ConfigFolder()), -1);
    EXPECT_EQ(
        settings.BackupBranch("HKEY_CURRENT_USER\\nothing", "b.bak", environment.ConfigFolder()),
        0);
    EXPECT_THAT(boxes.shown, IsEmpty());

    WriteFile(InHome("not a program"), "");
    for (const auto& editor : {InHome("missing"), InHome("not a program"), home_folder.path()}) {
        environment.registry_editor = editor;
        boxes.shown.clear();
        EXPECT_EQ(settings.RestoreFile("a.bak", environment.ConfigFolder()), -1);
        EXPECT_EQ(settings.BackupBranch("HKEY_CURRENT_USER\\Software\\epsxe", "main.bak",
                                        environment.ConfigFolder()),
                  -1);
        ASSERT_EQ(boxes.shown.size(), 2U) << editor;
        EXPECT_EQ(boxes.shown[0].text, "Unable to restore settings");
        EXPECT_EQ(boxes.shown[1].text,
                  "Unable to backup HKEY_CURRENT_USER\\Software\\epsxe settings");
        EXPECT_EQ(boxes.shown[1].caption, "Error");
    }
}

TEST_F(SettingsTest, AnEditorThatDiesCountsAsOneThatFailed) {
    WriteFile(InHome("dying"), "#!/bin/sh\nkill -9 $$\n");
    std::filesystem::permissions(InHome("dying"), std::filesystem::perms::owner_all);
    environment.registry_editor = InHome("dying");
    EXPECT_EQ(settings.RestoreFile("a.bak", environment.ConfigFolder()), -1);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

}  // namespace
}  // namespace velto::test
