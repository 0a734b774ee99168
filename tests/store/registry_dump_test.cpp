#include "store/registry_dump.h"

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

constexpr const char* kKey = "Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo";

class DumpTest : public HomeTest {
  protected:
    std::string Messages() {
        std::string texts;
        for (const auto& text : Shown(boxes)) texts += text + "\n";
        return texts;
    }
    const std::string dump_file = InConfig("plugins.tmp");
};

std::string Tavo(const std::string& text) {
    return "Tavo Screwed up: " + text + "\n";
}

TEST_F(DumpTest, WritesEachTypeInItsFormAndReportsTheRest) {
    const std::string long_text(259, 'x');
    const auto no_string = Tavo("error reading string");
    const std::string no_type = "Tavo screwed up: Unable to determine data type\n";
    const std::tuple<platform::RegistryValue, std::string, std::string> cases[] = {
        {platform::StringValue("C:\\a \"b\" = ;"), R"("v"="C:\a "b" = ;")", ""},
        {platform::StringValue(""), R"("v"="")", ""},
        {platform::StringValue(long_text), "\"v\"=\"" + long_text + '"', ""},
        {platform::StringValue(long_text + "x"), "", no_string},
        {platform::StringValue("a\nb"), "", no_string},
        {platform::StringValue("a\rb"), "", no_string},
        {{RegistryType::String, "a\0b\0"s}, "", no_string},
        {{RegistryType::ExpandString, "%a%\0"s}, "", no_string},
        {{RegistryType::Binary, "\0\x0A\xFF\x10"s}, R"("v"=hex:00,a,ff,10)", ""},
        {{RegistryType::Binary, ""}, R"("v"=hex:)", ""},
        {platform::DwordValue(42), R"("v"=dword:0000002a)", ""},
        {platform::DwordValue(0xFEDCBA98), R"("v"=dword:fedcba98)", ""},
        {{RegistryType::Dword, "abc"}, "", Tavo("error reading DWORD")},
        {{RegistryType::None, "x"}, "", no_type},
        {{RegistryType::MultiString, "a\0\0"s}, "", no_type},
    };
    for (const auto& [value, line, message] : cases) {
        SetValue(kKey, "v", value);
        EXPECT_EQ(FormatValue(platform::kCurrentUser, kKey, "v", value.type), line);
        EXPECT_EQ(Messages(), message) << line;
    }
}

TEST_F(DumpTest, HoldsTheDirectSubkeysOfTheThreeBranchesBehindTheirBanners) {
    const std::string root = "Software\\Vision Thing\\PSEmu Pro\\";
    SetValue(kKey, "b", platform::DwordValue(1));
    SetValue(kKey, "a", {RegistryType::None, ""});
    SetValue(kKey, "c", platform::StringValue("x"));
    for (const auto* key : {"GPU\\Demo\\Deeper", "GPU", "NET\\No"}) {
        SetValue(root + key, "no", platform::DwordValue(1));
    }
    ASSERT_TRUE(registry->CreateKey("HKEY_CURRENT_USER\\" + root + "SPU\\Empty").ok());

    DumpPluginBranches(dump_file);

    const auto rule = ";#" + std::string(59, '/') + "\r\n";
    EXPECT_EQ(ReadFile(dump_file),
              "REGEDIT4 \r\n" + rule + ";#//GPU plugins\r\n" + rule +
                  "\r\n[HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo]\r\n"
                  "\"b\"=dword:00000001\r\n\r\n\"c\"=\"x\"\r\n;#\r\n" +
                  rule + ";#//CDR plugins\r\n" + rule + ";#\r\n" + rule + ";#//SPU plugins\r\n" +
                  rule +
                  "\r\n[HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\SPU\\Empty]\r\n");
}

TEST_F(DumpTest, EveryFailureOfTheRegistryIsReportedAndTheDumpGoesOn) {
    SetValue(kKey, "s", platform::StringValue("x"));
    SetValue(kKey, "b", {RegistryType::Binary, "x"});
    SetValue(kKey, "d", platform::DwordValue(1));
    using enum RegistryCall;
    const auto thrice = [](const char* text) { return Tavo(text) + Tavo(text) + Tavo(text); };
    const auto no_names = Tavo("error obtaining subkey names");
    const auto no_values = Tavo("Error reading value names and types");
    const std::tuple<RegistryCall, std::string, int, std::string> cases[] = {
        {None, "", 0, ""},
        {OpenKey, "GPU\\", 0, ""},
        {EnumerateSubkey, "GPU\\", 0, no_names},
        {Close, "GPU\\", 0, Tavo("error closing parent key")},
        {OpenKey, "Demo", 0,
         Tavo("Error Opening subKey") + no_values + Tavo("Error Closing subkey")},
        {OpenKey, "Demo", 1, thrice("Branch not opened")},
        {EnumerateValue, "Demo", 2, no_values},
        {Query, "Demo", 0,
         Tavo("error reading string") + Tavo("Error reading binary") + Tavo("error reading DWORD")},
        {Close, "Demo", 0, thrice("Branch not closed") + Tavo("Error Closing subkey")},
    };
    for (const auto& [call, on, spared, messages] : cases) {
        FailingRegistry failing(*registry, call, on, spared);
        const auto failed = With(failing);
        DumpPluginBranches(dump_file);
        EXPECT_EQ(Messages(), messages);
        EXPECT_THAT(ReadFile(dump_file), testing::HasSubstr(";#//SPU plugins\r\n"));
    }
}

TEST_F(DumpTest, ADumpThatCannotBeWrittenOrSavedLeavesTheFormerOne) {
    WriteFile(dump_file, "former");
    std::filesystem::permissions(dump_file, std::filesystem::perms::owner_read);
    DumpPluginBranches(dump_file);
    EXPECT_EQ(Messages(), Tavo("Failed to open temp storage"));
    std::filesystem::permissions(dump_file, std::filesystem::perms::owner_all);
    // Three bytes of text for each: 66 MiB.
    for (int i = 0; i < 22; ++i) {
        SetValue(kKey, std::to_string(i), {RegistryType::Binary, std::string(1 << 20, '\0')});
    }
    DumpPluginBranches(dump_file);
    EXPECT_EQ(Messages(), Tavo("Plugin settings are too large for a configuration"));
    EXPECT_THAT(files->List(environment.ConfigFolder()).value(), ElementsAre("plugins.tmp"));
    EXPECT_EQ(ReadFile(dump_file), "former");
}

}  // namespace
}  // namespace velto::test
