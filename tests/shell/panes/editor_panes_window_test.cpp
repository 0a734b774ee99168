#include "shell/panes/editor_panes_window.h"

#include <QFileDialog>

#include <gtest/gtest.h>

#include "shell/panes/page_table_window.h"
#include "support/fake_editor.h"
#include "support/home_test.h"
#include "support/windows.h"

namespace velto::test {
namespace {

class EditorPanesTest : public HomeTest, public FakeEditor {
  protected:
    EditorPanesTest() {
        panes.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&panes));
    }
    void EnableApplyAndReset(bool on) override { panes.panel().EnableApplyAndReset(on); }

    // Whether a label with this text can be read at the moment.
    bool Shows(const QString& text) const {
        const auto labels = panes.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [&](const auto* label) {
            return label->isVisible() && Read(label->text()) == text;
        });
    }
    bool AreButtonsEnabled() const {
        EXPECT_TRUE(Button(panes, "Launch Epsxe").isEnabled());
        const bool apply = Button(panes, "Apply Settings").isEnabled();
        EXPECT_EQ(Button(panes, "Reset Settings").isEnabled(), apply);
        return apply;
    }
    std::function<void()> Note(const char* command) {
        return [this, command] { called += command; };
    }
    void Note(Command command) { called += command == Command::ProgramLocations ? "paths" : "new"; }

    CVeltoDoc document{environment.ConfigFolder(), *this};
    std::size_t configurations = 2;
    QStringList called;
    EditorPanes panes{new QLineEdit,
                      Pages(),
                      {document, *this, [this](Command command) { Note(command); },
                       [this] { return configurations; }},
                      {Note("run"), Note("apply"), Note("reset")}};
};

TEST_F(EditorPanesTest, EachNumberShowsItsPageAlone) {
    selected = "<b>caf\xE9</b>";
    const auto lines = QString(
                           "Welcome to Velto,Bios File,Graphics,Sound,Cd-Rom/Iso,NetPlay,"
                           "MemoryCards,There are 2 configurations in this group.,GamePad")
                           .split(',');
    EXPECT_TRUE(Shows("GamePad")) << "before the first selection";
    for (const int number : {1, 0, 8, 2, 3, 4, 5, 6, 7, 9, 0, 1000, 0, -1}) {
        const int page = number < 0 || number > 8 ? 1 : number;
        panes.ShowPage(number);
        for (int i = 0; i < 9; ++i) EXPECT_EQ(Shows(lines[i]), i == page) << number;
        EXPECT_EQ(Shows("<b>caf\u00E9</b>"), page == 1 || page == 7);
    }
}

TEST_F(EditorPanesTest, TheWelcomePageLeadsToTheNextStep) {
    panes.ShowPage(0);
    Click(panes, "Set Program Locations...");
    configurations = 0;
    document.settings.SetEmulatorPath("C:\\epsxe.exe");
    panes.RefreshPage();
    Click(panes, "New Configuration...");
    EXPECT_EQ(called, QStringList({"paths", "new"}));
    EXPECT_FALSE(Button(panes, "Set Program Locations...").isVisible());
    configurations = 1;
    panes.ShowPage(0);
    EXPECT_FALSE(Button(panes, "New Configuration...").isVisible());
}

TEST_F(EditorPanesTest, ThePanelHasThreeCommandsAndTellsARun) {
    panes.panel().EnableApplyAndReset(true);
    for (const auto* const name : {"Reset Settings", "Launch Epsxe", "Apply Settings"}) {
        Click(panes, name);
    }
    EXPECT_EQ(called, QStringList({"reset", "run", "apply"}));
    panes.panel().EnableApplyAndReset(false);
    EXPECT_FALSE(AreButtonsEnabled());

    const auto width = panes.minimumSizeHint().width();
    panes.panel().ShowRunning(std::string(255, 'm') + "<i>");
    QApplication::processEvents();
    EXPECT_TRUE(Shows("Running: " + QString(255, 'm') + "<i>"));
    EXPECT_EQ(panes.minimumSizeHint().width(), width) << "a long name asks for no room";
    panes.panel().ShowRunning("");
    EXPECT_FALSE(Shows("Running: "));
}

