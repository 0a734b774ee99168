#include "shell/tree/epsxe_tree.h"

#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/replace_file.h"
#include "shell/tree/group_rewrite.h"
#include "support/tree_home.h"

namespace velto::test {
namespace {

using platform::BoxAnswer;
using testing::AllOf;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class EpsxeTreeTest : public TreeHome {};

TEST_F(EpsxeTreeTest, IsBuiltFromListsAndFilesHoweverBadTheyAre) {
    for (const auto* name : {"one", "two", "three"}) ASSERT_TRUE(files->Remove(PathOf(name)).ok());
    WriteFile(InConfig("Bare.DTA"), "REGEDIT4\r\n");
    WriteFile(PathOf("last"), "; fileGroup = A\r\nfileGroup\r\n# fileGroup =  B \t\r\n");
    WriteFile(PathOf("none"), "; fileGroup = A\r\n; fileGroup\r\n");
    WriteFile(InConfig("no.dta.txt"), "; fileGroup = A\r\n");
    ASSERT_TRUE(files->MakeFolders(PathOf("folder")).ok());
    Write("in", "A");
    const struct {
        std::vector<std::string> groups, parents;
        std::string shape;
    } cases[] = {
        {{"B", "A", "C", "D"}, {"My Epsxe", "B"}, "B(A(in) C() D() last) Bare none top"},
        {{"A"}, {"My Epsxe", "A", "A"}, "A(in) Bare last none top"},
        {{"A", "B"}, {"B", "A"}, "A(B(last) in) Bare none top"},
        {{"A", "B"}, {"A", "B"}, "A(in) B(last) Bare none top"},
        {{"B", "A", "C", "D"}, {"My Epsxe", "x", "A", "x"}, "A(C() D() in) B(last) Bare none top"},
        {{"B", "A", "A"}, {"My Epsxe", "My Epsxe", "B"}, "A(in) B(A() last) Bare none top"},
        {{"Sound", "A"}, {"My Epsxe", "Sound"}, "Bare last none Sound(A(in)) top"},
        {{"My Epsxe", "A"}, {"My Epsxe", "My Epsxe"}, "Bare last My Epsxe(A(in) top) none"},
    };
    for (const auto& c : cases) {
        document.settings.SetGroups(c.groups, c.parents);
        tree.OnUpdate();
        EXPECT_EQ(Shape(), c.shape);
        EXPECT_EQ(Selected(), "My Epsxe");
    }
    EXPECT_EQ(TakeBox(), "");

    std::vector<std::string> chain = {"My Epsxe"};
    for (int i = 0; i < 40000; ++i) chain.push_back(std::to_string(i));
    document.settings.SetGroups({chain.begin() + 1, chain.end()}, chain);
    tree.OnUpdate();
    EXPECT_NE(tree.nodes().Find("39999", NodeKind::Group), nullptr);
}

TEST_F(EpsxeTreeTest, LoadsOrWarnsByWhereTheSelectionComesFrom) {
    const struct {
        std::string from, to, read;  // the file that is read once the changes are given up
        int page;
    } cases[] = {
        {"one", "two", "two", 1},
        {"one", "two/Cd-Rom/Iso", "two", 4},
        {"one", "one/Graphics", "", 2},
        {"one/Sound", "one", "", 1},
        {"one/Sound", "one/NetPlay", "", 5},
        {"one/Sound", "two/GamePad", "two", 8},
        {"one", "b", "one", 7},
        {"one/GamePad", "My Epsxe", "one", 0},
        {"a", "two", "two", 1},
        {"b", "two/Sound", "two", 3},
        {"a", "b", "", 7},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.from + " -> " + c.to);
        ASSERT_TRUE(tree.Select(Item("one")) && tree.Select(Item(c.from)));
        boxes.answers.clear();
        const bool asks = !c.read.empty();
        document.bios = "changed";
        document.dirty = true;
        EXPECT_EQ(tree.Select(Item(c.to)), !asks);  // answered No
        EXPECT_EQ(Selected(), asks ? c.from : c.to);
        EXPECT_TRUE(document.dirty && document.bios == "changed");
        boxes.answers = {BoxAnswer::Yes};
        WithStep(0, [&] { EXPECT_TRUE(tree.Select(Item(c.to))); });
        EXPECT_EQ(opened, asks ? std::vector{PathOf(c.read)} : std::vector<std::string>());
        EXPECT_EQ(Selected(), c.to);
        EXPECT_EQ(window.page, c.page);
        EXPECT_EQ(boxes.shown.size(), asks ? 2U : 0U);
        boxes.shown.clear();
        document.dirty = false;
    }
    ASSERT_TRUE(tree.Select(Item("two/Sound")));
    EXPECT_EQ(tree.GetSelectedConfigFile(), "two.dta");
    ASSERT_TRUE(tree.SelectByName("b", NodeKind::Group));
    EXPECT_EQ(tree.GetSelectedConfigFile(), "");
    EXPECT_EQ(TakeBox(), "Error: No Configuration has been selected");
    EXPECT_FALSE(tree.SelectByName("b", NodeKind::Configuration));
}

TEST_F(EpsxeTreeTest, AFileThatCantBeReadLeadsBack) {
    ASSERT_TRUE(files->Remove(PathOf("two")).ok());
    for (const auto* from : {"one/Sound", "a", "one"}) {
        ASSERT_TRUE(tree.Select(Item(from)));
        EXPECT_FALSE(tree.Select(Item("two")));
        EXPECT_THAT(TakeBox(), StartsWith("File Not Found: Unable to open two.dta in folder "));
        EXPECT_EQ(Selected(), from);
    }
    ASSERT_TRUE(files->Remove(PathOf("one")).ok());
    EXPECT_FALSE(tree.Select(Item("two/Sound")));
    EXPECT_EQ(Selected(), "one");
    EXPECT_TRUE(tree.Select(Item("three")));
    EXPECT_EQ(document.fileGroup, "b");
}

TEST_F(EpsxeTreeTest, TakesInWhatIsNew) {
    tree.AddGroup("B0", "a");
    EXPECT_EQ(Shape(), "a(b(three two) B0() one) c() top");
    EXPECT_EQ(Selected(), "B0");
    document.settings.SetGroups({"c", "a", "b"}, {"My Epsxe", "My Epsxe"});
    tree.OnUpdate();
    tree.AddGroup("d", "c");
    EXPECT_EQ(Shape(), Reread());
    EXPECT_EQ(Selected(), "d");
    for (const auto* group : {"a", "c"}) {  // the second time in place of the first
        Write("Op", group);
        tree.AddConfiguration("Op", group);
        EXPECT_EQ(Item("Op").node->parent->text, group);
        EXPECT_EQ(Selected(), "Op");
        EXPECT_EQ(document.fileGroup, group);
    }
}

TEST_F(EpsxeTreeTest, RenamesWhatMayBeRenamed) {
    const std::string bad =
        "Invalid Characters: Config names cannot contain any of the following characters, "
        "\\/:?\"<>|;*";
    const std::string reserved = "Error: Illegal Filename.";
    const std::string there =
        "Name Exists: Cannot Rename.  A Configuration with this name already exists";
    const std::string group_there =
        "Group Exists: Cannot Rename.  A group with this name already exists";
    WriteFile(PathOf("New File"), "");  // not in the tree
    const struct {
        std::string item, text, box;
    } refused[] = {
        {"My Epsxe", "x", ""},
        {"one", "", ""},
        {"a", "a*", bad},
        {"one", "My Epsxe", reserved},
        {"one", "ONE", there},
        {"one", "new file", there},
        {"a", "a", group_there},
        {"b", "c", group_there},
        {"one", std::string("n\0l", 3), "Error: Unable to rename one.dta: no name of a file"},
        {"one", std::string(252, 'n'), "Error: Unable to rename one.dta: File name too long"},
    };
    for (const auto& c : refused) {
        EXPECT_FALSE(tree.Rename(Item(c.item), c.text)) << c.text;
        EXPECT_EQ(TakeBox(), c.box);
        EXPECT_EQ(Shape(), home);
    }
    ASSERT_TRUE(files->Rename(PathOf("two"), InConfig("two.DTA")).ok());
    EXPECT_TRUE(tree.Rename(Item("two"), std::string(251, 'n')));
    EXPECT_FALSE(Exists(InConfig("two.DTA")));
    EXPECT_TRUE(Exists(PathOf(std::string(251, 'n'))));
}

TEST_F(EpsxeTreeTest, ARenameKeepsUnsavedChangesInHand) {
    for (const auto* selected : {"two", "two/Sound", "My Epsxe"}) {
        SCOPED_TRACE(selected);
        MakeHome();
        ASSERT_TRUE(tree.Select(Item("two")) && tree.Select(Item(selected)));
        document.bios = "changed";
        document.dirty = true;
        WriteFile(InConfig(kPendingDump), "\r\npending\r\n");
        EXPECT_TRUE(tree.Rename(Item("one"), "one b"));  // not the one in hand
        EXPECT_TRUE(tree.Rename(Item("two"), "two b"));
        EXPECT_TRUE(tree.Rename(Item("b"), "b2"));
        EXPECT_TRUE(document.dirty && document.OnApply());
        EXPECT_THAT(ReadFile(PathOf("two b")), AllOf(HasSubstr("changed"), HasSubstr("pending")));
        EXPECT_EQ(Reread(), "a(b2(three two b) one b) c() top");
        EXPECT_TRUE(files->Remove(PathOf("one b")).ok() && files->Remove(PathOf("two b")).ok());
    }
    EXPECT_EQ(TakeBox(), "");
}

TEST_F(EpsxeTreeTest, ARenamedGroupKeepsAllElseOfItsFilesAndLists) {
    WriteFile(PathOf("one"), "REGEDIT4\n; x = \xE9\r\n; fileGroup = a \r\n[plug]\r\nlast");
    WriteFile(PathOf("other"), "; fileGroup = aa\n");
    document.settings.SetGroups({"a", "b", "c", "a"}, {"My Epsxe", "a", "gone", "b"});
    tree.OnUpdate();
    ASSERT_TRUE(tree.Rename({tree.nodes().root().children[0].get()}, "z"));
    EXPECT_EQ(ReadFile(PathOf("one")),
              "REGEDIT4\r\n; x = \xE9\r\n; fileGroup = z\r\n[plug]\r\nlast");
    EXPECT_EQ(ReadFile(PathOf("other")), "; fileGroup = aa\n");
    EXPECT_TRUE(tree.Rename(Item("c"), "c2"));  // though its own parent isn't there
    EXPECT_THAT(document.settings.GetGroups(), ElementsAre("z", "b", "c2", "a"));
    EXPECT_THAT(document.settings.GetParents(), ElementsAre("My Epsxe", "z", "gone", "b"));
}

// Each file is opened and read to its end; those of group b, three and two, are made and written
// before the next; then all are flushed, renamed one by one, and the folder flushed.
TEST_F(EpsxeTreeTest, ARenameRefusedOrKilledAtAnyStepIsMendedByTheSameRename) {
    // The first letter of the file that is refused; none for files of other groups.
    const std::string_view refused = "---hhhhh---wwwwwhhwh";
    std::string from = "b";
    const auto mend = [&](const std::string& to) {
        for (const auto* name : {"two", "three"}) {
            EXPECT_THAT(ReadFile(PathOf(name)), AnyOf(TextIn(from), TextIn(to)));
        }
        EXPECT_EQ(CountFiles(), 4U);
        EXPECT_TRUE(tree.Rename(Item(from), to));
        EXPECT_EQ(Reread(), "a(" + to + "(three two) one) c() top");
        from = to;
    };
    for (int step = 1; step <= static_cast<int>(refused.size()); ++step) {
        SCOPED_TRACE(step);
        const auto name = std::to_string(step);
        const char file = refused[static_cast<std::size_t>(step - 1)];
        bool renamed = false;
        WithStep(step, [&] { renamed = tree.Rename(Item(from), "r" + name); });
        EXPECT_EQ(renamed, file == '-');
        EXPECT_EQ(TakeBox(), renamed ? ""
                                     : std::string("Error: Unable to rename ") +
                                           (file == 'h' ? "three" : "two") +
                                           ".dta: No space left on device");
        EXPECT_EQ(Shape(), Reread());
        if (renamed) {
            from = "r" + name;
            continue;
        }
        mend("r" + name);

        const pid_t child = fork();
        if (child == 0) {
            FailingFiles stepped(*files, step, FailingFiles::At::Kill);
            const platform::HostScope killing({.files = &stepped, .waiting = &waiting});
            RewriteGroup(ConfigFolder(environment.ConfigFolder()), *Item(from).node, "k" + name);
            _exit(1);  // not killed
        }
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0);
        platform::SweepTemporaries(*files, environment.ConfigFolder());
        tree.OnUpdate();
        mend("k" + name);
    }
    for (const std::size_t stop_at : {2U, 4U}) {
        waiting.stop_at = stop_at;
        EXPECT_FALSE(tree.Rename(Item(from), "x"));
        EXPECT_EQ(ReadFile(PathOf("two")), TextIn(from));
        EXPECT_EQ(CountFiles(), 4U);
    }
    EXPECT_EQ(TakeBox(), "");
}

