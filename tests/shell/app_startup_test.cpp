#include "shell/app_startup.h"

#include <filesystem>

#include <gmock/gmock.h>

#include "store/borrowed_branch.h"
#include "support/home_test.h"

namespace velto::test {
namespace {

using namespace std::string_literals;
using namespace testing;

const std::string kPluginKeys = "HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\";
const std::string kGpuKey = "Software\\Vision Thing\\PSEmu Pro\\GPU\\Demo";

class StartupTest : public HomeTest, public StartupWindow {
  protected:
    void OnLogLine(const std::string& line) override {
        lines.push_back(line);
        if (std::filesystem::is_directory(log_file)) return;
        EXPECT_THAT(ReadFile(log_file), EndsWith(line + "\r\n")) << "in the file first";
        if (!line.starts_with("plugins.bak")) return;
        EXPECT_FALSE(Exists(InConfig("main.bak"))) << "each step behind its line";
        EXPECT_THAT(StringOf(kGpuKey, "v"), Optional("borrowed"s));
    }
    void RunPathsDialog() override {}

    void Start() {
        lines.clear();
        CAppStartup(environment.ConfigFolder(), *this).Run();
        EXPECT_EQ(lines.back(), "System Preparations complete.");
    }

    const std::string log_file = InHome("drive_c/veltoStartup.log");
    std::vector<std::string> lines;
};

TEST_F(StartupTest, TellsEachStepInTheLogThatIsMadeAnew) {
    WriteFile(log_file, "former start");
    Start();
    EXPECT_EQ(ReadFile(log_file),
              "Velto startup Log\r\nVelto starting up....\r\n"
              "Registry keys detected.  Continuing with startup\r\n"
              "Checking and updating plugin settings if nessesary.\r\n"
              "Disabling native windows autoplay support for psx cds.\r\n"
              "Exclusion list missing or corrupt.  Rebuilding....\r\n"
              "No plugins files (*.dll) found\r\nSystem Preparations complete.\r\n");
    EXPECT_THAT(CVeltoSettings().GetExclusionList(), SizeIs(5));
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
    std::filesystem::create_directory(log_file);  // a start without a log
    Start();
    EXPECT_THAT(CVeltoSettings().GetExclusionList(), IsEmpty()) << "emptied by the user";
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(StartupTest, LeftoversOfARunThatWasCutOffAreDealtWithInTheirOrder) {
    SetValue(kGpuKey, "v", platform::StringValue("borrowed"));
    for (const auto* file : {"main.bak", "plugins.bak", "plugins.tmp", "velto-999999999-0.new",
                             "Main.bak.dta", "Plugins.tmp"}) {
        WriteFile(InConfig(file), "cut short");
    }
    {
        const auto run = BranchTurn::Take(environment.ConfigFolder());
        Start();
        EXPECT_TRUE(Exists(InConfig("main.bak"))) << "a run that lives needs its backups";
    }
    Start();
    EXPECT_THAT(lines, Contains("main.bak detected.  Deleteing..."));
    EXPECT_THAT(files->List(environment.ConfigFolder()).value(),
                UnorderedElementsAre("Main.bak.dta", "Plugins.tmp", "plugins.bak"))
        << "what can't be merged stays";
    WriteFile(InConfig("plugins.bak"),
              "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\" + kGpuKey +
                  "]\r\n\"v\"=\"the user's\"\r\n[HKEY_CURRENT_USER\\Software\\velto\\Settings]\r\n"
                  "\"epsxe\"=\"a stranger's\"\r\n");
    WriteFile(InConfig("plugins.tmp"), "");
    Start();
    EXPECT_THAT(StringOf(kGpuKey, "v"), Optional("the user's"s));
    EXPECT_NE(CVeltoSettings().GetEmulatorPath(), "a stranger's");
    EXPECT_THAT(lines, IsSupersetOf(
                           {"plugins.bak detected.  Now resetting registry and deleteing the file"s,
                            "plugins.tmp detected... deleteing."s}));
    EXPECT_FALSE(Exists(InConfig("plugins.bak")) || Exists(InConfig("plugins.tmp")));
}

}  // namespace
}  // namespace velto::test
