#include "platform/instance.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <numeric>
#include <thread>

#include <gtest/gtest.h>

#include "platform/descriptor.h"
#include "support/temporary_folder.h"

namespace velto::platform {
namespace {

namespace fs = std::filesystem;

using namespace std::chrono_literals;
using Names = std::vector<std::string>;

constexpr uid_t kStranger = 65534;

// A client or server of our own making; invalid if there is no connection.
Descriptor Open(const std::string& path, decltype(connect)* join) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(std::begin(address.sun_path), sizeof address.sun_path - 1);
    Descriptor end(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const bool joined =
        join(end.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    return joined ? std::move(end) : Descriptor();
}

bool Send(const Descriptor& end, std::string_view bytes) {
    return send(end.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) == std::ssize(bytes);
}

bool GetsAnswer(const Descriptor& end) {
    char byte = 0;
    return recv(end.get(), &byte, 1, 0) == 1;
}

// Runs `act` in a child process and gives its exit status.
template <class Act>
int InChild(Act act) {
    const pid_t child = fork();
    if (child == 0) _exit(act());
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool BecomeStranger() {
    return setresuid(kStranger, kStranger, kStranger) == 0;
}

class InstanceTest : public testing::Test {
  protected:
    InstanceTest() {
        fs::create_directory(home_);
        fs::create_directory(runtime_);
        SetRuntime(runtime_);
    }
    ~InstanceTest() override {
        unsetenv("XDG_RUNTIME_DIR");
        fs::current_path(current_);
    }

    static void SetRuntime(const std::string& folder) {
        setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    }

    std::unique_ptr<InstanceService> Make(const std::string& program = "/opt/velto") const {
        return MakeInstanceService(program, home_);
    }

    // The first process with a listener that records.
    void Listen() {
        first_ = Make();
        ASSERT_TRUE(first_->Acquire().value());
        auto listener = first_->Listen([this](const std::string& name) { names_.push_back(name); });
        ASSERT_TRUE(listener.ok()) << listener.error().text;
        listener_ = std::move(listener).value();
    }

    std::string SocketPath() const {
        for (const auto& entry : fs::directory_iterator(folder_)) {
            if (entry.path().extension() == ".socket") return entry.path().string();
        }
        return {};
    }

    const fs::path current_ = fs::current_path();
    test::TemporaryFolder root_;
    std::string home_ = root_ / "home";
    std::string runtime_ = root_ / "run";
    std::string folder_ = runtime_ + "/velto";
    Names names_;  // only read while no hand-over is under way
    std::unique_ptr<InstanceService> first_;
    std::unique_ptr<HandOverListener> listener_;
};

TEST_F(InstanceTest, OneProcessForEachProgramNameAndRealDataFolder) {
    fs::create_directory_symlink(home_, root_ / "link");
    struct Case {
        std::string program, home;
        bool same;
    };
    const auto missing = root_ / "missing/deep";
    for (const auto& [program, home, same] : {
             Case{"/opt/velto", home_, true},
             Case{"/home/u/velto", home_ + "/", true},
             Case{"/opt/velto", root_ / "link", true},
             Case{"/opt/velto", root_ / "link/../home/.", true},
             Case{"/opt/velto", home_ + "2", false},
             Case{"/opt/velto2", home_, false},
             Case{"/opt/velt", "o" + home_, false},
         }) {
        SCOPED_TRACE(testing::Message() << program << " " << home);
        const auto first = Make();
        ASSERT_TRUE(first->Acquire().value());
        ASSERT_TRUE(first->Acquire().value());
        EXPECT_EQ(MakeInstanceService(program, home)->Acquire().value(), !same);
    }
    const auto first = MakeInstanceService("velto", missing);
    ASSERT_TRUE(first->Acquire().value());
    EXPECT_FALSE(MakeInstanceService("velto", root_ / "link/../missing/./deep/")->Acquire().value())
        << "a folder that is still to be made";
}

TEST_F(InstanceTest, NamesGoToAnotherProgramAndItsEndFreesTheLock) {
    const auto input_path = root_ / "input";
    ASSERT_EQ(mkfifo(input_path.c_str(), S_IRWXU), 0);
    Descriptor fifo(open(input_path.c_str(), O_RDWR | O_CLOEXEC));
    const auto command = "exec '" + test::BinaryFolder() + "/hand-over-listener' /opt/velto '" +
                         home_ + "' < '" + input_path + "'";
    const std::unique_ptr<FILE, decltype(&pclose)> output(popen(command.c_str(), "r"), pclose);
    Descriptor input = std::move(fifo);  // closed before the program is waited for
    std::array<char, 64> line{};
    ASSERT_STREQ(std::fgets(line.data(), line.size(), output.get()), "ready\n");

    const auto second = Make();
    ASSERT_FALSE(second->Acquire().value());
    ASSERT_FALSE(second->Listen([](const std::string&) {}).ok());
    ASSERT_EQ(second->HandOver("a game"), HandOverResult::Answered);
    EXPECT_STREQ(std::fgets(line.data(), line.size(), output.get()), "a game\n");
    input.Reset();
    EXPECT_EQ(std::fgets(line.data(), line.size(), output.get()), nullptr);
    EXPECT_EQ(second->HandOver("a game"), HandOverResult::NoneThere);
    EXPECT_TRUE(second->Acquire().value());
}

TEST_F(InstanceTest, KilledProcessLeavesNeitherLockNorSocketInTheWay) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t holder = fork();
    if (holder == 0) {
        Listen();
        if (write(ends[1], "", 1) == 1) pause();
        _exit(1);
    }
    char ready = 1;
    ASSERT_EQ(read(ends[0], &ready, 1), 1);
    EXPECT_FALSE(Make()->Acquire().value());
    ASSERT_EQ(kill(holder, SIGKILL), 0);
    ASSERT_EQ(waitpid(holder, nullptr, 0), holder);
    close(ends[0]);
    close(ends[1]);

    ASSERT_NE(SocketPath(), "");
    EXPECT_EQ(Make()->HandOver("early"), HandOverResult::NoneThere);
    ASSERT_NO_FATAL_FAILURE(Listen());
    EXPECT_EQ(Make()->HandOver("game"), HandOverResult::Answered);
    listener_.reset();
    EXPECT_EQ(names_, Names{"game"});
}

TEST_F(InstanceTest, NamesArriveExactly) {
    ASSERT_NO_FATAL_FAILURE(Listen());
    std::string all(256, '\0');
    std::iota(all.begin(), all.end(), '\0');
    const Names sent = {"", "a game", all, std::string(kLongestName, 'x')};
    for (const auto& name : sent) EXPECT_EQ(Make()->HandOver(name), HandOverResult::Answered);
    EXPECT_EQ(Make()->HandOver(std::string(kLongestName + 1, 'x')), HandOverResult::Refused);
    listener_.reset();
    EXPECT_EQ(names_, sent);
}

TEST_F(InstanceTest, HandOverAndTheListenersEndWaitForTheHandler) {
    std::promise<void> entered;
    std::promise<void> may_end;
    std::atomic<bool> handled = false;
    first_ = Make();
    ASSERT_TRUE(first_->Acquire().value());
    auto listener = first_->Listen([&](const std::string&) {
        entered.set_value();
        may_end.get_future().wait();
        std::this_thread::sleep_for(50ms);
        handled = true;
    });
    ASSERT_TRUE(listener.ok());
    auto running = std::async([&] { return Make()->HandOver("running"); });
    entered.get_future().wait();
    const auto waiting = Open(SocketPath(), connect);
    EXPECT_EQ(running.wait_for(50ms), std::future_status::timeout);
    may_end.set_value();
    std::move(listener).value().reset();
    EXPECT_TRUE(handled);
    EXPECT_EQ(running.get(), HandOverResult::Answered);
    EXPECT_FALSE(GetsAnswer(waiting));
    EXPECT_EQ(SocketPath(), "");
    EXPECT_EQ(Make()->HandOver("late"), HandOverResult::NoneThere);
}

TEST_F(InstanceTest, MalformedMessagesAreRefusedAndChangeNothing) {
    using namespace std::string_literals;
    ASSERT_NO_FATAL_FAILURE(Listen());
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"nothing", ""s},
        {"half a length", "\4\0"s},
        {"no name", "\4\0\0\0"s},
        {"half a name", "\4\0\0\0ga"s},
        {"too long by one", "\1\x10\0\0"s + std::string(kLongestName + 1, 'x')},
        {"longest length", "\xFF\xFF\xFF\xFFgame"s},
    };
    testing::internal::CaptureStderr();
    for (const auto& [defect, message] : cases) {
        SCOPED_TRACE(defect);
        const auto client = Open(SocketPath(), connect);
        EXPECT_TRUE(Send(client, message));
        shutdown(client.get(), SHUT_WR);
        EXPECT_FALSE(GetsAnswer(client));
    }
    const auto client = Open(SocketPath(), connect);
    EXPECT_TRUE(Send(client, "\4\0\0\0game and more"s));
    EXPECT_TRUE(GetsAnswer(client));
    listener_.reset();
    const auto told = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), std::ssize(cases)) << told;
    EXPECT_EQ(names_, Names{"game"});
}