TEST_F(EpsxeTreeTest, DeletesWhatTheUserConfirms) {
    const std::string file = "Confirm Delete: Are you sure you wish to delete this file?";
    const std::string group =
        "Remove Group?: This action will delete all configurations contained within this group. "
        "\nDo you wish to continue?";
    const struct {
        std::string item, question, left;
    } cases[] = {
        {"two", file, "a(b(three) one) c() top"},
        {"one/Sound", file, "a(b(three)) c() top"},
        {"b", group, "a() c() top"},
        {"My Epsxe", group, ""},
    };
    ASSERT_TRUE(files->Rename(PathOf("three"), InConfig("three.DTA")).ok());
    for (const auto& c : cases) {
        ASSERT_TRUE(tree.Select(Item(c.item)));
        const auto shape = Shape();
        document.dirty = true;
        tree.OnDelete();
        EXPECT_THAT(TakeBox(), StartsWith("Switch view?: "));
        boxes.answers = {BoxAnswer::Yes, BoxAnswer::No};
        tree.OnDelete();
        EXPECT_EQ(TakeBox(), c.question);
        EXPECT_FALSE(document.dirty);
        EXPECT_EQ(Selected(), c.item);
        EXPECT_EQ(Reread(), shape);
        boxes.answers = {BoxAnswer::Yes};
        tree.OnDelete();
        EXPECT_EQ(Shape(), c.left);
        EXPECT_EQ(Selected(), "My Epsxe");
    }
    EXPECT_EQ(CountFiles(), 0U);
    EXPECT_TRUE(document.settings.GetParents().empty());
}

