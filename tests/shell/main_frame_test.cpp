#include "shell/main_frame.h"

#include <optional>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/config_text.h"
#include "support/failing_files.h"
#include "support/home_test.h"
#include "support/no_tree_window.h"
#include "support/pages.h"

namespace velto::test {
namespace {

using platform::BoxAnswer;
using testing::ElementsAre;

// Dialogs that answer as a test says, and marks that it can read.
class FakeFrameWindow : public FrameWindow, public ButtonBar {
  public:
    void EnableApplyAndReset(bool on) override { enabled = on; }
    void SetChecked(Command toggle, bool on) override { checked[toggle] = on; }
    void ShowStatus(const std::string&) override {}
    void ShowRunning(const std::string& configuration) override {
        if (!configuration.empty()) started.push_back(configuration);
    }
    WindowPlace Place() const override { return {{640, 480}, {-20, 30}}; }
    bool RunNewConfig(CNewConfig& new_config, const std::string& selected_group) override {
        return new_config.OnOk("New", selected_group);
    }
    bool RunNewGroup(CNewGroup& new_group, const std::string& selected_group) override {
        return new_group.OnOk("Group", selected_group);
    }
    bool RunExitDialog(bool& dontAskAgain) override {
        ++exit_questions;
        dontAskAgain = tick;
        return exit_ok;
    }

    bool enabled = false;
    std::map<Command, bool> checked;
    std::vector<std::string> started;
    bool tick = false;
    bool exit_ok = true;
    int exit_questions = 0;
};

class MainFrameTest : public HomeTest {
  protected:
    MainFrameTest() {
        settings.SetEmulatorPath(BinaryFolder() + "/demo-emulator");
        WriteFile(InConfig("Game.dta"), ConfigText(kFileVersion, {"commandLine = -stay 500"}));
        WriteFile(InConfig("Other.dta"), ConfigText(kFileVersion, {"commandLine = -stay 500"}));
        frame.OnCreate(window, [] {});
    }

    void Edit(const std::string& name) {
        ASSERT_TRUE(frame.tree().SelectByName(name, NodeKind::Configuration));
        frame.document().bios = "edited";
        frame.document().dirty = true;
        window.enabled = true;
    }
    bool IsSaved(const std::string& name) {
        return ReadFile(InConfig(name)).find("edited") != std::string::npos;
    }

