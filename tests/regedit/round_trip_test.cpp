// Whatever name and value is written comes back from the text: exports, and plain dumps.
#include <cstdio>
#include <random>

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
        for (auto count = Below(most_pieces + 1); count > 0; --count) {
            text += kPieces[Below(kPieces.size() - (line_ends ? 0 : 2))];
        }
        return text;
    }
    RegistryValue Value() {
        constexpr RegistryType kTypes[] = {RegistryType::None,        RegistryType::String,
                                           RegistryType::String,      RegistryType::ExpandString,
                                           RegistryType::Binary,      RegistryType::Dword,
                                           RegistryType::MultiString, RegistryType{0xFFFFFFFF}};
        RegistryValue value{kTypes[Below(std::size(kTypes))], Text(40, true)};
        value.data.append(Below(3), '\0');
        if (Below(2) != 0) value.data.insert(Below(value.data.size() + 1), 1, '\0');
        if (Below(2) != 0) value.data.resize(4);
        return value;
    }

  private:
    std::size_t Below(std::size_t end) { return random_() % end; }

    std::mt19937 random_{20240229};
};

// The value line below a key reads as that name and value.
void ExpectRead(const std::string& head, const std::string& line, const std::string& name,
                const RegistryValue& value) {
    const std::string key = "HKEY_CURRENT_USER\\k";
    Recorder recorder;
    ASSERT_TRUE(recorder.OnKey(key).ok() && recorder.OnValue(name, value).ok());
    ASSERT_EQ(Parse(head + "[" + key + "]\r\n" + line), (Parsed{true, 0, recorder.text})) << line;
}

// The dump's form: nothing escaped, hex bytes without leading zeros.
std::string DumpedBytes(const std::string& data) {
    std::string text;
    for (const char c : data) {
        char digits[8];
        std::snprintf(digits, sizeof digits, c == 0 ? ",00" : ",%x", static_cast<unsigned char>(c));
        text += digits;
    }
    return text.substr(1);
}

TEST(RegistryTextRoundTrip, ExportsAndDumpsComeBackExactly) {
    Generator random;
    for (int i = 0; i < kRounds; ++i) {
        const auto name = random.Text(8, false);
        const auto exported = random.Value();
        std::string line;
        regedit::AppendValueLine(name, exported, line);
        ASSERT_NO_FATAL_FAILURE(ExpectRead("REGEDIT4\r\n", line, name, exported));

        // Such a name is the one ambiguity that plain text has, if a whole form follows.
        if ((name + '"').find("\"=") != std::string::npos) continue;
        const auto text = random.Text(8, false);
        const auto bytes = random.Text(8, true) + '\0';
        const std::pair<std::string, RegistryValue> forms[] = {
            {'"' + text + '"', platform::StringValue(text)},
            {"dword:0000002a", platform::DwordValue(42)},
            {"hex:" + DumpedBytes(bytes), {RegistryType::Binary, bytes}}};
        for (const auto& [form, value] : forms) {
            ASSERT_NO_FATAL_FAILURE(ExpectRead("REGEDIT4 \r\n;#//GPU plugins\r\n\r\n",
                                               '"' + name + "\"=" + form + "\r\n", name, value));
        }
    }
}

}  // namespace
}  // namespace velto::test
