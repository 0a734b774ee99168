#include "shell/tree/epsxe_tree.h"

#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "platform/replace_file.h"
#include "shell/tree/copy_config.h"
#include "shell/tree/group_rewrite.h"
#include "support/tree_home.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using platform::BoxAnswer;
using namespace testing;

class EpsxeTreeTest : public TreeHome {
  protected:
    // The groups, in which files and settings agree, and what is selected.
    std::string State() {
        EXPECT_EQ(Shape(), Reread());
        return Shape() + " @" + Selected();
    }
    // "show" is a drop on what is shown as a place for it, "keep" a deletion that the user doesn't
    // confirm, "stop" one that he stops.
    bool Do(const std::string& command, const std::string& item, const std::string& to) {
        if (command == "rename") return tree.Rename(Item(item), to);
        if (command == "drop" || command == "show") {
            const bool shown = CEpsxeTree::IsDropTarget(Node(item), Item(to));
            EXPECT_EQ(shown, command == "show");
            return tree.Drop(Node(item), Item(to));
        }
        const auto answer = command == "keep" ? BoxAnswer::No : BoxAnswer::Yes;
        boxes.answers = {answer, answer};
        waiting.stop_at = command == "stop" ? 0 : 9;
        tree.OnDelete();
        return command != "keep";
    }
};

TEST_F(EpsxeTreeTest, IsBuiltFromListsAndFilesHoweverBadTheyAre) {
    for (const auto* name : {"one", "two", "three"}) ASSERT_TRUE(files->Remove(PathOf(name)).ok());
    WriteFile(InConfig("Bare.DTA"), "REGEDIT4\r\n; bios = A");
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
        EXPECT_EQ(State(), c.shape + " @My Epsxe");
    }
    WithStep(5, [&] { tree.OnUpdate(); });  // the third file can't be opened
    EXPECT_EQ(Shape(), "Bare in last My Epsxe(A() top) none");
    EXPECT_EQ(TakeBox(), "");
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
        {"one/Sound", "two/GamePad", "two", 8},
        {"one", "b", "one", 7},
        {"one/GamePad", "My Epsxe", "one", 0},
        {"b", "two/Sound", "two", 3},
        {"a", "b", "", 7},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.from + " -> " + c.to);
        const bool asks = !c.read.empty();
        ASSERT_TRUE(tree.Select(Item("one")) && tree.Select(Item(c.from)));
        document.bios = "changed";
        document.dirty = true;
        boxes.answers = {BoxAnswer::No, BoxAnswer::Yes};
        EXPECT_EQ(tree.Select(Item(c.to)), !asks);
        EXPECT_EQ(Selected(), asks ? c.from : c.to);
        EXPECT_TRUE(document.dirty && document.bios == "changed");
        const auto opened = WithStep(0, [&] { EXPECT_TRUE(tree.Select(Item(c.to))); });
        EXPECT_EQ(opened, asks ? std::vector{PathOf(c.read)} : std::vector<std::string>());
        EXPECT_EQ(Selected(), c.to);
        EXPECT_EQ(window.pages.back(), c.page);
        EXPECT_THAT(Shown(boxes), SizeIs(asks ? 2 : 0));
        document.dirty = false;
    }
    EXPECT_EQ(tree.GetSelectedConfigFile(), "");
    EXPECT_EQ(TakeBox(), "Error: No Configuration has been selected");
    ASSERT_TRUE(tree.SelectByName("two", NodeKind::Configuration));
    EXPECT_EQ(tree.GetSelectedConfigFile(), "two.dta");
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

