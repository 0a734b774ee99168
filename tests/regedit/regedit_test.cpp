// Exports and merges between real files and a real store.
#include "regedit/regedit.h"

#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "regedit/recorded_text.h"
#include "support/failing_files.h"
#include "support/temporary_folder.h"

namespace velto::test {
namespace {

using platform::ErrorKind;
using platform::RegistryType;
using platform::Result;
using platform::Status;
using testing::HasSubstr;
using testing::Not;

const platform::Error kFailure = {ErrorKind::Full, "store", "no space"};

// A real store whose transactions fail at one step, counted from 1: making a key, setting a value,
// or committing.
class FailingStore : public platform::RegistryStore {
  public:
    FailingStore(platform::RegistryStore& real, int step) : real_(real), step_(step) {}
    int steps() const { return count_; }

    Status OpenStore(std::span<const platform::RegistryWrite> values) override {
        return real_.OpenStore(values);
    }
    Result<std::unique_ptr<platform::RegistryKey>> OpenKey(std::string_view path) override {
        return real_.OpenKey(path);
    }
    Result<std::unique_ptr<platform::RegistryKey>> CreateKey(std::string_view path) override {
        return real_.CreateKey(path);
    }
    Result<std::unique_ptr<platform::RegistryTransaction>> Begin() override {
        auto real = real_.Begin();
        if (!real.ok()) return real;
        return std::unique_ptr<platform::RegistryTransaction>(
            std::make_unique<Transaction>(*this, std::move(real).value()));
    }
    Status Visit(std::string_view path, platform::RegistryVisitor& visitor) override {
        return real_.Visit(path, visitor);
    }

  private:
    class Transaction : public platform::RegistryTransaction {
      public:
        Transaction(FailingStore& store, std::unique_ptr<platform::RegistryTransaction> real)
            : store_(store), real_(std::move(real)) {}
        Status CreateKey(std::string_view path) override {
            return store_.Fails() ? kFailure : real_->CreateKey(path);
        }
        Status SetValue(std::string_view path, std::string_view name,
                        const platform::RegistryValue& value) override {
            return store_.Fails() ? kFailure : real_->SetValue(path, name, value);
        }
        Status Commit() override { return store_.Fails() ? kFailure : real_->Commit(); }

      private:
        FailingStore& store_;
        std::unique_ptr<platform::RegistryTransaction> real_;
    };

    bool Fails() { return ++count_ == step_; }

    platform::RegistryStore& real_;
    int step_;
    int count_ = 0;
};

// Files that can be read up to their second half.
class HalfReadFiles : public FailingFiles {
  public:
    explicit HalfReadFiles(platform::FileService& real) : FailingFiles(real, 0, At::Fail) {}
    Result<std::unique_ptr<platform::FileReader>> Open(const std::string& path) override {
        auto real = FailingFiles::Open(path);
        if (!real.ok()) return real;
        return std::unique_ptr<platform::FileReader>(
            std::make_unique<Reader>(Info(path).value().size / 2, std::move(real).value()));
    }

  private:
    class Reader : public platform::FileReader {
      public:
        Reader(std::size_t half, std::unique_ptr<platform::FileReader> real)
            : half_(half), real_(std::move(real)) {}
        Result<bool> Read(std::string& out, std::size_t limit) override {
            if (half_ == 0) return platform::Error{ErrorKind::Other, "file", "bad sector"};
            auto read = real_->Read(out, std::min(half_, limit));
            half_ = 0;
            return read;
        }

      private:
        std::size_t half_;
        std::unique_ptr<platform::FileReader> real_;
    };
};

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
    constexpr int kSteps = 6;
    for (int step = 1; step <= kSteps; ++step) {
        FailingStore failing(*store, step);
        const auto merged = regedit::MergeFile(*files, failing, file);
        ASSERT_FALSE(merged.ok()) << step;
        EXPECT_EQ(merged.error().text, kFailure.text);
        EXPECT_EQ(Content(), before) << step;
    }
    HalfReadFiles half_read(*files);
    const auto half_merged = regedit::MergeFile(half_read, *store, file);
    ASSERT_FALSE(half_merged.ok());
    EXPECT_EQ(half_merged.error().text, "bad sector");
    EXPECT_EQ(Content(), before);

