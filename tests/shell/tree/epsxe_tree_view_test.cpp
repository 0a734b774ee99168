#include "shell/tree/epsxe_tree_view.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QDrag>
#include <QDragMoveEvent>
#include <QMenu>
#include <QProcess>
#include <QToolTip>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/pages.h"
#include "support/tree_home.h"
#include "support/windows.h"
#include "widgets/text.h"

namespace velto::test {
namespace {

using platform::BoxAnswer;
using ::testing::ElementsAre;

constexpr const char* kBold = "<b>bold";
constexpr const char* kLatin = "Caf\xE9";  // not UTF-8
const std::string kLong(150, 'm');

// My Epsxe: Action (Shooters (Beta), Alpha, <b>bold), Puzzle (Caf\xE9), mmm...
class EpsxeTreeViewTest : public HomeTest {
  protected:
    EpsxeTreeViewTest() {
        editor.tree = &tree;
        document.settings.SetGroups({"Action", "Shooters", "Puzzle"},
                                    {"My Epsxe", "Action", "My Epsxe"});
        AddFile("Alpha", "Action");
        AddFile("Beta", "Shooters");
        AddFile(kBold, "Action");
        AddFile(kLatin, "Puzzle");
        AddFile(kLong, "none");
        view.SetTree(tree);
        view.resize(300, 1000);
        view.show();
        view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
        tree.OnUpdate();
        view.expandAll();
        Settle();
        pages.clear();
    }

    void AddFile(const std::string& name, const std::string& group) {
        WriteFile(InConfig(name + ".dta"), TextIn(group));
    }

    // What one event puts off may put off more; a round of a busy machine handles one.
    static void Settle() {
        for (int round = 0; round < 10; ++round) QTest::qWait(1);
    }

    // The row of this text, the first below `above` if that is given.
    QModelIndex Row(const QString& text, const QString& above = {}) const {
        const auto& model = *view.model();
        const auto root = model.index(0, 0, {});
        const auto start = above.isEmpty() ? root : model.index(0, 0, Row(above));
        const auto found =
            model.match(start, Qt::DisplayRole, text, 1, Qt::MatchExactly | Qt::MatchRecursive);
        EXPECT_FALSE(found.empty()) << text.toStdString();
        return found.value(0);
    }
    QPoint At(const QModelIndex& row) const { return view.visualRect(row).center(); }
    void ClickOn(const QModelIndex& row, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, At(row));
        Settle();
    }
    // What the tree, the current row and the highlight say, if they agree.
    std::string Selected() const {
        const auto text = tree.GetSelectedItem().text();
        const auto rows = view.selectionModel()->selectedIndexes();
        EXPECT_EQ(view.currentIndex().data().toString(), FromBytes(text));
        EXPECT_EQ(rows, QModelIndexList{view.currentIndex()});
        return text;
    }

