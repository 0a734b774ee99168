// Whatever name and value is written comes back from the text: exports, and plain dumps.
#include <regex.h>

#include <cstdio>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "regedit/recorded_text.h"
#include "regedit/value_text.h"

namespace velto::test {
namespace {

using platform::RegistryType;
using platform::RegistryValue;

constexpr int kRounds = 20000;

// Makes texts of what the two forms of quoting, comments and values are made of.
class Generator {
  public:
    std::string Text(std::size_t most_pieces, bool line_ends) {
        static const std::vector<std::string> kPieces = {
            "\"",   "\\",           "=",          "\"=",  "\"=\"", "\\\"", "\\\\",    ";",
            " ",    "\t",           "@",          "-",    "[",     "]",    ",",       "a",
            "\xE9", "\x1A",         "\v",         "\x01", "%",     "\"=-", "\" = \"", "\"=hex:1,\\",
            ";#//", "\"=hex(1):0;", "\"=dword:1", "\r",   "\n"};
        std::string text;
        for (auto count = Number(most_pieces); count > 0; --count) {
            text += kPieces[Number(kPieces.size() - (line_ends ? 1 : 3))];
        }
        return text;
    }
    // From 0 to `most`.
    std::size_t Number(std::size_t most) {
        return std::uniform_int_distribution<std::size_t>(0, most)(random_);
    }
    RegistryValue Value() {
        constexpr RegistryType kTypes[] = {RegistryType::None,        RegistryType::String,
                                           RegistryType::String,      RegistryType::ExpandString,
                                           RegistryType::Binary,      RegistryType::Dword,
                                           RegistryType::MultiString, RegistryType{0xFFFFFFFF}};
        RegistryValue value{kTypes[Number(std::size(kTypes) - 1)], Text(40, true)};
        for (auto count = Number(2); count > 0; --count) value.data += '\0';
        if (Number(1) != 0) value.data.insert(Number(value.data.size()), 1, '\0');
        if (Number(1) != 0) value.data.resize(4);
        return value;
    }

  private:
    std::mt19937 random_{20240229};
};

std::string Recorded(const std::string& name, const RegistryValue& value) {
    Recorder recorder;
    EXPECT_TRUE(recorder.OnKey("HKEY_CURRENT_USER\\k").ok());
    EXPECT_TRUE(recorder.OnValue(name, value).ok());
    return recorder.text;
}

TEST(RegistryTextRoundTrip, ExportsComeBackExactly) {
    Generator random;
    for (int i = 0; i < kRounds; ++i) {
        const auto name = random.Text(8, false);
        const auto value = random.Value();
        std::string text = "REGEDIT4\r\n[HKEY_CURRENT_USER\\k]\r\n";
        regedit::AppendValueLine(name, value, text);
        ASSERT_EQ(Parse(text), (Parsed{true, 0, Recorded(name, value)})) << text;
    }
}

// The dump's form: nothing escaped, hex bytes without leading zeros, DWORDs of eight digits.
std::string DumpedValue(const RegistryValue& value) {
    char digits[16];
    if (value.type == RegistryType::String) {
        return "\"" + value.data.substr(0, value.data.size() - 1) + "\"";
    }
    if (value.type == RegistryType::Dword) return "dword:0000002a";
    std::string text = "hex:";
    for (const char c : value.data) {
        std::snprintf(digits, sizeof digits, c == 0 ? "00," : "%x,", static_cast<unsigned char>(c));
        text += digits;
    }
    if (text.ends_with(',')) text.pop_back();
    return text;
}

// The one ambiguity that plain text has: the name holds a `"=` with which a whole value form
// begins, a string that goes on to the end of the line or another form in front of a comment.
bool IsAmbiguous(const std::string& name, const RegistryValue& value) {
    static const regex_t before_comment = [] {
        regex_t compiled{};
        constexpr auto kPattern =
            "\"=(-|dword:[ \t]*[0-9a-f]{1,8}|hex(\\([0-9a-f]{1,8}\\))?:[ \t]*([0-9a-f]{1,2}[ \t]*"
            "(,[ \t]*[0-9a-f]{1,2}[ \t]*)*,?[ \t]*)?[\\]?)[ \t]*;";
        EXPECT_EQ(regcomp(&compiled, kPattern, REG_EXTENDED | REG_NOSUB), 0);
        return compiled;
    }();
    return (value.type == RegistryType::String &&
            (name + '"').find("\"=\"") != std::string::npos) ||
           regexec(&before_comment, name.c_str(), 0, nullptr, 0) == 0;
}

TEST(RegistryTextRoundTrip, DumpsComeBackExactly) {
    Generator random;
    int ambiguous = 0;
    for (int i = 0; i < kRounds; ++i) {
        const auto name = random.Text(6, false);
        const RegistryValue values[] = {platform::StringValue(random.Text(8, false)),
                                        platform::DwordValue(42),
                                        {RegistryType::Binary, random.Text(8, true) + '\0'}};
        for (const auto& value : values) {
            if (IsAmbiguous(name, value)) {
                ++ambiguous;
                continue;
            }
            const auto text = "REGEDIT4 \r\n;#//GPU plugins\r\n\r\n[HKEY_CURRENT_USER\\k]\r\n\"" +
                              name + "\"=" + DumpedValue(value) + "\r\n";
            ASSERT_EQ(Parse(text), (Parsed{true, 0, Recorded(name, value)})) << text;
        }
    }
    EXPECT_LT(ambiguous, kRounds);  // of three times as many
}

struct Exported {
    const char* title;
    std::string name;
    RegistryValue value;
    std::string line;
};

TEST(RegistryTextRoundTrip, ExportsAreWrittenAsPeopleKnowThem) {
    const Exported samples[] = {
        {"path", "a\\b", platform::StringValue("c:\\\"d\""), R"("a\\b"="c:\\\"d\"")"},
        {"default value", "", platform::StringValue(""), R"(@="")"},
        {"value named @", "@", platform::DwordValue(0x1A2B), R"("@"=dword:00001a2b)"},
        {"short DWORD", "a", {RegistryType::Dword, "\x01"}, R"("a"=hex(4):01)"},
        {"no final NUL", "a", {RegistryType::String, "b"}, R"("a"=hex(1):62)"},
        {"empty data", "a", {RegistryType::String, ""}, R"("a"=hex(1):)"},
        {"line break", "a", platform::StringValue("\n"), R"("a"=hex(1):0a,00)"},
        {"large type", "a", {RegistryType{0x80000010}, "b"}, R"("a"=hex(80000010):62)"},
        {"wrapped",
         "a",
         {RegistryType::Binary, std::string(50, '\xFF')},
         "\"a\"=hex:ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,\\\r\n"
         "  ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,ff,\\\r\n"
         "  ff,ff"},
    };
    for (const auto& sample : samples) {
        std::string line;
        regedit::AppendValueLine(sample.name, sample.value, line);
        EXPECT_EQ(line, sample.line + "\r\n") << sample.title;
    }
}

}  // namespace
}  // namespace velto::test
