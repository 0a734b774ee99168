#include "store/config_file.h"

#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ReadEntry, TakesTheFirstLineThatHoldsTheKeyAndCutsItDown) {
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"blank behind the value", "; bios = a \n", "a"},
        {"no line end", "; bios = a", "a"},
        {"every equals sign goes", "; bios = -a=b\n", "-ab"},
        {"blanks inside stay", "; bios = scph  1001.bin\n", "scph  1001.bin"},
        {"only blanks", "; bios =  \n", ""},
        {"missing", "; region = x\n", ""},
        {"other case", "; Bios = x\n", ""},
        {"first of two", "; bios = a\n; bios = b\n", "a"},
        {"anywhere in a line", ";# see ; bios = a\n; bios = b\n", ";# see   a"},
        {"the key twice in a line", "; bios = a; bios = b\n", "a  b"},
        {"longer key where the shorter is missing", "; biosLG = true\n", "LG  true"},
        {"lone CR and NUL are bytes of the value", "; bios = a\rb\0c\n"s, "a\rb\0c"s},
        {"CR at the end is white space", "; bios = a\r", "a"},
        {"tabs around the sign", "; bios\t=\ta\t\n", "a"},
        {"a plain line isn't an option", "\"bios\"=\"x\"\n", ""},
    };
    for (const auto& [what, text, value] : cases) {
        EXPECT_EQ(CConfigFile(text).ReadEntry("bios"), value) << what;
    }
}

TEST(WriteEntry, LetsNoByteOfAValueEndItsLine) {
    CConfigFile file;
    file.WriteEntry("bios", "a\nb\r\nc\0d\te\x7f\xE9"s);
    EXPECT_EQ(file.text(), "; bios = a b  c d e\x7f\xE9\n");
}

class FindEntryLine : public HomeTest {};

TEST_F(FindEntryLine, CountsFromZeroOrReports) {
    const CConfigFile file("REGEDIT4\n;#\n; fileGroup = a\n; fileGroup = b\n");
    EXPECT_EQ(file.FindEntryLine("fileGroup"), 2);
    EXPECT_EQ(file.FindEntryLine("REGEDIT4"), 0);
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_EQ(file.FindEntryLine("bios"), -1);
    EXPECT_THAT(Shown(boxes),
                ElementsAre("Entry not found: Unable to read bios from this configuration"));
}

}  // namespace
}  // namespace velto::test
