// Exports and merges between real files and a real store.
#include "regedit/regedit.h"

#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "regedit/recorded_text.h"
#include "support/failing_files.h"
#include "support/failing_registry.h"
#include "support/temporary_folder.h"

namespace velto::test {
namespace {

class RegeditTest : public ::testing::Test {
  protected:
    std::unique_ptr<platform::RegistryStore> NewStore(const std::string& name) const {
        auto made = platform::MakeSqliteRegistry(folder / name);
        EXPECT_TRUE(made->OpenStore({}).ok());
        return made;
    }
    void Merge(std::string_view text) {
        WriteFile(file, text);
        ASSERT_TRUE(regedit::MergeFile(*files, *store, file).ok());
    }
    std::string Content() {
        Recorder recorder;
        std::ignore = store->Visit("HKEY_CURRENT_USER", recorder);
        return recorder.text;
    }

    TemporaryFolder folder;
    std::string file = folder / "text.reg";
    std::unique_ptr<platform::FileService> files = platform::MakeFileService();
    std::unique_ptr<platform::RegistryStore> store = NewStore("registry.db");
};

TEST_F(RegeditTest, AMergeAddsAndOverwritesAndRemovesNothing) {
    Merge(
        "REGEDIT4\n[HKEY_CURRENT_USER\\A]\n\"one\"=\"1\"\n\"two\"=\"2\"\n"
        "[HKEY_CURRENT_USER\\B]\n\"three\"=\"3\"\n");
    Merge(
        "REGEDIT4\n[hkey_current_user\\a]\n\"TWO\"=dword:2\n\"four\"=\"4\"\n\"one\"=-\n"
        "[-HKEY_CURRENT_USER\\B]\n[HKEY_CURRENT_USER\\A\\Empty]\n");
    EXPECT_EQ(Content(),
              "[HKEY_CURRENT_USER]\n[HKEY_CURRENT_USER\\A]\none=1:1%00\ntwo=4:%02%00%00%00\n"
              "four=1:4%00\n[HKEY_CURRENT_USER\\A\\Empty]\n[HKEY_CURRENT_USER\\B]\nthree=1:3%00\n");
}

TEST_F(RegeditTest, AMergeThatFailsAnywhereChangesNothing) {
    Merge("REGEDIT4\n[HKEY_CURRENT_USER\\A]\n\"one\"=\"1\"\n");
    const auto before = Content();
    WriteFile(file,
              "REGEDIT4\n[HKEY_CURRENT_USER\\A]\n\"one\"=\"new\"\n\"two\"=\"new\"\n"
              "[HKEY_CURRENT_USER\\B]\n\"three\"=\"new\"\n");
    constexpr int kReads = 3;   // open the file, read it, look for more
    constexpr int kWrites = 6;  // two keys, three values and the commit
    for (int step = 1; step <= kReads + kWrites + 1; ++step) {
        FailingFiles failing_files(*files, step, FailingFiles::At::Fail);
        const int spared = step > kReads ? step - kReads - 1 : kWrites;
        FailingRegistry failing_store(*store, RegistryCall::Step, "", spared);
        const auto merged = regedit::MergeFile(failing_files, failing_store, file);
        ASSERT_EQ(merged.ok(), step > kReads + kWrites) << step;
        EXPECT_EQ(Content() != before, merged.ok()) << step;
    }
}

TEST_F(RegeditTest, AnExportMovesAKeyWithAllBelowItToAnotherStore) {
    std::string fifty_bytes = "a";
    for (int i = 1; i < 50; ++i) fifty_bytes += ",a";
    Merge(
        "REGEDIT4\n[HKEY_CURRENT_USER\\Software\\Moved]\n@=\"\"\n\"@\"=\"c:\\\\x\\\\\"\n"
        "\"\xE9 ;=\"=hex(1):61,0a\n\"b\"=hex:" +
        fifty_bytes +
        "\n[HKEY_CURRENT_USER\\Software\\MovedNot]\n"
        "[HKEY_CURRENT_USER\\Software\\Moved\\ a];b]\n\"d\"=dword:1a7\n\"e\"=hex(80000010):\n"
        "\"f\"=hex(4):1\n[HKEY_CURRENT_USER\\Software\\Moved\\ a];b\\None]\n");
    const auto exported = folder / "exported.reg";
    WriteFile(exported, std::string(5000, 'x'));
    ASSERT_TRUE(
        regedit::ExportKey(*files, *store, exported, "hkey_current_user\\SOFTWARE\\moved\\").ok());
    const std::string text =
        "[HKEY_CURRENT_USER\\Software\\Moved]\r\n@=\"\"\r\n"
        "\"@\"=\"c:\\\\x\\\\\"\r\n\"\xE9 ;=\"=hex(1):61,0a\r\n"
        "\"b\"=hex:0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,\\\r\n"
        "  0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,0a,\\\r\n"
        "  0a,0a\r\n\r\n"
        "[HKEY_CURRENT_USER\\Software\\Moved\\ a];b]\r\n\"d\"=dword:000001a7\r\n"
        "\"e\"=hex(80000010):\r\n\"f\"=hex(4):01\r\n\r\n"
        "[HKEY_CURRENT_USER\\Software\\Moved\\ a];b\\None]\r\n\r\n";
    EXPECT_EQ(ReadFile(exported), "REGEDIT4\r\n\r\n" + text);

    const auto other = NewStore("other.db");
    EXPECT_EQ(regedit::MergeFile(*files, *other, exported).value(), 0U);
    ASSERT_TRUE(regedit::ExportKey(*files, *other, file, "HKEY_CURRENT_USER\\Software").ok());
    EXPECT_EQ(ReadFile(file), "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software]\r\n\r\n" + text);
}

}  // namespace
}  // namespace velto::test
