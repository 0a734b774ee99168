// Several processes on one registry. Each is a forked child that opens a store of its own.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "support/forked_child.h"
#include "support/temporary_folder.h"

namespace velto::platform {
namespace {

using namespace std::chrono_literals;
using test::ForkedChild;
using Clock = std::chrono::steady_clock;

constexpr auto kKey = "HKEY_CURRENT_USER\\Software\\epsxe";
constexpr const char* kTogether[] = {"together 1", "together 2", "together 3"};

std::deque<ForkedChild> Eight(const ForkedChild::Work& work) {
    std::deque<ForkedChild> children;
    while (children.size() < 8) children.emplace_back(work);
    return children;
}

void Require(bool condition, const std::string& what) {
    if (!condition) throw std::runtime_error(what);
}
void Require(const Status& status) {
    if (!status.ok()) Require(false, status.error().subject + ": " + status.error().text);
}
template <class T>
T Take(Result<T> result) {
    Require(result.status());
    return std::move(result).value();
}

std::unique_ptr<RegistryStore> OpenStore(const std::string& file) {
    auto store = MakeSqliteRegistry(file);
    std::vector<RegistryWrite> first_values;
    for (const char* name : kTogether) first_values.push_back({kKey, name, StringValue("0")});
    Require(store->OpenStore(first_values));
    return store;
}

void SetTogether(RegistryTransaction& transaction, std::int64_t number) {
    for (const char* name : kTogether) {
        Require(transaction.SetValue(kKey, name, StringValue(std::to_string(number))));
    }
}

// The number that the values which are written together all have.
std::int64_t ReadTogether(RegistryStore& store) {
    struct Reader : RegistryVisitor {
        Status OnKey(const std::string&) override { return {}; }
        Status OnValue(const std::string& name, const RegistryValue& value) override {
            if (name.starts_with("together")) texts.push_back(value.data);
            return {};
        }
        std::vector<std::string> texts;
    } reader;
    Require(store.Visit(kKey, reader));
    Require(reader.texts == std::vector(std::size(kTogether), reader.texts.at(0)), "half a write");
    return std::stoll(reader.texts[0]);
}

// One more of each: what was read isn't overwritten by others before it is written.
void Increment(RegistryStore& store) {
    const auto transaction = Take(store.Begin());
    const auto key = Take(store.OpenKey(kKey));
    SetTogether(*transaction, std::stoll(Take(key->Query(kTogether[0])).data) + 1);
    Require(transaction->Commit());
}

class RegistryProcesses : public testing::Test {
  protected:
    test::TemporaryFolder folder_;
    std::string file_ = folder_ / "registry.db";
};

TEST_F(RegistryProcesses, EightLoseNothingAndNoneWaitsForLong) {
    // The aim is half a second for each step, and all are well below it when the machine is idle;
    // here other tests may run, and flush, at the same time.
    constexpr auto kLongestRound = 5s;
    auto children = Eight([&](const auto& tell) {
        std::unique_ptr<RegistryStore> store;
        std::int64_t writes = 0;
        std::int64_t last = 0;
        const auto end = Clock::now() + 2s;
        for (auto begin = Clock::now(); begin < end; ++writes) {
            if (writes % 10 == 0) {
                store.reset();
                store = OpenStore(file_);
            }
            Increment(*store);
            const auto number = ReadTogether(*store);
            Require(number > std::exchange(last, number), "a write is gone");
            const auto length = Clock::now() - std::exchange(begin, Clock::now());
            Require(length < kLongestRound, "it waited for too long");
        }
        tell(writes);
        return 0;
    });
    std::int64_t writes = 0;
    for (auto& child : children) {
        const auto own = child.Next().value_or(0);
        EXPECT_GT(own, 0);
        EXPECT_EQ(child.Wait(), 0);
        writes += own;
    }
    EXPECT_EQ(ReadTogether(*OpenStore(file_)), writes);
}

TEST_F(RegistryProcesses, SeeTheFirstValuesHoweverManyMakeTheStore) {
    for (int round = 0; round < 10; ++round) {
        const auto file = folder_ / std::to_string(round);
        auto children = Eight([&](const auto&) { return ReadTogether(*OpenStore(file)) != 0; });
        for (auto& child : children) EXPECT_EQ(child.Wait(), 0);
    }
}

TEST_F(RegistryProcesses, KeepWhatWasCommittedWhenOneIsKilledAtAnyMoment) {
    std::mt19937 random(20240611);
    for (int round = 0; round < 40; ++round) {
        // A new store every other time, so that some die while they make it.
        const auto file = folder_ / std::to_string(round / 2);
        const std::string filler(random() % 60'000, 'x');
        ForkedChild child([&](const auto& tell) {
            const auto store = OpenStore(file);
            for (auto number = ReadTogether(*store) + 1;; ++number) {
                const auto transaction = Take(store->Begin());
                SetTogether(*transaction, number);
                Require(transaction->SetValue(kKey, "filler" + std::to_string(number % 50),
                                              StringValue(filler)));
                Require(transaction->Commit());
                tell(number);
            }
            return 0;
        });
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 60'000 >> random() % 5));
        child.Kill();
        std::optional<std::int64_t> committed;
        while (const auto told = child.Next()) committed = told;
        EXPECT_EQ(child.Wait(), SIGKILL);
        const auto found = ReadTogether(*OpenStore(file));
        // The one behind the last may have been committed and not told.
        const auto at_least = committed.value_or(found);
        EXPECT_TRUE(found == at_least || found == at_least + 1) << found;
    }
}

TEST_F(RegistryProcesses, TakeAWholeTransactionBackWhenTheDiskIsFull) {
    ForkedChild child([&](const auto&) {
        const auto store = OpenStore(file_);
        const RegistryValue large{RegistryType::Binary, std::string(kLargestValue, 'x')};
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit free{};
        Require(getrlimit(RLIMIT_FSIZE, &free) == 0, "getrlimit");
        const rlimit full{rlim_t{6} << 20, free.rlim_max};
        Require(setrlimit(RLIMIT_FSIZE, &full) == 0, "setrlimit");
        auto transaction = Take(store->Begin());
        SetTogether(*transaction, 1);
        int stored = 0;
        while (stored < 20 && transaction->SetValue(kKey, std::to_string(stored), large).ok()) {
            ++stored;
        }
        Require(stored < 20, "it should have failed");
        Require(setrlimit(RLIMIT_FSIZE, &free) == 0, "setrlimit");
        Require(!transaction->SetValue(kKey, "late", large).ok(), "a write after the failed one");
        Require(!transaction->Commit().ok(), "a commit after a failed write");
        Require(ReadTogether(*store) == 0, "not taken back");
        Increment(*store);
        return 0;
    });
    ASSERT_EQ(child.Wait(), 0);
    const auto store = OpenStore(file_);
    EXPECT_EQ(ReadTogether(*store), 1);
    EXPECT_FALSE(store->OpenKey(kKey).value()->Query("0").ok());
}

TEST_F(RegistryProcesses, AreToldWhenTheyMayNotWriteTheStore) {
    if (getuid() != 0) GTEST_SKIP() << "only root can become another user";
    OpenStore(file_).reset();
    const auto bytes = test::ReadFile(file_);
    const std::tuple<std::string, mode_t, mode_t> cases[] = {
        {file_, 0644, 0777},
        {file_, 0666, 0755},
        {file_, 0000, 0777},
        {folder_ / "new.db", 0666, 0755},
        {folder_ / "new/new.db", 0666, 0755},
    };
    for (const auto& [file, file_mode, folder_mode] : cases) {
        SCOPED_TRACE(file + " " + std::to_string(file_mode));
        ASSERT_EQ(chmod(file_.c_str(), file_mode), 0);
        ASSERT_EQ(chmod(folder_.path().c_str(), folder_mode), 0);
        ForkedChild child([&file = file](const auto&) {
            constexpr uid_t kNobody = 65534;
            Require(setuid(kNobody) == 0, "setuid");
            const auto opened = MakeSqliteRegistry(file)->OpenStore({});
            Require(!opened.ok(), "it should have failed");
            Require(opened.error().kind == ErrorKind::Denied, opened.error().text);
            Require(opened.error().subject == file, opened.error().subject);
            return 0;
        });
        EXPECT_EQ(child.Wait(), 0);
    }
    EXPECT_EQ(test::ReadFile(file_), bytes);
}

}  // namespace
}  // namespace velto::platform