// Each row begins with what the one before has left, and with the item to delete or three/Sound
// selected.
TEST_F(EpsxeTreeTest, DoesWhatMayBeDoneAndTellsWhyNot) {
    ASSERT_TRUE(files->Rename(PathOf("two"), InConfig("two.DTA")).ok());
    const std::string longest(251, 'z');
    const std::string bad =
        "Invalid Characters: Config names cannot contain any of the following characters, "
        "\\/:?\"<>|;*";
    const std::string there =
        "Name Exists: Cannot Rename.  A Configuration with this name already exists";
    const std::string group_there =
        "Group Exists: Cannot Rename.  A group with this name already exists";
    const std::string pending =
        "Changes pending: Unable to move item. You have not saved your current changes.";
    const std::string lost =
        "Switch view?: Warning: This action will cause your current changes to be lost.  Do you "
        "wish to continue?";
    const std::string file = "Confirm Delete: Are you sure you wish to delete this file?";
    const std::string group =
        "Remove Group?: This action will delete all configurations contained within this group. "
        "\nDo you wish to continue?";
    const std::string full = ".dta: No space left on device";
    const auto stays = "Error: Unable to delete three" + full;
    const struct {
        std::string command, item, to;
        std::vector<std::string> told;
        std::string state{};   // empty: nothing changes
        int failing_step = 0;  // of those on files
        bool dirty = false;
    } rows[] = {
        {"rename", "My Epsxe", "x", {}},
        {"rename", "one/Sound", "x", {}},
        {"rename", "one", "", {}},
        {"rename", "a", "a*", {bad}},
        {"rename", "one", "My Epsxe", {"Error: Illegal Filename."}},
        {"rename", "one", "ONE", {there}},
        {"rename", "one", "TWO", {there}},
        {"rename", "a", "a", {group_there}},
        {"rename", "b", "c", {group_there}},
        {"rename", "one", "n\0l"s, {"Error: Unable to rename one.dta: no name of a file"}},
        {"rename", "one", longest + 'z', {"Error: Unable to rename one.dta: File name too long"}},
        {"rename", "one", "x", {"Error: Unable to rename one" + full}, "", 1},
        {"rename", "two", longest, {}, "a(b(three " + longest + ") one) c() top @three/Sound"},
        {"rename", longest, "two", {}, home + " @three/Sound"},
        {"drop", "one", "two/Sound", {}},
        {"drop", "a", "a", {}},
        {"drop", "a", "b", {}},
        {"drop", "My Epsxe", "c", {}},
        {"show", "one", "c", {pending}, "", 0, true},
        {"drop", "one", "a", {}, home + " @one"},
        {"show", "one", "b", {}, "a(b(one three two)) c() top @one"},
        {"drop", "two", "My Epsxe", {}, "a(b(one three)) c() top two @two"},
        {"show", "b", "c", {}, "a() c(b(one three)) top two @three/Sound"},
        {"show", "a", "b", {}, "c(b(a() one three)) top two @three/Sound"},
        {"drop", "b", "My Epsxe", {}, "b(a() one three) c() top two @three/Sound"},
        {"keep", "two", "", {file}},
        {"keep", "two", "", {lost}, "", 0, true},
        {"delete", "two", "", {lost, file}, "b(a() one three) c() top @My Epsxe", 0, true},
        {"delete", "one/Sound", "", {file}, "b(a() three) c() top @My Epsxe"},
        {"delete", "three", "", {file, stays}, "b(a() three) c() top @My Epsxe", 1},
        {"keep", "b", "", {group}},
        {"stop", "My Epsxe", "", {group}, "b(three) c() top @My Epsxe"},
        {"delete", "b", "", {group, stays}, "b(three) c() top @My Epsxe", 1},
        {"delete", "b", "", {group}, "c() top @My Epsxe"},
        {"delete", "My Epsxe", "", {group}, " @My Epsxe"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.command + " " + row.item + " " + row.to);
        const bool of_selected = row.to.empty() && row.command != "rename";
        tree.Select(Item(of_selected ? row.item : "three/Sound"));
        const auto before = State();
        document.dirty = row.dirty;
        bool done = false;
        WithStep(row.failing_step, [&] { done = Do(row.command, row.item, row.to); });
        EXPECT_EQ(done, !row.state.empty());
        EXPECT_EQ(State(), row.state.empty() ? before : row.state);
        EXPECT_EQ(document.dirty, row.dirty && row.state.empty());
        EXPECT_EQ(Shown(boxes), row.told);
        document.dirty = false;
    }
    EXPECT_THAT(FileNames(), SizeIs(0));
    EXPECT_EQ(waiting.begun.back().what, "Deleting group My Epsxe");
    EXPECT_TRUE(waiting.begun.back().can_stop);
    EXPECT_EQ(waiting.told.back().total, 1U);
}

