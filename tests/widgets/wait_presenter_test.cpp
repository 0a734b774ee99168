#include "widgets/wait_presenter.h"

#include <QMessageBox>
#include <QProgressBar>
#include <future>

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
        EXPECT_EQ(Shown(), nullptr) << "each piece of work has its own time";
        QTest::qSleep(320);
        EXPECT_TRUE(wait->Continue());
        ASSERT_NE(Shown(), nullptr);
        EXPECT_EQ(Shown()->parent(), &below);
        EXPECT_LT(Shown()->width(), 1000);
        EXPECT_TRUE(Shown()->findChild<QLabel*>()->text().startsWith("Deleting <b>m"));
        const auto* const bar = Shown()->findChild<QProgressBar*>();
        EXPECT_EQ(bar->maximum(), 0) << "busy";
        EXPECT_TRUE(wait->Continue({{3, 4}}));
        EXPECT_EQ(bar->value() * 4, bar->maximum() * 3);
        QTest::keyClick(Shown(), Qt::Key_Escape);
        EXPECT_EQ(Shown()->findChild<QPushButton*>(), nullptr);
        EXPECT_TRUE(wait->Continue({{5, 0}}) && Shown() != nullptr) << "nobody can stop it";
    }
    EXPECT_EQ(Shown(), nullptr);
    const auto is_silent = [this] {
        const auto wait = presenter.Begin({.what = "Waiting", .shown_after = 0ms});
        return wait->Continue() && Shown() == nullptr;
    };
    EXPECT_TRUE(std::async(std::launch::async, is_silent).get()) << "on another thread";
    presenter.Close();
    EXPECT_TRUE(is_silent());
}

TEST_F(WaitPresenterTest, StopsByButtonAndKeysAsOftenAsTheUserAsks) {
    const auto wait = presenter.Begin({.what = "Waiting", .can_stop = true, .shown_after = 0ms});
    EXPECT_TRUE(wait->Continue());
    ASSERT_NE(Shown(), nullptr);
    // No other program has the focus.
    EXPECT_TRUE(QTest::qWaitFor([&] { return wait->Continue() && Shown()->isActiveWindow(); }));
    const std::function<void()> ways[] = {
        [] { QTest::keyClick(Shown()->focusWidget(), Qt::Key_Space); },
        [] { QTest::keyClick(Shown(), Qt::Key_Escape); },
        [] { Shown()->close(); },
    };
    for (const auto& stop : ways) {
        stop();
        EXPECT_FALSE(wait->Continue());
        EXPECT_TRUE(wait->Continue());
    }
    QTest::keyClick(below.windowHandle(), Qt::Key_X);
    EXPECT_EQ(below.text(), "") << "nothing reaches the windows below";
    OnDialog<QMessageBox>([wait_window = Shown()](auto& box) {
        EXPECT_EQ(box.parent(), wait_window);
        box.accept();
    });
    BoxPresenter().Show({"in front", "Error"});
}

}  // namespace
}  // namespace velto::test
