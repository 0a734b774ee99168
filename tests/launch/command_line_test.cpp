#include "launch/command_line.h"

#include <gtest/gtest.h>

namespace velto::test {
namespace {

TEST(CommandLineText, QuotesThePathAndArgumentsThatHoldABlank) {
    EXPECT_EQ(CommandLineText("/opt/my velto", {}), "\"/opt/my velto\"");
    EXPECT_EQ(CommandLineText("/opt/velto", {"-direct", "A  Game", "", "a\"b"}),
              "\"/opt/velto\" -direct \"A  Game\" \"\" a\"b");
}

TEST(CommandLine, HasOneFlagAndOneParameterBehindThePath) {
    struct Case {
        std::string line;
        std::string flag;
        std::string parameter;
    };
    const Case cases[] = {
        {"", "", ""},
        {"\"/opt/velto\"", "", ""},
        {"\"/opt/my own velto\"", "", ""},
        {"\"/v\" -direct Game", "direct", "Game"},
        {"\"/v\" /direct Game", "direct", "Game"},
        {"\"/v\" -direct \"A  Game\"", "direct", "A  Game"},
        {"\"/v\" -direct A Game", "direct", "A"},
        {"\"/v\"   -direct   Game  ", "direct", "Game"},
        {"\"/v\" -direct", "direct", ""},
        {"\"/v\" -direct \"\"", "direct", ""},
        {"\"/v\" -direct -x Game", "direct", ""},
        {"\"/v\" Game -direct", "", "Game"},
        {"\"/v\" -", "", ""},
        {"\"/v\" --direct Game", "-direct", "Game"},
        {"\"/v\" -\"two words\" Game", "two words", "Game"},
        {"\"/v\" -direct \"open end", "direct", "open end"},
        {"\"/v\" -direct \"ends here\" \"not here\"", "direct", "ends here"},
        {"\"/v\" -direct a\"b c\"", "direct", "a\"b"},
        {"\"/v\" -direct \" lead\"", "direct", " lead"},
        {"\"/v\" -direct \"", "direct", ""},
        {"/v -direct Game", "direct", "Game"},  // an unquoted path reads as a flag
    };
    for (const auto& c : cases) {
        CVeltoCommandLine line(c.line);
        std::string flag = "former";
        std::string parameter = "former";
        for (int times = 0; times < 2; ++times) {
            line.Parse(flag, parameter);
            EXPECT_EQ(flag, c.flag) << c.line;
            EXPECT_EQ(parameter, c.parameter) << c.line;
        }
    }
}

}  // namespace
}  // namespace velto::test
