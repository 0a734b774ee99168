#include "platform/instance.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "platform/linux/descriptor.h"
#include "support/forked_child.h"
#include "support/surroundings.h"

namespace velto::platform {
namespace {

namespace fs = std::filesystem;

using namespace std::chrono_literals;
using namespace std::string_literals;
using test::ForkedChild;
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

ForkedChild Stranger(const ForkedChild::Work& work) {
    return ForkedChild([&](const auto& tell) {
        return setresuid(kStranger, kStranger, kStranger) == 0 ? work(tell) : 100;
    });
}

class InstanceTest : public testing::Test {
  protected:
    std::unique_ptr<InstanceService> Make() const {
        return MakeInstanceService("/velto", home_.path());
    }
    // The first process with a listener, which notes the names and does something at each.
    void Listen(const std::function<void()>& at_name = [] {}) {
        first_ = Make();
        EXPECT_TRUE(first_->Acquire().value());
        const auto handle = [this, at_name](const std::string& name) {
            names_.push_back(name);
            at_name();
        };
        listener_ = first_->Listen(handle).value();
    }
    std::string SocketPath() const {
        for (const auto& entry : fs::directory_iterator(folder_)) {
            if (entry.path().extension() == ".socket") return entry.path().string();
        }
        return {};
    }

    test::TemporaryFolder home_;
    test::TemporaryFolder runtime_;
    std::string folder_ = runtime_ / "velto";
    test::Variables variables_{{{"XDG_RUNTIME_DIR", runtime_.path()}}};
    Names names_;  // only read while no hand-over is under way
    std::unique_ptr<InstanceService> first_;
    std::unique_ptr<HandOverListener> listener_;
};

TEST_F(InstanceTest, OneProcessForEachProgramNameAndRealDataFolder) {
    const auto home = home_ / "real";
    fs::create_directory(home);
    fs::create_directory_symlink(home, home_ / "link");
    const std::tuple<std::string, std::string, std::string, bool> cases[] = {
        {home, "/home/u/velto", home + "/", true},
        {home, "velto", home_ / "link/../real/.", true},
        {home_ / "link", "/opt/velto", home, true},
        {home_ / "missing/deep", "/velto", home_ / "link/../missing/./deep/", true},
        {home, "/opt/velto", home + "2", false},
        {home, "/opt/velto2", home, false},
    };
    for (const auto& [first_home, program, second_home, same] : cases) {
        const auto first = MakeInstanceService("/opt/velto", first_home);
        ASSERT_TRUE(first->Acquire().value());
        ASSERT_TRUE(first->Acquire().value());
        EXPECT_EQ(MakeInstanceService(program, second_home)->Acquire().value(), !same)
            << program << " " << second_home;
    }
}

TEST_F(InstanceTest, KilledProcessLeavesNeitherLockNorSocketInTheWay) {
    ForkedChild holder([&](const auto& tell) {
        Listen();
        tell(1);
        return pause();
    });
    ASSERT_TRUE(holder.Next());
    const auto second = Make();
    EXPECT_FALSE(second->Acquire().value());
    EXPECT_FALSE(second->Listen([](const auto&) {}).ok());
    holder.Kill();
    holder.Wait();

    ASSERT_NE(SocketPath(), "");
    EXPECT_EQ(second->HandOver("early"), HandOverResult::NoneThere);
    Listen();
    EXPECT_EQ(second->HandOver("game"), HandOverResult::Answered);
    listener_.reset();
    EXPECT_EQ(names_, Names{"game"});
}

TEST_F(InstanceTest, HandOverAndTheListenersEndWaitForTheHandler) {
    std::promise<void> entered;
    std::atomic<bool> handled = false;
    Listen([&] {
        entered.set_value();
        std::this_thread::sleep_for(100ms);
        handled = true;
    });
    auto running = std::async(
        [&] { return Make()->HandOver("running") == HandOverResult::Answered && handled; });
    entered.get_future().wait();
    const auto waiting = Open(SocketPath(), connect);
    listener_.reset();
    EXPECT_TRUE(handled);
    EXPECT_TRUE(running.get());
    EXPECT_FALSE(GetsAnswer(waiting));
    EXPECT_EQ(SocketPath(), "");
    EXPECT_EQ(Make()->HandOver("late"), HandOverResult::NoneThere);
}

TEST_F(InstanceTest, NamesArriveExactlyAndMalformedMessagesAreRefused) {
    Listen();
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    const Names sent = {"", all, std::string(kLongestName, 'x')};
    for (const auto& name : sent) EXPECT_EQ(Make()->HandOver(name), HandOverResult::Answered);

    const auto too_long = "\1\x10\0\0"s + std::string(kLongestName + 1, 'x');
    const Names malformed = {""s,           "\4\0"s,  "\4\0\0\0"s,
                             "\4\0\0\0ga"s, too_long, "\xFF\xFF\xFF\xFFgame"s};
    testing::internal::CaptureStderr();
    EXPECT_EQ(Make()->HandOver(std::string(kLongestName + 1, 'x')), HandOverResult::Refused);
    for (const auto& message : malformed) {
        const auto client = Open(SocketPath(), connect);
        EXPECT_TRUE(Send(client, message));
        shutdown(client.get(), SHUT_WR);
        EXPECT_FALSE(GetsAnswer(client)) << message.size();
    }
    const auto client = Open(SocketPath(), connect);
    EXPECT_TRUE(Send(client, "\4\0\0\0game and more"s));
    EXPECT_TRUE(GetsAnswer(client));
    listener_.reset();
    const auto told = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1 + std::ssize(malformed)) << told;
    EXPECT_EQ(names_, (Names{sent[0], sent[1], sent[2], "game"}));
}

TEST_F(InstanceTest, FolderThatOthersMayControlIsRefused) {
    for (const auto* preparation :
         {"mkdir -m 701 velto", "mkdir -m 710 velto", "mkdir -m 700 real && ln -s real velto",
          "touch velto", "mkdir -m 700 velto && chown 65534 velto"}) {
        SCOPED_TRACE(preparation);
        const auto command = "cd '" + runtime_.path() + "' && rm -rf velto && " + preparation;
        ASSERT_EQ(std::system(command.c_str()), 0);
        const auto error = Make()->Acquire().error();
        EXPECT_EQ(error.kind, ErrorKind::Unsuitable);
        EXPECT_EQ(error.subject, folder_);
    }
}

TEST_F(InstanceTest, OtherUsersGetNeitherInNorANameOut) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can become another user";
    Listen();
    const auto path = SocketPath();
    // Even through doors that somebody has opened.
    for (const auto& door : {runtime_.path(), folder_, path}) fs::permissions(door, fs::perms::all);
    const auto ask = [&](const auto&) {
        const auto client = Open(path, connect);
        return client.valid() && !(Send(client, "\1\0\0\0x"s) && GetsAnswer(client)) ? 0 : 1;
    };
    EXPECT_EQ(Stranger(ask).Wait(), 0);
    listener_.reset();
    EXPECT_EQ(names_, Names{});

    auto server = Stranger([&](const auto& tell) {
        const auto socket = Open(path, bind);
        tell(listen(socket.get(), 1));
        return GetsAnswer(Descriptor(accept(socket.get(), nullptr, nullptr))) ? 2 : 0;
    });
    EXPECT_EQ(server.Next(), 0);
    EXPECT_EQ(Make()->HandOver("secret"), HandOverResult::Refused);
    EXPECT_EQ(server.Wait(), 0) << "it has got the name";
}

}  // namespace
}  // namespace velto::platform
