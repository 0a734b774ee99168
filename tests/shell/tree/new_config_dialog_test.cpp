#include "shell/tree/new_config_dialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/frame_dialog.h"
#include "shell/tree/new_group_dialog.h"
#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

class NewConfigDialogTest : public HomeTest {
  protected:
    NewConfigDialogTest() {
        settings.AddGroup("puzzle", "My Epsxe");
        settings.AddGroup("Action", "My Epsxe");
    }
    CVeltoSettings settings;
    CNewConfig new_config{environment.ConfigFolder()};
};

TEST_F(NewConfigDialogTest, StaysOpenUntilTheFileIsThere) {
    CNewConfigDialog dialog(new_config, "puzzle");
    dialog.show();
    auto& group = FieldOf<QComboBox>(dialog, "Group");
    EXPECT_EQ(group.itemText(0) + group.itemText(1) + group.itemText(2), "ActionMy Epsxepuzzle");
    EXPECT_EQ(group.currentText(), "puzzle");
    Click(dialog, "OK");
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_TRUE(dialog.isVisible());
    auto& name = FieldOf(dialog, "Name");
    Type(name, u"Pok\u00E9"_qs);
    QTest::keyClick(&group, Qt::Key_Up);
    QTest::keyClick(&name, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(Exists(InConfig("Pok\xC3\xA9.dta")));
    EXPECT_EQ(new_config.name, "Pok\xC3\xA9");
    EXPECT_EQ(new_config.group, "My Epsxe");
}

TEST_F(NewConfigDialogTest, ANewGroupGoesIntoTheSelectedOneOrTheRoot) {
    CNewGroup group;
    for (const std::string selected : {"Action", "a configuration"}) {
        CNewGroupDialog dialog(group, selected);
        dialog.show();
        EXPECT_EQ(FieldOf<QComboBox>(dialog, "Create in Group").currentText(),
                  selected == "Action" ? "Action" : "My Epsxe");
        Type(FieldOf(dialog, "New Group Name"), "Sports");
        Click(dialog, "Cancel");
        EXPECT_EQ(group.name, "");
    }
    CNewGroupDialog dialog(group, "Action");
    dialog.show();
    Type(FieldOf(dialog, "New Group Name"), "puzzle");
    Click(dialog, "OK");
    EXPECT_TRUE(dialog.isVisible()) << "there is such a group";
    Type(FieldOf(dialog, "New Group Name"), "Sports");
    Click(dialog, "OK");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(group.name + " in " + group.parent, "Sports in Action");
}

TEST_F(NewConfigDialogTest, ExitIsRememberedOnlyWithOk) {
    for (const QString way : {"OK", "Cancel"}) {
        CExitDialog dialog;
        dialog.show();
        Click(dialog, "Do not ask this question in the future.");
        Click(dialog, way);
        EXPECT_EQ(dialog.dontAskAgain, way == "OK");
        EXPECT_EQ(dialog.result() == QDialog::Accepted, way == "OK");
    }
}

}  // namespace
}  // namespace velto::test
