#include "store/registry_dump.h"

#include <filesystem>

#include <gmock/gmock.h>

#include "support/failing_registry.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using platform::RegistryType;
using testing::ElementsAre;
using Texts = std::vector<std::string>;

const std::string kRoot = "Software\\Vision Thing\\PSEmu Pro\\";
const std::string kKey = kRoot + "GPU\\Demo";

const std::string kTavo = "Tavo Screwed up: ";
const std::string kNoString = kTavo + "error reading string";
const std::string kNoDword = kTavo + "error reading DWORD";

class DumpTest : public HomeTest {
  protected:
    const std::string dump_file = InConfig("plugins.tmp");
};

TEST_F(DumpTest, HoldsTheValuesOfTheDirectSubkeysOfTheThreeBranches) {
    const std::string long_text(259, 'x');
    const auto no_type = "Tavo screwed up: Unable to determine data type";
    const std::tuple<platform::RegistryValue, std::string, std::string> values[] = {
        {platform::StringValue("C:\\a \"b\" = ;"), R"("C:\a "b" = ;")", ""},
        {platform::StringValue(""), R"("")", ""},
        {platform::StringValue(long_text), '"' + long_text + '"', ""},
        {platform::StringValue(long_text + "x"), "", kNoString},
        {platform::StringValue("a\nb"), "", kNoString},
        {platform::StringValue("a\rb"), "", kNoString},
        {{RegistryType::String, "a\0b\0"s}, "", kNoString},
        {{RegistryType::ExpandString, "%a%\0"s}, "", kNoString},
        {{RegistryType::Binary, "\0\x0A\xFF\x10"s}, "hex:00,a,ff,10", ""},
        {{RegistryType::Binary, ""}, "hex:", ""},
        {platform::DwordValue(42), "dword:0000002a", ""},
        {platform::DwordValue(0xFEDCBA98), "dword:fedcba98", ""},
        {{RegistryType::Dword, "abc"}, "", kNoDword},
        {{RegistryType::None, "x"}, "", no_type},
        {{RegistryType::MultiString, "a\0\0"s}, "", no_type},
    };
    std::string lines;
    Texts told;
    for (const auto& [value, text, message] : values) {
        const auto name = std::to_string(lines.size());
        SetValue(kKey, name, value);
        lines += (text.empty() ? "" : '"' + name + "\"=" + text) + "\r\n";
        if (!message.empty()) told.push_back(message);
    }
    for (const auto* key : {"GPU\\Demo\\Deeper", "GPU", "NET\\No"}) {
        SetValue(kRoot + key, "no", platform::DwordValue(1));
    }
    ASSERT_TRUE(registry->CreateKey("HKEY_CURRENT_USER\\" + kRoot + "SPU\\Empty").ok());

    DumpPluginBranches(dump_file);

    const auto rule = ";#" + std::string(59, '/') + "\r\n";
    EXPECT_EQ(ReadFile(dump_file), "REGEDIT4 \r\n" + rule + ";#//GPU plugins\r\n" + rule +
                                       "\r\n[HKEY_CURRENT_USER\\" + kKey + "]\r\n" + lines +
                                       ";#\r\n" + rule + ";#//CDR plugins\r\n" + rule + ";#\r\n" +
                                       rule + ";#//SPU plugins\r\n" + rule +
                                       "\r\n[HKEY_CURRENT_USER\\" + kRoot + "SPU\\Empty]\r\n");
    EXPECT_EQ(Shown(boxes), told);
}

TEST_F(DumpTest, EveryFailureOfTheRegistryIsReportedAndTheDumpGoesOn) {
    SetValue(kKey, "s", platform::StringValue("x"));
    SetValue(kKey, "b", {RegistryType::Binary, "x"});
    SetValue(kKey, "d", platform::DwordValue(1));
    using enum RegistryCall;
    const auto no_values = kTavo + "Error reading value names and types";
    const auto not_closed = kTavo + "Branch not closed";
    const auto no_end = kTavo + "Error Closing subkey";
    const std::tuple<RegistryCall, std::string, int, Texts> cases[] = {
        {OpenKey, "GPU\\", 0, {}},
        {EnumerateSubkey, "GPU\\", 0, {kTavo + "error obtaining subkey names"}},
        {Close, "GPU\\", 0, {kTavo + "error closing parent key"}},
        {OpenKey, "Demo", 0, {kTavo + "Error Opening subKey", no_values, no_end}},
        {OpenKey, "Demo", 1, Texts(3, kTavo + "Branch not opened")},
        {EnumerateValue, "Demo", 2, {no_values}},
        {Query, "Demo", 0, {kNoString, kTavo + "Error reading binary", kNoDword}},
        {Close, "Demo", 0, {not_closed, not_closed, not_closed, no_end}},
    };
    for (const auto& [call, on, spared, messages] : cases) {
        FailingRegistry failing(*registry, call, on, spared);
        const auto failed = With(failing);
        DumpPluginBranches(dump_file);
        EXPECT_EQ(Shown(boxes), messages);
        EXPECT_THAT(ReadFile(dump_file), testing::HasSubstr(";#//SPU plugins\r\n"));
    }
}

TEST_F(DumpTest, ADumpThatCannotBeWrittenOrSavedLeavesTheFormerOne) {
    WriteFile(dump_file, "former");
    std::filesystem::permissions(dump_file, std::filesystem::perms::owner_read);
    DumpPluginBranches(dump_file);
    EXPECT_THAT(Shown(boxes), ElementsAre(kTavo + "Failed to open temp storage"));
    std::filesystem::permissions(dump_file, std::filesystem::perms::owner_all);
    // Three bytes of text for each: 66 MiB.
    for (int i = 0; i < 22; ++i) {
        SetValue(kKey, std::to_string(i), {RegistryType::Binary, std::string(1 << 20, '\0')});
    }
    DumpPluginBranches(dump_file);
    EXPECT_THAT(Shown(boxes),
                ElementsAre(kTavo + "Plugin settings are too large for a configuration"));
    EXPECT_THAT(files->List(environment.ConfigFolder()).value(), ElementsAre("plugins.tmp"));
    EXPECT_EQ(ReadFile(dump_file), "former");
}

}  // namespace
}  // namespace velto::test
