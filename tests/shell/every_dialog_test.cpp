// What holds for every window, at every size of its letters.
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QTreeView>
#include <functional>
#include <set>

#include "plugins/exclusion_dialog.h"
#include "shell/app_startup_window.h"
#include "shell/frame_dialog.h"
#include "shell/main_frame_window.h"
#include "shell/paths_dialog.h"
#include "shell/tree/new_node_dialog.h"
#include "support/documents.h"
#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

class EveryDialogTest : public HomeTest {
  protected:
    ~EveryDialogTest() override { QApplication::setFont(font); }

    const QFont font = QApplication::font();
    CNewConfig new_config{ConfigFolder(environment.ConfigFolder())};
    CNewGroup new_group;
    CPluginCatalogue catalogue;
    LaunchCycle launch{[] {}};
    const std::function<std::unique_ptr<QWidget>()> windows[9] = {
        [] { return std::make_unique<CPathsDlg>(); },
        [] { return std::make_unique<CTrayIconDlg>(); },
        [] { return std::make_unique<CExitDialog>(); },
        [] { return std::make_unique<CAboutDlg>(); },
        [] { return std::make_unique<CExclusionDlg>(); },
        [] { return std::make_unique<CAppStartupWindow>(); },
        [this] { return std::make_unique<CNewConfigDialog>(new_config, "My Epsxe"); },
        [this] { return std::make_unique<CNewGroupDialog>(new_group, "My Epsxe"); },
        [this] {
            return std::make_unique<CMainFrameWindow>(environment.ConfigFolder(), catalogue, launch,
                                                      [] { return true; });
        },
    };
};

void ExpectNamed(const QWidget& window, const QWidget& control) {
    const auto labels = window.findChildren<QLabel*>();
    const bool labelled = std::any_of(labels.begin(), labels.end(), [&](const auto* label) {
        return label->buddy() == &control;
    });
    const auto* const button = dynamic_cast<const QAbstractButton*>(&control);
    const bool lettered = button != nullptr && !button->text().isEmpty();
    // A label doesn't name what scrolls.
    const bool scrolls = dynamic_cast<const QAbstractScrollArea*>(&control) != nullptr;
    EXPECT_TRUE(!control.accessibleName().isEmpty() || (!scrolls && (labelled || lettered)))
        << control.metaObject()->className();
}

// The stops of the Tab key come as one reads: by lines, each from its left.
void ExpectReadingOrder(const QWidget& window, const std::vector<QWidget*>& stops) {
    for (std::size_t i = 1; i < stops.size(); ++i) {
        const QRect before(stops[i - 1]->mapTo(&window, QPoint()), stops[i - 1]->size());
        const QRect after(stops[i]->mapTo(&window, QPoint()), stops[i]->size());
        const bool same_line = before.top() <= after.bottom() && after.top() <= before.bottom();
        EXPECT_TRUE(same_line ? before.left() < after.left() : before.top() < after.top())
            << stops[i]->metaObject()->className();
    }
}

void ExpectNothingCut(const QWidget& window) {
    for (const auto* const part : window.findChildren<QWidget*>()) {
        const auto* const label = dynamic_cast<const QLabel*>(part);
        const bool text = label != nullptr || dynamic_cast<const QAbstractButton*>(part) != nullptr;
        if (!part->isVisible() || part->minimumSizeHint().isEmpty()) continue;
        auto needed = text ? part->sizeHint() : part->minimumSizeHint();
        if (label != nullptr && label->wordWrap()) {
            needed = {part->minimumSizeHint().width(), part->heightForWidth(part->width())};
        }
        EXPECT_EQ(part->size().expandedTo(needed), part->size()) << part->metaObject()->className();
        const auto* const above = part->parentWidget();
        const bool scrolls =
            dynamic_cast<const QAbstractScrollArea*>(above) != nullptr ||
            dynamic_cast<const QAbstractScrollArea*>(above->parentWidget()) != nullptr;
        EXPECT_TRUE(scrolls || above->rect().contains(part->geometry()));
    }
}

// Two equal keys of one window fire neither.
void ExpectNoKeyTwice(const QWidget& window) {
    std::multiset<QString> keys;
    for (const auto* const action : window.findChildren<QAction*>()) {
        keys.insert(action->shortcut().toString());
    }
    for (const auto* const part : window.findChildren<QWidget*>()) {
        const bool menu = dynamic_cast<const QMenu*>(part) != nullptr;
        if (dynamic_cast<const QLineEdit*>(part) != nullptr || !(part->isVisible() || menu))
            continue;
        for (const auto* const property : {"text", "title"}) {
            keys.insert(QKeySequence::mnemonic(part->property(property).toString()).toString());
        }
    }
    keys.erase("");
    for (const auto& key : keys) EXPECT_EQ(keys.count(key), 1U) << key.toStdString();
}

void ExpectWellMade(const QWidget& window) {
    std::vector<QWidget*> stops;
    for (auto* next = window.nextInFocusChain(); next != &window; next = next->nextInFocusChain()) {
        if ((next->focusPolicy() & Qt::TabFocus) == 0 || !next->isVisible()) continue;
        if (next->window() != &window) continue;
        stops.push_back(next);
        ExpectNamed(window, *next);
    }
    EXPECT_FALSE(stops.empty());
    ExpectReadingOrder(window, stops);
    ExpectNothingCut(window);
    ExpectNoKeyTwice(window);
}

// Each page of the editor has its turn, alone.
void StepThroughPages(const QWidget& window, QTreeView& tree) {
    for (const auto& page :
         QStringList{"Welcome to Velto", "Game", "Graphics", "Sound", "Cd-Rom/Iso", "NetPlay",
                     "MemoryCards", "GamePad", QString(255, 'm')}) {
        QTest::qWait(20);
        for (const auto* const one : window.findChildren<QScrollArea*>()) {
            EXPECT_EQ(one->isVisible(), one->accessibleName() == page) << page.toStdString();
        }
        ExpectWellMade(window);
        QTest::keyClick(&tree, page == "Game" ? Qt::Key_Right : Qt::Key_Down);
        if (page == "Game") QTest::keyClick(&tree, Qt::Key_Down);
    }
}

TEST_F(EveryDialogTest, IsNamedInOrderAndWhole) {
    WriteFile(InConfig("Game.dta"), ConfigText(kFileVersion));
    CVeltoSettings().SetExclusionList({std::string(255, 'm') + ".dll"});
    CVeltoSettings().AddGroup(std::string(255, 'm'), "My Epsxe");
    for (const int points : {8, 11, 17, 24}) {
        auto sized = font;
        sized.setPointSize(points);
        QApplication::setFont(sized);
        for (const auto& make : windows) {
            const auto window = make();
            SCOPED_TRACE(window->windowTitle().toStdString() + " at " + std::to_string(points));
            window->show();
            ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
            ExpectWellMade(*window);
            auto* const tree = window->findChild<QTreeView*>();
            if (tree != nullptr) StepThroughPages(*window, *tree);
        }
    }
}

}  // namespace
}  // namespace velto::test