TEST_F(EpsxeTreeTest, TakesInWhatIsNew) {
    tree.AddGroup("B0", "a");
    EXPECT_EQ(Shape(), "a(b(three two) B0() one) c() top");
    document.settings.SetGroups({"c", "a", "b"}, {"My Epsxe", "My Epsxe"});
    tree.OnUpdate();
    tree.AddGroup("d", "c");
    EXPECT_THAT(State(), EndsWith(" @d"));
    for (const auto* group : {"a", "c"}) {  // the second time in place of the first
        Write("Op", group);
        tree.AddConfiguration("Op", group);
        EXPECT_EQ(Node("Op").parent->text + Selected() + document.fileGroup, group + "Op"s + group);
    }
    const std::string wide(600'000, 'w');
    tree.AddGroup(wide, "My Epsxe");
    EXPECT_TRUE(tree.Drop(Node("d"), Item(wide)));
    EXPECT_FALSE(tree.Drop(Node("a"), Item(wide))) << "no list takes that name twice";
    ASSERT_TRUE(tree.Select(Item("d")));
    EXPECT_FALSE(tree.Rename(Item("d"), wide + "2"));
    EXPECT_THAT(State(), EndsWith(" @My Epsxe"));
    EXPECT_EQ(TakeBox(), "");
}

TEST_F(EpsxeTreeTest, WhatStaysInHandIsAsItsFileHasIt) {
    const auto by_another_program = [&](const std::string& bios) {
        WriteFile(PathOf("two"), ConfigText(kFileVersion, {"fileGroup = b", "bios = " + bios}));
    };
    ASSERT_TRUE(tree.Select(Item("two")));
    by_another_program("theirs");
    EXPECT_TRUE(tree.Drop(Node("two"), Item("c")));
    EXPECT_THAT(ReadFile(PathOf("two")), HasSubstr("; bios = theirs\r\n"));
    ASSERT_TRUE(files->Remove(PathOf("one")).ok());
    for (const auto* command : {"keep", "select one"}) {
        by_another_program(command);
        ASSERT_TRUE(tree.Select(Item("two/Sound")));
        document.bios = "given up";
        document.dirty = true;
        boxes.answers = {BoxAnswer::Yes, BoxAnswer::No};
        if (command == "keep"s) {
            tree.OnDelete();
        } else {
            EXPECT_FALSE(tree.Select(Item("one")));
        }
        EXPECT_EQ(Selected() + " " + document.bios, "two/Sound "s + command);
        EXPECT_FALSE(document.dirty);
    }
}

TEST_F(EpsxeTreeTest, WhatIsRefusedLeavesAgreement) {
    ASSERT_TRUE(tree.Select(Item("two")));
    WithStep(9, [&] { EXPECT_FALSE(tree.Drop(Node("two"), Item("c"))); });
    EXPECT_THAT(TakeBox(), StartsWith("File Not Found: Unable to save settings to two.dta"));
    EXPECT_EQ(document.fileGroup, "b");

    struct LockedFolder : FailingFiles {
        using FailingFiles::FailingFiles;
        platform::Result<std::vector<std::string>> List(const std::string& path) override {
            return platform::Error{platform::ErrorKind::Denied, path, "Permission denied"};
        }
        platform::Status Remove(const std::string& path) override { return List(path).error(); }
    } locked(*files, 0, FailingFiles::At::Fail);
    {
        const auto in_locked_folder = With(locked);
        EXPECT_FALSE(tree.Rename(Item("b"), "new"));
        EXPECT_EQ(TakeBox(), "Error: Unable to rename config: Permission denied");
        ASSERT_TRUE(tree.Select(Item("a")));
        Do("delete", "", "");
        EXPECT_EQ(Shown(boxes).back(), "Error: Unable to delete three.dta: Permission denied");
    }
    tree.OnUpdate();
    ASSERT_TRUE(tree.Select(Item("one")) && tree.Select(Item("a")));
    ASSERT_TRUE(files->Remove(PathOf("one")).ok());
    EXPECT_FALSE(tree.Drop(Node("one"), Item("c"))) << "though it is in hand";
    Write("My Epsxe", "My Epsxe");  // can't be loaded, and so not be saved either
    tree.OnUpdate();
    EXPECT_EQ(Shape(), "a(b(three two)) c() My Epsxe top");
    EXPECT_FALSE(tree.Drop(*tree.nodes().root().children[2], Item("c")));
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
        EXPECT_THAT(FileNames(), SizeIs(4));
        EXPECT_TRUE(tree.Rename(Item(from), to));
        EXPECT_EQ(Reread(), "a(" + to + "(three two) one) c() top");
        from = to;
    };
    for (int step = 1; step <= static_cast<int>(refused.size()); ++step) {
        SCOPED_TRACE(step);
        const auto to = "r" + std::to_string(step);
        const char file = refused[static_cast<std::size_t>(step - 1)];
        WithStep(step, [&] { EXPECT_EQ(tree.Rename(Item(from), to), file == '-'); });
        EXPECT_EQ(Shape(), Reread());
        if (file == '-') {
            from = to;
            continue;
        }
        EXPECT_EQ(TakeBox(), std::string("Error: Unable to rename ") +
                                 (file == 'h' ? "three" : "two") + ".dta: No space left on device");
        mend(to);

        const pid_t child = fork();
        if (child == 0) {
            FailingFiles stepped(*files, step, FailingFiles::At::Kill);
            const auto killing = With(stepped);
            RewriteGroup(document.configDir, Node(from), "k" + to);
            _exit(1);  // not killed
        }
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0);
        platform::SweepTemporaries(*files, environment.ConfigFolder());
        tree.OnUpdate();
        mend("k" + to);
    }
    for (const std::size_t stop_at : {2U, 4U}) {
        waiting.stop_at = stop_at;
        EXPECT_FALSE(tree.Rename(Item(from), "x"));
        EXPECT_EQ(ReadFile(PathOf("two")), TextIn(from));
        EXPECT_THAT(FileNames(), SizeIs(4));
        EXPECT_EQ(waiting.begun.back().what, "Renaming group " + from);
        EXPECT_TRUE(waiting.begun.back().can_stop);
        EXPECT_EQ(waiting.told.back().done, stop_at);
    }
    EXPECT_EQ(TakeBox(), "");
}

