// Several processes on one registry. Each is a forked child that opens a store of its own.
#include <sys/resource.h>

#include <chrono>
#include <deque>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "support/forked_child.h"
#include "support/recorded_registry.h"
#include "support/surroundings.h"

namespace velto::platform {
namespace {

using test::ForkedChild;

constexpr auto kKey = "HKEY_CURRENT_USER\\Software\\epsxe";

void Require(bool condition, const std::string& what) {
    if (!condition) throw std::runtime_error(what);
}
void Require(const Status& status) {
    if (!status.ok()) Require(false, status.error().subject + ": " + status.error().text);
}

// What is written together.
std::vector<RegistryWrite> Together(std::int64_t number) {
    const auto value = StringValue(std::to_string(number));
    return {{kKey, "a", value}, {kKey, "b", value}, {kKey, "c", value}};
}

std::unique_ptr<RegistryStore> OpenStore(const std::string& file) {
    auto store = MakeSqliteRegistry(file);
    Require(store->OpenStore(Together(0)));
    return store;
}

std::int64_t ReadTogether(RegistryStore& store) {
    test::Recorder shown;
    Require(store.Visit(kKey, shown));
    const auto number = std::stoll(shown.text.substr(shown.text.find(':') + 1));
    const auto value = "=1:" + std::to_string(number) + "%00\n";
    Require(shown.text.ends_with("]\na" + value + "b" + value + "c" + value), "half a write");
    return number;
}

// One more: what was read isn't overwritten by others before it is written.
void Increment(RegistryStore& store) {
    const auto transaction = store.Begin().value();
    for (const auto& [path, name, value] : Together(ReadTogether(store) + 1)) {
        Require(transaction->SetValue(path, name, value));
    }
    Require(transaction->Commit());
}

TEST(RegistryProcesses, LoseNothingThatWasCommittedAtWhateverMomentTheyAreKilled) {
    const test::TemporaryFolder folder;
    std::mt19937 random(20240611);
    for (int round = 0; round < 12; ++round) {
        const auto file = folder / std::to_string(round);
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
        for (auto& child : children) told += round == 0 && child.Next() ? 1 : 0;
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

TEST(RegistryProcesses, TakeAWholeTransactionBackWhenTheDiskIsFull) {
    const test::TemporaryFolder folder;
    const auto file = folder / "registry.db";
    ForkedChild child([&](const auto&) {
        const auto store = OpenStore(file);
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{};
        getrlimit(RLIMIT_FSIZE, &limit);
        const auto usual = std::exchange(limit.rlim_cur, rlim_t{6} << 20);
        setrlimit(RLIMIT_FSIZE, &limit);
        const auto transaction = store->Begin().value();
        Require(transaction->SetValue(kKey, "a", StringValue("1")));
        const RegistryValue large{RegistryType::Binary, std::string(kLargestValue, 'x')};
        bool full = false;
        for (int i = 0; i < 20 && !full; ++i) {
            full = !transaction->SetValue("Large", std::to_string(i), large).ok();
        }
        Require(full, "it should have failed");
        limit.rlim_cur = usual;
        setrlimit(RLIMIT_FSIZE, &limit);
        Require(!transaction->SetValue("Large", "late", large).ok(), "behind the failed one");
        Require(!transaction->Commit().ok(), "a commit after a failed write");
        Require(ReadTogether(*store) == 0, "not taken back");
        Increment(*store);
        return 0;
    });
    ASSERT_EQ(child.Wait(), 0);
    const auto store = OpenStore(file);
    EXPECT_EQ(ReadTogether(*store), 1);
    EXPECT_FALSE(store->OpenKey("Large").ok());
}

}  // namespace
}  // namespace velto::platform
