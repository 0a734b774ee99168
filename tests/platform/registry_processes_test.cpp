// Several processes on one registry. Each is a forked child that opens a store of its own.
#include <sys/resource.h>

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
    const auto work = [&](const auto& tell) {
        std::unique_ptr<RegistryStore> store;
        std::int64_t writes = 0;
        std::int64_t last = 0;
        const auto end = Clock::now() + 1s;
        for (auto begin = Clock::now(); begin < end; ++writes) {
            if (writes % 10 == 0) store.reset();
            if (!store) store = OpenStore(file_);
            Increment(*store);
            const auto number = ReadTogether(*store);
            Require(number > std::exchange(last, number), "a write is gone");
            const auto length = Clock::now() - std::exchange(begin, Clock::now());
            Require(length < kLongestRound, "it waited for too long");
        }
        tell(writes);
        return 0;
    };
    std::deque<ForkedChild> children;
    while (children.size() < 8) children.emplace_back(work);
    std::int64_t writes = 0;
    for (auto& child : children) {
        writes += child.Next().value_or(0);
        EXPECT_EQ(child.Wait(), 0);
    }
    EXPECT_EQ(ReadTogether(*OpenStore(file_)), writes);
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
        const auto let_files_grow_to = [](rlim_t size) {
            rlimit limit{};
            Require(getrlimit(RLIMIT_FSIZE, &limit) == 0, "getrlimit");
            limit.rlim_cur = std::min(size, limit.rlim_max);
            Require(setrlimit(RLIMIT_FSIZE, &limit) == 0, "setrlimit");
        };
        std::signal(SIGXFSZ, SIG_IGN);
        let_files_grow_to(rlim_t{6} << 20);
        auto transaction = Take(store->Begin());
        SetTogether(*transaction, 1);
        int stored = 0;
        while (stored < 20 && transaction->SetValue(kKey, std::to_string(stored), large).ok()) {
            ++stored;
        }
        Require(stored < 20, "it should have failed");
        let_files_grow_to(RLIM_INFINITY);
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

}  // namespace
}  // namespace velto::platform
