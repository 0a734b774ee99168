#include "store/registry_dump.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "store/velto_settings.h"
#include "support/failing_registry.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using platform::RegistryType;
using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr const char* kKey = "Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo";

class DumpTest : public HomeTest {
  protected:
    std::string FormatOf(const platform::RegistryValue& value, const std::string& name = "v") {
        SetValue(kKey, name, value);
        boxes.shown.clear();
        return FormatValue(platform::kCurrentUser, kKey, name, value.type);
    }
    std::vector<std::string> Messages() const {
        std::vector<std::string> texts;
        for (const auto& box : boxes.shown) texts.push_back(box.text);
        return texts;
    }
};

TEST_F(DumpTest, WritesEachTypeInItsFormAndReportsTheRest) {
    struct Case {
        platform::RegistryValue value;
        std::string line;
        const char* message;
    };
    const Case cases[] = {
        {platform::StringValue("C:\\a \"b\" = ;"), R"("v"="C:\a "b" = ;")", nullptr},
        {platform::StringValue(""), R"("v"="")", nullptr},
        {platform::StringValue(std::string(259, 'x')), "\"v\"=\"" + std::string(259, 'x') + '"',
         nullptr},
        {platform::StringValue(std::string(260, 'x')), "", "error reading string"},
        {platform::StringValue("a\nb"), "", "error reading string"},
        {platform::StringValue("a\rb"), "", "error reading string"},
        {{RegistryType::String, "a\0b\0"s}, "", "error reading string"},
        {{RegistryType::ExpandString, "%a%\0"s}, "", "error reading string"},
        {{RegistryType::Binary, "\0\x0A\xFF\x10"s}, R"("v"=hex:00,a,ff,10)", nullptr},
        {{RegistryType::Binary, ""}, R"("v"=hex:)", nullptr},
        {platform::DwordValue(42), R"("v"=dword:0000002a)", nullptr},
        {platform::DwordValue(0xFEDCBA98), R"("v"=dword:fedcba98)", nullptr},
        {{RegistryType::Dword, "abc"}, "", "error reading DWORD"},
        {{RegistryType::None, "x"}, "", "Unable to determine data type"},
        {{RegistryType::MultiString, "a\0\0"s}, "", "Unable to determine data type"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FormatOf(c.value), c.line);
        if (c.message == nullptr) {
            EXPECT_TRUE(boxes.shown.empty()) << c.line;
        } else {
            ASSERT_EQ(boxes.shown.size(), 1U) << c.message;
            EXPECT_EQ(boxes.shown[0].text, c.message);
            EXPECT_EQ(boxes.shown[0].caption, c.message == "Unable to determine data type"s
                                                  ? "Tavo screwed up"
                                                  : "Tavo Screwed up");
        }
    }
}

TEST_F(DumpTest, HoldsTheDirectSubkeysOfTheThreeBranchesBehindTheirBanners) {
    SetValue(kKey, "b", platform::DwordValue(1));
    SetValue(kKey, "a", {RegistryType::None, ""});
    SetValue(kKey, "c", platform::StringValue("x"));
    SetValue(kKey + "\\Deeper"s, "no", platform::DwordValue(1));
    SetValue("Software\\Vision Thing\\PSEmu Pro\\GPU", "no", platform::DwordValue(1));
    SetValue("Software\\Vision Thing\\PSEmu Pro\\NET\\No", "no", platform::DwordValue(1));
    ASSERT_TRUE(registry
                    ->CreateKey("HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\SPU\\"
                                "Empty")
                    .ok());

    DumpPluginBranches(InConfig("plugins.tmp"));

    const auto rule = ";#" + std::string(59, '/') + "\r\n";
    EXPECT_EQ(ReadFile(InConfig("plugins.tmp")),
              "REGEDIT4 \r\n" + rule + ";#//GPU plugins\r\n" + rule +
                  "\r\n[HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo]\r\n"
                  "\"b\"=dword:00000001\r\n\r\n\"c\"=\"x\"\r\n;#\r\n" +
                  rule + ";#//CDR plugins\r\n" + rule + ";#\r\n" + rule + ";#//SPU plugins\r\n" +
                  rule +
                  "\r\n[HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\SPU\\Empty]\r\n");
    EXPECT_THAT(Messages(), ElementsAre("Unable to determine data type"));
}

