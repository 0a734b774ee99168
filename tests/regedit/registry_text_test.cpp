// What is read from registry text, what is skipped, and that what is written comes back: exports,
// and plain dumps.
#include <random>

#include <gtest/gtest.h>

#include "regedit/text_lines.h"
#include "regedit/value_text.h"
#include "support/recorded_registry.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using platform::RegistryType;
using platform::RegistryValue;

const std::string kHead = "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\k]\r\n";
const std::string kShownHead = "[HKEY_CURRENT_USER\\k]\n";

std::string Skipped(int lines) {
    return "skipped " + std::to_string(lines) + "\n";
}

// Every text stands between a good key line and a good value, which must come through.
void Check(const std::string& text, const std::string& shown, int skipped = 0) {
    EXPECT_EQ(Parse(kHead + text + "\r\n\"next\"=\"kept\"\r\n"),
              Skipped(skipped) + kShownHead + shown + "next=1:kept%00\n")
        << text.substr(0, 80);
}

TEST(RegistryText, ReadsEveryFormOfAValueAndSkipsMalformedLinesAlone) {
    const std::string mark = ";#//x\n";
    const std::tuple<const char*, std::string, std::string> good[] = {
        {"default value", "@ =\t\"b\"", "=1:b%00\n"},
        {"default value by an empty name", R"(""="b")", "=1:b%00\n"},
        {"blanks everywhere", " \t\"a\"\t = \t\"b\" \t", "a=1:b%00\n"},
        {"string to the last quote", R"("a"="b" ; c "d")", "a=1:b\" ; c \"d%00\n"},
        {"NUL in a string", "\"a\"=\"b\0c\""s, "a=1:b%00c%00\n"},
        {"one digit", R"("a"=dword:f)", "a=4:%0F%00%00%00\n"},
        {"eight digits", R"("a"=dword: 12345678;)", "a=4:xV4%12\n"},
        {"hex bytes", R"("a"=hex:0,A,fF,)", "a=3:%00%0A%FF\n"},
        {"blanks between hex bytes", "\"a\"=hex: 61 ,\t62 ; c", "a=3:ab\n"},
        {"any type, in capitals", R"("a"=HEX(FffffffE):61)", "a=4294967294:a\n"},
        {"comma in front of the second line", "\"a\"=hex:61\\\n,62", "a=3:ab\n"},
        {"no bytes, a comment", "\"a\"=hex(2):\\\n61,\\\n; c \\\n00", "a=2:a%00\n"},
        {"list ended by an empty line", "\"a\"=hex:61,\\\n", "a=3:a\n"},
        {"removal, comment", "\"a\"=-\n;\"a\"=\"b\"", ""},
        {"plain path", R"("a"="c:\\emu\")", "a=1:c:\\\\emu\\%00\n"},
        {"quote that isn't escaped", R"("a"="\\"b")", "a=1:\\\\\"b%00\n"},
        {"quote inside a name", R"("a"b"=dword:1)", "a\"b=4:%01%00%00%00\n"},
        {"first end of the name", R"("a"="b"="c")", "a=1:b\"=\"c%00\n"},
        {"no plain text behind others", ";#/\n;#\n; //\n\"a\"=\"b\\\\\"", "a=1:b\\%00\n"},
        {"equals sign in a plain name", mark + R"("a"=b"=dword:1)", "a\"=b=4:%01%00%00%00\n"},
        {"blanks behind a plain name", mark + R"("a" = "b")", "a=1:b%00\n"},
    };
    for (const auto& [name, text, shown] : good) {
        SCOPED_TRACE(name);
        Check(text, shown);
    }
    const std::string bad[] = {
        R"("a=1)", R"("a\"="b")", R"("a"="b)", R"("a"="b" c)", R"("a"=dword:)",
        R"("a"=dword:000000001)", R"("a"=hex:012)", R"("a"=hex:01 02)", R"("a"=hex:01,,02)",
        R"("a"=hex(000000001):01)",
        // Lists: a byte broken by a line end, no more of it, a bad first or second line of three.
        "\"a\"=hex:01,0\\\n2", R"("a"=hex:01,\)", "\"a\"=hex:zz,\\\n01,\\\n02",
        "\"a\"=hex:01,\\\nzz,\\\n02",
        // Over the bounds, and a NUL in a name.
        "\"a\0b\"=\"c\""s, '"' + std::string(platform::kLongestValueName + 1, 'n') + "\"=\"b\"",
        "\"a\"=\"" + std::string(platform::kLargestValue, 't') + '"'};
    for (const auto& text : bad) Check(text, "", 1);
    Check("\"a\"=hex:01,\\02\n03", "", 2);
    Check("what\n\"a\"\n\"b\"=\"c\"", "b=1:c%00\n", 2);
}