TEST_F(EpsxeTreeTest, WhatTheSystemRefusesIsReportedAndLeavesAgreement) {
    const std::string refusal = " two.dta: No space left on device";
    ASSERT_TRUE(tree.Select(Item("two")));
    WithStep(1, [&] { EXPECT_FALSE(tree.Rename(Item("two"), "new")); });
    EXPECT_EQ(TakeBox(), "Error: Unable to rename" + refusal);
    boxes.answers = {BoxAnswer::Yes, BoxAnswer::Yes};
    WithStep(1, [&] { tree.OnDelete(); });
    EXPECT_EQ(TakeBox(), "Error: Unable to delete" + refusal);
    EXPECT_EQ(Shape(), home);
    ASSERT_TRUE(tree.Select(Item("a")));
    WithStep(2, [&] { tree.OnDelete(); });
    EXPECT_EQ(TakeBox(), "Error: Unable to delete" + refusal);
    EXPECT_EQ(Shape(), "a(b(two) one) c() top");

    struct Locked : FailingFiles {
        using FailingFiles::FailingFiles;
        platform::Result<std::vector<std::string>> List(const std::string& path) override {
            return platform::Error{platform::ErrorKind::Denied, path, "Permission denied"};
        }
        platform::Status Remove(const std::string& path) override { return List(path).error(); }
    } locked(*files, 0, FailingFiles::At::Fail);
    {
        const auto in_locked_folder = With(locked);
        ASSERT_TRUE(tree.Select(Item("a")));
        boxes.answers = {BoxAnswer::Yes};
        tree.OnDelete();
        EXPECT_EQ(TakeBox(), "Error: Unable to delete two.dta: Permission denied");
    }
    tree.OnUpdate();
    EXPECT_EQ(Shape(), "a(b(two) one) c() top");

    ASSERT_TRUE(tree.Select(Item("two")));
    WithStep(1, [&] { EXPECT_FALSE(tree.Drop(*Item("two").node, Item("c"))); });
    EXPECT_EQ(boxes.shown.size(), 1U);
    EXPECT_THAT(TakeBox(), StartsWith("File Not Found: Unable to save settings to two.dta"));
    EXPECT_EQ(document.fileGroup, "b");
    document.dirty = true;
    EXPECT_FALSE(tree.Drop(*Item("one").node, Item("c")));
    EXPECT_EQ(TakeBox(),
              "Changes pending: Unable to move item. You have not saved your current "
              "changes.");
    EXPECT_EQ(Selected(), "two");
    document.dirty = false;
    ASSERT_TRUE(files->Remove(PathOf("one")).ok());
    EXPECT_FALSE(tree.Drop(*Item("one").node, Item("c")));
    EXPECT_FALSE(Exists(PathOf("one")));
    EXPECT_EQ(Shape(), "a(b(two) one) c() top");
}

