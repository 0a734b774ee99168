#include "shell/panes/multi_view_splitter_window.h"

#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

constexpr const char* kKey = "software\\velto\\SplitterWnd";

// One life of a splitter with another one in its second pane.
struct Life {
    explicit Life(bool shown = true) {
        outer.GetPane(0, 0)->setMinimumWidth(40);
        inner.AddView(0, first);
        outer.LoadState();
        outer.resize(800, 600);
        if (!shown) return;
        outer.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&outer));
    }

    CMultiViewSplitterWindow outer{0, true, new QWidget, nullptr};
    CMultiViewSplitterWindow& inner = *outer.AddNestedSplitter(1, nullptr, new QWidget, false);
    QWidget* const first = new QWidget;
};

class SplitterTest : public HomeTest {
  protected:
    void Store(const std::string& text) { SetValue(kKey, "Panes_0", platform::StringValue(text)); }
};

TEST_F(SplitterTest, TheDividerStandsWhereTheStoredTextSays) {
    const std::pair<const char*, int> cases[] = {
        {" -1\t200 -1 9 ", 200}, {"-1 -70 -1 9", 40},          {"0 200 -1 9", 0},
        {"-1 200 0 9", 200},  // hides a row, where there are columns
        {"7 200 -1 9", 200},     {"-1 200 -1", 150},           {"-1 200 -1 9 9", 150},
        {"-1 200, -1 9", 150},   {"-1 99999999999 -1 9", 150}, {"-1 2147483647 -1 9", 150},
    };
    for (const auto& [text, position] : cases) {
        Store(text);
        EXPECT_EQ(Life().outer.sizes()[0], position) << text;
    }
}

TEST_F(SplitterTest, MovedDividersComeBackInTheNextLife) {
    std::string stored;
    {
        const Life life;
        QTest::keyClick(life.outer.handle(1), Qt::Key_Right);
        for (const auto key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Left}) {
            QTest::keyClick(life.inner.handle(1), key);
        }
        stored = "-1 160 -1 " + std::to_string(800 - 160 - life.outer.handleWidth());
    }
    EXPECT_EQ(StringOf(kKey, "Panes_0"), stored);
    Life next;
    EXPECT_EQ(next.outer.sizes()[0], 160);
    EXPECT_EQ(next.inner.sizes()[0], 160);
    next.inner.AddView(0, new QWidget);
    next.inner.SwitchView(0, 0);
    EXPECT_TRUE(next.inner.GetPane(0, 0) == next.first && next.first->isVisible());
    next.inner.SwitchView(0, -1);
    EXPECT_TRUE(next.inner.GetPane(0, 0) != next.first && !next.first->isVisible());

    // What the user didn't see isn't stored: no life without a window, no pane beside a hidden one.
    for (const auto& [text, shown, kept] : {std::tuple("as it is", false, "as it is"),
                                            std::tuple("0 200 -1 -1", true, "0 200 -1 100")}) {
        Store(text);
        { const Life life(shown); }
        EXPECT_EQ(StringOf(kKey, "Panes_0"), kept);
    }
}

}  // namespace
}  // namespace velto::test
