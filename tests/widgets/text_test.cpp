#include "widgets/text.h"

#include "support/windows.h"
#include "widgets/bytes_fields.h"

namespace velto::test {
namespace {

using namespace std::string_literals;

TEST(Text, BytesAreReadAsUtf8OrElseAsWindows1252) {
    const std::pair<std::string, QString> rows[] = {
        {"plain <b>", "plain <b>"},
        {"\xC3\xA9\xE2\x82\xAC", u"\u00E9\u20AC"_qs},
        {"caf\xE9 \x80\x9F\x81", u"caf\u00E9 \u20AC\u0178\u0081"_qs},
        {"cut off \xE2\x82", u"cut off \u00E2\u201A"_qs},
        {"\xC3\xA9\xFF", u"\u00C3\u00A9\u00FF"_qs},
        {"\xEF\xBB\xBFx", u"\uFEFFx"_qs},
        {"a\0b"s, QString::fromUtf16(u"a\0b", 3)},
    };
    for (const auto& [bytes, text] : rows) EXPECT_EQ(FromBytes(bytes), text) << bytes;
}

TEST(BytesFields, GiveTheirBytesBackUntilTheUserEdits) {
    BytesEdit edit;
    edit.SetBytes("a\0\nb caf\xE9"s);
    EXPECT_EQ(edit.bytes(), "a\0\nb caf\xE9"s);
    edit.end(false);
    QTest::keyClicks(&edit, "s");
    EXPECT_EQ(edit.bytes(), "a\0\nb caf\xC3\xA9s"s);
    QTest::keyClick(&edit, Qt::Key_Backspace);
    EXPECT_EQ(edit.bytes(), "a\0\nb caf\xE9"s);

    BytesCombo combo;
    EXPECT_EQ(combo.bytes(), "");
    combo.SetSorted({"b", "C", "\xE9", "a"});
    EXPECT_EQ(combo.itemText(0) + combo.itemText(2) + combo.itemText(3), u"aC\u00E9"_qs);
    combo.Select("\xE9");
    combo.Select("A");  // not offered in this letter
    EXPECT_EQ(combo.bytes(), "\xE9");
}

}  // namespace
}  // namespace velto::test
