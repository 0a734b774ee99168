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

using test::ForkedChild;

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
    const auto number = std::stoll(Take(key->Query(kTogether[0])).data) + 1;
    for (const char* name : kTogether) {
        Require(transaction->SetValue(kKey, name, StringValue(std::to_string(number))));
    }
    Require(transaction->Commit());
}

class RegistryProcesses : public testing::Test {
  protected:
    test::TemporaryFolder folder_;
    std::string file_ = folder_ / "registry.db";
};

TEST_F(RegistryProcesses, LoseNothingThatWasCommittedAtWhateverMomentTheyAreKilled) {
    std::mt19937 random(20240611);
    for (int round = 0; round < 12; ++round) {
        const auto file = folder_ / std::to_string(round);
        const auto work = [&](const auto& tell) {
            std::unique_ptr<RegistryStore> store;
            for (std::int64_t last = 0;;) {
                if (last % 10 == 0) store.reset();  // the last one to close it tidies up
                if (!store) store = OpenStore(file);
                Increment(*store);
                tell(1);
                const auto number = ReadTogether(*store);
                Require(number > std::exchange(last, number), "a write is gone");
            }
            return 0;
        };
        std::deque<ForkedChild> children;
        while (children.size() < 8) children.emplace_back(work);
        std::int64_t told = 0;
        // None of the first ones may starve; many of the others die while they make the store.
        for (auto child = children.begin(); round == 0 && child != children.end(); ++child) {
            told += child->Next() ? 1 : 0;
        }
        EXPECT_EQ(told, round == 0 ? 8 : 0);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 60'000));
        for (auto& child : children) child.Kill();
        for (auto& child : children) {
            while (child.Next()) ++told;
            EXPECT_EQ(child.Wait(), SIGKILL);
        }
        const auto found = ReadTogether(*OpenStore(file));
        EXPECT_GE(found, told);
        EXPECT_LE(found, told + 8) << "each may have died before it told";
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
        Require(transaction->SetValue(kKey, kTogether[0], StringValue("1")));
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
