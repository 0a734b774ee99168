#include "store/config_file.h"

#include <sys/stat.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ReadEntry, TakesTheFirstLineThatHoldsTheKeyAndCutsItDown) {
    struct Case {
        const char* what;
        std::string text;
        const char* key;
        std::string value;
    };
    const Case cases[] = {
        {"blank behind the value", "; region = Autodetect \n", "region", "Autodetect"},
        {"none behind it", "; region = Autodetect\n", "region", "Autodetect"},
        {"every equals sign goes", "; commandLine = -a=b\n", "commandLine", "-ab"},
        {"blanks inside stay", "; bios = scph  1001.bin\n", "bios", "scph  1001.bin"},
        {"only blanks", "; keys1 =  \n", "keys1", ""},
        {"missing", "; bios = x\n", "region", ""},
        {"other case", "; Bios = x\n", "bios", ""},
        {"first of two", "; bios = a\n; bios = b\n", "bios", "a"},
        {"anywhere in a line", ";# see ; bios = a\n; bios = b\n", "bios", ";# see   a"},
        {"the key twice in a line", "; bios = a; bios = b\n", "bios", "a  b"},
        {"longer key where the shorter is missing", "; storeSubChannelLG = true\n",
         "storeSubChannel", "LG  true"},
        {"no line end", "; bios = last", "bios", "last"},
        {"lone CR and NUL are bytes of the value", "; bios = a\rb\0c\n"s, "bios", "a\rb\0c"s},
        {"CR at the end is white space", "; bios = a\r", "bios", "a"},
        {"tabs around the sign", "; bios\t=\ta\t\n", "bios", "a"},
        {"a plain line isn't an option", "\"bios\"=\"x\"\n", "bios", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CConfigFile(c.text).ReadEntry(c.key), c.value) << c.what;
    }
}

TEST(ReadEntry, TakesALineOfMegabytesInItsStride) {
    std::string line;
    while (line.size() < std::size_t{4} << 20) line += "; bios = ";
    EXPECT_EQ(CConfigFile(line).ReadEntry("bios"), "");
}

TEST(WriteEntry, NoByteOfAValueCanEndTheLine) {
    CConfigFile file;
    file.WriteEntry("bios", "a\nb\r\nc\0d\te\x7f\xE9"s);
    EXPECT_EQ(file.text(), "; bios = a b  c d e\x7f\xE9\n");
}

TEST(ConfigLists, AreCommaJoinedAndReadInUpperCase) {
    CConfigFile file;
    file.WriteList("psxIdExt", {"SLUS_123", "abc"});
    file.WriteList("none", {});
    EXPECT_EQ(file.text(), "; psxIdExt = SLUS_123,abc\n; none = NULL\n");

    struct Case {
        std::string text;
        bool missing;
        std::vector<std::string> items;
    };
    const Case cases[] = {
        {"; psxIdExt = slus_123,,abc", false, {"before", "SLUS_123", "ABC"}},
        {"; psxIdExt = ,a,", false, {"before", "A"}},
        {"; psxIdExt = NULL", false, {"before"}},
        {"; psxIdExt = ", true, {"before"}},
        {"", true, {"before"}},
    };
    for (const auto& c : cases) {
        std::vector<std::string> list = {"before"};
        EXPECT_EQ(CConfigFile(c.text).ReadList("psxIdExt", list), c.missing) << c.text;
        EXPECT_EQ(list, c.items) << c.text;
    }
}

class ConfigFileTest : public HomeTest {};

TEST_F(ConfigFileTest, FindEntryLineCountsFromZeroOrReports) {
    const CConfigFile file("REGEDIT4\n;#\n; fileGroup = a\n; fileGroup = b\n");
    EXPECT_EQ(file.FindEntryLine("fileGroup"), 2);
    EXPECT_EQ(file.FindEntryLine("REGEDIT4"), 0);
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_EQ(file.FindEntryLine("bios"), -1);
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(boxes.shown[0].text, "Unable to read bios from this configuration");
    EXPECT_EQ(boxes.shown[0].caption, "Entry not found");
    EXPECT_EQ(boxes.shown[0].icon, platform::BoxIcon::Error);
}

TEST_F(ConfigFileTest, OpensRegularFilesOfAnySizeUpToTheBound) {
    WriteFile(InConfig("good.dta"), "REGEDIT4\r\n; bios = x\r\n");
    EXPECT_EQ(CConfigFile::Open(InConfig("good.dta")).value().ReadEntry("bios"), "x");

    WriteFile(InConfig("largest.dta"), std::string(kLargestConfigFile, 'x'));
    EXPECT_TRUE(CConfigFile::Open(InConfig("largest.dta")).ok());
    WriteFile(InConfig("larger.dta"), std::string(kLargestConfigFile + 1, 'x'));
    EXPECT_EQ(CConfigFile::Open(InConfig("larger.dta")).error().kind,
              platform::ErrorKind::TooLarge);

    ASSERT_EQ(mkfifo(InConfig("pipe.dta").c_str(), 0600), 0);
    std::filesystem::create_directory(InConfig("folder.dta"));
    EXPECT_FALSE(CConfigFile::Open(InConfig("pipe.dta")).ok()) << "and it doesn't block";
    EXPECT_FALSE(CConfigFile::Open(InConfig("folder.dta")).ok());
    EXPECT_FALSE(CConfigFile::Open(InConfig("missing.dta")).ok());
}

}  // namespace
}  // namespace velto::test
