#include "plugins/exclusion_dialog.h"

#include <gmock/gmock.h>

#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

using testing::ElementsAre;

using ExclusionDialogTest = HomeTest;

TEST_F(ExclusionDialogTest, EachChangeIsStoredAtOnceInTheOrderOfTheList) {
    CVeltoSettings settings;
    settings.SetExclusionList({"zlib.dll", "\xE9.dll", "AUDIOW32.DLL"});
    CExclusionDlg dialog;
    dialog.show();
    auto& name = FieldOf(dialog, "Filename:");
    auto& list = *dialog.findChild<QListWidget*>();
    Click(dialog, "Remove");
    EXPECT_EQ(boxes.shown.at(0).icon, platform::BoxIcon::Information);
    EXPECT_THAT(Shown(boxes), ElementsAre("Velto: No item Selected"));
    Click(dialog, "Add");
    EXPECT_THAT(Shown(boxes), ElementsAre("Velto: Please specify a file to exclude"));
    Type(name, "zlib.dll");
    Click(dialog, "Add");
    EXPECT_THAT(Shown(boxes), ElementsAre("Velto: Already excluded."));
    Type(name, " ZLIB.dll");
    QTest::keyClick(&name, Qt::Key_Return);
    EXPECT_EQ(name.text(), " ZLIB.dll");
    EXPECT_THAT(settings.GetExclusionList(),
                ElementsAre("AUDIOW32.DLL", "zlib.dll", "\xE9.dll", " ZLIB.dll"));
    list.setCurrentItem(list.findItems("AUDIOW32.DLL", Qt::MatchExactly).value(0));
    Click(dialog, "Remove");
    EXPECT_THAT(settings.GetExclusionList(), ElementsAre(" ZLIB.dll", "zlib.dll", "\xE9.dll"));
    EXPECT_TRUE(boxes.shown.empty());
    dialog.close();
    EXPECT_THAT(Shown(boxes),
                ElementsAre("Restart: Changes will only be applied after restarting."));
}

}  // namespace
}  // namespace velto::test
