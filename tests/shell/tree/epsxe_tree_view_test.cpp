#include "shell/tree/epsxe_tree_view.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QDrag>
#include <QDragMoveEvent>
#include <QMenu>
#include <QProcess>
#include <QToolTip>

#include <gmock/gmock.h>

#include "support/tree_home.h"
#include "support/windows.h"
#include "widgets/text.h"

namespace velto::test {
namespace {

using namespace ::testing;

// What the one highlighted row shows, which is the current one.
class ShownTree : public CEpsxeTreeView {
  public:
    ShownTree() : CEpsxeTreeView(nullptr, [this](int page) { pages.push_back(page); }) {}
    TreeItem Current() const {
        EXPECT_EQ(selectionModel()->selectedIndexes(), QModelIndexList{currentIndex()});
        return static_cast<const CEpsxeTreeModel*>(model())->ItemAt(currentIndex());
    }
    std::vector<int> pages;
};

class EpsxeTreeViewTest : public TreeHomeOf<ShownTree> {
  protected:
    EpsxeTreeViewTest() {
        window.resize(300, 1000);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        ShowAll();
    }
    void ShowAll() {
        tree.OnUpdate();
        window.expandAll();
        Settle();
        window.pages.clear();
    }
    // What one event puts off may put off more; a round of a busy machine handles one.
    static void Settle() {
        for (int round = 0; round < 10; ++round) QTest::qWait(1);
    }

    QModelIndex Row(const std::string& item) {
        return static_cast<const CEpsxeTreeModel*>(window.model())->IndexOf(Item(item));
    }
    QPoint At(const QModelIndex& row) const { return window.visualRect(row).center(); }
    void ClickOn(const QModelIndex& row, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(window.viewport(), Qt::LeftButton, modifiers, At(row));
        Settle();
    }

