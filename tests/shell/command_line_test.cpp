#include "shell/command_line.h"

#include <gtest/gtest.h>

namespace velto::test {
namespace {

TEST(CommandLine, HasOneFlagAndOneParameterBehindThePath) {
    EXPECT_EQ(CommandLineText("/my velto", {"-direct", "A  Game", "", "a\"b"}),
              "\"/my velto\" -direct \"A  Game\" \"\" a\"b");
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"", "", ""},
        {"\"/opt/my own velto\"", "", ""},
        {"\"/v\" -direct Game", "direct", "Game"},
        {"\"/v\" /direct \"A  Game\"", "direct", "A  Game"},
        {"\"/v\"   -direct   A Game  ", "direct", "A"},
        {"\"/v\" -direct \"\"", "direct", ""},
        {"\"/v\" -direct -x Game", "direct", ""},
        {"\"/v\" Game -direct", "", "Game"},
        {"\"/v\" -", "", ""},
        {"\"/v\" --direct Game", "-direct", "Game"},
        {"\"/v\" -\"two words\" Game", "two words", "Game"},
        {"\"/v\" -direct \"open end", "direct", "open end"},
        {"\"/v\" -direct \"ends here\" \"not here\"", "direct", "ends here"},
        {"\"/v\" -direct a\"b c\"", "direct", "a\"b"},
        {"\"/v\" -direct \"", "direct", ""},
        {"/v -direct Game", "direct", "Game"},  // an unquoted path reads as a flag
    };
    for (const auto& [text, flag, parameter] : cases) {
        CVeltoCommandLine line(text);
        std::string read_flag = "former";
        std::string read_parameter = "former";
        line.Parse(read_flag, read_parameter);
        line.Parse(read_flag, read_parameter);
        EXPECT_EQ(read_flag + ":" + read_parameter, flag + ":" + parameter) << text;
    }
}

}  // namespace
}  // namespace velto::test
