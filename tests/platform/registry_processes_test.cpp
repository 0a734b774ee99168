// Several processes on one registry. Each is a forked child that opens a store of its own.
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/descriptor.h"
#include "platform/registry.h"
#include "support/temporary_folder.h"

namespace velto::platform {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr auto kKey = "HKEY_CURRENT_USER\\Software\\epsxe";
constexpr std::array<const char*, 3> kTogether = {"first", "second", "third"};

// A child tells its parent numbers, and ends with status 0 unless `work` throws.
class Child {
  public:
    using Tell = std::function<void(std::int64_t)>;
    using Work = std::function<void(const Tell&)>;

    explicit Child(const Work& work) {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) throw std::runtime_error("pipe");
        id_ = fork();
        if (id_ == 0) Run(work, ends[1]);
        close(ends[1]);
        output_ = Descriptor(ends[0]);
    }

    void Kill() const { kill(id_, SIGKILL); }

    // What it told until its end, which is that of `status` in waitpid's terms.
    std::vector<std::int64_t> Finish(int expected_status = 0) {
        std::vector<std::int64_t> told;
        std::int64_t number = 0;
        while (read(output_.get(), &number, sizeof number) == sizeof number) told.push_back(number);
        int status = -1;
        EXPECT_EQ(waitpid(id_, &status, 0), id_);
        EXPECT_EQ(status, expected_status);
        return told;
    }

  private:
    [[noreturn]] static void Run(const Work& work, int output) {
        try {
            work([output](std::int64_t number) {
                if (write(output, &number, sizeof number) != sizeof number) _exit(2);
            });
        } catch (const std::exception& exception) {
            fprintf(stderr, "%s\n", exception.what());
            _exit(1);
        }
        _exit(0);
    }

    pid_t id_ = -1;
    Descriptor output_;
};

std::vector<Child> Eight(const Child::Work& work) {
    std::vector<Child> children;
    children.reserve(8);
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
    const RegistryWrite first_values[] = {{kKey, kTogether[0], StringValue("0")},
                                          {kKey, kTogether[1], StringValue("0")},
                                          {kKey, kTogether[2], StringValue("0")}};
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
            const bool one_of_them =
                std::find(kTogether.begin(), kTogether.end(), name) != kTogether.end();
            if (one_of_them) numbers.push_back(std::stoll(value.data));
            return {};
        }
        std::vector<std::int64_t> numbers;
    } reader;
    Require(store.Visit(kKey, reader));
    Require(reader.numbers.size() == kTogether.size(), "values are missing");
    for (const auto number : reader.numbers) Require(number == reader.numbers[0], "half a write");
    return reader.numbers[0];
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

// Opens, reads and writes for `length`; returns the number of writes and the longest wait in
// milliseconds.
std::pair<std::int64_t, std::int64_t> WorkFor(milliseconds length, const std::string& file) {
    const auto end = Clock::now() + length;
    std::int64_t writes = 0;
    Clock::duration longest{};
    std::unique_ptr<RegistryStore> store;
    const auto timed = [&](const auto& operation) {
        const auto begin = Clock::now();
        operation();
        longest = std::max(longest, Clock::now() - begin);
    };
    std::int64_t last = 0;
    for (int round = 0; Clock::now() < end; ++round) {
        if (round % 10 == 0) {
            timed([&] { store.reset(); });
            timed([&] { store = OpenStore(file); });
        }
        timed([&] { Increment(*store); });
        ++writes;
        timed([&] {
            const auto now = ReadTogether(*store);
            Require(now > last, "a write is gone");
            last = now;
        });
    }
    timed([&] { store.reset(); });
    return {writes, std::chrono::duration_cast<milliseconds>(longest).count()};
}

