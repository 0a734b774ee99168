#include "store/velto_settings.h"

#include <filesystem>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/failing_registry.h"
#include "support/home_test.h"
#include "support/shown.h"

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

TEST_F(SettingsTest, HaveADefaultAndAnotherObjectSeesEveryWriteAtOnce) {
    using Settings = CVeltoSettings;
    const Settings other;
    const std::tuple<void (Settings::*)(bool), bool (Settings::*)() const, bool> flags[] = {
        {&Settings::SetGuiBypassed, &Settings::IsGuiBypassed, true},
        {&Settings::SetShownOnLoad, &Settings::IsShownOnLoad, true},
        {&Settings::SetAltDetect, &Settings::IsAltDetect, false},
        {&Settings::SetStatusBarOn, &Settings::IsStatusBarOn, true},
        {&Settings::SetToolBarOn, &Settings::IsToolBarOn, true},
        {&Settings::SetLogWindow, &Settings::IsLogWindowOn, true},
    };
    for (const auto& [set, is_on, by_default] : flags) {
        EXPECT_EQ((other.*is_on)(), by_default);
        (settings.*set)(!by_default);
        EXPECT_EQ((other.*is_on)(), !by_default);
    }
    using Get = std::string (Settings::*)() const;
    const std::tuple<void (Settings::*)(std::string_view), Get, Get, std::string> paths[] = {
        {&Settings::SetEmulatorPath, &Settings::GetEmulatorPath, &Settings::GetPluginFolder,
         "C:\\emu\\plugins\\"},
        {&Settings::SetBatardPath, &Settings::GetBatardPath, &Settings::GetBatardFolder,
         "C:\\emu\\"},
        {&Settings::SetCutorPath, &Settings::GetCutorPath, &Settings::GetCutorPath, "C:\\emu\\3"},
        {&Settings::SetIconFile, &Settings::GetIconFile, &Settings::GetIconFile, "C:\\emu\\4"},
    };
    for (char name = '1'; const auto& [set, path, derived, expected] : paths) {
        EXPECT_EQ((other.*path)() + (other.*derived)(), "");
        (settings.*set)("C:\\emu\\"s + name);
        EXPECT_EQ((other.*path)(), "C:\\emu\\"s + name++);
        EXPECT_EQ((other.*derived)(), expected);
    }
    settings.SetEmulatorPath("/home/u/emu/ePSXe");
    EXPECT_EQ(other.GetPluginFolder(), "/home/u/emu/plugins/") << "in the path's own style";

    const auto numbers = [&] {
        return std::tuple(other.ShouldConfirmExit(), other.IsFirstRunDue(),
                          other.GetAutoplayDefault(), other.GetWindowSize().cx,
                          other.GetWindowSize().cy, other.GetWindowPos().x, other.GetWindowPos().y);
    };
    EXPECT_EQ(numbers(), std::tuple(true, false, 0U, 0U, 0U, 0, 0));
    settings.SetConfirmOff();
    Set("installerReset", platform::DwordValue(1));
    settings.SetAutoplayDefault(2);
    settings.SetWindowSize(800, 600);
    settings.SetWindowPos(-20, 7);
    EXPECT_EQ(numbers(), std::tuple(false, true, 2U, 800U, 600U, -20, 7));
    Set("installerReset", platform::DwordValue(2));
    EXPECT_FALSE(other.IsFirstRunDue());
}