TEST_F(InstanceTest, ClientThatDripsDoesntKeepOthersOut) {
    ASSERT_NO_FATAL_FAILURE(Listen());
    const auto dripping = Open(SocketPath(), connect);
    ASSERT_TRUE(Send(dripping, {"\x40\0\0\0", 4}));
    auto good = std::async([&] { return Make()->HandOver("good"); });
    bool refused = false;
    for (int byte = 0; byte < 60 && !refused; ++byte) {
        std::this_thread::sleep_for(100ms);
        refused = !Send(dripping, "x");
    }
    EXPECT_TRUE(refused) << "had six seconds";
    EXPECT_EQ(good.get(), HandOverResult::Answered);

    // Nor does one that is stuck hold up the end.
    const auto stuck = Open(SocketPath(), connect);
    listener_.reset();
    EXPECT_FALSE(GetsAnswer(stuck));
    EXPECT_EQ(names_, Names{"good"});
}

TEST_F(InstanceTest, FolderThatOthersMayControlIsRefused) {
    std::vector<std::string> cases = {
        "mkdir -m 755 velto",
        "mkdir -m 710 velto",
        "mkdir -m 700 elsewhere && ln -s elsewhere velto",
        "touch velto",
    };
    if (geteuid() == 0) cases.push_back("mkdir -m 700 velto && chown 65534 velto");
    for (const auto& preparation : cases) {
        SCOPED_TRACE(preparation);
        const auto command = "cd '" + runtime_ + "' && rm -rf velto && " + preparation;
        ASSERT_EQ(std::system(command.c_str()), 0);
        const auto acquired = Make()->Acquire();
        ASSERT_FALSE(acquired.ok());
        EXPECT_EQ(acquired.error().kind, ErrorKind::Unsuitable);
        EXPECT_EQ(acquired.error().subject, folder_);
    }
}