TEST_F(EditorPanesTest, AnEditIsInTheRecordAtOnceAndThePageFollowsIt) {
    document.bios = "caf\xE9.bin";
    panes.ShowPage(1);
    auto& bios = FieldOf(panes, "Bios File");
    auto& line = FieldOf(panes, "Command Line");
    EXPECT_EQ(bios.text(), "caf\u00E9.bin");
    EXPECT_EQ(line.text(), "") << "nothing for NULL";
    EXPECT_FALSE(document.dirty || AreButtonsEnabled()) << "showing it is no edit";

    Type(line, "-slowboot \u00E9");
    EXPECT_EQ(document.commandLine, "-slowboot \xC3\xA9");
    EXPECT_TRUE(document.dirty && AreButtonsEnabled());
    EXPECT_EQ(document.bios, "caf\xE9.bin");
    bios.end(false);
    bios.backspace();
    EXPECT_EQ(document.bios, "caf\xC3\xA9.bi");
    bios.insert("n");
    EXPECT_EQ(document.bios, "caf\xE9.bin") << "the text of before has the bytes of before";
    panes.ShowPage(4);
    EXPECT_EQ(line.text(), "-slowboot \u00E9") << "a page out of sight keeps its contents";
    document.commandLine = "-other";
    panes.ShowPage(1);
    EXPECT_EQ(line.text(), "-other");
    line.clear();
    EXPECT_EQ(document.commandLine, "NULL");
    document.commandLine = "-file";
    panes.RefreshPage();
    EXPECT_EQ(line.text(), "-file");
}

TEST_F(EditorPanesTest, BrowseFindsABiosFileInTheEmulatorsFolder) {
    ASSERT_TRUE(files->MakeFolders(InHome("emu/bios")).ok());
    WriteFile(InHome("emu/bios/scph1001.bin"), "bios");
    document.settings.SetEmulatorPath(InHome("emu/epsxe"));
    panes.ShowPage(1);
    OnDialog<QFileDialog>([](auto& dialog) { dialog.reject(); });
    Click(panes, "Browse");
    EXPECT_EQ(document.bios, "NULL");
    OnDialog<QFileDialog>([](auto& dialog) {
        EXPECT_TRUE(dialog.nameFilters()[0].startsWith("Bios rom (*.bin)"));
        auto& edit = *dialog.template findChild<QLineEdit*>("fileNameEdit");
        Type(edit, "scph1001");
        QTest::keyClick(&edit, Qt::Key_Return);
    });
    Click(panes, "Browse");
    EXPECT_EQ(document.bios, InHome("emu/bios/scph1001.bin"));
    EXPECT_TRUE(document.dirty && AreButtonsEnabled());
}

TEST_F(EditorPanesTest, TheTabKeyGoesThroughThePageToThePanel) {
    panes.ShowPage(1);
    panes.panel().EnableApplyAndReset(true);
    const auto button = [this](const char* text) -> QWidget* { return &Button(panes, text); };
    const auto inner = panes.GetPane(0, 1)->findChildren<QSplitterHandle*>();
    QWidget* const stops[] = {panes.handle(1),
                              &FieldOf(panes, "Bios File"),
                              button("Browse"),
                              &FieldOf(panes, "Command Line"),
                              inner.at(1),
                              button("Launch Epsxe"),
                              button("Apply Settings"),
                              button("Reset Settings")};
    panes.GetPane(0, 0)->setFocus();
    for (const auto* const stop : stops) {
        QTest::keyClick(panes.focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(panes.focusWidget(), stop);
    }
}

}  // namespace
}  // namespace velto::test
