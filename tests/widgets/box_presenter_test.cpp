#include "widgets/box_presenter.h"

#include <QMessageBox>
#include <future>

#include "support/windows.h"

namespace velto::test {
namespace {

using namespace std::chrono_literals;
using platform::BoxAnswer;

platform::MessageBox Question(bool destructive) {
    return {"<b>Go on?</b>", "Cap & tion", platform::BoxIcon::Question, platform::BoxButtons::YesNo,
            destructive};
}

TEST(BoxPresenter, KeysAnswerTheSafeWay) {
    BoxPresenter presenter;
    const struct {
        bool destructive;
        Qt::Key key;  // with Alt, if it is a letter; none closes the box
        BoxAnswer answer;
    } rows[] = {
        {false, Qt::Key_Return, BoxAnswer::Yes}, {true, Qt::Key_Return, BoxAnswer::No},
        {false, Qt::Key_Escape, BoxAnswer::No},  {false, {}, BoxAnswer::No},
        {true, Qt::Key_Y, BoxAnswer::Yes},       {false, Qt::Key_N, BoxAnswer::No},
    };
    for (const auto& row : rows) {
        OnDialog<QMessageBox>([&](auto& box) {
            EXPECT_TRUE(QTest::qWaitForWindowActive(&box));
            const bool letter = row.key < Qt::Key_Escape;
            EXPECT_EQ(box.windowTitle(), "Cap & tion");
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            if (row.key == Qt::Key{}) return box.reject();
            QTest::keyClick(&box, row.key, letter ? Qt::AltModifier : Qt::NoModifier);
            EXPECT_TRUE(QTest::qWaitFor([&] { return !box.isVisible(); }));
        });
        EXPECT_EQ(presenter.Show(Question(row.destructive)), row.answer) << &row - rows;
    }
}

TEST(BoxPresenter, ALongNameIsBroken) {
    OnDialog<QMessageBox>([&](auto& box) {
        EXPECT_LT(box.width(), 1000);
        Click(box, "OK");
    });
    EXPECT_EQ(BoxPresenter().Show({std::string(255, 'm'), "Cap & tion"}), BoxAnswer::Ok);
}

TEST(BoxPresenter, OtherThreadsWaitForItButNeverForWindowsThatClose) {
    auto presenter = std::make_unique<BoxPresenter>();
    const auto ask = [&] {
        return std::async(std::launch::async, [&] { return presenter->Show(Question(true)); });
    };
    OnDialog<QMessageBox>([](auto& box) { Click(box, "Yes"); });
    auto answer = ask();
    EXPECT_TRUE(QTest::qWaitFor([&] { return answer.wait_for(0s) == std::future_status::ready; }));
    EXPECT_EQ(answer.get(), BoxAnswer::Yes);

    testing::internal::CaptureStderr();
    auto waiting = ask();
    EXPECT_EQ(waiting.wait_for(50ms), std::future_status::timeout);
    presenter->Close();
    EXPECT_EQ(waiting.get(), BoxAnswer::No);
    EXPECT_EQ(ask().get(), BoxAnswer::No);
    const std::string line = "Cap & tion: <b>Go on?</b>\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line + line);
    presenter.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "not shown afterwards";
}

}  // namespace
}  // namespace velto::test