TEST_F(InstanceTest, WithoutAUsableRuntimeFolderTheOneUnderTmpServes) {
    const auto deep = runtime_ + "/" + std::string(100, 'd');
    const auto strange = root_ / "strange";
    fs::create_directory(deep);
    fs::create_directory(strange);
    const bool given_away = geteuid() == 0 && chown(strange.c_str(), kStranger, kStranger) == 0;
    fs::current_path(root_.path());
    for (const auto& folder : {std::string(), std::string("run"), root_ / "missing", deep,
                               given_away ? strange : std::string()}) {
        SCOPED_TRACE(folder);
        SetRuntime(folder);
        // Always the same name, as the lock file stays there; another run may hold it.
        EXPECT_TRUE(MakeInstanceService("velto-test", "/")->Acquire().ok());
        EXPECT_FALSE(fs::exists(folder + "/velto"));
        EXPECT_EQ(fs::status("/tmp/velto-" + std::to_string(geteuid())).permissions(),
                  fs::perms::owner_all);
    }
}

TEST_F(InstanceTest, OtherUsersGetNeitherInNorANameOut) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can become another user";
    ASSERT_NO_FATAL_FAILURE(Listen());
    const auto path = SocketPath();
    for (const auto& folder : {root_.path(), runtime_}) {
        ASSERT_EQ(chmod(folder.c_str(), 0755), 0);
    }
    EXPECT_EQ(InChild([&] { return BecomeStranger() && Open(path, connect).valid(); }), 0);

    // Even through doors that somebody has opened.
    ASSERT_EQ(chmod(folder_.c_str(), 0777), 0);
    ASSERT_EQ(chmod(path.c_str(), 0777), 0);
    EXPECT_EQ(InChild([&] {
                  if (!BecomeStranger()) return 1;
                  const auto client = Open(path, connect);
                  if (!client.valid()) return 2;
                  return Send(client, {"\1\0\0\0x", 5}) && GetsAnswer(client) ? 3 : 0;
              }),
              0);
    listener_.reset();
    EXPECT_EQ(names_, Names{});

    auto result = std::async([&] {
        for (int i = 0; i < 5000 && !Open(path, connect).valid(); ++i) {
            std::this_thread::sleep_for(1ms);
        }
        return Make()->HandOver("secret");
    });
    EXPECT_EQ(InChild([&] {
                  if (!BecomeStranger()) return 1;
                  const auto server = Open(path, bind);
                  if (listen(server.get(), 2) != 0) return 2;
                  Descriptor(accept(server.get(), nullptr, nullptr)).Reset();
                  return GetsAnswer(Descriptor(accept(server.get(), nullptr, nullptr))) ? 3 : 0;
              }),
              0);
    EXPECT_EQ(result.get(), HandOverResult::Refused);
}

}  // namespace
}  // namespace velto::platform
