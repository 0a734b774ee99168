#include "shell/app_startup.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;

constexpr const char* kGpuKey = "Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo";

std::string PluginsBackup(const std::string& value) {
    return "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\"s + kGpuKey + "]\r\n\"v\"=\"" + value + "\"\r\n";
}

class StartupTest : public HomeTest, public StartupWindow {
  protected:
    void OnLogLine(const std::string& line) override {
        EXPECT_THAT(LogFile(), HasSubstr(line + "\r\n")) << "in the file first";
        lines.push_back(line);
    }
    void RunPathsDialog() override { ++paths_dialogs; }

    std::string LogFile() const { return ReadFile(InHome("drive_c/veltoStartup.log")); }
    void Start() {
        lines.clear();
        CAppStartup(environment.ConfigFolder(), *this).Run();
    }

    std::vector<std::string> lines;
    int paths_dialogs = 0;
};

TEST_F(StartupTest, TellsEachStepInTheLogThatIsMadeAnew) {
    WriteFile(InHome("drive_c/veltoStartup.log"), "former start");
    Start();
    EXPECT_THAT(
        lines,
        ElementsAre("Velto starting up....", "Registry keys detected.  Continuing with startup",
                    "Checking and updating plugin settings if nessesary.",
                    "Disabling native windows autoplay support for psx cds.",
                    "Exclusion list missing or corrupt.  Rebuilding....",
                    "No plugins files (*.dll) found", "System Preparations complete."));
    std::string file = "Velto startup Log\r\n";
    for (const auto& line : lines) file += line + "\r\n";
    EXPECT_EQ(LogFile(), file);
    EXPECT_THAT(CVeltoSettings().GetExclusionList(),
                ElementsAre("zlib.dll", "AUDIOW32.DLL", "subTsgMSCD16.dll", "subTsgMSCD32.dll",
                            "kailleraclient.dll"));
    for (const auto* key : {"CDR", "GPU", "SPU", "NET", "PAD"}) {
        EXPECT_TRUE(
            registry->OpenKey("HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\"s + key)
                .ok());
    }
    const auto cancelled = registry->OpenKey(
        "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\"
        "AutoplayHandlers\\CancelAutoplay\\Files");
    ASSERT_TRUE(cancelled.ok());
    EXPECT_EQ(cancelled.value()->Query("system.cnf").value(), platform::StringValue(""));

    CVeltoSettings().SetExclusionList({});
    Start();
    EXPECT_THAT(CVeltoSettings().GetExclusionList(), IsEmpty()) << "emptied by the user";
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(StartupTest, TheFirstRunAsksOnceWhateverTheUserDoes) {
    SetValue(kSettingsKey, "installerReset", platform::DwordValue(1));
    Start();
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(boxes.shown[0].text,
              "              Welcome to Velto.\n\nAs this is the first time this application \n"
              "has been run please take a few moments\nto configure the nesessary settings.");
    EXPECT_EQ(boxes.shown[0].caption, "Hello!");
    EXPECT_EQ(boxes.shown[0].icon, platform::BoxIcon::Information);
    EXPECT_EQ(paths_dialogs, 1);
    EXPECT_EQ(lines[1], "Registry keys not detected.  Launching 1st time setup...");
    EXPECT_EQ(lines[2], "Program settings written to registry.");
    EXPECT_EQ(lines[3], "1st time setup complete.");
    EXPECT_EQ(lines[4], "Continuing with startup");
    Start();
    EXPECT_EQ(paths_dialogs, 1);
}

TEST_F(StartupTest, LeftoversOfARunThatWasCutOffAreDealtWithInTheirOrder) {
    SetValue(kGpuKey, "v", platform::StringValue("borrowed"));
    WriteFile(InConfig("main.bak"), "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\" + std::string(kGpuKey) +
                                        "]\r\n\"v\"=\"not from here\"\r\n");
    WriteFile(InConfig("plugins.bak"), PluginsBackup("the user's"));
    WriteFile(InConfig("plugins.tmp"), "REGEDIT4 \r\n");
    WriteFile(InConfig("velto-999999999-0.new"), "half a save");
    WriteFile(InConfig("Main.bak.dta"), "a configuration");
    WriteFile(InConfig("Plugins.tmp"), "in other letters, so not ours");
    Start();
    EXPECT_THAT(StringOf(kGpuKey, "v"), Optional("the user's"s));
    EXPECT_THAT(lines, testing::IsSupersetOf(
                           {"main.bak detected.  Deleteing..."s,
                            "plugins.bak detected.  Now resetting registry and deleteing the file"s,
                            "plugins.tmp detected... deleteing."s}));
    EXPECT_THAT(files->List(environment.ConfigFolder()).value(),
                testing::UnorderedElementsAre("Main.bak.dta", "Plugins.tmp"));
}

TEST_F(StartupTest, ABackupWhoseMergeFailedStaysAndTheStartGoesOn) {
    WriteFile(InConfig("plugins.bak"), "cut short");
    Start();
    EXPECT_EQ(ReadFile(InConfig("plugins.bak")), "cut short");
    EXPECT_EQ(lines.back(), "System Preparations complete.");
    WriteFile(InConfig("plugins.bak"), PluginsBackup("mended"));
    Start();
    EXPECT_FALSE(Exists(InConfig("plugins.bak")));
    EXPECT_THAT(StringOf(kGpuKey, "v"), Optional("mended"s));
}

TEST_F(StartupTest, GoesOnWithoutALogFile) {
    std::filesystem::create_directories(InHome("drive_c/veltoStartup.log"));
    std::vector<std::string> shown;
    struct Window : StartupWindow {
        explicit Window(std::vector<std::string>& to) : lines(to) {}
        void OnLogLine(const std::string& line) override { lines.push_back(line); }
        void RunPathsDialog() override {}
        std::vector<std::string>& lines;
    } window(shown);
    CAppStartup(environment.ConfigFolder(), window).Run();
    EXPECT_EQ(shown.back(), "System Preparations complete.");
}

}  // namespace
}  // namespace velto::test
