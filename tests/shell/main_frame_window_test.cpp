#include "shell/main_frame_window.h"

#include <QElapsedTimer>
#include <QStatusBar>
#include <future>
#include <optional>

#include "platform/instance.h"
#include "shell/frame_dialog.h"
#include "shell/tree/new_node_dialog.h"
#include "support/documents.h"
#include "support/failing_files.h"
#include "support/home_test.h"
#include "support/windows.h"
#include "widgets/wait_presenter.h"

namespace velto::test {
namespace {

using platform::BoxAnswer;

class MainFrameWindowTest : public HomeTest {
  protected:
    MainFrameWindowTest() {
        instance = platform::MakeInstanceService(environment.program, home_folder.path());
        auto with = services;
        with.instance = instance.get();
        with_instance.emplace(with);
        EXPECT_TRUE(instance->Acquire().value());
        settings.SetEmulatorPath(BinaryFolder() + "/demo-emulator");
        for (const auto* file : {"Game.dta", "Other.dta"}) {
            WriteFile(InConfig(file), ConfigText(kFileVersion, {"commandLine = -stay 500"}));
        }
    }
    ~MainFrameWindowTest() override {
        launch.StopTelling();
        window.reset();
        launch.Wait();
    }

    // The editor as it starts.
    void Open() {
        window = std::make_unique<CMainFrameWindow>(environment.ConfigFolder(), catalogue, launch,
                                                    [this] { return has_tray; });
        window->Start([] {});
        QTest::qWait(kSettleMs);
    }
    // Steps to the first configuration and changes it.
    void Edit() {
        Press(Tree(), Qt::Key_Home);
        Press(Tree(), Qt::Key_Down);
        Type(CommandLine(), "-edited");
        EXPECT_TRUE(HasChanges());
    }
    bool HasChanges() { return Button(*window, "Apply Settings").isEnabled(); }
    bool IsSaved() { return ReadFile(InConfig("Game.dta")).find("-edited") != std::string::npos; }
    QString Selected() { return Tree().currentIndex().data().toString(); }
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
    bool Shows(const QString& text) {
        const auto labels = window->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [&](const auto* label) {
            return label->isVisible() && label->text() == text;
        });
    }
    // A second process hands the name over, and has its answer when this returns.
    void HandOver(const std::string& name) {
        auto answer = std::async(std::launch::async, [&] { return instance->HandOver(name); });
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        EXPECT_EQ(answer.get(), platform::HandOverResult::Answered);
    }

    static constexpr int kSettleMs = 20;  // for what waits until an event has been handled
    const Variables runtime{{{"XDG_RUNTIME_DIR", home_folder.path()}}};
    std::unique_ptr<platform::InstanceService> instance;
    std::optional<platform::HostScope> with_instance;
    CPluginCatalogue catalogue;
    LaunchCycle launch{[this] { window->PostRunEnded(); }};
    CVeltoSettings settings;
    bool has_tray = true;
    std::unique_ptr<CMainFrameWindow> window;
};

TEST_F(MainFrameWindowTest, AnExitSavesChangesOrStaysAndAsksWhetherItMay) {
    const struct {
        const char* name;
        bool dirty;
        BoxAnswer answer;
        bool disk_full;
        Qt::Key exit_key;  // in the exit dialog, if it opens
        bool tick;
        bool closes;
        bool asks_again;
    } cases[] = {
        {"changes kept", true, BoxAnswer::No, false, {}, false, false, true},
        {"a save that fails", true, BoxAnswer::Yes, true, {}, false, false, true},
        {"changes saved", true, BoxAnswer::Yes, false, {}, false, true, true},
        {"cancelled with its box ticked", false, {}, false, Qt::Key_Escape, true, false, true},
        {"confirmed", false, {}, false, Qt::Key_Return, false, true, true},
        {"confirmed for ever", false, {}, false, Qt::Key_Return, true, true, false},
        {"not asked any more", false, {}, false, {}, false, true, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        settings.SetWindowSize(0, 0);
        Open();
        window->resize(700, 500);
        if (c.dirty) Edit();
        boxes.answers = {c.answer};
        if (c.exit_key != Qt::Key{}) {
            OnDialog<CExitDialog>([&](auto& dialog) {
                if (c.tick) Click(dialog, "Do not ask this question in the future.");
                Press(dialog, c.exit_key);
            });
        }
        {
            FailingFiles disk(*files, c.disk_full ? 8 : 0, FailingFiles::At::Fail);
            const auto on_disk = With(disk);
            window->close();
        }
        EXPECT_EQ(window->isVisible(), !c.closes);
        EXPECT_EQ(settings.ShouldConfirmExit(), c.asks_again);
        EXPECT_EQ(settings.GetWindowSize().cx, c.closes ? 700U : 0U);
        if (c.dirty) {
            EXPECT_EQ(IsSaved(), c.closes);
        }
        EXPECT_EQ(HasChanges(), c.dirty && !c.closes);
    }
}

TEST_F(MainFrameWindowTest, AHandedOverNameRunsOnlyAsTheConfigurationInHand) {
    const std::string question =
        "Warning: This action will cause your current changes to be lost.  Do you wish to "
        "continue?";
    const struct {
        std::string name;
        bool dirty;
        BoxAnswer answer;
        std::string message;
        const char* selected;
    } cases[] = {
        {"Game", false, {}, "", "Game"},
        {"Nothing", false, {}, "Nothing does not exist", nullptr},
        {"other", false, {}, "other does not exist. Remember that names are case sensitive.", {}},
        {"../config/Other", false, {}, "../config/Other does not exist", nullptr},
        {"Other", true, BoxAnswer::No, question, nullptr},
        {"Other", true, BoxAnswer::Yes, question, "Other"},
        {"Younger", false, {}, "", "Younger"},
    };
    Open();
    WriteFile(InConfig("Younger.dta"), ConfigText(kFileVersion));
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        if (c.dirty && !HasChanges()) Edit();
        boxes.shown.clear();
        boxes.answers = {c.answer};
        HandOver(c.name);
        EXPECT_EQ(boxes.shown.empty() ? "" : boxes.shown.front().text, c.message);
        const auto runs = "Running: " + QString(c.selected);
        EXPECT_EQ(Shows(runs), c.selected != nullptr);
        EXPECT_EQ(Selected(), c.selected == nullptr ? "Game" : c.selected);
        EXPECT_EQ(HasChanges(), c.dirty && c.selected == nullptr);
        launch.Wait();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !Shows(runs); }));
    }
    EXPECT_FALSE(IsSaved());
}