    template <class Event>
    bool Send(QPoint at, const RowDragData& data) {
        Event event(at, Qt::MoveAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(window.viewport(), &event);
        return event.isAccepted();
    }
    void Drag(const std::string& from, const std::string& to, bool taken, bool highlighted) {
        SCOPED_TRACE(from + " on " + to);
        const RowDragData data(Row(from));
        const auto row = window.visualRect(Row(to));
        EXPECT_TRUE(Send<QDragEnterEvent>(row.center(), data));
        const auto before = window.viewport()->grab(row).toImage();
        EXPECT_EQ(Send<QDragMoveEvent>(row.center(), data), taken);
        EXPECT_EQ(window.viewport()->grab(row).toImage() != before, highlighted);
        EXPECT_EQ(Send<QDropEvent>(row.center(), data), taken);
        Settle();
    }

    // Presses the key in the menu that `open` opens.
    void Menu(Qt::Key key, const std::function<void()>& open) {
        bool opened = false;
        QTimer::singleShot(50, &window, [&] {
            const QPointer menu = dynamic_cast<QMenu*>(QApplication::activePopupWidget());
            opened = menu != nullptr;
            if (opened) QTest::keyClick(menu, key);
            if (menu) menu->close();
        });
        open();
        EXPECT_TRUE(opened);
    }

    QAbstractItemModelTester tester{window.model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(EpsxeTreeViewTest, AClickOrAKeySelectsLoadsAndShowsThePage) {
    EXPECT_EQ(Selected(), "My Epsxe");
    ClickOn(Row("one/Sound"));
    EXPECT_EQ(Selected() + " of " + document.NameInHand(), "one/Sound of one");
    ClickOn(Row("two"));
    QTest::keyClick(&window, Qt::Key_Down);
    EXPECT_EQ(Selected(), "two/Graphics") << "the next key may be a command";
    EXPECT_EQ(document.NameInHand(), "two");
    ClickOn(Row("c"));
    QTest::keyClicks(&window, "o");
    EXPECT_EQ(Selected(), "one");
    ClickOn(Row("one"), Qt::ControlModifier);
    QTest::mouseClick(window.viewport(), Qt::LeftButton, {}, window.rect().bottomRight());
    Settle();
    EXPECT_EQ(Selected(), "one") << "there is always a selection";
    window.collapse(Row("a"));
    Settle();
    EXPECT_EQ(Selected(), "a") << "it can be seen";
    EXPECT_THAT(window.pages, ElementsAre(3, 1, 2, 7, 1, 7));
}

TEST_F(EpsxeTreeViewTest, ALabelIsEditedInPlace) {
    Write("Caf\xE9", "c");  // not UTF-8
    ShowAll();
    // False if no editor opens.
    const auto edit = [&](const std::string& item, const QString& typed) {
        ClickOn(Row(item));
        QTest::keyClick(&window, Qt::Key_F2);
        auto* const field = dynamic_cast<QLineEdit*>(QApplication::focusWidget());
        if (field == nullptr) return false;
        if (!typed.isEmpty()) Type(*field, typed);
        QTest::keyClick(field, Qt::Key_Return);
        Settle();
        return true;
    };
    EXPECT_TRUE(edit("one", "Omega"));
    EXPECT_EQ(TakeBox(), "");
    EXPECT_EQ(Reread(), "a(b(three two) Omega) c(Caf\xE9) top");
    for (const auto* fixed : {"My Epsxe", "two/Sound"}) EXPECT_FALSE(edit(fixed, ""));
    EXPECT_TRUE(edit("Omega", "a:b"));
    EXPECT_NE(TakeBox(), "");
    EXPECT_EQ(Selected(), "Omega");
    EXPECT_TRUE(edit("Caf\xE9", ""));
    EXPECT_THAT(TakeBox(), StartsWith("Name Exists")) << "the bytes are as they were";
    EXPECT_EQ(Selected(), "Caf\xE9");
    QTest::qWait(QApplication::doubleClickInterval());
    ClickOn(Row("Caf\xE9"));
    EXPECT_TRUE(QTest::qWaitFor([] {
        return dynamic_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr;
    })) << "a click on what is selected edits it";
}

TEST_F(EpsxeTreeViewTest, RowsTellTheirNameAndKindWhateverTheNameHolds) {
    const std::string wide = "<b>" + std::string(150, 'm');
    Write(wide, "a");
    ShowAll();
    const auto* const rows = QAccessible::queryAccessibleInterface(&window);
    const std::pair<std::string, const char*> kinds[] = {
        {"a", "Group"}, {"one/MemoryCards", "Page"}, {wide, "Configuration"}};
    for (const auto& [item, kind] : kinds) {
        const auto at = window.viewport()->mapToGlobal(At(Row(item)));
        const auto* const row = rows->childAt(at.x(), at.y());
        ASSERT_NE(row, nullptr);
        EXPECT_EQ(row->text(QAccessible::Name), FromBytes(Item(item).text()));
        EXPECT_EQ(row->text(QAccessible::Description), kind);
        QHelpEvent help(QEvent::ToolTip, At(Row(item)), at);
        QApplication::sendEvent(window.viewport(), &help);
        EXPECT_EQ(QToolTip::text().contains("&lt;b&gt;mmm"), item == wide) << "what is cut off";
    }
}

TEST_F(EpsxeTreeViewTest, DraggingMovesWhatCanBeMoved) {
    Drag("one", "a", false, false);
    Drag("one", "two", false, false);
    Drag("a", "b", false, false);
    EXPECT_EQ(Selected(), "My Epsxe");

    Drag("one", "b", true, true);
    EXPECT_EQ(Selected(), "one");
    EXPECT_TRUE(window.isExpanded(Row("three"))) << "it is the second one now";
    Drag("b", "My Epsxe", true, false);
    EXPECT_EQ(Reread(), "a() b(one three two) c() top");
    document.dirty = true;
    Drag("two", "c", true, true);
    EXPECT_EQ(Selected(), "one");
    EXPECT_EQ(Shape(), Reread());
    const RowDragData gone(Row("two"));
    tree.OnUpdate();
    EXPECT_FALSE(Send<QDragEnterEvent>({1, 1}, gone));
}

// By real mouse events, which need an X server to send them.
TEST_F(EpsxeTreeViewTest, ADragOfTheMouseMovesAConfigurationOnX11) {
    const auto pixel = [&](const std::string& row) {
        const auto at = window.viewport()->mapToGlobal(At(Row(row)));
        return QStringList{"mousemove", QString::number(at.x()), QString::number(at.y())};
    };
    const auto nudge = QStringList{"mousemove_relative", "12", "0", "sleep", "0.1"};
    const auto wait = QStringList{"sleep", "0.2"};
    const auto move = pixel("one") + wait + QStringList{"mousedown", "1"} + wait + nudge + nudge +
                      pixel("c") + wait + nudge + QStringList{"mouseup", "1"};
    ASSERT_TRUE(QProcess::startDetached("xdotool", move));
    EXPECT_TRUE(QTest::qWaitFor([&] { return Shape() == "a(b(three two)) c(one) top"; }));
    EXPECT_EQ(Selected(), "one");
    EXPECT_EQ(Reread(), Shape());
}

TEST_F(EpsxeTreeViewTest, APressSelectsOnlyWhenTheButtonIsUpAndNoDragBegan) {
    ClickOn(Row("one"));
    document.dirty = true;
    const auto at = At(Row("two"));
    QTest::mousePress(window.viewport(), Qt::LeftButton, {}, at);
    Settle();
    QTimer::singleShot(50, &window, [] { QDrag::cancel(); });
    for (const int x : {30, 40}) QTest::mouseMove(window.viewport(), at + QPoint(x, 0));
    EXPECT_EQ(TakeBox(), "");
    EXPECT_EQ(Selected(), "one");
    QTest::mousePress(window.viewport(), Qt::LeftButton, {}, at);
    QTest::mouseRelease(window.viewport(), Qt::LeftButton, {}, at);
    EXPECT_NE(TakeBox(), "") << "whether the changes may be lost";
    EXPECT_EQ(Selected(), "one");
}

TEST_F(EpsxeTreeViewTest, TheContextMenuActsOnItsRow) {
    QAction command("&Export");
    int exported = 0;
    QObject::connect(&command, &QAction::triggered, &window, [&] { ++exported; });
    window.SetContextActions({&command});
    const auto by_key = [this] { QTest::keyClick(&window, Qt::Key_F10, Qt::ShiftModifier); };
    const auto right_click = [this, at = At(Row("one"))] {
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, window.viewport()->mapToGlobal(at));
        QTest::mousePress(window.viewport(), Qt::RightButton, {}, at);
        QApplication::sendEvent(window.viewport(), &event);
    };
    Menu(Qt::Key_E, right_click);
    EXPECT_EQ(exported, 1);
    EXPECT_EQ(Selected(), "one");
    const auto move = [&](const QString& present, int groups) {
        OnDialog<QDialog>([=](QDialog& dialog) {
            auto& group = FieldOf<QComboBox>(dialog, "Move to Group");
            EXPECT_EQ(group.currentText(), present);
            EXPECT_EQ(group.count(), groups);
            group.setCurrentText("c");
            Click(dialog, "OK");
        });
        Menu(Qt::Key_M, by_key);
    };
    move("a", 4);
    EXPECT_EQ(Shape(), "a(b(three two)) c(one) top");
    ClickOn(Row("a"));
    move("My Epsxe", 2);  // none inside itself
    EXPECT_EQ(Shape(), "c(a(b(three two)) one) top");
    ClickOn(Row("My Epsxe"));
    for (const auto key : {Qt::Key_M, Qt::Key_N}) Menu(key, by_key);
    EXPECT_EQ(dynamic_cast<QLineEdit*>(QApplication::focusWidget()), nullptr);
}

TEST_F(EpsxeTreeViewTest, GroupsStayOpenThroughARefresh) {
    window.collapseAll();
    for (const auto* open : {"My Epsxe", "a", "b"}) window.expand(Row(open));
    Write("Aardvark", "none");
    tree.OnUpdate();
    EXPECT_EQ(Selected(), "My Epsxe");
    for (const auto* open : {"a", "b"}) EXPECT_TRUE(window.isExpanded(Row(open)));
    for (const auto* closed : {"c", "one"}) EXPECT_FALSE(window.isExpanded(Row(closed)));
}

}  // namespace
}  // namespace velto::test