TEST_F(RegistryProcesses, EightLoseNothingAndNoneWaitsForLong) {
    // The aim is half a second, and the longest wait is well below it when the machine is idle;
    // here other tests may run, and flush, at the same time.
    constexpr std::int64_t kLongestWaitMs = 5'000;
    auto children = Eight([&](const auto& tell) {
        const auto [writes, longest] = WorkFor(milliseconds(2'000), file_);
        tell(writes);
        tell(longest);
    });
    std::int64_t writes = 0;
    std::int64_t longest = 0;
    for (auto& child : children) {
        const auto told = child.Finish();
        ASSERT_EQ(told.size(), 2U);
        EXPECT_GT(told[0], 0);
        writes += told[0];
        longest = std::max(longest, told[1]);
    }
    RecordProperty("writes", std::to_string(writes));
    RecordProperty("longest_wait_ms", std::to_string(longest));
    EXPECT_LT(longest, kLongestWaitMs);
    EXPECT_EQ(ReadTogether(*OpenStore(file_)), writes);
}

TEST_F(RegistryProcesses, SeeTheFirstValuesHoweverManyMakeTheStore) {
    for (int round = 0; round < 10; ++round) {
        const auto file = folder_ / std::to_string(round);
        auto children = Eight([&](const auto& tell) { tell(ReadTogether(*OpenStore(file))); });
        for (auto& child : children) EXPECT_EQ(child.Finish(), std::vector<std::int64_t>{0});
    }
}

TEST_F(RegistryProcesses, KeepWhatWasCommittedWhenOneIsKilledAtAnyMoment) {
    std::mt19937 random(20240611);
    for (int round = 0; round < 40; ++round) {
        // A new store every other time, so that some die while they make it.
        const auto file = folder_ / std::to_string(round / 2);
        Child child([&](const auto& tell) {
            const auto store = OpenStore(file);
            const std::string filler(random() % 60'000, 'x');
            for (auto number = ReadTogether(*store) + 1;; ++number) {
                const auto transaction = Take(store->Begin());
                SetTogether(*transaction, number);
                Require(transaction->SetValue(kKey, "filler" + std::to_string(number % 50),
                                              StringValue(filler)));
                Require(transaction->Commit());
                tell(number);
            }
        });
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 60'000 >> random() % 5));
        child.Kill();
        const auto committed = child.Finish(SIGKILL);
        const auto found = ReadTogether(*OpenStore(file));
        // The one behind the last may have been committed and not told.
        if (!committed.empty()) {
            EXPECT_TRUE(found == committed.back() || found == committed.back() + 1)
                << found << " after " << committed.back();
        }
    }
}

TEST_F(RegistryProcesses, TakeAWholeTransactionBackWhenTheDiskIsFull) {
    Child child([&](const auto&) {
        const auto store = OpenStore(file_);
        const RegistryValue large{RegistryType::Binary, std::string(kLargestValue, 'x')};
        signal(SIGXFSZ, SIG_IGN);
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
    });
    child.Finish();
    const auto store = OpenStore(file_);
    EXPECT_EQ(ReadTogether(*store), 1);
    EXPECT_FALSE(store->OpenKey(kKey).value()->Query("0").ok());
}

TEST_F(RegistryProcesses, AreToldWhenTheyMayNotWriteTheStore) {
    if (getuid() != 0) GTEST_SKIP() << "only root can become another user";
    OpenStore(file_).reset();
    const auto bytes = test::ReadFile(file_);
    struct Case {
        std::string file;
        mode_t file_mode, folder_mode;
    };
    const Case cases[] = {{file_, 0644, 0777},
                          {file_, 0666, 0755},
                          {file_, 0000, 0777},
                          {folder_ / "new.db", 0666, 0755},
                          {folder_ / "new/new.db", 0666, 0755}};
    for (const auto& [file, file_mode, folder_mode] : cases) {
        SCOPED_TRACE(file + " " + std::to_string(file_mode));
        ASSERT_EQ(chmod(file_.c_str(), file_mode), 0);
        ASSERT_EQ(chmod(folder_.path().c_str(), folder_mode), 0);
        Child child([&file = file](const auto&) {
            constexpr uid_t kNobody = 65534;
            Require(setuid(kNobody) == 0, "setuid");
            const auto opened = MakeSqliteRegistry(file)->OpenStore({});
            Require(!opened.ok(), "it should have failed");
            Require(opened.error().kind == ErrorKind::Denied, opened.error().text);
            Require(opened.error().subject == file, opened.error().subject);
        });
        child.Finish();
    }
    EXPECT_EQ(test::ReadFile(file_), bytes);
}

}  // namespace
}  // namespace velto::platform
