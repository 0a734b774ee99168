// A configuration tree over real files and settings: group a with group b and the configuration one
// in it, b with two and three, an empty group c, and the configuration top outside of all.
#pragma once

#include <string>
#include <vector>

#include "shell/panes/panes.h"
#include "shell/tree/epsxe_tree.h"
#include "support/documents.h"
#include "support/failing_files.h"
#include "support/home_test.h"

namespace velto::test {

// The editor's pages, without windows.
inline constexpr PageRow kPages[] = {
    {.number = 0, .of = PageOf::Root},    {.number = 1, .of = PageOf::Configuration},
    {.number = 2, .text = "Graphics"},    {.number = 3, .text = "Sound"},
    {.number = 4, .text = "Cd-Rom/Iso"},  {.number = 5, .text = "NetPlay"},
    {.number = 6, .text = "MemoryCards"}, {.number = 7, .of = PageOf::Group},
    {.number = 8, .text = "GamePad"},
};

class TreeEditor : public FakeEditor {
  public:
    std::string GetSelectedConfigName() override { return tree->GetSelectedConfigName(); }
    NodeKind SelectedKind() override { return tree->GetSelectedItem().kind(); }
    NodeKind PreviousKind() override { return tree->GetPreviousItem().kind(); }
    CEpsxeTree* tree = nullptr;
};

class RecordingTreeWindow : public TreeWindow {
  public:
    void SetTree(const CEpsxeTree& /*tree*/) {}
    void Selected(const TreeItem& item) override { selected = item; }
    void Expand(const TreeNode& /*node*/) override {}
    void PostPage(int number) override { pages.push_back(number); }
    TreeItem Current() const { return selected; }
    TreeItem selected;
    std::vector<int> pages;
};

// Groups are written with their children between brackets.
inline std::string ShapeOf(const TreeNode& node) {
    std::string text;
    for (const auto& child : node.children) {
        EXPECT_EQ(child->parent, &node);
        EXPECT_EQ(node.children[child->row], child);
        text += (text.empty() ? "" : " ") + child->text;
        if (child->kind == NodeKind::Group) text += "(" + ShapeOf(*child) + ")";
    }
    return text;
}

inline std::string TextIn(const std::string& group) {
    return ConfigText(kFileVersion, {"fileGroup = " + group}, {Key::fileGroup});
}

// `Window` takes a tree, has pages, and the item that it shows as the Current one.
template <class Window>
class TreeHomeOf : public HomeTest {
  protected:
    TreeHomeOf() {
        editor.tree = &tree;
        window.SetTree(tree);
        MakeHome();
    }
    void MakeHome() {
        document.settings.SetGroups({"a", "b", "c"}, {"My Epsxe", "a", "My Epsxe"});
        Write("one", "a");
        Write("two", "b");
        Write("three", "b");
        Write("top", "My Epsxe");
        tree.OnUpdate();
    }
    std::string PathOf(const std::string& name) const { return InConfig(name + ".dta"); }
    void Write(const std::string& name, const std::string& group) {
        WriteFile(PathOf(name), TextIn(group));
    }
    std::vector<std::string> FileNames() { return files->List(environment.ConfigFolder()).value(); }

    // A configuration or group, or "configuration/page".
    TreeItem Item(const std::string& text) {
        const auto slash = text.find('/');
        const auto* node = tree.nodes().Find(text.substr(0, slash), NodeKind::Configuration);
        if (node == nullptr) node = tree.nodes().Find(text, NodeKind::Group);
        for (const auto& row : kPages) {
            if (slash != std::string::npos && row.text == text.substr(slash + 1))
                return {node, &row};
        }
        return {node};
    }
    const TreeNode& Node(const std::string& text) { return *Item(text).node; }
    std::string Selected() {
        const auto item = tree.GetSelectedItem();
        EXPECT_TRUE(item == window.Current());
        return item.page == nullptr ? item.node->text : item.node->text + "/" + item.text();
    }
    std::string Shape() { return ShapeOf(tree.nodes().root()); }
    // As files and settings have it.
    std::string Reread() {
        RecordingTreeWindow other;
        CEpsxeTree fresh(document, other, kPages);
        fresh.OnUpdate();
        return ShapeOf(fresh.nodes().root());
    }
    // The one box that was shown since the last look; empty if there was none.
    std::string TakeBox() {
        const auto shown = Shown(boxes);
        EXPECT_LE(shown.size(), 1U);
        return shown.empty() ? "" : shown.back();
    }
    // The work with files of which this step fails; gives the paths of those that were opened.
    template <class Work>
    std::vector<std::string> WithStep(int step, Work work) {
        FailingFiles stepped(*files, step, FailingFiles::At::Fail);
        const auto failing = With(stepped);
        work();
        return stepped.opened;
    }

    TreeEditor editor;
    CVeltoDoc document{environment.ConfigFolder(), editor};
    Window window;
    CEpsxeTree tree{document, window, kPages};
    const std::string home = "a(b(three two) one) c() top";
};

using TreeHome = TreeHomeOf<RecordingTreeWindow>;

}  // namespace velto::test
