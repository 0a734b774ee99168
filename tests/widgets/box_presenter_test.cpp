#include "widgets/box_presenter.h"

#include <QMessageBox>
#include <future>

#include <gtest/gtest.h>

#include "support/windows.h"

namespace velto::test {
namespace {

using namespace std::chrono_literals;
using platform::BoxAnswer;
using platform::BoxButtons;
using platform::BoxIcon;

platform::MessageBox Question(bool destructive) {
    return {"<b>Go on?</b>", "Cap & tion", BoxIcon::Question, BoxButtons::YesNo, destructive};
}

TEST(BoxPresenter, KeysAnswerTheSafeWay) {
    BoxPresenter presenter;
    const struct {
        bool destructive;
        std::function<void(QMessageBox&)> act;
        BoxAnswer answer;
    } rows[] = {
        {false, [](auto& box) { QTest::keyClick(&box, Qt::Key_Return); }, BoxAnswer::Yes},
        {true, [](auto& box) { QTest::keyClick(&box, Qt::Key_Return); }, BoxAnswer::No},
        {false, [](auto& box) { QTest::keyClick(&box, Qt::Key_Escape); }, BoxAnswer::No},
        {false, [](auto& box) { box.close(); }, BoxAnswer::No},
        {true, [](auto& box) { QTest::keyClick(&box, Qt::Key_Y, Qt::AltModifier); },
         BoxAnswer::Yes},
        {false, [](auto& box) { QTest::keyClick(&box, Qt::Key_N, Qt::AltModifier); },
         BoxAnswer::No},
    };
    for (const auto& row : rows) {
        OnDialog<QMessageBox>([&](auto& box) {
            EXPECT_TRUE(QTest::qWaitForWindowActive(&box));
            row.act(box);
            EXPECT_TRUE(QTest::qWaitFor([&] { return !box.isVisible(); }));
        });
        EXPECT_EQ(presenter.Show(Question(row.destructive)), row.answer) << &row - rows;
    }
}

TEST(BoxPresenter, ShowsTheTextAsItIsAboveTheDialogInFront) {
    BoxPresenter presenter;
    QDialog dialog;
    QTimer::singleShot(0, &dialog, [&] {
        OnDialog<QMessageBox>([&](auto& box) {
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            EXPECT_EQ(box.text(), "<b>Go on?</b>");
            EXPECT_EQ(box.windowTitle(), "Cap & tion");
            EXPECT_EQ(box.icon(), QMessageBox::Question);
            EXPECT_EQ(box.parent(), &dialog);
        });
        presenter.Show(Question(false));
        OnDialog<QMessageBox>([](auto& box) {
            EXPECT_LT(box.width(), 1000) << "a name without a blank is broken";
            EXPECT_EQ(box.icon(), QMessageBox::Critical);
            Click(box, "OK");
        });
        EXPECT_EQ(presenter.Show({std::string(255, 'm'), "Error"}), BoxAnswer::Ok);
        dialog.accept();
    });
    dialog.exec();
}

TEST(BoxPresenter, AnotherThreadsBoxIsShownOnTheUserInterfaceThread) {
    BoxPresenter presenter;
    OnDialog<QMessageBox>([](auto& box) { Click(box, "Yes"); });
    auto answer = std::async(std::launch::async, [&] { return presenter.Show(Question(true)); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return answer.wait_for(0s) == std::future_status::ready; }));
    EXPECT_EQ(answer.get(), BoxAnswer::Yes);
}

TEST(BoxPresenter, NoThreadWaitsForWindowsThatClose) {
    auto presenter = std::make_unique<BoxPresenter>();
    testing::internal::CaptureStderr();
    auto waiting = std::async(std::launch::async, [&] { return presenter->Show(Question(false)); });
    EXPECT_EQ(waiting.wait_for(50ms), std::future_status::timeout);
    presenter->Close();
    EXPECT_EQ(waiting.get(), BoxAnswer::No);
    auto late = std::async(std::launch::async, [&] { return presenter->Show({"late", "Error"}); });
    EXPECT_EQ(late.get(), BoxAnswer::Ok);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Cap & tion: <b>Go on?</b>\nError: late\n");
    presenter.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "not shown afterwards";
}

}  // namespace
}  // namespace velto::test
