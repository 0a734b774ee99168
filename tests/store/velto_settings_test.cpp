#include "store/velto_settings.h"

#include <gmock/gmock.h>

#include "support/failing_registry.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using platform::RegistryType;

class SettingsTest : public HomeTest {
  protected:
    CVeltoSettings settings;
};

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
        SetValue(kSettingsKey, "epsxe", value);
        EXPECT_EQ(settings.GetEmulatorPath(), text);
    }
    SetValue(kSettingsKey, "nogui", platform::StringValue("0"));
    EXPECT_TRUE(settings.IsGuiBypassed());
    SetValue(kSettingsKey, "showOnLoad", {RegistryType::Dword, "\0\0"s});
    EXPECT_TRUE(settings.IsShownOnLoad());
    SetValue(kSettingsKey, "AUTOPLAY DEFAULT", platform::DwordValue(7));
    EXPECT_EQ(settings.GetAutoplayDefault(), 7U) << "names ignore case";
    settings.SetLogWindow(false);
    EXPECT_EQ(StringOf(kEmulatorConfigKey, "Logswindow"), "0");
    SetValue(kEmulatorConfigKey, "nodebug", platform::StringValue("00"));
    EXPECT_TRUE(settings.IsLogWindowOn()) << "only the text 0 hides it";
}

TEST_F(SettingsTest, ListsOfGroupsLoseNothingButWhatIsRemovedByNameAndParent) {
    SetValue(kSettingsKey, "groups", platform::StringValue("a;;b;c;b;b;"));
    SetValue(kSettingsKey, "parents", platform::StringValue("My Epsxe;a;a;My Epsxe;a;"));
    settings.RemoveGroup("b", "x");
    settings.RemoveGroup("b", "a");
    EXPECT_EQ(StringOf(kSettingsKey, "groups"), "a;c;b;");
    EXPECT_EQ(StringOf(kSettingsKey, "parents"), "My Epsxe;a;My Epsxe;");

    // What no read could take is neither written nor written over.
    settings.SetGroups({std::string(999'998, 'x')}, {"p"});
    settings.SetGroups({std::string(999'999, 'x')}, {"q"});
    EXPECT_EQ(settings.GetGroups().at(0).size(), 999'998U);
    EXPECT_THAT(settings.GetParents(), testing::ElementsAre("p"));
    for (const std::string lost : {"groups", "parents"}) {
        settings.SetGroups({"a"}, {"My Epsxe"});
        SetValue(kSettingsKey, lost, platform::StringValue(std::string(1'000'000, 'x')));
        settings.AddGroup("b", "a");
        settings.RemoveGroup("a", "My Epsxe");
        EXPECT_EQ(StringOf(kSettingsKey, lost)->size(), 1'000'000U);
        EXPECT_EQ(settings.GetGroups().size() + settings.GetParents().size(), 1U);
    }
}

TEST_F(SettingsTest, AnEmptyExclusionListIsOneAndOneThatCannotBeReadToo) {
    EXPECT_FALSE(settings.HasExclusionList());
    settings.SetExclusionList({});
    EXPECT_TRUE(settings.HasExclusionList());
    SetValue(kSettingsKey, "excluded", platform::DwordValue(1));
    EXPECT_FALSE(settings.HasExclusionList());
    FailingRegistry failing(*registry, RegistryCall::Query, std::string(kSettingsKey), 0);
    const auto failed = With(failing);
    EXPECT_TRUE(CVeltoSettings().HasExclusionList()) << "or the defaults would replace it";
}

}  // namespace
}  // namespace velto::test