    FailingStore counting(*store, 0);
    ASSERT_TRUE(regedit::MergeFile(*files, counting, file).ok());
    EXPECT_EQ(counting.steps(), kSteps);
    EXPECT_NE(Content(), before);
}

TEST_F(RegeditTest, AnExportMovesAKeyWithAllBelowItToAnotherStore) {
    Merge(
        "REGEDIT4\n[HKEY_CURRENT_USER\\Software\\Moved]\n@=\"\"\n\"@\"=\"c:\\\\x\\\\\"\n"
        "\"\xE9 ;=\"=hex(1):61,0a\n\"b\"=hex:1,2\n[HKEY_CURRENT_USER\\Software\\MovedNot]\n"
        "[HKEY_CURRENT_USER\\Software\\Moved\\ a];b]\n\"d\"=dword:7\n"
        "[HKEY_CURRENT_USER\\Software\\Moved\\ a];b\\None]\n");
    const auto exported = folder / "exported.reg";
    WriteFile(exported, std::string(5000, 'x'));
    ASSERT_TRUE(
        regedit::ExportKey(*files, *store, exported, "hkey_current_user\\SOFTWARE\\moved\\").ok());
    EXPECT_EQ(ReadFile(exported),
              "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Moved]\r\n@=\"\"\r\n"
              "\"@\"=\"c:\\\\x\\\\\"\r\n\"\xE9 ;=\"=hex(1):61,0a\r\n\"b\"=hex:01,02\r\n\r\n"
              "[HKEY_CURRENT_USER\\Software\\Moved\\ a];b]\r\n\"d\"=dword:00000007\r\n\r\n"
              "[HKEY_CURRENT_USER\\Software\\Moved\\ a];b\\None]\r\n\r\n");

    const auto other = NewStore("other.db");
    const auto merged = regedit::MergeFile(*files, *other, exported);
    ASSERT_TRUE(merged.ok());
    EXPECT_EQ(merged.value(), 0U);
    const auto again = folder / "again.reg";
    ASSERT_TRUE(regedit::ExportKey(*files, *other, again, "HKEY_CURRENT_USER\\Software").ok());
    EXPECT_EQ(ReadFile(again),
              "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software]\r\n" +
                  ReadFile(exported).substr(std::string_view("REGEDIT4\r\n").size()));
}

TEST_F(RegeditTest, AnExportThatFailsLeavesTheOldFile) {
    const std::string key = "HKEY_CURRENT_USER\\A";
    Merge("REGEDIT4\n[" + key + "]\n\"a\"=\"b\"\n");
    const struct {
        const char* key;
        ErrorKind error;
    } samples[] = {
        {"HKEY_CURRENT_USER\\None", ErrorKind::NotFound},
        {"HKEY_CURRENT_USER\\A\\\\", ErrorKind::NotFound},
        {"HKEY_NONE\\A", ErrorKind::Malformed},
        {"", ErrorKind::Malformed},
    };
    WriteFile(file, "old");
    for (const auto& sample : samples) {
        const auto exported = regedit::ExportKey(*files, *store, file, sample.key);
        ASSERT_FALSE(exported.ok()) << sample.key;
        EXPECT_EQ(exported.error().kind, sample.error) << sample.key;
        EXPECT_EQ(ReadFile(file), "old") << sample.key;
    }
    constexpr int kStepsToTheRename = 4;
    for (int step = 1; step <= kStepsToTheRename; ++step) {
        FailingFiles failing(*files, step, FailingFiles::At::Fail);
        EXPECT_FALSE(regedit::ExportKey(failing, *store, file, key).ok()) << step;
        EXPECT_EQ(ReadFile(file), "old") << step;
    }
    EXPECT_THAT(files->List(folder.path()).value(), Not(testing::Contains(HasSubstr(".new"))));
}

}  // namespace
}  // namespace velto::test