    CPluginCatalogue catalogue;
    LaunchCycle launch{[] {}};
    NoTreeWindow tree_window;
    FakeFrameWindow window;
    CMainFrame frame{environment.ConfigFolder(), catalogue, launch, kPages, tree_window, window};
    CVeltoSettings settings;
};

TEST_F(MainFrameTest, AnExitSavesChangesOrStaysAndAsksWhetherItMay) {
    struct Case {
        const char* name;
        bool dirty;
        std::optional<BoxAnswer> answer;
        bool disk_full;
        bool exit_ok;
        bool tick;
        bool closes;
        int exit_questions;
        bool asks_again;
    };
    const Case cases[] = {
        {"changes kept", true, BoxAnswer::No, false, true, false, false, 0, true},
        {"a save that fails", true, BoxAnswer::Yes, true, true, false, false, 0, true},
        {"changes saved", true, BoxAnswer::Yes, false, true, false, true, 0, true},
        {"cancelled with its box ticked", false, {}, false, false, true, false, 1, true},
        {"confirmed", false, {}, false, true, false, true, 1, true},
        {"confirmed for ever", false, {}, false, true, true, true, 1, false},
        {"not asked any more", false, {}, false, false, false, true, 0, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        if (c.dirty) Edit("Game");
        if (c.answer) boxes.answers.push_back(*c.answer);
        window.exit_ok = c.exit_ok;
        window.tick = c.tick;
        window.exit_questions = 0;
        settings.SetWindowPos(0, 0);
        {
            FailingFiles disk(*files, c.disk_full ? 1 : 0, FailingFiles::At::Fail);
            const auto on_disk = With(disk);
            EXPECT_EQ(frame.OnClose(), c.closes);
        }
        EXPECT_EQ(window.exit_questions, c.exit_questions);
        EXPECT_EQ(settings.ShouldConfirmExit(), c.asks_again);
        EXPECT_EQ(settings.GetWindowPos().x, c.closes ? -20 : 0);
        if (c.dirty) {
            EXPECT_EQ(IsSaved("Game.dta"), c.closes);
            EXPECT_EQ(window.enabled, !c.closes);
        }
    }
    EXPECT_EQ(settings.GetWindowSize().cy, 480U);
}

TEST_F(MainFrameTest, TogglesWriteAtOnceAndTheBypassCarriesTheLogWindowAlong) {
    for (const auto toggle : {Command::ShowOnStart, Command::AltDetect, Command::LogWindow,
                              Command::StatusBar, Command::ToolBar}) {
        const bool before = window.checked.at(toggle);
        EXPECT_EQ(before, frame.commands().IsOn(toggle));
        frame.Do(toggle);
        EXPECT_EQ(frame.commands().IsOn(toggle), !before);
        EXPECT_EQ(window.checked.at(toggle), !before);
    }
    settings.SetGuiBypassed(true);
    settings.SetLogWindow(true);
    const bool mark = window.checked.at(Command::LogWindow);
    frame.Do(Command::BypassGui);
    EXPECT_FALSE(frame.commands().IsOn(Command::BypassGui));
    EXPECT_FALSE(settings.IsLogWindowOn());
    frame.Do(Command::BypassGui);
    EXPECT_TRUE(window.checked.at(Command::BypassGui));
    EXPECT_TRUE(settings.IsLogWindowOn()) << "what it was before";
    EXPECT_EQ(window.checked.at(Command::LogWindow), mark);
}

TEST_F(MainFrameTest, NewNodesLandInTheSelectedGroupAndTheirChangesAreAskedFor) {
    frame.Do(Command::NewGroup);
    EXPECT_EQ(frame.GetSelectedConfigName(), "Group");
    EXPECT_THAT(settings.GetParents(), ElementsAre("My Epsxe"));

    Edit("Game");
    frame.Do(Command::NewConfiguration);
    EXPECT_TRUE(frame.document().dirty) << "the question was answered No";
    EXPECT_FALSE(files->Info(InConfig("New.dta")).ok());
    boxes.answers.push_back(BoxAnswer::Yes);
    frame.Do(Command::NewConfiguration);
    EXPECT_EQ(frame.GetSelectedConfigName(), "New");
    EXPECT_EQ(frame.document().fileGroup, "My Epsxe");
    EXPECT_FALSE(frame.document().dirty);
    EXPECT_FALSE(IsSaved("Game.dta"));
}

TEST_F(MainFrameTest, AHandedOverNameRunsOnlyAsTheConfigurationInHand) {
    struct Case {
        std::string name;
        bool dirty;
        BoxAnswer answer;
        std::string message;
        std::string selected;
        bool runs;
    };
    const std::string warning =
        "Warning: This action will cause your current changes to be lost.  Do you wish to "
        "continue?";
    WriteFile(InConfig("Younger.dta"), ConfigText(kFileVersion, {"commandLine = -stay 500"}));
    const Case cases[] = {
        {"Game", false, BoxAnswer::No, "", "Game", true},
        {"Nothing", false, BoxAnswer::No, "Nothing does not exist", "Game", false},
        {"other", false, BoxAnswer::No,
         "other does not exist. Remember that names are case sensitive.", "Game", false},
        {"../config/Other", false, BoxAnswer::No, "../config/Other does not exist", "Game", false},
        {"Other", true, BoxAnswer::No, warning, "Game", false},
        {"Other", true, BoxAnswer::Yes, warning, "Other", true},
        {"Younger", false, BoxAnswer::No, "", "Younger", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        boxes.shown.clear();
        boxes.answers = {c.answer};
        window.started.clear();
        frame.document().dirty = c.dirty;
        frame.OnHandOver(c.name);
        EXPECT_EQ(boxes.shown.empty() ? "" : boxes.shown.front().text, c.message);
        EXPECT_EQ(frame.GetSelectedConfigName(), c.selected);
        EXPECT_EQ(!window.started.empty(), c.runs);
        launch.Wait();
    }
}

}  // namespace
}  // namespace velto::test
