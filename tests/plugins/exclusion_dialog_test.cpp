#include "plugins/exclusion_dialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

using testing::ElementsAre;

class ExclusionDialogTest : public HomeTest {
  protected:
    ExclusionDialogTest() {
        settings.SetExclusionList({"zlib.dll", "\xE9.dll", "AUDIOW32.DLL"});
        dialog = std::make_unique<CExclusionDlg>();
        dialog->show();
    }
    void ExpectBox(const char* text, const char* caption = "Velto") {
        ASSERT_EQ(boxes.shown.size(), 1U);
        EXPECT_EQ(boxes.shown[0].text, text);
        EXPECT_EQ(boxes.shown[0].caption, caption);
        EXPECT_EQ(boxes.shown[0].icon, platform::BoxIcon::Information);
        boxes.shown.clear();
    }
    void Select(const char* name) {
        auto& list = *dialog->findChild<QListWidget*>();
        list.setCurrentItem(list.findItems(name, Qt::MatchExactly).value(0));
    }

    CVeltoSettings settings;
    std::unique_ptr<CExclusionDlg> dialog;
};

TEST_F(ExclusionDialogTest, EachChangeIsStoredAtOnceInTheOrderOfTheList) {
    auto& name = FieldOf(*dialog, "Filename:");
    Click(*dialog, "Add");
    ExpectBox("Please specify a file to exclude");
    Type(name, "zlib.dll");
    Click(*dialog, "Add");
    ExpectBox("Already excluded.");
    EXPECT_THAT(settings.GetExclusionList(), ElementsAre("zlib.dll", "\xE9.dll", "AUDIOW32.DLL"));
    Type(name, " ZLIB.dll");
    QTest::keyClick(&name, Qt::Key_Return);
    EXPECT_EQ(name.text(), " ZLIB.dll");
    EXPECT_THAT(settings.GetExclusionList(),
                ElementsAre("AUDIOW32.DLL", "zlib.dll", "\xE9.dll", " ZLIB.dll"));
    Select("AUDIOW32.DLL");
    Click(*dialog, "Remove");
    EXPECT_THAT(settings.GetExclusionList(), ElementsAre(" ZLIB.dll", "zlib.dll", "\xE9.dll"));
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(ExclusionDialogTest, EveryWayOutTellsWhenTheChangesApply) {
    Click(*dialog, "Remove");
    ExpectBox("No item Selected");
    const std::function<void()> ways[] = {
        [&] { Click(*dialog, "Close"); },
        [&] { QTest::keyClick(dialog.get(), Qt::Key_Escape); },
        [&] { dialog->close(); },
    };
    for (const auto& way : ways) {
        dialog->show();
        way();
        ExpectBox("Changes will only be applied after restarting.", "Restart");
        EXPECT_FALSE(dialog->isVisible());
    }
}

}  // namespace
}  // namespace velto::test
