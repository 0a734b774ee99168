#include "shell/main_frame_window.h"

#include <QCheckBox>
#include <QElapsedTimer>
#include <QKeySequence>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <future>
#include <optional>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/instance.h"
#include "shell/frame_dialog.h"
#include "shell/tree/new_config_dialog.h"
#include "support/config_text.h"
#include "support/home_test.h"
#include "support/windows.h"
#include "widgets/wait_presenter.h"

namespace velto::test {
namespace {

using platform::BoxAnswer;

class MainFrameWindowTest : public HomeTest {
  protected:
    MainFrameWindowTest() {
        setenv("XDG_RUNTIME_DIR", home_folder.path().c_str(), 1);
        instance = platform::MakeInstanceService(environment.program, home_folder.path());
        auto with = services;
        with.instance = instance.get();
        with_instance.emplace(with);
        EXPECT_TRUE(instance->Acquire().value());
        CVeltoSettings().SetEmulatorPath("C:\\emu\\epsxe.exe");
        WriteFile(InConfig("Game.dta"), ConfigText(kFileVersion));
        WriteFile(InConfig("Other.dta"), ConfigText(kFileVersion));
    }
    ~MainFrameWindowTest() override {
        launch.StopTelling();
        window.reset();
        launch.Wait();
        unsetenv("XDG_RUNTIME_DIR");
    }

    // The editor as it starts.
    void Open() {
        window = std::make_unique<CMainFrameWindow>(environment.ConfigFolder(), catalogue, launch,
                                                    [this] { return has_tray; });
        window->Start([this] { closed = true; });
        QTest::qWait(kSettleMs);
    }
    // Steps to the first configuration and changes it.
    void Edit() {
        Press(Tree(), Qt::Key_Down);
        Type(CommandLine(), "-edited");
        EXPECT_TRUE(Button(*window, "Apply Settings").isEnabled());
    }
    bool IsSaved() {
        return ReadFile(InConfig("Game.dta")).find("commandLine = -edited\r\n") !=
               std::string::npos;
    }
    static void Press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers with = {}) {
        QTest::keyClick(&widget, key, with);
        QTest::qWait(kSettleMs);
    }
    QTreeView& Tree() { return *window->findChild<QTreeView*>(); }
    QLineEdit& CommandLine() { return FieldOf(*window, "Command Line"); }
    QAction& Entry(const QString& text) {
        for (auto* const action : window->findChildren<QAction*>()) {
            if (Read(action->text()) == text) return *action;
        }
        throw std::runtime_error("no entry " + text.toStdString());
    }