TEST_F(SettingsTest, AValueOfAnotherTypeOrLengthReadsAsTheDefault) {
    const std::string longest(259, 'x');  // 260 bytes with its end
    const std::pair<platform::RegistryValue, std::string> cases[] = {
        {platform::StringValue(longest), longest},
        {platform::StringValue(longest + "x"), ""},
        {{RegistryType::String, longest}, longest},
        {{RegistryType::String, longest + "x"}, ""},
        {{RegistryType::String, "short\0rest\0"s}, "short"},
        {{RegistryType::ExpandString, "C:\\x\0"s}, ""},
    };
    for (const auto& [value, text] : cases) {
        Set("epsxe", value);
        EXPECT_EQ(settings.GetEmulatorPath(), text);
    }
    Set("nogui", platform::StringValue("0"));
    EXPECT_TRUE(settings.IsGuiBypassed());
    Set("showOnLoad", {RegistryType::Dword, "\0\0"s});
    EXPECT_TRUE(settings.IsShownOnLoad());
    Set("AUTOPLAY DEFAULT", platform::DwordValue(7));
    EXPECT_EQ(settings.GetAutoplayDefault(), 7U) << "names ignore case";
    settings.SetLogWindow(false);
    EXPECT_THAT(StringOf(kEmulatorConfigKey, "Logswindow"), Optional("0"s));
    SetValue(kEmulatorConfigKey, "nodebug", platform::StringValue("00"));
    EXPECT_TRUE(settings.IsLogWindowOn()) << "only the text 0 hides it";
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
    settings.SetGroups({std::string(999'998, 'x')}, {"p"});
    settings.SetGroups({std::string(999'999, 'x')}, {"q"});
    EXPECT_EQ(settings.GetGroups().at(0).size(), 999'998U);
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

TEST_F(SettingsTest, ABackupGivesTheBranchBack) {
    const auto key = "Software\\Vision Thing\\GPU";
    SetValue(key, "size", platform::DwordValue(640));
    const auto folder = environment.ConfigFolder();
    ASSERT_EQ(
        settings.BackupBranch("\"HKEY_CURRENT_USER\\Software\\Vision Thing\"", "p.bak", folder), 0);
    SetValue(key, "size", platform::StringValue("changed"));
    SetValue(key, "new", platform::StringValue("stays"));

    EXPECT_EQ(settings.RestoreFile("p.bak", folder), 0);

    const auto open = registry->OpenKey("HKEY_CURRENT_USER\\"s + key);
    EXPECT_EQ(open.value()->Query("size").value(), platform::DwordValue(640));
    EXPECT_THAT(StringOf(key, "new"), Optional("stays"s)) << "a merge removes nothing";
    EXPECT_EQ(processes.requests[0].parameters,
              "/E \"p.bak\" \"HKEY_CURRENT_USER\\Software\\Vision Thing\"");
    EXPECT_EQ(processes.requests[1].parameters, " /S \"p.bak\"");
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(SettingsTest, AMissingBackupIsReportedAndAFailedMergeOnlyWithoutAnEditor) {
    const auto folder = environment.ConfigFolder();
    EXPECT_EQ(settings.BackupBranch("HKEY_CURRENT_USER\\nothing", "b.bak", folder),
              CVeltoSettings::kNoBackup);
    EXPECT_THAT(Shown(boxes),
                ElementsAre("Error: Unable to backup HKEY_CURRENT_USER\\nothing settings"));
    EXPECT_EQ(settings.RestoreFile("missing.bak", folder), -1);
    WriteFile(InHome("dying"), "#!/bin/sh\nkill -9 $$\n");
    std::filesystem::permissions(InHome("dying"), std::filesystem::perms::owner_all);
    environment.registry_editor = InHome("dying");
    EXPECT_EQ(settings.RestoreFile("a.bak", folder), -1);
    EXPECT_THAT(boxes.shown, IsEmpty());

    WriteFile(InHome("not a program"), "");
    for (const auto& editor : {InHome("missing"), InHome("not a program"), home_folder.path()}) {
        environment.registry_editor = editor;
        EXPECT_EQ(settings.RestoreFile("a.bak", folder), -1);
        EXPECT_EQ(settings.BackupBranch("HKEY_CURRENT_USER\\Software", "main.bak", folder), -1);
        EXPECT_THAT(Shown(boxes),
                    ElementsAre("Error: Unable to restore settings",
                                "Error: Unable to backup HKEY_CURRENT_USER\\Software settings"));
    }
}

}  // namespace
}  // namespace velto::test
