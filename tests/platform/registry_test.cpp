#include "platform/registry.h"

#include <chrono>
#include <cstdint>
#include <future>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "support/recorded_registry.h"
#include "support/surroundings.h"

namespace velto::platform {
namespace {

using namespace std::string_literals;
using test::Recorder;
using test::TemporaryFolder;

constexpr auto kKey = "HKEY_CURRENT_USER\\Software\\epsxe";

template <class Outcome>
ErrorKind KindOf(const Outcome& outcome) {
    EXPECT_FALSE(outcome.ok());
    return outcome.ok() ? ErrorKind::Other : outcome.error().kind;
}

RegistryValue Binary(std::string data) {
    return {RegistryType::Binary, std::move(data)};
}

Status Put(RegistryStore& store, std::string path, std::string name, RegistryValue value) {
    return WriteValues(store, {{{std::move(path), std::move(name), std::move(value)}}});
}

std::string DataOf(RegistryStore& store, std::string_view path, std::string_view name) {
    auto key = store.OpenKey(path);
    if (!key.ok()) return "no key";
    auto value = key.value()->Query(name);
    return value.ok() ? value.value().data : "no value";
}

std::unique_ptr<RegistryStore> Opened(const std::string& file, const std::string& first_value) {
    auto store = MakeSqliteRegistry(file);
    const RegistryWrite first[] = {{"First", "", Binary(first_value)}};
    EXPECT_TRUE(store->OpenStore(first).ok());
    return store;
}

class RegistryTest : public testing::Test {
  protected:
    TemporaryFolder folder_;
    const std::string file_ = folder_ / "registry.db";
    std::unique_ptr<RegistryStore> store_ = Opened(file_, "0");
    std::unique_ptr<RegistryStore> other_ = Opened(file_, "1");
};

TEST_F(RegistryTest, GivesEveryTypeAndEveryByteBackExactly) {
    std::string all_bytes;
    for (int byte = 0; byte < 256; ++byte) all_bytes += static_cast<char>(byte);
    const RegistryValue values[] = {StringValue("text"),
                                    Binary(std::string(kLargestValue, '\0')),
                                    {RegistryType::None, ""},
                                    {RegistryType{0x7FFFFFFF}, "123456789"},
                                    {RegistryType{0xFFFFFFFF}, all_bytes}};
    for (std::size_t i = 0; i < std::size(values); ++i) {
        ASSERT_TRUE(Put(*store_, kKey, std::to_string(i), values[i]).ok());
        const auto key = other_->OpenKey(kKey).value();
        EXPECT_EQ(key->Query(std::to_string(i)).value(), values[i]) << i;
        EXPECT_EQ(key->EnumerateValue(i).value()->type, values[i].type) << i;
    }
}

TEST_F(RegistryTest, EnumeratesSubkeysByNameAndValuesInTheirOrderOfCreation) {
    // Only A to Z have two cases.
    for (const char* name : {"b", "\xE4", "C", "", "a", "\xC4"}) {
        const auto subkey = std::string(kKey).append("\\_").append(name);
        ASSERT_TRUE(store_->CreateKey(subkey).ok());
        ASSERT_TRUE(Put(*store_, kKey, name, Binary("x")).ok());
    }
    auto key = store_->OpenKey(std::string(kKey) + "\\").value();
    ASSERT_TRUE(key->Set("B", StringValue("changed, and longer")).ok());
    EXPECT_EQ(key->Query("b").value(), StringValue("changed, and longer"));
    const std::tuple<std::size_t, std::string, std::string> jumps[] = {
        {0, "_", "b"}, {1, "_a", "\xE4"}, {5, "_\xE4", "\xC4"}, {2, "_b", "C"},
        {3, "_C", ""}, {4, "_\xC4", "a"}, {6, "none", "none"},  {SIZE_MAX, "none", "none"},
    };
    for (const auto& [index, subkey, value] : jumps) {
        EXPECT_EQ(key->EnumerateSubkey(index).value().value_or("none"), subkey) << index;
        const auto found = key->EnumerateValue(index).value();
        EXPECT_EQ(found ? found->name : "none", value) << index;
    }
}

TEST_F(RegistryTest, RefusesWhatIsOverTheBounds) {
    using std::string;
    string deepest = "R";
    for (std::size_t i = 1; i < kDeepestKey; ++i) deepest += "\\e";
    const std::tuple<string, string, std::size_t, bool> cases[] = {
        {"R\\" + string(kLongestKeyName, 'k'), string(kLongestValueName, 'v'), kLargestValue, true},
        {"R\\" + string(kLongestKeyName + 1, 'k'), "", 0, false},
        {deepest, "", 0, true},
        {deepest + "\\e", "", 0, false},
        {"R\\n", string(kLongestValueName + 1, 'v'), 0, false},
        {"R\\d", "", kLargestValue + 1, false},
        {"R\\tab\t\\", "a\\b\t\x7F\x1A", 0, true},
        {"R\\\\slash", "", 0, false},
        {"", "", 0, false},
        {"R\\z\0z"s, "", 0, false},
        {"R\\v", "v\n", 0, false},
    };
    for (const auto& [path, name, length, good] : cases) {
        SCOPED_TRACE(path.substr(0, 20) + " " + name.substr(0, 20));
        const auto written = Put(*store_, path, name, Binary(string(length, 'd')));
        const auto opened = store_->OpenKey(path);
        EXPECT_EQ(written.ok() && opened.ok(), good);
        if (good) continue;
        EXPECT_EQ(KindOf(written), ErrorKind::Malformed);
        EXPECT_EQ(KindOf(opened), ErrorKind::NotFound) << "nothing of it may stay";
    }
    auto key = store_->CreateKey("R").value();
    EXPECT_EQ(KindOf(key->Set("\n", {})), ErrorKind::Malformed);
    EXPECT_EQ(KindOf(key->Query("\n")), ErrorKind::NotFound);
    EXPECT_EQ(KindOf(store_->CreateKey("R\\\\")), ErrorKind::Malformed);
    EXPECT_EQ(KindOf(store_->OpenKey("R\\none")), ErrorKind::NotFound);
}

TEST_F(RegistryTest, KeepsATransactionToItselfUntilItsCommitOrTakesItBack) {
    auto transaction = store_->Begin().value();
    ASSERT_TRUE(transaction->SetValue(kKey, "a", Binary("1")).ok());
    ASSERT_TRUE(store_->OpenKey(kKey).value()->Set("b", Binary("2")).ok());
    ASSERT_TRUE(transaction->CreateKey("HKEY_USERS\\made").ok());
    EXPECT_EQ(KindOf(store_->Begin()), ErrorKind::Other) << "one at a time";
    EXPECT_EQ(KindOf(transaction->SetValue("", "", {})), ErrorKind::Malformed);
    Recorder shown;
    EXPECT_TRUE(store_->Visit(kKey, shown).ok());
    EXPECT_EQ(shown.text, std::string("[") + kKey + "]\na=3:1\nb=3:2\n");
    EXPECT_FALSE(other_->OpenKey(kKey).ok());
    auto late = std::async(std::launch::async, [&] { return Put(*store_, kKey, "c", {}).ok(); });
    EXPECT_EQ(late.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    EXPECT_TRUE(transaction->Commit().ok());
    EXPECT_TRUE(late.get()) << "another thread's turn";
    EXPECT_EQ(DataOf(*other_, kKey, "a") + DataOf(*other_, kKey, "b"), "12");
    EXPECT_TRUE(other_->OpenKey("HKEY_USERS\\made").ok());
    EXPECT_TRUE(Put(*other_, kKey, "a", Binary("old")).ok()) << "the lock went with it";

    transaction = store_->Begin().value();
    ASSERT_TRUE(transaction->SetValue(kKey, "a", Binary("new")).ok());
    ASSERT_TRUE(transaction->CreateKey("R\\gone").ok());
    auto gone = store_->OpenKey("R\\gone").value();
    transaction.reset();
    // The next key takes over the numbers of the one that is gone.
    auto next = store_->CreateKey("S\\next").value();
    EXPECT_EQ(KindOf(gone->Set("v", Binary("astray"))), ErrorKind::NotFound);
    EXPECT_EQ(KindOf(gone->EnumerateValue(0)), ErrorKind::NotFound);
    EXPECT_FALSE(next->EnumerateValue(0).value());
    EXPECT_FALSE(store_->OpenKey("R").ok());
    const RegistryWrite writes[] = {{kKey, "a", Binary("new")}, {kKey, "bad\n", {}}};
    EXPECT_EQ(KindOf(WriteValues(*store_, writes)), ErrorKind::Malformed);
    EXPECT_EQ(DataOf(*other_, kKey, "a"), "old");
}

TEST_F(RegistryTest, ShowsABranchAsItWasWhenTheVisitBegan) {
    const RegistryWrite writes[] = {
        {"R\\Top", "2", Binary("b")},      {"R\\Top", "1", Binary("a")},
        {"R\\Top\\z", "", Binary("c")},    {"R\\Top\\Y\\deep", "d", Binary("d")},
        {"R\\Top2", "not", Binary("its")},
    };
    ASSERT_TRUE(WriteValues(*store_, writes).ok());
    Recorder shown;
    shown.at_value = [&] {
        auto written = Put(*store_, "r\\top\\z\\late", "late", Binary("late"));
        return written.ok() ? Put(*other_, "r\\top", "3", Binary("late")) : written;
    };
    ASSERT_TRUE(store_->Visit("r\\TOP\\", shown).ok());
    EXPECT_EQ(shown.text,
              "[R\\Top]\n2=3:b\n1=3:a\n[R\\Top\\Y]\n[R\\Top\\Y\\deep]\nd=3:d\n[R\\Top\\z]\n=3:c\n");
    EXPECT_EQ(DataOf(*store_, "R\\Top", "3"), "late");

    shown.text.clear();
    shown.at_value = [] { return Error{ErrorKind::Full, "out", "no room"}; };
    EXPECT_EQ(KindOf(store_->Visit("R", shown)), ErrorKind::Full);
    EXPECT_EQ(shown.text, "[R]\n[R\\Top]\n2=3:b\n");
    EXPECT_EQ(KindOf(store_->Visit("R\\T", shown)), ErrorKind::NotFound);
}

TEST_F(RegistryTest, GivesAStoreItsFirstValuesOnlyWhenItIsMade) {
    EXPECT_EQ(DataOf(*other_, "First", ""), "0");
    EXPECT_EQ(DataOf(*Opened(folder_ / "new/folders/r.db", "2"), "First", ""), "2");

    const auto file = folder_ / "zero-bytes.db";
    test::WriteFile(file, "");
    const RegistryWrite bad[] = {{"Good", "", Binary("1")}, {"Bad", "bad\n", {}}};
    EXPECT_EQ(MakeSqliteRegistry(file)->OpenStore(bad).error().subject, file);
    const auto mended = Opened(file, "3");
    EXPECT_EQ(DataOf(*mended, "First", ""), "3");
    EXPECT_EQ(DataOf(*mended, "Good", ""), "no key");
}

// Offsets in the header of a SQLite file.
constexpr std::size_t kFormatVersions = 18;
constexpr std::size_t kUserVersion = 60;
constexpr std::size_t kApplicationId = 68;

TEST_F(RegistryTest, RefusesWhatIsNoRegistryAndLeavesItAsItIs) {
    store_.reset();
    other_.reset();
    const auto good = test::ReadFile(file_);
    ASSERT_EQ(good.substr(kFormatVersions, 2), "\2\2") << "a write-ahead log, and closed";
    const auto with = [&](std::size_t offset, std::string_view big_endian) {
        return std::string(good).replace(offset, big_endian.size(), big_endian);
    };
    const std::tuple<const char*, std::string, ErrorKind, bool> cases[] = {
        {"long text", std::string(10'000, 'x'), ErrorKind::Malformed, false},
        {"cut short", good.substr(0, good.size() / 2), ErrorKind::Malformed, false},
        {"no version's", with(kUserVersion, "\0\0\0\0"s), ErrorKind::Malformed, false},
        {"a later version's", with(kUserVersion, "\1\1\1\1"), ErrorKind::Unsuitable, false},
        {"another program's", with(kApplicationId, "\1\2\3\4"), ErrorKind::Unsuitable, true},
    };
    for (const auto& [what, bytes, kind, has_log] : cases) {
        SCOPED_TRACE(what);
        TemporaryFolder folder;
        const auto file = folder / "r.db";
        test::WriteFile(file, bytes);
        if (has_log) test::WriteFile(file + "-wal", "not ours to tidy up");
        const auto store = MakeSqliteRegistry(file);
        const auto opened = store->OpenStore({});
        EXPECT_EQ(KindOf(opened), kind);
        EXPECT_EQ(opened.error().subject, file);
        EXPECT_FALSE(store->OpenKey("First").ok() || store->Begin().ok());
        EXPECT_EQ(test::ReadFile(file), bytes);
        EXPECT_EQ(MakeFileService()->List(folder.path()).value().size(), has_log ? 2 : 1);
    }
    for (const auto& file : {folder_.path(), "/dev/null"s}) {
        EXPECT_EQ(KindOf(MakeSqliteRegistry(file)->OpenStore({})), ErrorKind::Unsuitable) << file;
    }
    EXPECT_FALSE(MakeSqliteRegistry(file_ + "/below-a-file")->OpenStore({}).ok());

    // But one whose maker was stopped in front of its log is finished.
    test::WriteFile(file_, with(kFormatVersions, "\1\1"));
    EXPECT_EQ(DataOf(*Opened(file_, "1"), "First", ""), "0");
    EXPECT_EQ(test::ReadFile(file_).substr(kFormatVersions, 2), "\2\2");
}

}  // namespace
}  // namespace velto::platform