TEST(RegistryText, PassesOverWhatStandsBelowABadKeyLine) {
    const std::string head = "[HKEY_CURRENT_USER\\";
    std::string deepest = "[HKEY_CURRENT_USER";
    for (std::size_t i = 1; i < platform::kDeepestKey; ++i) deepest += "\\d";
    const std::string below = "\r\n\"a\"=\"b\"\r\n\"bad\r\n\"c\"=hex:01,\\\r\n02\r\n";
    const std::string roots =
        "[HKEY_CLASSES_ROOT]\n[HKEY_LOCAL_MACHINE]\n[HKEY_CURRENT_CONFIG]\n[hkey_users]\n";
    const std::pair<std::string, std::string> good[] = {
        {" " + head + "b]c \\\\]\t;c", head + "b]c ]\n"},
        {roots, roots},
        {deepest + "]", deepest + "]\n"}};
    for (const auto& [text, shown] : good) Check(text + below, shown + "a=1:b%00\nc=3:%01%02\n", 1);
    const std::string bad[] = {"[HKEY_CURRENT_USERS\\b]",
                               head + "b",
                               head + "b] c",
                               head + "b\\\\c]",
                               head + std::string(platform::kLongestKeyName + 1, 'b') + "]",
                               deepest + "\\d]"};
    const auto next = below + head + "n]";
    for (const auto& text : bad) Check(text + next, "[HKEY_CURRENT_USER\\n]\n", 1);
    Check("[-HKEY_CURRENT_USER\\b]" + next, "[HKEY_CURRENT_USER\\n]\n");
}

TEST(RegistryText, NeedsAKnownFirstLine) {
    const std::string key = "\n[HKEY_CURRENT_USER\\k]\n";
    for (const auto* known : {"REGEDIT4 \t\r\n", "\xEF\xBB\xBFREGEDIT4\n",
                              "Windows Registry Editor Version 5.00\r\n"}) {
        EXPECT_EQ(Parse(known + key), Skipped(0) + kShownHead);
    }
    const auto too_long = "REGEDIT4" + std::string(regedit::kLongestLine, ' ') + "\r\n";
    for (const auto& unknown : {""s, ";REGEDIT4\r\n"s, too_long}) {
        EXPECT_EQ(Parse(unknown + key), "unknown\n");
    }
    EXPECT_EQ(Parse("REGEDIT4\n\"a\"=\"b\"\n"), Skipped(1)) << "no key";
}

// As a little-endian host has it in memory.
std::string Utf16(const std::u16string& text) {
    return "\xFF\xFE" + std::string(reinterpret_cast<const char*>(text.data()), 2 * text.size());
}

TEST(RegistryText, BecomesUtf8FromUtf16) {
    const std::u16string keys =
        u"\r\n[HKEY_CURRENT_USER\\\u00E9]\r\n"
        u"\"\u20AC\"=\"\U0001F600\xD800!\xDC00\"\r\n"
        u"\"x\"=hex(2):e9,00,3d,d8,\\\r\n  00,de,00,00\r\n\"m\"=hex(7):61,00,00,00,00,00\r\n"
        u"\"odd\"=hex(1):61,00,00\r\n\"half\"=hex(1):3d,d8\r\n\"b\"=hex:e9,00\r\n";
    const std::string text =
        "[HKEY_CURRENT_USER\\%C3%A9]\n%E2%82%AC=1:%F0%9F%98%80%EF%BF%BD!%EF%BF%BD%00\n";
    const auto version5 = Utf16(u"Windows Registry Editor Version 5.00" + keys);
    const std::string shown =
        text + "x=2:%C3%A9%F0%9F%98%80%00\nm=7:a%00%00\nhalf=1:%EF%BF%BD\nb=3:%E9%00\n";
    EXPECT_EQ(Parse(version5), Skipped(1) + shown);
    EXPECT_EQ(Parse(version5, 1), Skipped(1) + shown) << "byte by byte";
    EXPECT_EQ(Parse(version5 + "\n"), Skipped(2) + shown) << "half a character at the end";
    EXPECT_EQ(Parse(Utf16(u"REGEDIT4" + keys)),
              Skipped(0) + text + "x=2:%E9%00=%D8%00%DE%00%00\nm=7:a%00%00%00%00%00\n" +
                  "odd=1:a%00%00\nhalf=1:=%D8\nb=3:%E9%00\n");
    EXPECT_EQ(Parse("Windows Registry Editor Version 5.00\n[HKEY_CURRENT_USER\\k]\n"
                    "\"\xE9\"=hex(2):e9,00\n"),
              Skipped(0) + kShownHead + "%E9=2:%E9%00\n");
}