TEST_F(EpsxeTreeTest, MovesWhatMayBeMoved) {
    const struct {
        std::string dragged, target, shape;  // without a shape nothing moves
        bool shown_as_target;
    } cases[] = {
        {"one", "two/Sound", "", false},
        {"a", "a", "", false},
        {"a", "b", "", false},
        {"My Epsxe", "c", "", false},
        {"one", "a", "a(b(three two) one) c() top", false},
        {"one", "b", "a(b(one three two)) c() top", true},
        {"two", "My Epsxe", "a(b(one three)) c() top two", false},
        {"b", "c", "a() c(b(one three)) top two", true},
        {"a", "b", "c(b(a() one three)) top two", true},
        {"b", "My Epsxe", "b(a() one three) c() top two", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.dragged + " to " + c.target);
        const bool moves = !c.shape.empty();
        const auto shape = moves ? c.shape : Shape();
        auto& dragged = *Item(c.dragged).node;
        EXPECT_EQ(CEpsxeTree::IsDropTarget(dragged, Item(c.target)), c.shown_as_target);
        ASSERT_TRUE(tree.Select(Item("three/Sound")));
        EXPECT_EQ(tree.Drop(dragged, Item(c.target)), moves);
        EXPECT_EQ(Shape(), shape);
        EXPECT_EQ(Reread(), shape);
        const bool selects = moves && dragged.kind == NodeKind::Configuration;
        EXPECT_EQ(Selected(), selects ? c.dragged : "three/Sound");
    }
    EXPECT_EQ(TakeBox(), "");
}

TEST_F(EpsxeTreeTest, AFileOfTheRootsNameIsNeverWrittenWithAnotherRecord) {
    Write("My Epsxe", "My Epsxe");
    tree.OnUpdate();
    tree.Select(Item("one"));
    const auto item = TreeItem{tree.nodes().Find("My Epsxe", NodeKind::Configuration)};
    tree.Select(item);
    EXPECT_EQ(document.NameInHand(), "one");
    EXPECT_FALSE(tree.Drop(*item.node, Item("c")));
    EXPECT_EQ(ReadFile(PathOf("My Epsxe")), TextIn("My Epsxe"));
}

}  // namespace
}  // namespace velto::test
