#include "shell/app_startup.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/home_test.h"
#include "support/shown.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

const std::string kPluginKeys = "HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\";
const std::string kGpuKey = "Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo";

std::string Backup(const std::string& value) {
    return "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\" + kGpuKey + "]\r\n\"v\"=\"" + value + "\"\r\n";
}

class StartupTest : public HomeTest, public StartupWindow {
  protected:
    void OnLogLine(const std::string& line) override {
        lines.push_back(line);
        if (std::filesystem::is_directory(log_file)) return;
        EXPECT_THAT(ReadFile(log_file), testing::EndsWith(line + "\r\n")) << "in the file first";
        if (line.starts_with("plugins.bak")) {
            EXPECT_FALSE(Exists(InConfig("main.bak"))) << "each step behind its line";
            EXPECT_THAT(StringOf(kGpuKey, "v"), Optional("borrowed"s));
        }
    }
    void RunPathsDialog() override { lines.emplace_back("the paths"); }

    void Start() {
        lines.clear();
        CAppStartup(environment.ConfigFolder(), *this).Run();
    }

    const std::string log_file = InHome("drive_c/veltoStartup.log");
    std::vector<std::string> lines;
};

TEST_F(StartupTest, TellsEachStepInTheLogThatIsMadeAnew) {
    WriteFile(log_file, "former start");
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
    EXPECT_EQ(ReadFile(log_file), file);
    EXPECT_THAT(CVeltoSettings().GetExclusionList(),
                ElementsAre("zlib.dll", "AUDIOW32.DLL", "subTsgMSCD16.dll", "subTsgMSCD32.dll",
                            "kailleraclient.dll"));
    for (const auto* key : {"CDR", "GPU", "SPU", "NET", "PAD"}) {
        EXPECT_TRUE(registry->OpenKey(kPluginKeys + key).ok()) << key;
    }
    const auto cancelled = registry->OpenKey(
        "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\"
        "AutoplayHandlers\\CancelAutoplay\\Files");
    ASSERT_TRUE(cancelled.ok());
    EXPECT_EQ(cancelled.value()->Query("system.cnf").value(), platform::StringValue(""));

    CVeltoSettings().SetExclusionList({});
    std::filesystem::remove(log_file);
    std::filesystem::create_directory(log_file);
    Start();
    EXPECT_EQ(lines.back(), "System Preparations complete.") << "without a log file";
    EXPECT_THAT(CVeltoSettings().GetExclusionList(), IsEmpty()) << "emptied by the user";
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(StartupTest, TheFirstRunAsksOnceWhateverTheUserDoes) {
    SetValue(kSettingsKey, "installerReset", platform::DwordValue(1));
    Start();
    EXPECT_EQ(boxes.shown.at(0).icon, platform::BoxIcon::Information);
    EXPECT_THAT(
        Shown(boxes),
        ElementsAre("Hello!:               Welcome to Velto.\n\nAs this is the first time this "
                    "application \nhas been run please take a few moments\nto configure the "
                    "nesessary settings."));
    lines.resize(6);
    EXPECT_THAT(lines, ElementsAre("Velto starting up....",
                                   "Registry keys not detected.  Launching 1st time setup...",
                                   "the paths", "Program settings written to registry.",
                                   "1st time setup complete.", "Continuing with startup"));
    Start();
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(StartupTest, LeftoversOfARunThatWasCutOffAreDealtWithInTheirOrder) {
    SetValue(kGpuKey, "v", platform::StringValue("borrowed"));
    WriteFile(InConfig("main.bak"), Backup("not from here"));
    WriteFile(InConfig("plugins.bak"), Backup("the user's"));
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
    SetValue(kGpuKey, "v", platform::StringValue("borrowed"));
    for (const auto& backup : {"cut short"s, Backup("mended")}) {
        WriteFile(InConfig("plugins.bak"), backup);
        Start();
        EXPECT_EQ(lines.back(), "System Preparations complete.");
        EXPECT_EQ(Exists(InConfig("plugins.bak")), backup == "cut short");
    }
    EXPECT_THAT(StringOf(kGpuKey, "v"), Optional("mended"s));
}

}  // namespace
}  // namespace velto::test