TEST_F(MainFrameWindowTest, WhileItWaitsNothingIsDoneAndAHandedOverNameHasTime) {
    Open();
    WaitPresenter presenter;
    auto wait = presenter.Begin({.what = "Waiting", .shown_after = {}});
    const auto wait_on = [&](int milliseconds) {
        QElapsedTimer time;
        for (time.start(); time.elapsed() < milliseconds;) EXPECT_TRUE(wait->Continue());
    };
    wait_on(kSettleMs);
    const auto* const shown = QApplication::activeModalWidget();
    ASSERT_NE(shown, nullptr);
    QTimer::singleShot(0, window.get(), [&] {
        for (const auto* entry : {"New Configuration", "Hide Editor", "Exit"}) {
            Entry(entry).trigger();
        }
        window->close();
    });
    auto answer = std::async(std::launch::async, [&] { return instance->HandOver("Other"); });
    wait_on(300);
    EXPECT_EQ(QApplication::activeModalWidget(), shown);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(Selected(), "My Epsxe");
    EXPECT_EQ(answer.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    wait.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return Selected() == "Other"; }));
    EXPECT_EQ(answer.get(), platform::HandOverResult::Answered);
}

TEST_F(MainFrameWindowTest, CommandsAskForChangesAndKeysCreateRenameAndDelete) {
    settings.AddGroup("puzzle", "My Epsxe");
    Open();
    Edit();
    for (const auto* loses : {"New Configuration", "Delete Config/Group"}) Entry(loses).trigger();
    EXPECT_EQ(boxes.shown.size(), 2U);
    EXPECT_EQ(CommandLine().text(), "-edited");
    Click(*window, "Reset Settings");
    EXPECT_EQ(CommandLine().text(), "-stay 500");
    EXPECT_FALSE(HasChanges() || IsSaved());
    Type(CommandLine(), "-edited");
    Click(*window, "Apply Settings");
    EXPECT_TRUE(IsSaved() && !HasChanges());
    boxes.shown.clear();

    OnDialog<CNewGroupDialog>([](auto& dialog) {
        Type(FieldOf(dialog, "New Group Name"), "Sports");
        Click(dialog, "OK");
    });
    Entry("New Group").trigger();
    EXPECT_EQ(Selected() + " in " + settings.GetParents().back().c_str(), "Sports in My Epsxe");
    OnDialog<CNewConfigDialog>([&](auto& dialog) {
        auto& group = FieldOf<QComboBox>(dialog, "Group");
        EXPECT_EQ(group.itemText(1) + " before " + group.currentText(), "puzzle before Sports");
        Click(dialog, "OK");
        EXPECT_EQ(boxes.shown.size(), 1U) << "a name is missing; it stays open";
        Type(FieldOf(dialog, "Name"), u"Pok\u00E9"_qs);
        Press(group, Qt::Key_Up);
        Press(dialog, Qt::Key_Return);
    });
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    Press(*window, Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(Tree().currentIndex().parent().data().toString() + Selected(), u"puzzlePok\u00E9"_qs);
    Press(CommandLine(), Qt::Key_Delete);
    EXPECT_EQ(boxes.shown.size(), 1U) << "the key is the field's there";
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    Tree().setFocus();
    Press(Tree(), Qt::Key_F2);
    Entry("Status Bar").trigger();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window->statusBar()->isVisible(); }));
    EXPECT_EQ(boxes.shown.at(1).caption, "Name Exists") << "the label is done with first";
    boxes.answers = {BoxAnswer::Yes};
    Press(Tree(), Qt::Key_Delete);
    EXPECT_EQ(files->List(environment.ConfigFolder()).value().size(), 2U);
}

