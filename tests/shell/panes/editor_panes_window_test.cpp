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
    bool IsChanged() const {
        EXPECT_EQ(Button(panes, "Reset Settings").isEnabled(), document.dirty);
        return document.dirty;
    }

    CVeltoDoc document{environment.ConfigFolder(), *this};
    std::size_t configurations = 0;
    std::vector<Command> run;
    EditorPanes panes{new QLineEdit,
                      Pages(),
                      {document, *this, [this](Command command) { run.push_back(command); },
                       [this] { return configurations; }},
                      {}};
};

TEST_F(EditorPanesTest, EachNumberShowsItsPageAlone) {
    selected = "<b>caf\xE9</b>";
    configurations = 2;
    const auto lines = QString(
                           "Welcome to Velto,Bios File,Graphics,Sound,Cd-Rom/Iso,NetPlay,"
                           "MemoryCards,There are 2 configurations in this group.,GamePad")
                           .split(',');
    EXPECT_TRUE(Shows("GamePad")) << "before the first selection";
    for (const int number : {1, 0, 8, 2, 3, 4, 5, 6, 7, 9, 0, -1}) {
        const int page = number < 0 || number > 8 ? 1 : number;
        panes.ShowPage(number);
        for (int i = 0; i < 9; ++i) EXPECT_EQ(Shows(lines[i]), i == page) << number;
        EXPECT_EQ(Shows("<b>caf\u00E9</b>"), page == 1 || page == 7);
    }
}

TEST_F(EditorPanesTest, TheWelcomePageLeadsToTheNextStep) {
    panes.ShowPage(0);
    Click(panes, "Set Program Locations...");
    Click(panes, "New Configuration...");
    EXPECT_EQ(run, std::vector({Command::ProgramLocations, Command::NewConfiguration}));
    document.settings.SetEmulatorPath("C:\\epsxe.exe");
    configurations = 1;
    panes.RefreshPage();
    EXPECT_FALSE(Button(panes, "Set Program Locations...").isVisible());
    EXPECT_FALSE(Button(panes, "New Configuration...").isVisible());
}

TEST_F(EditorPanesTest, ThePanelTellsARunInOneLine) {
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
    EXPECT_FALSE(IsChanged()) << "showing it is no edit";
    Type(line, "-slowboot \u00E9");
    EXPECT_EQ(document.commandLine, "-slowboot \xC3\xA9");
    EXPECT_TRUE(IsChanged());
    EXPECT_EQ(document.bios, "caf\xE9.bin");
    panes.ShowPage(4);
    document.commandLine = "-other";
    EXPECT_EQ(line.text(), "-slowboot \u00E9") << "a page out of sight keeps its contents";
    panes.ShowPage(1);
    EXPECT_EQ(line.text(), "-other");
    line.clear();
    EXPECT_EQ(document.commandLine, "NULL");
}

TEST_F(EditorPanesTest, BrowseFindsABiosFileInTheEmulatorsFolder) {
    ASSERT_TRUE(files->MakeFolders(InHome("emu/bios")).ok());
    WriteFile(InHome("emu/bios/scph1001.bin"), "bios");
    document.settings.SetEmulatorPath(InHome("emu/epsxe"));
    panes.ShowPage(1);
    for (const QString name : {"", "scph1001"}) {
        OnDialog<QFileDialog>([&](auto& dialog) {
            EXPECT_TRUE(dialog.nameFilters()[0].startsWith("Bios rom (*.bin)"));
            auto& edit = *dialog.template findChild<QLineEdit*>("fileNameEdit");
            Type(edit, name);
            QTest::keyClick(&edit, name.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
        });
        Click(panes, "Browse");
        EXPECT_EQ(document.bios, name.isEmpty() ? "NULL" : InHome("emu/bios/scph1001.bin"));
        EXPECT_EQ(IsChanged(), !name.isEmpty());
    }
}

}  // namespace
}  // namespace velto::test
