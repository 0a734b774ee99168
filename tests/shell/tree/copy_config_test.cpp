#include "shell/tree/copy_config.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/failing_files.h"
#include "support/fake_editor.h"
#include "support/home_test.h"
#include "support/no_tree_window.h"
#include "support/pages.h"

namespace velto::test {
namespace {

using testing::UnorderedElementsAre;

class CopyConfigTest : public HomeTest {
  protected:
    void Select(const std::string& name) {
        editor.selected = name;
        tree.OnUpdate();
        EXPECT_TRUE(tree.SelectByName(name, NodeKind::Configuration));
        boxes.shown.clear();
    }
    bool Copy(const std::string& name) {
        Select(name);
        return OnCopyConfig(document, tree);
    }
    std::vector<std::string> Files() { return files->List(environment.ConfigFolder()).value(); }

    FakeEditor editor;
    CVeltoDoc document{environment.ConfigFolder(), editor};
    NoTreeWindow window;
    CEpsxeTree tree{document, window, kPages};
};

TEST_F(CopyConfigTest, CopiesOverAnOldCopyWithWholeLines) {
    WriteFile(InConfig("Game.dta"), "REGEDIT4\n; fileGroup = My Epsxe\r\n\xE9 no line end");
    WriteFile(InConfig("a copy of game.dta"), "old");
    EXPECT_TRUE(Copy("Game"));
    EXPECT_EQ(ReadFile(InConfig("a copy of game.dta")),
              "REGEDIT4\r\n; fileGroup = My Epsxe\r\n\xE9 no line end\r\n");
    EXPECT_TRUE(Copy("a copy of game"));
    EXPECT_THAT(Files(), UnorderedElementsAre("Game.dta", "a copy of game.dta",
                                              "A copy of a copy of game.dta"));
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(CopyConfigTest, TellsWhyThereIsNoCopy) {
    tree.OnUpdate();
    EXPECT_FALSE(OnCopyConfig(document, tree));
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(boxes.shown[0].text + boxes.shown[0].caption, "No Config selectedNo cfg");

    for (const std::size_t length : {240U, 241U}) {
        const std::string name(length, 'n');
        WriteFile(InConfig(name + ".dta"), "REGEDIT4\r\n");
        EXPECT_EQ(Copy(name), length == 240);
    }
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(boxes.shown[0].text + boxes.shown[0].caption, "Filenme too largename too large");
}

TEST_F(CopyConfigTest, AFailureKeepsTheOldCopy) {
    WriteFile(InConfig("Game.dta"), "REGEDIT4\r\n");
    WriteFile(InConfig("A copy of Game.dta"), "old");
    Select("Game");
    FailingFiles failing(*files, 5, FailingFiles::At::Fail);  // the first write
    const auto failing_scope = With(failing);
    EXPECT_FALSE(OnCopyConfig(document, tree));
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(boxes.shown[0].text, "Unable to copy Game.dta: No space left on device");
    EXPECT_EQ(boxes.shown[0].caption, "Error");
    EXPECT_EQ(ReadFile(InConfig("A copy of Game.dta")), "old");
}

}  // namespace
}  // namespace velto::test