TEST(RegistryText, SkipsWhatIsLargerThanAnyValue) {
    std::string list = "\"a\"=hex:";
    for (std::size_t i = 0; i < platform::kLargestValue; i += 16) {
        list += "1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,\\\n";
    }
    const std::string longest(regedit::kLongestLine, 'x');
    // A reader that starts anew at each of them would be busy for hours.
    std::string ends_of_names;
    while (ends_of_names.size() + 3 < regedit::kLongestLine) ends_of_names += "\"=\"";
    std::string lists = "\"a";
    while (lists.size() + 9 < regedit::kLongestLine) lists += "\"=hex:1, ";
    std::string shown_bytes = "a=3:";
    for (std::size_t i = 0; i < platform::kLargestValue; ++i) shown_bytes += "%01";
    Check(list, shown_bytes + "\n");
    Check(list + "1,\\\n1", "", 1);
    Check(";" + longest.substr(1), "");
    Check(";#//" + longest + "\n\"a\"=\"\\\\\"", "a=1:\\\\%00\n", 1);
    Check("\"a\"=\"b\" ;" + longest, "", 1);
    Check("\"a\"=hex:1,\\\n" + longest, "", 1);
    Check("\"a\"=hex:1,\\\n\"b\"=hex:" + longest, "", 2);
    Check(ends_of_names, "", 1);
    Check(lists, "", 1);
    Check(std::string(longest.size() + 1, ' ') + "\"a\"=\"b\"", "a=1:b%00\n");
    EXPECT_EQ(Parse(kHead + "[" + longest + "]\n\"a\"=\"b\"\n"), Skipped(1) + kShownHead)
        << "values below a key line that is too long";
}

// Of what the two forms of quoting, comments and values are made of; line ends come last.
const std::string kPieces[] = {
    "\"",   "\\",           "=",          "\"=",  "\"=\"", "\\\"", "\\\\",    ";",
    " ",    "\t",           "@",          "-",    "[",     "]",    ",",       "a",
    "\xE9", "\x1A",         "\v",         "\x01", "%",     "\"=-", "\" = \"", "\"=hex:1,\\",
    ";#//", "\"=hex(1):0;", "\"=dword:1", "\r",   "\n"};

std::string RandomText(std::mt19937& random, std::size_t most_pieces, bool line_ends) {
    std::string text;
    for (auto count = random() % (most_pieces + 1); count > 0; --count) {
        text += kPieces[random() % (std::size(kPieces) - (line_ends ? 0 : 2))];
    }
    return text;
}

RegistryValue RandomValue(std::mt19937& random) {
    // Each of the known types, and the largest number.
    const RegistryType type{static_cast<std::uint32_t>(random() % 9) - 1};
    RegistryValue value{type, RandomText(random, 40, true)};
    value.data.append(random() % 3, '\0');
    if (random() % 2 != 0) value.data.insert(random() % (value.data.size() + 1), 1, '\0');
    if (random() % 2 != 0) value.data.resize(4);
    return value;
}

// The value line below a key reads as that name and value.
void ExpectRead(const std::string& head, const std::string& line, const std::string& name,
                const RegistryValue& value) {
    const std::string key = "HKEY_CURRENT_USER\\k";
    Recorder recorder;
    ASSERT_TRUE(recorder.OnKey(key).ok() && recorder.OnValue(name, value).ok());
    ASSERT_EQ(Parse(head + "[" + key + "]\r\n" + line), Skipped(0) + recorder.text) << line;
}

TEST(RegistryTextRoundTrip, ExportsAndDumpsComeBackExactly) {
    std::mt19937 random(20240229);
    for (int i = 0; i < 20000; ++i) {
        const auto name = RandomText(random, 8, false);
        const auto exported = RandomValue(random);
        std::string line;
        regedit::AppendValueLine(name, exported, line);
        ASSERT_NO_FATAL_FAILURE(ExpectRead("REGEDIT4\r\n", line, name, exported));

        // Such a name is the one ambiguity that plain text has, if a whole form follows.
        if ((name + '"').find("\"=") != std::string::npos) continue;
        const auto text = RandomText(random, 8, false);
        const std::pair<std::string, RegistryValue> forms[] = {
            {'"' + text + '"', platform::StringValue(text)},
            {"dword:0000002a", platform::DwordValue(42)},
            {"hex:a,00,ff", {RegistryType::Binary, {'\x0A', '\0', '\xFF'}}}};
        for (const auto& [form, value] : forms) {
            line.assign("\"").append(name).append("\"=").append(form).append("\r\n");
            ASSERT_NO_FATAL_FAILURE(
                ExpectRead("REGEDIT4 \r\n;#//GPU plugins\r\n\r\n", line, name, value));
        }
    }
}

}  // namespace
}  // namespace velto::test