    static constexpr int kSettleMs = 20;  // for what waits until an event has been handled
    std::unique_ptr<platform::InstanceService> instance;
    std::optional<platform::HostScope> with_instance;
    CPluginCatalogue catalogue;
    LaunchCycle launch{[this] { window->PostRunEnded(); }};
    bool has_tray = true;
    bool closed = false;
    std::unique_ptr<CMainFrameWindow> window;
};

TEST_F(MainFrameWindowTest, ChangesAreKeptSavedOrGivenUpButNeverLostUnasked) {
    Open();
    Edit();
    window->close();
    EXPECT_TRUE(window->isVisible()) << "No keeps the program, and its changes";
    EXPECT_EQ(boxes.shown.back().caption, "Save and exit");

    Press(Tree(), Qt::Key_Down);
    EXPECT_EQ(boxes.shown.back().caption, "Switch view?");
    EXPECT_EQ(Tree().currentIndex().data().toString(), "Game");
    EXPECT_EQ(CommandLine().text(), "-edited");

    Click(*window, "Reset Settings");
    EXPECT_NE(CommandLine().text(), "-edited");
    EXPECT_FALSE(Button(*window, "Apply Settings").isEnabled());
    Type(CommandLine(), "-edited");
    Click(*window, "Apply Settings");
    EXPECT_TRUE(IsSaved());
    EXPECT_FALSE(Button(*window, "Reset Settings").isEnabled());

    Type(CommandLine(), "-given up");
    boxes.answers = {BoxAnswer::Yes};
    Press(Tree(), Qt::Key_Down);
    EXPECT_EQ(Tree().currentIndex().data().toString(), "Other");
    Type(CommandLine(), "-at the exit");
    boxes.answers = {BoxAnswer::Yes};
    window->close();
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(IsSaved());
    EXPECT_NE(ReadFile(InConfig("Other.dta")).find("-at the exit"), std::string::npos);
}

TEST_F(MainFrameWindowTest, EachCommandThatWouldLoseChangesAsksForThem) {
    Open();
    const std::function<void()> commands[] = {
        [&] { Entry("New Configuration").trigger(); },
        [&] { Entry("Delete Config/Group").trigger(); },
        [&] { Press(Tree(), Qt::Key_Home); },
        [&] {
            auto answer =
                std::async(std::launch::async, [&] { return instance->HandOver("Other"); });
            EXPECT_TRUE(QTest::qWaitFor([&] {
                return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
            }));
        },
    };
    for (const auto& command : commands) {
        Press(Tree(), Qt::Key_Home);
        Edit();
        for (const bool given_up : {false, true}) {
            boxes.shown.clear();
            boxes.answers = {given_up ? BoxAnswer::Yes : BoxAnswer::No};
            if (given_up && &command == &commands[0]) {
                OnDialog<CNewConfigDialog>([](auto& dialog) { Press(dialog, Qt::Key_Escape); });
            }
            command();
            QTest::qWait(kSettleMs);
            ASSERT_FALSE(boxes.shown.empty());
            EXPECT_TRUE(boxes.shown.front().yes_is_destructive);
            EXPECT_EQ(Button(*window, "Apply Settings").isEnabled(), !given_up);
            EXPECT_TRUE(given_up || CommandLine().text() == "-edited");
        }
        EXPECT_FALSE(IsSaved());
    }
    EXPECT_TRUE(files->Info(InConfig("Game.dta")).ok());
    EXPECT_EQ(Tree().currentIndex().data().toString(), "Other");
}

TEST_F(MainFrameWindowTest, AnExitWithoutChangesAsksInItsOwnDialog) {
    Open();
    OnDialog<CExitDialog>([](auto& dialog) {
        Click(dialog, "Do not ask this question in the future.");
        Press(dialog, Qt::Key_Escape);
    });
    window->close();
    EXPECT_TRUE(window->isVisible());
    window->resize(700, 500);
    OnDialog<CExitDialog>([](auto& dialog) { Press(dialog, Qt::Key_Return); });
    Entry("Exit").trigger();
    EXPECT_TRUE(QTest::qWaitFor([&] { return closed; }));
    EXPECT_TRUE(CVeltoSettings().ShouldConfirmExit());
    EXPECT_EQ(CVeltoSettings().GetWindowSize().cx, 700U);
}

TEST_F(MainFrameWindowTest, KeysCreateConfigurationsAndGroups) {
    Open();
    OnDialog<CNewConfigDialog>([](auto& dialog) {
        Type(FieldOf(dialog, "Name"), "Fresh");
        Press(dialog, Qt::Key_Return);
    });
    Press(*window, Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(Tree().currentIndex().data().toString(), "Fresh");
    EXPECT_TRUE(files->Info(InConfig("Fresh.dta")).ok());

    boxes.answers = {BoxAnswer::Yes};
    CommandLine().setFocus();
    Press(CommandLine(), Qt::Key_Delete);
    EXPECT_TRUE(files->Info(InConfig("Fresh.dta")).ok()) << "the key is the field's there";
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    Tree().setFocus();
    Press(Tree(), Qt::Key_Delete);
    EXPECT_FALSE(files->Info(InConfig("Fresh.dta")).ok());
}

TEST_F(MainFrameWindowTest, ALabelBeingEditedIsDoneWithBeforeACommandAsks) {
    Open();
    Press(Tree(), Qt::Key_Down);
    Press(Tree(), Qt::Key_F2);
    Entry("Delete Config/Group").trigger();
    QTest::qWait(kSettleMs);
    ASSERT_EQ(boxes.shown.size(), 2U);
    EXPECT_EQ(boxes.shown[0].caption, "Name Exists");
    EXPECT_EQ(boxes.shown[1].caption, "Confirm Delete");
}

TEST_F(MainFrameWindowTest, TheUsersSetUpComesBackWhileTheEditorStaysAlive) {
    WriteFile(InConfig("Game.dta"), ConfigText(kFileVersion, {"commandLine = -stay 700"}));
    CVeltoSettings().SetEmulatorPath(BinaryFolder() + "/demo-emulator");
    SetValue(kEmulatorConfigKey, "BiosName", platform::StringValue("the user's"));
    Open();
    Press(Tree(), Qt::Key_Down);
    Click(*window, "Launch Epsxe");
    EXPECT_EQ(launch.Running(), "Game");
    EXPECT_NE(StringOf(kEmulatorConfigKey, "BiosName"), "the user's");
    const auto shows = [&](const QString& text) {
        const auto labels = window->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [&](const auto* label) {
            return label->isVisible() && label->text() == text;
        });
    };
    EXPECT_TRUE(shows("Running: Game"));
    Click(*window, "Launch Epsxe");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !shows("Running: Game"); }, 20000));
    EXPECT_EQ(StringOf(kEmulatorConfigKey, "BiosName"), "the user's");
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(MainFrameWindowTest, BarsFollowTheirTogglesAndTheNextStart) {
    Open();
    auto* const tool_bar = window->findChild<QToolBar*>();
    EXPECT_TRUE(tool_bar->isVisible());
    Entry("ToolBar").trigger();
    Entry("Status Bar").trigger();
    EXPECT_FALSE(tool_bar->isVisible());
    Open();
    EXPECT_FALSE(window->findChild<QToolBar*>()->isVisible());
    EXPECT_FALSE(window->statusBar()->isVisible());
    EXPECT_FALSE(Entry("Status Bar").isChecked());
}