TEST_F(DumpTest, AMergeOfTheDumpGivesTheSameTypesAndBytes) {
    const std::vector<platform::RegistryWrite> writes = {
        {std::string(platform::kCurrentUser) + kKey, "path\\\"x\"",
         platform::StringValue("C:\\n\\\"")},
        {std::string(platform::kCurrentUser) + kKey,
         "bytes",
         {RegistryType::Binary, "\0\x01\x80"s}},
        {std::string(platform::kCurrentUser) + kKey, "", platform::DwordValue(7)},
    };
    ASSERT_TRUE(platform::WriteValues(*registry, writes).ok());
    DumpPluginBranches(InConfig("plugins.tmp"));
    for (const auto& write : writes) SetValue(kKey, write.name, {RegistryType::None, "lost"});
    ASSERT_EQ(CVeltoSettings().RestoreFile("plugins.tmp", environment.ConfigFolder()), 0);
    const auto key = registry->OpenKey(writes[0].path);
    for (const auto& write : writes) {
        EXPECT_EQ(key.value()->Query(write.name).value(), write.value) << write.name;
    }
}

TEST_F(DumpTest, EveryFailureOfTheRegistryIsReportedAndTheDumpGoesOn) {
    SetValue(kKey, "s", platform::StringValue("x"));
    SetValue(kKey, "b", {RegistryType::Binary, "x"});
    SetValue(kKey, "d", platform::DwordValue(1));
    struct Case {
        RegistryCall call;
        std::string on;
        int spared;
        std::vector<std::string> messages;
    };
    const Case cases[] = {
        {RegistryCall::None, "", 0, {}},
        {RegistryCall::OpenKey, "GPU\\", 0, {}},
        {RegistryCall::EnumerateSubkey, "GPU\\", 0, {"error obtaining subkey names"}},
        {RegistryCall::EnumerateSubkey, "GPU\\", 1, {"error obtaining subkey names"}},
        {RegistryCall::Close, "GPU\\", 0, {"error closing parent key"}},
        {RegistryCall::OpenKey,
         "Demo",
         0,
         {"Error Opening subKey", "Error reading value names and types", "Error Closing subkey"}},
        {RegistryCall::OpenKey,
         "Demo",
         1,
         {"Branch not opened", "Branch not opened", "Branch not opened"}},
        {RegistryCall::EnumerateValue, "Demo", 2, {"Error reading value names and types"}},
        {RegistryCall::Query,
         "Demo",
         0,
         {"error reading string", "Error reading binary", "error reading DWORD"}},
        {RegistryCall::Close,
         "Demo",
         0,
         {"Branch not closed", "Branch not closed", "Branch not closed", "Error Closing subkey"}},
    };
    for (const auto& c : cases) {
        boxes.shown.clear();
        FailingRegistry failing(*registry, c.call, c.on, c.spared);
        const platform::HostScope failed(
            {&environment, files.get(), drives.get(), &failing, &processes, nullptr, &boxes});
        DumpPluginBranches(InConfig("plugins.tmp"));
        EXPECT_THAT(Messages(), ElementsAreArray(c.messages));
        EXPECT_THAT(ReadFile(InConfig("plugins.tmp")), testing::HasSubstr(";#//SPU plugins\r\n"));
    }
}

TEST_F(DumpTest, NamesAreBoundedLikeStrings) {
    SetValue(kKey, std::string(259, 'n'), platform::DwordValue(1));
    SetValue(kKey, std::string(260, 'n'), platform::DwordValue(1));
    SetValue(kKey, "behind", platform::DwordValue(1));
    std::string dump;
    DumpSubkey(dump, kKey);
    EXPECT_EQ(dump, '"' + std::string(259, 'n') + "\"=dword:00000001\n");
    EXPECT_THAT(Messages(), ElementsAre("Error reading value names and types"));
}

TEST_F(DumpTest, ADumpThatCannotBeWrittenLeavesTheFormerOne) {
    WriteFile(InConfig("plugins.tmp"), "former");
    std::filesystem::permissions(InConfig("plugins.tmp"), std::filesystem::perms::owner_read);
    DumpPluginBranches(InConfig("plugins.tmp"));
    EXPECT_THAT(Messages(), ElementsAre("Failed to open temp storage"));
    EXPECT_EQ(ReadFile(InConfig("plugins.tmp")), "former");
}

}  // namespace
}  // namespace velto::test
