#include "shell/panes/multi_view_splitter_window.h"

#include <gtest/gtest.h>

#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

constexpr const char* kKey = "software\\velto\\SplitterWnd";

// One life of a splitter with another one in its second pane.
struct Life {
    Life() {
        outer.GetPane(0, 0)->setMinimumWidth(40);
        inner.AddView(0, new QWidget);
        outer.LoadState();
        outer.resize(800, 600);
    }
    void Show() {
        outer.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&outer));
    }

    CMultiViewSplitterWindow outer{0, true, new QWidget, nullptr};
    CMultiViewSplitterWindow& inner = *outer.AddNestedSplitter(1, nullptr, new QWidget, false);
};

class SplitterTest : public HomeTest {
  protected:
    void Store(const std::string& text) { SetValue(kKey, "Panes_0", platform::StringValue(text)); }
};

TEST_F(SplitterTest, TheDividerStandsWhereTheStoredTextSays) {
    const std::pair<const char*, int> cases[] = {
        {"-1 200 -1 9", 200},        {" -1\t200 -1 9 ", 200},
        {"-1 0 -1 9", 40},  // what the contents must have
        {"-1 -70 -1 9", 40},         {"0 200 -1 9", 0},
        {"-1 200 0 9", 200},  // hides a row, where there are columns
        {"7 200 -1 9", 200},         {"", 150},
        {"-1 200 -1", 150},          {"-1 200 -1 9 9", 150},
        {"-1 200, -1 9", 150},       {"-1 99999999999 -1 9", 150},
        {"-1 2147483647 -1 9", 150},
    };
    for (const auto& [text, position] : cases) {
        SetValue(kKey, "Panes_0", platform::StringValue(text));
        Life life;
        life.Show();
        EXPECT_EQ(life.outer.sizes()[0], position) << text;
    }
}

TEST_F(SplitterTest, AtFirst150IsTheFirstPanesAndTheRestTheOthers) {
    Life life;
    life.Show();
    for (const int edge : {600, 90, 1000}) {
        life.outer.resize(edge, edge);
        QApplication::processEvents();
        for (const auto* const splitter : {&life.outer, &life.inner}) {
            EXPECT_EQ(splitter->sizes()[0] == 150, edge > 90);
            EXPECT_EQ(splitter->sizes()[0] + splitter->sizes()[1] + splitter->handleWidth(), edge);
        }
    }
}

TEST_F(SplitterTest, MovedDividersComeBackInTheNextLife) {
    auto life = std::make_unique<Life>();
    life->Show();
    QTest::keyClick(life->outer.handle(1), Qt::Key_Right);
    for (const auto key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Left}) {
        QTest::keyClick(life->inner.handle(1), key);
    }
    life->outer.hide();
    const auto stored = "-1 160 -1 " + std::to_string(800 - 160 - life->outer.handleWidth());
    life.reset();
    EXPECT_EQ(StringOf(kKey, "Panes_0"), stored);
    Life next;
    next.Show();
    EXPECT_EQ(next.outer.sizes()[0], 160);
    EXPECT_EQ(next.inner.sizes()[0], 160);
}

TEST_F(SplitterTest, WhatTheUserDidntSeeIsntStored) {
    SetValue(kKey, "Panes_0", platform::StringValue("as it is"));
    { Life never_shown; }
    EXPECT_EQ(StringOf(kKey, "Panes_0"), "as it is");
    // A pane is hidden: what is seen isn't what the other one is to have.
    SetValue(kKey, "Panes_0", platform::StringValue("0 200 -1 -1"));
    { Life().Show(); }
    EXPECT_EQ(StringOf(kKey, "Panes_0"), "0 200 -1 100");
}

TEST_F(SplitterTest, APaneShowsOneOfItsViews) {
    Life life;
    auto* const first = life.inner.GetPane(0, 0);
    auto* const second = new QWidget;
    EXPECT_EQ(life.inner.AddView(0, second), 1);
    life.Show();
    EXPECT_TRUE(second->isVisible() && !first->isVisible()) << "the last one added";
    for (const int index : {-1, -1, 0, 1, 2, -2}) {
        const bool to_first = index == 0 || (index == -1 && second->isVisible());
        life.inner.SwitchView(0, index);
        EXPECT_EQ(life.inner.GetPane(0, 0), to_first ? first : second) << index;
        EXPECT_NE(first->isVisible(), second->isVisible());
    }
}

}  // namespace
}  // namespace velto::test
