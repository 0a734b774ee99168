// A configuration tree over real files and settings: group a with group b and the configuration one
// in it, b with two and three, an empty group c, and the configuration top outside of all.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "shell/tree/epsxe_tree.h"
#include "support/config_text.h"
#include "support/failing_files.h"
#include "support/fake_editor.h"
#include "support/home_test.h"
#include "support/no_tree_window.h"
#include "support/pages.h"

namespace velto::test {

class TreeEditor : public FakeEditor {
  public:
    std::string GetSelectedConfigName() override { return tree->GetSelectedConfigName(); }
    NodeKind SelectedKind() override { return tree->GetSelectedItem().kind(); }
    NodeKind PreviousKind() override { return tree->GetPreviousItem().kind(); }
    CEpsxeTree* tree = nullptr;
};

class RecordingTreeWindow : public NoTreeWindow {
  public:
    void Selected(const TreeItem& item) override { selected = item; }
    void PostPage(int number) override { page = number; }
    TreeItem selected;
    int page = -1;
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

class TreeHome : public HomeTest {
  protected:
    TreeHome() {
        editor.tree = &tree;
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
    std::size_t CountFiles() { return files->List(environment.ConfigFolder()).value().size(); }

    // A configuration or group, or "configuration/page".
    TreeItem Item(const std::string& text) {
        const auto slash = text.find('/');
        const auto* node = tree.nodes().Find(text.substr(0, slash), NodeKind::Configuration);
        if (node == nullptr) node = tree.nodes().Find(text, NodeKind::Group);
        if (slash == std::string::npos) return {node};
        const auto page = std::find_if(std::begin(kPages), std::end(kPages), [&](const auto& row) {
            return row.text == text.substr(slash + 1);
        });
        return {node, page};
    }
    std::string Selected() {
        const auto item = tree.GetSelectedItem();
        EXPECT_TRUE(item == window.selected);
        return item.page == nullptr ? item.node->text : item.node->text + "/" + item.text();
    }
    std::string Shape() { return ShapeOf(tree.nodes().root()); }
    // As files and settings have it.
    std::string Reread() {
        NoTreeWindow nobody;
        CEpsxeTree fresh(document, nobody, kPages);
        fresh.OnUpdate();
        return ShapeOf(fresh.nodes().root());
    }
    std::string TakeBox() {
        if (boxes.shown.empty()) return {};
        const auto box = boxes.shown.back();
        boxes.shown.clear();
        return box.caption + ": " + box.text;
    }
    // The work with files of which this step fails.
    template <class Work>
    void WithStep(int step, Work work) {
        FailingFiles stepped(*files, step, FailingFiles::At::Fail);
        const auto failing = With(stepped);
        work();
        opened = stepped.opened;
    }

    TreeEditor editor;
    CVeltoDoc document{environment.ConfigFolder(), editor};
    RecordingTreeWindow window;
    CEpsxeTree tree{document, window, kPages};
    const std::string home = "a(b(three two) one) c() top";
    std::vector<std::string> opened;
};

}  // namespace velto::test