TEST_F(MainFrameWindowTest, HidesInTheTrayOrMinimisesAndSaysSoOnce) {
    Open();
    Press(*window, Qt::Key_H, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible());
    has_tray = false;
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->isVisible(); })) << "its tray is gone";

    Entry("Hide Editor").trigger();
    EXPECT_TRUE(window->isVisible() && window->isMinimized());
    window->ShowEditor();
    Entry("Hide Editor").trigger();
    EXPECT_EQ(boxes.shown.size(), 1U);

    has_tray = true;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        window->ShowEditor();
        window->showMinimized();
        QTest::qWait(kSettleMs);
        return !window->isVisible();
    })) << "a late tray takes it";

    CVeltoSettings().SetShownOnLoad(false);
    Open();
    EXPECT_FALSE(window->isVisible());
    has_tray = false;
    Open();
    EXPECT_TRUE(window->isMinimized());
}

TEST_F(MainFrameWindowTest, ComesBackOnAScreenWhateverIsStored) {
    CVeltoSettings().SetWindowSize(650, 450);
    for (const auto& [x, y] : {std::pair(-30000, 20), std::pair(100, 90000), std::pair(60, 40)}) {
        CVeltoSettings().SetWindowPos(x, y);
        Open();
        EXPECT_TRUE(window->screen()->geometry().intersects(window->geometry()));
        EXPECT_EQ(window->size(), QSize(650, 450));
    }
    EXPECT_EQ(window->pos(), QPoint(60, 40));
    CVeltoSettings().SetWindowSize(5'000'000, 0xFFFFFFFF);
    CVeltoSettings().SetWindowPos(0x7FFFFFFF, 1);
    Open();
    EXPECT_TRUE(window->screen()->virtualGeometry().contains(window->geometry().topLeft()));
    EXPECT_LE(window->width(), window->screen()->virtualSize().width());
}

TEST_F(MainFrameWindowTest, WhileItWaitsNothingIsDoneAndAHandedOverNameHasTime) {
    Open();
    WaitPresenter presenter;
    auto wait = presenter.Begin({.what = "Waiting", .shown_after = {}});
    auto answer = std::async(std::launch::async, [&] { return instance->HandOver("Other"); });
    const auto answered = [&] {
        return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    };
    QElapsedTimer time;
    for (time.start(); time.elapsed() < 300;) EXPECT_TRUE(wait->Continue());
    const auto* const shown = QApplication::activeModalWidget();
    ASSERT_NE(shown, nullptr);
    for (const auto* entry : {"New Configuration", "Delete Config/Group", "Exit", "Hide Editor"}) {
        Entry(entry).trigger();
    }
    window->close();
    for (time.start(); time.elapsed() < 100;) EXPECT_TRUE(wait->Continue());
    EXPECT_EQ(QApplication::activeModalWidget(), shown);
    EXPECT_TRUE(window->isVisible() && boxes.shown.empty() && !answered());
    EXPECT_EQ(Tree().currentIndex().data().toString(), "My Epsxe");
    wait.reset();
    EXPECT_TRUE(QTest::qWaitFor(answered));
    EXPECT_EQ(answer.get(), platform::HandOverResult::Answered);
    EXPECT_EQ(Tree().currentIndex().data().toString(), "Other");
}

// Two equal keys of one window fire neither.
TEST_F(MainFrameWindowTest, NoKeyOfTheMainWindowMeansTwoThings) {
    Open();
    Press(Tree(), Qt::Key_Down);
    std::multiset<QString> keys;
    for (const auto* const action : window->findChildren<QAction*>()) {
        if (!action->shortcut().isEmpty()) keys.insert(action->shortcut().toString());
    }
    for (const auto* const menu : window->menuBar()->actions()) {
        keys.insert(QKeySequence::mnemonic(menu->text()).toString());
    }
    for (const auto* const button : window->findChildren<QAbstractButton*>()) {
        if (button->isVisible()) keys.insert(QKeySequence::mnemonic(button->text()).toString());
    }
    for (const auto* const label : window->findChildren<QLabel*>()) {
        if (label->isVisible()) keys.insert(QKeySequence::mnemonic(label->text()).toString());
    }
    keys.erase("");
    EXPECT_GT(keys.size(), 20U);
    for (const auto& key : keys) EXPECT_EQ(keys.count(key), 1U) << key.toStdString();
}

}  // namespace
}  // namespace velto::test
