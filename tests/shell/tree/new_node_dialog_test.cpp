#include "shell/tree/new_node_dialog.h"

#include <gtest/gtest.h>

#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

class NewNodeDialogTest : public HomeTest {};

TEST_F(NewNodeDialogTest, StaysOpenUntilTheNameCanBeHad) {
    for (const auto* group : {"puzzle", "Action"}) CVeltoSettings().AddGroup(group, "My Epsxe");
    CNewConfig new_config{ConfigFolder(environment.ConfigFolder())};
    CNewConfigDialog dialog(new_config, "puzzle");
    dialog.show();
    auto& group = FieldOf<QComboBox>(dialog, "Group");
    EXPECT_EQ(group.itemText(0) + group.itemText(1) + group.itemText(2), "ActionMy Epsxepuzzle");
    Click(dialog, "OK");
    EXPECT_EQ(boxes.shown.size(), 1U);
    EXPECT_TRUE(dialog.isVisible());
    auto& name = FieldOf(dialog, "Name");
    Type(name, u"Pok\u00E9"_qs);
    QTest::keyClick(&group, Qt::Key_Up);
    QTest::keyClick(&name, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(Exists(InConfig("Pok\xC3\xA9.dta")));
    EXPECT_EQ(new_config.name + " in " + new_config.group, "Pok\xC3\xA9 in My Epsxe");

    CNewGroup new_group;
    CNewGroupDialog group_dialog(new_group, "a configuration");
    group_dialog.show();
    Type(FieldOf(group_dialog, "New Group Name"), "Sports");
    Click(group_dialog, "OK");
    EXPECT_EQ(new_group.name + " in " + new_group.parent, "Sports in My Epsxe");
}

}  // namespace
}  // namespace velto::test