TEST_F(MainFrameWindowTest, TogglesAreWrittenAtOnceAndTheBypassCarriesTheLogWindowAlong) {
    Open();
    const std::pair<const char*, bool (CVeltoSettings::*)() const> toggles[] = {
        {"Show Editor On Start", &CVeltoSettings::IsShownOnLoad},
        {"Use Alternate Disk Detection", &CVeltoSettings::IsAltDetect},
        {"Show Log Window", &CVeltoSettings::IsLogWindowOn},
        {"ToolBar", &CVeltoSettings::IsToolBarOn},
        {"Status Bar", &CVeltoSettings::IsStatusBarOn},
    };
    for (const auto& [text, is_on] : toggles) {
        for (const bool on : {(settings.*is_on)(), !(settings.*is_on)()}) {
            EXPECT_EQ(Entry(text).isChecked(), on) << text;
            Entry(text).trigger();
            EXPECT_NE((settings.*is_on)(), on) << text;
        }
        Entry(text).trigger();
    }
    EXPECT_FALSE(window->findChild<QToolBar*>()->isVisible() || window->statusBar()->isVisible());
    settings.SetGuiBypassed(true);
    settings.SetLogWindow(true);
    for (const bool bypassed : {false, true}) {
        Entry("Bypass Epsxe's Gui").trigger();
        EXPECT_EQ(settings.IsGuiBypassed(), bypassed);
        EXPECT_EQ(settings.IsLogWindowOn(), bypassed) << "off, and then what it was before";
    }
    Entry("Import Batard/Cutor Settings").trigger();
    EXPECT_EQ(window->statusBar()->currentMessage(), "This command is not available yet.");
}

TEST_F(MainFrameWindowTest, HidesInTheTrayOrMinimisesAndSaysSoOnce) {
    Open();
    Press(*window, Qt::Key_H, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible());
    has_tray = false;
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->isVisible(); })) << "its tray is gone";
    for (int times = 0; times < 2; ++times) {
        window->ShowEditor();
        Entry("Hide Editor").trigger();
        EXPECT_TRUE(window->isVisible() && window->isMinimized());
    }
    EXPECT_EQ(boxes.shown.size(), 1U);

    has_tray = true;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        window->ShowEditor();
        window->showMinimized();
        QTest::qWait(kSettleMs);
        return !window->isVisible();
    })) << "a late tray takes it";

    settings.SetShownOnLoad(false);
    for (const bool tray : {true, false}) {
        has_tray = tray;
        Open();
        EXPECT_TRUE(window->isMinimized() == !tray && window->isVisible() == !tray);
    }
}

TEST_F(MainFrameWindowTest, ComesBackOnAScreenWhateverIsStored) {
    for (const auto& [x, y] : {std::pair(-30000, 20), std::pair(100, 90000), std::pair(60, 40)}) {
        settings.SetWindowSize(650, 450);
        settings.SetWindowPos(x, y);
        Open();
        EXPECT_TRUE(window->screen()->geometry().intersects(window->geometry()));
        EXPECT_EQ(window->size(), QSize(650, 450));
    }
    EXPECT_EQ(window->pos(), QPoint(60, 40));
    settings.SetWindowSize(5'000'000, 0xFFFFFFFF);
    Open();
    EXPECT_LE(window->width(), window->screen()->virtualSize().width());
}

}  // namespace
}  // namespace velto::test
