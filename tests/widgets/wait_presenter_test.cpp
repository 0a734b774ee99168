#include "widgets/wait_presenter.h"

#include <QMessageBox>
#include <QProgressBar>
#include <future>

#include <gtest/gtest.h>

#include "support/windows.h"
#include "widgets/box_presenter.h"

namespace velto::test {
namespace {

using namespace std::chrono_literals;

class WaitPresenterTest : public testing::Test {
  protected:
    WaitPresenterTest() {
        below.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&below));
    }
    static QWidget* Shown() { return QApplication::activeModalWidget(); }

    QLineEdit below;
    WaitPresenter presenter;
};

TEST_F(WaitPresenterTest, ShowsWhatTakesItsTimeAndHowFarItIs) {
    for (int times = 0; times < 2; ++times) {
        const auto wait = presenter.Begin({.what = "Deleting <b>" + std::string(255, 'm')});
        EXPECT_TRUE(wait->Continue());
        EXPECT_EQ(Shown(), nullptr) << "other work has its own time";
        QTest::qSleep(320);
        EXPECT_TRUE(wait->Continue());
        ASSERT_NE(Shown(), nullptr);
        EXPECT_EQ(Shown()->parent(), &below);
        EXPECT_LT(Shown()->width(), 1000);
        EXPECT_TRUE(Shown()->findChild<QLabel*>()->text().startsWith("Deleting <b>m"));
        EXPECT_EQ(Shown()->findChild<QPushButton*>(), nullptr);
        const auto* const bar = Shown()->findChild<QProgressBar*>();
        EXPECT_EQ(bar->maximum(), 0) << "busy";
        EXPECT_TRUE(wait->Continue({{3, 4}}));
        EXPECT_EQ(bar->value() * 4, bar->maximum() * 3);
        EXPECT_TRUE(wait->Continue({{5, 0}}));
        QTest::keyClick(Shown(), Qt::Key_Escape);
        Shown()->close();
        EXPECT_TRUE(wait->Continue() && Shown() != nullptr) << "nobody can stop it";
    }
    EXPECT_EQ(Shown(), nullptr);
}

TEST_F(WaitPresenterTest, StopsByButtonAndKeysAsOftenAsTheUserAsks) {
    const auto wait = presenter.Begin({.what = "Waiting", .can_stop = true, .shown_after = 0ms});
    QTest::qSleep(5);
    EXPECT_TRUE(wait->Continue());
    ASSERT_NE(Shown(), nullptr);
    // In the other program's place is nobody: the window takes the focus.
    EXPECT_TRUE(QTest::qWaitFor([&] { return wait->Continue() && Shown()->isActiveWindow(); }));
    const std::function<void()> ways[] = {
        [] { Click(*Shown(), "Stop"); },
        [] { QTest::keyClick(Shown()->focusWidget(), Qt::Key_Space); },
        [] { QTest::keyClick(Shown(), Qt::Key_Escape); },
        [] { Shown()->close(); },
    };
    for (const auto& stop : ways) {
        stop();
        EXPECT_FALSE(wait->Continue());
        EXPECT_TRUE(wait->Continue());
    }
    QTest::mouseClick(below.windowHandle(), Qt::LeftButton);
    QTest::keyClick(below.windowHandle(), Qt::Key_X);
    EXPECT_EQ(below.text(), "") << "nothing reaches the windows below";
    BoxPresenter boxes;
    OnDialog<QMessageBox>([box_below = Shown()](auto& box) {
        EXPECT_EQ(box.parent(), box_below);
        Click(box, "OK");
    });
    boxes.Show({"in front", "Error"});
}

TEST_F(WaitPresenterTest, ShowsNothingOnOtherThreadsAndWhileWindowsClose) {
    const auto waits = [this] {
        const auto wait = presenter.Begin({.what = "Waiting", .shown_after = 0ms});
        QTest::qSleep(5);
        return wait->Continue() && Shown() == nullptr;
    };
    EXPECT_TRUE(std::async(std::launch::async, waits).get());
    presenter.Close();
    EXPECT_TRUE(waits());
}

}  // namespace
}  // namespace velto::test
