#include "widgets/text.h"

#include <gtest/gtest.h>

#include "support/windows.h"
#include "widgets/bytes_fields.h"

namespace velto::test {
namespace {

using namespace std::string_literals;

TEST(Text, BytesAreReadAsUtf8OrElseAsWindows1252) {
    const struct {
        std::string bytes;
        QString text;
    } rows[] = {
        {"plain <b>", u"plain <b>"_qs},
        {"\xC3\xA9\xE2\x82\xAC", u"\u00E9\u20AC"_qs},
        {"caf\xE9 \x80\x9F\x81", u"caf\u00E9 \u20AC\u0178\u0081"_qs},
        {"cut off \xE2\x82", u"cut off \u00E2\u201A"_qs},
        {"\xC3\xA9\xFF", u"\u00C3\u00A9\u00FF"_qs},
        {"\xEF\xBB\xBFx", u"\uFEFFx"_qs},
        {"a\0b"s, QString::fromUtf16(u"a\0b", 3)},
    };
    for (const auto& row : rows) EXPECT_EQ(FromBytes(row.bytes), row.text) << row.bytes;
}

TEST(BytesEdit, GivesItsBytesBackUntilTheUserEdits) {
    const std::string long_path(40000, '\xE9');
    for (const auto& bytes : {"caf\xE9"s, "\xC3\xA9"s, "two\nlines"s, "a\0b"s, long_path}) {
        BytesEdit edit;
        edit.SetBytes(bytes);
        EXPECT_EQ(edit.bytes(), bytes);
    }
    BytesEdit edit;
    edit.SetBytes("caf\xE9");
    edit.end(false);
    QTest::keyClicks(&edit, "s");
    EXPECT_EQ(edit.bytes(), "caf\xC3\xA9s");
    QTest::keyClick(&edit, Qt::Key_Backspace);
    EXPECT_EQ(edit.bytes(), "caf\xE9");
}

TEST(BytesCombo, OffersNamesInTheirOrderAndGivesTheirBytes) {
    BytesCombo combo;
    EXPECT_EQ(combo.bytes(), "");
    combo.SetSorted({"b", "C", "\xE9", "a", "\xC3\xA9"});
    QStringList read;
    for (int i = 0; i < combo.count(); ++i) read += combo.itemText(i);
    EXPECT_EQ(read.join(' '), u"a b C \u00E9 \u00E9"_qs);
    combo.Select("\xE9");
    EXPECT_EQ(combo.bytes(), "\xE9");
    combo.Select("A");
    EXPECT_EQ(combo.bytes(), "\xE9") << "not offered in these letters";
}

}  // namespace
}  // namespace velto::test
