#include "platform/process.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>

#include <gmock/gmock.h>

#include "platform/linux/descriptor.h"
#include "support/forked_child.h"
#include "support/home_test.h"

namespace velto::platform {
namespace {

namespace fs = std::filesystem;

using test::ForkedChild;
using testing::UnorderedElementsAre;

using Texts = std::vector<std::string>;

TEST(SplitParametersTest, FollowsTheRulesOfCommandLinesAndGivesBackWhatWasQuoted) {
    const std::pair<std::string, Texts> cases[] = {
        {" \t ", {}},
        {" a \t b\t", {"a", "b"}},
        {"a\nb", {"a\nb"}},
        {R"(a" b"c)", {"a bc"}},
        {R"("" x ")", {"", "x", ""}},
        {R"(C:\a\\b\ c)", {R"(C:\a\\b\)", "c"}},
        {R"("C:\a\\" c)", {R"(C:\a\)", "c"}},
        {R"(\\\"a b)", {R"(\"a)", "b"}},
        {R"("""a b""" c)", {R"("a b")", "c"}},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(SplitParameters(text), expected) << text;

    std::mt19937 random(1);
    const std::string alphabet = "\\\\\\\"\"\" \t\na\xC3";
    for (int round = 0; round < 5000; ++round) {
        Texts arguments(random() % 4);
        std::string text;
        for (auto& argument : arguments) {
            for (auto left = random() % 10; left > 0; --left) {
                argument += alphabet[random() % alphabet.size()];
            }
            text += QuoteParameter(argument) + ' ';
        }
        ASSERT_EQ(SplitParameters(text), arguments) << text;
    }
}

class ProcessTest : public test::HomeTest {
  protected:
    int Run(const ProcessRequest& request) {
        return processes.Start(request).value()->Wait().value().code;
    }
};

TEST_F(ProcessTest, ChildGetsItsParametersAndNothingOfItsParentButTheOutputs) {
    environment.child_variables = {{"VELTO_HOME", "/the home"}};
    const test::Variables variables({{"VELTO_HOME", "relative"}, {"VELTO_OTHER", "kept"}});
    // No close-on-exec: what a careless library leaves open.
    const Descriptor leaked(open("/dev/zero", O_RDONLY));
    const Descriptor far_leaked(fcntl(leaked.get(), F_DUPFD, 700));
    sigset_t usr1{};
    sigset_t before{};
    sigaddset(&usr1, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &usr1, &before);
    const auto old_pipe = std::signal(SIGPIPE, SIG_IGN);
    // Asks about the shell from a child of its own, whose output leaves the shell's as it was.
    const std::string script =
        "(for f in /proc/$$/fd/*; do readlink $f; done; printf '%s\\n' \"$@\" \"$PWD\";"
        "cut -d' ' -f6 /proc/$$/stat; cat; env | grep ^VELTO_;"
        "grep -E 'Sig(Blk|Ign)' /proc/$$/status) > report; true";
    const auto child =
        processes.Start({.file = "/bin/sh",
                         .parameters = "-c " + QuoteParameter(script) + R"( sh "a b" "" c\"d)",
                         .folder = home_folder.path()});
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    std::signal(SIGPIPE, old_pipe);

    ASSERT_TRUE(child.ok() && child.value()->Wait().value().success());
    std::ifstream report(home_folder / "report");
    Texts lines;
    for (std::string line; std::getline(report, line);) lines.push_back(line);
    EXPECT_THAT(
        lines, UnorderedElementsAre("/dev/null", fs::read_symlink("/proc/self/fd/1").string(),
                                    fs::read_symlink("/proc/self/fd/2").string(), "a b", "", "c\"d",
                                    home_folder.path(), std::to_string(child.value()->id()),
                                    "VELTO_HOME=/the home", "VELTO_OTHER=kept",
                                    "SigBlk:\t0000000000000000", "SigIgn:\t0000000000000000"));
}

TEST_F(ProcessTest, WaitTellsHowTheProgramEnded) {
    const std::tuple<std::string, bool, int> cases[] = {
        {"exit 0", true, 0}, {"exit 3", true, 3}, {"kill -9 $$", false, SIGKILL}};
    for (const auto& [script, normal, code] : cases) {
        SCOPED_TRACE(script);
        const auto parameters = "-c " + QuoteParameter(script);
        const auto child = processes.Start({.file = "/bin/sh", .parameters = parameters}).value();
        EXPECT_TRUE(child->EndsWithin(std::chrono::minutes(1)));
        const auto status = child->Wait().value();
        EXPECT_EQ(status.normal, normal);
        EXPECT_EQ(status.code, code);
        EXPECT_EQ(status.success(), code == 0);
        EXPECT_EQ(kill(child->id(), 0), -1) << "a zombie is left";
        EXPECT_FALSE(child->Wait().ok());
    }
    // One that nobody waits for is collected later.
    const auto stray = processes.Start({.file = "/bin/true"}).value()->id();
    siginfo_t ended{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(stray), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(Run({.file = "/bin/true"}), 0);
    EXPECT_EQ(kill(stray, 0), -1);
}

TEST_F(ProcessTest, ProgramsOfOtherSystemsGoThroughTheRunner) {
    environment.runner = Script("runner", "printf '%s\\n' \"$@\" > $0.report");
    const auto game = InHome("a Game.EXE");
    test::WriteFile(game, "MZ\x90");
    EXPECT_EQ(Run({.file = game, .parameters = "-nogui \"x y\""}), 0);
    EXPECT_EQ(test::ReadFile(environment.runner + ".report"), game + "\n-nogui\nx y\n");

    const auto native = Script("native.exe", "exit 5");
    EXPECT_EQ(Run({.file = native}), 5) << "went through the runner";
}

TEST_F(ProcessTest, WhatCantBeStartedIsAFailureThatNamesIt) {
    const auto plain = environment.RegistryFile();
    const auto game = InHome("game.exe");
    const auto text = Script("text", "");
    const auto orphan = Script("orphan", "");
    const auto missing = InHome("missing");
    test::WriteFile(game, "MZ");
    test::WriteFile(text, "exit 0\n");
    test::WriteFile(orphan, "#!/no/interpreter\n");
    const std::pair<ProcessRequest, ErrorKind> cases[] = {
        {{.file = missing}, ErrorKind::NotFound},
        {{.file = plain + "/x"}, ErrorKind::NotFound},
        {{.file = "true"}, ErrorKind::NotFound},
        {{.file = home_folder.path()}, ErrorKind::Unsuitable},
        {{.file = "/dev/null"}, ErrorKind::Unsuitable},
        {{.file = plain}, ErrorKind::Denied},
        {{.file = text}, ErrorKind::Unsuitable},
        {{.file = orphan}, ErrorKind::NotFound},
        {{.file = game}, ErrorKind::Unsuitable},
        {{.file = "/bin/true", .folder = missing}, ErrorKind::NotFound},
        {{.file = "/bin/true", .folder = plain}, ErrorKind::NotFound},
        {{.file = "/bin/true", .parameters = {'a', '\0'}}, ErrorKind::Malformed},
    };
    for (const auto& [request, kind] : cases) {
        SCOPED_TRACE(request.file + " in " + request.folder);
        const auto error = processes.Start(request).error();
        EXPECT_EQ(error.kind, kind) << error.text;
        EXPECT_EQ(error.subject, request.folder.empty() ? request.file : request.folder);
        EXPECT_NE(error.text, "");
    }
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
}

TEST_F(ProcessTest, ProgramDiesWithAKilledParentOnlyIfAsked) {
    // Children of a parent that is killed become this process's own.
    ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    for (const bool tied : {true, false}) {
        SCOPED_TRACE(tied);
        ForkedChild parent([&](const auto& tell) {
            const auto child = processes.Start(
                {.file = "/bin/sleep", .parameters = "60", .ends_with_parent = tied});
            tell(child.value()->id());
            return pause();
        });
        const auto id = static_cast<pid_t>(parent.Next().value());
        parent.Kill();
        ASSERT_EQ(parent.Wait(), SIGKILL);
        // The parent's death has sent its signals before it can be waited for.
        EXPECT_EQ(tied ? 0 : kill(id, SIGTERM), 0);
        int status = 0;
        ASSERT_EQ(waitpid(id, &status, 0), id);
        EXPECT_EQ(WTERMSIG(status), tied ? SIGKILL : SIGTERM) << "0 if it ran to its end";
    }
    EXPECT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 0), 0);
}

}  // namespace
}  // namespace velto::platform