    template <class Event>
    bool Send(QPoint at, const RowDragData& data) {
        Event event(at, Qt::MoveAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(view.viewport(), &event);
        return event.isAccepted();
    }
    void Drag(const QString& from, const QString& to, bool taken, bool highlighted) {
        SCOPED_TRACE((from + " on " + to).toStdString());
        const RowDragData data(Row(from));
        const auto row = view.visualRect(Row(to));
        EXPECT_TRUE(Send<QDragEnterEvent>(row.center(), data));
        const auto before = view.viewport()->grab(row).toImage();
        EXPECT_EQ(Send<QDragMoveEvent>(row.center(), data), taken);
        EXPECT_EQ(view.viewport()->grab(row).toImage() != before, highlighted);
        EXPECT_EQ(Send<QDropEvent>(row.center(), data), taken);
        Settle();
    }
    std::string Above(const QString& text) const {
        return Row(text).parent().data().toString().toStdString();
    }

    // Presses the key in the menu that `open` opens.
    void Menu(Qt::Key key, const std::function<void()>& open) {
        bool opened = false;
        QTimer::singleShot(50, &view, [&] {
            const QPointer menu = dynamic_cast<QMenu*>(QApplication::activePopupWidget());
            opened = menu != nullptr;
            if (opened) QTest::keyClick(menu, key);
            if (menu) menu->close();
        });
        open();
        EXPECT_TRUE(opened);
    }

    TreeEditor editor;
    CVeltoDoc document{environment.ConfigFolder(), editor};
    std::vector<int> pages;
    CEpsxeTreeView view{nullptr, [this](int page) { pages.push_back(page); }};
    CEpsxeTree tree{document, view, kPages};
    QAbstractItemModelTester tester{view.model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(EpsxeTreeViewTest, AClickOrAKeySelectsLoadsAndShowsThePage) {
    EXPECT_EQ(Selected(), "My Epsxe");
    ClickOn(Row("Sound", "Alpha"));
    EXPECT_EQ(Selected() + " of " + document.NameInHand(), "Sound of Alpha");
    ClickOn(Row("Beta"));
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(Selected(), "Graphics") << "the next key may be a command";
    EXPECT_EQ(document.NameInHand(), "Beta");
    ClickOn(Row("Puzzle"));
    QTest::keyClicks(&view, "acti");
    EXPECT_EQ(Selected(), "Action");
    Settle();
    EXPECT_THAT(pages, ElementsAre(3, 1, 2, 7, 7));
}

TEST_F(EpsxeTreeViewTest, ARefusedSelectionGoesBackAndTheNextOneLoads) {
    ClickOn(Row("Alpha"));
    for (const bool by_key : {false, true}) {
        document.dirty = true;
        by_key ? QTest::keyClick(&view, Qt::Key_Up) : ClickOn(Row("Beta"));
        EXPECT_EQ(boxes.shown.size(), by_key ? 2U : 1U);
        EXPECT_EQ(Selected(), "Alpha");
    }
    boxes.answers = {BoxAnswer::Yes};
    ClickOn(Row("Beta"));
    EXPECT_EQ(Selected() + document.NameInHand(), "BetaBeta");
    std::remove(InConfig("Alpha.dta").c_str());
    ClickOn(Row("Alpha"));
    EXPECT_EQ(Selected(), "Beta");
}

TEST_F(EpsxeTreeViewTest, ThereIsAlwaysASelection) {
    ClickOn(Row("Alpha"));
    ClickOn(Row("Alpha"), Qt::ControlModifier);
    EXPECT_EQ(Selected(), "Alpha");
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.viewport()->rect().bottomRight());
    Settle();
    EXPECT_EQ(Selected(), "Alpha");
    view.collapse(Row("Action"));
    Settle();
    EXPECT_EQ(Selected(), "Action") << "what is selected can be seen";
    EXPECT_EQ(pages.back(), 7);
}

TEST_F(EpsxeTreeViewTest, ALabelIsEditedInPlace) {
    // False if no editor opens.
    const auto edit = [](const QString& typed, Qt::Key end) {
        auto* const field = dynamic_cast<QLineEdit*>(QApplication::focusWidget());
        if (field == nullptr) return false;
        if (!typed.isEmpty()) Type(*field, typed);
        QTest::keyClick(field, end);
        Settle();
        return true;
    };
    const auto edit_row = [&](const QString& row, const QString& typed, Qt::Key end) {
        ClickOn(Row(row));
        QTest::keyClick(&view, Qt::Key_F2);
        return edit(typed, end);
    };
    EXPECT_TRUE(edit_row("Alpha", "Omega", Qt::Key_Return));
    EXPECT_TRUE(Exists(InConfig("Omega.dta")));
    ClickOn(Row("Omega"));
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    Settle();
    EXPECT_TRUE(edit("Psi", Qt::Key_Escape)) << "a click on what is selected edits it";
    EXPECT_EQ(Selected(), "Omega");
    for (const QString fixed : {"My Epsxe", "Sound"}) {
        EXPECT_FALSE(edit_row(fixed, "", Qt::Key_Escape));
    }
    EXPECT_TRUE(boxes.shown.empty());

    EXPECT_TRUE(edit_row("Omega", "a:b", Qt::Key_Return));
    EXPECT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(Selected(), "Omega");
    EXPECT_TRUE(edit_row(FromBytes(kLatin), "", Qt::Key_Return));
    EXPECT_EQ(boxes.shown.back().caption, "Name Exists") << "the bytes are as they were";
    EXPECT_EQ(Selected(), kLatin);
}

TEST_F(EpsxeTreeViewTest, RowsTellTheirNameAndKindWhateverTheNameHolds) {
    const auto* const rows = QAccessible::queryAccessibleInterface(&view);
    const auto expect = [&](const QString& text, const char* kind) {
        const auto at = view.viewport()->mapToGlobal(At(Row(text)));
        const auto* const row = rows->childAt(at.x(), at.y());
        ASSERT_NE(row, nullptr);
        EXPECT_EQ(row->text(QAccessible::Name), text);
        EXPECT_EQ(row->text(QAccessible::Description), kind);
    };
    expect("Action", "Group");
    expect(u"Caf\u00E9"_qs, "Configuration");
    expect("MemoryCards", "Page");

    const auto tool_tip = [this](const QString& text) {
        const auto at = At(Row(text));
        QHelpEvent help(QEvent::ToolTip, at, view.viewport()->mapToGlobal(at));
        QApplication::sendEvent(view.viewport(), &help);
        return QToolTip::text();
    };
    EXPECT_EQ(tool_tip(kBold), "") << "it can be read as it stands";
    EXPECT_TRUE(tool_tip(FromBytes(kLong)).contains(FromBytes(kLong)));
    view.resize(70, 1000);
    EXPECT_TRUE(tool_tip(kBold).contains("&lt;b&gt;bold"));
}

TEST_F(EpsxeTreeViewTest, DraggingMovesWhatCanBeMoved) {
    Drag("Alpha", "Action", false, false);
    Drag("Alpha", "Beta", false, false);
    Drag("Action", "Shooters", false, false);
    EXPECT_EQ(Selected(), "My Epsxe");

    Drag("Alpha", "Puzzle", true, true);
    EXPECT_EQ(Selected() + " in " + Above("Alpha"), "Alpha in Puzzle");
    EXPECT_TRUE(view.isExpanded(Row(FromBytes(kLatin)))) << "it is the second one now";
    EXPECT_NE(ReadFile(InConfig("Alpha.dta")).find("fileGroup = Puzzle"), std::string::npos);
    Drag("Shooters", "My Epsxe", true, false);
    EXPECT_EQ(Above("Beta") + " in " + Above("Shooters"), "Shooters in My Epsxe");
    document.dirty = true;
    Drag("Beta", "Puzzle", true, true);
    EXPECT_EQ(Selected() + " " + Above("Beta"), "Alpha Shooters");
    const RowDragData gone(Row("Beta"));
    tree.OnUpdate();
    EXPECT_FALSE(Send<QDragEnterEvent>({1, 1}, gone));
}

// By real mouse events, which need an X server to send them.
TEST_F(EpsxeTreeViewTest, ADragOfTheMouseMovesAConfigurationOnX11) {
    const auto pixel = [&](const QString& row) {
        const auto at = view.viewport()->mapToGlobal(At(Row(row)));
        return QStringList{"mousemove", QString::number(at.x()), QString::number(at.y())};
    };
    const auto nudge = QStringList{"mousemove_relative", "12", "0", "sleep", "0.1"};
    const auto wait = QStringList{"sleep", "0.2"};
    const auto move = pixel("Alpha") + wait + QStringList{"mousedown", "1"} + wait + nudge + nudge +
                      pixel("Puzzle") + wait + nudge + QStringList{"mouseup", "1"};
    ASSERT_TRUE(QProcess::startDetached("xdotool", move));
    EXPECT_TRUE(QTest::qWaitFor([&] { return Above("Alpha") == "Puzzle"; }));
    EXPECT_EQ(Selected(), "Alpha");
    EXPECT_NE(ReadFile(InConfig("Alpha.dta")).find("fileGroup = Puzzle"), std::string::npos);
}

TEST_F(EpsxeTreeViewTest, APressSelectsOnlyWhenTheButtonIsUpAndNoDragBegan) {
    ClickOn(Row("Alpha"));
    document.dirty = true;
    const auto at = At(Row("Beta"));
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at);
    Settle();
    QTimer::singleShot(50, &view, [] { QDrag::cancel(); });
    for (const int x : {30, 40}) QTest::mouseMove(view.viewport(), at + QPoint(x, 0));
    EXPECT_EQ(boxes.shown.size(), 0U);
    EXPECT_EQ(Selected(), "Alpha");
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(Selected(), "Alpha");
}

TEST_F(EpsxeTreeViewTest, TheContextMenuActsOnItsRow) {
    QAction command("&Export");
    int exported = 0;
    QObject::connect(&command, &QAction::triggered, &view, [&] { ++exported; });
    view.SetContextActions({&command});
    const auto by_key = [this] { QTest::keyClick(&view, Qt::Key_F10, Qt::ShiftModifier); };
    const auto right_click = [this, at = At(Row("Alpha"))] {
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, view.viewport()->mapToGlobal(at));
        QTest::mousePress(view.viewport(), Qt::RightButton, {}, at);
        QApplication::sendEvent(view.viewport(), &event);
    };
    Menu(Qt::Key_E, right_click);
    EXPECT_EQ(exported, 1);
    EXPECT_EQ(Selected(), "Alpha");
    const auto move = [&](const QString& to, const QString& present, int groups) {
        OnDialog<QDialog>([=](QDialog& dialog) {
            auto& group = FieldOf<QComboBox>(dialog, "Move to Group");
            EXPECT_EQ(group.currentText(), present);
            EXPECT_EQ(group.count(), groups);
            group.setCurrentText(to);
            Click(dialog, "OK");
        });
        Menu(Qt::Key_M, by_key);
        EXPECT_EQ(view.currentIndex().parent().data().toString(), to);
    };
    move("Puzzle", "Action", 4);
    ClickOn(Row("Action"));
    move("Puzzle", "My Epsxe", 2);  // none inside itself
    ClickOn(Row("My Epsxe"));
    for (const auto key : {Qt::Key_M, Qt::Key_N}) Menu(key, by_key);
    EXPECT_EQ(dynamic_cast<QLineEdit*>(QApplication::focusWidget()), nullptr);
}

TEST_F(EpsxeTreeViewTest, GroupsStayOpenThroughARefresh) {
    view.collapseAll();
    for (const QString open : {"My Epsxe", "Action", "Shooters"}) view.expand(Row(open));
    AddFile("Aardvark", "none");
    tree.OnUpdate();
    EXPECT_EQ(Selected(), "My Epsxe");
    for (const QString open : {"Action", "Shooters"}) EXPECT_TRUE(view.isExpanded(Row(open)));
    for (const QString closed : {"Puzzle", "Alpha"}) EXPECT_FALSE(view.isExpanded(Row(closed)));
}

}  // namespace
}  // namespace velto::test