TEST_F(EpsxeTreeTest, ACopyIsWholeAndTakesThePlaceOfAnOldOne) {
    const auto copy = [this] { return OnCopyConfig(document, tree); };
    EXPECT_FALSE(copy());
    EXPECT_EQ(TakeBox(), "No cfg: No Config selected");
    ASSERT_TRUE(tree.Select(Item("one")));
    WriteFile(PathOf("one"), "REGEDIT4\n; fileGroup = a\r\n\xE9 no line end");
    WriteFile(InConfig("a copy of one.dta"), "old");
    WithStep(5, [&] { EXPECT_FALSE(copy()); });  // the first write
    EXPECT_EQ(TakeBox(), "Error: Unable to copy one.dta: No space left on device");
    EXPECT_EQ(ReadFile(InConfig("a copy of one.dta")), "old");
    EXPECT_TRUE(copy());
    EXPECT_EQ(ReadFile(InConfig("a copy of one.dta")),
              "REGEDIT4\r\n; fileGroup = a\r\n\xE9 no line end\r\n");
    EXPECT_THAT(FileNames(), SizeIs(5));
    for (const std::size_t length : {240U, 241U}) {
        const std::string name(length, 'n');
        Write(name, "a");
        tree.AddConfiguration(name, "a");
        EXPECT_EQ(copy(), length == 240);
    }
    EXPECT_EQ(TakeBox(), "name too large: Filenme too large");
}

}  // namespace
}  // namespace velto::test
