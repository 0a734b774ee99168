// What ten thousand configurations cost the editor.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <utility>

#include <benchmark/benchmark.h>

#include "bench_support.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/registry.h"
#include "platform/waiting.h"
#include "shell/tree/group_rewrite.h"
#include "store/config_file.h"
#include "store/velto_settings.h"

namespace {

namespace fs = std::filesystem;
namespace platform = velto::platform;
using velto::bench::Check;
using velto::bench::Clock;
using velto::bench::Peak;
using velto::bench::Since;
using velto::bench::Timing;

constexpr int kGroups = 200;
constexpr int kConfigurations = 10'000;
constexpr int kSelections = 1000;

std::string TextOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// The demo's configuration in a group of this name.
std::string Configuration(const std::string& group) {
    static const auto text = TextOf(velto::bench::Program("demo-home/config/Demo Disc.dta"));
    const std::string key = "; fileGroup = ";
    const auto begin = text.find(key) + key.size();
    return text.substr(0, begin) + group + text.substr(text.find("\r\n", begin));
}

// A home with so many configurations, spread evenly over the groups.
class EditorHome {
  public:
    EditorHome(int configurations, int groups) {
        const auto store = platform::MakeSqliteRegistry(home_.path() / "registry.db");
        std::string names;
        std::string parents;
        for (int i = 0; i < groups; ++i) {
            names += "Group " + std::to_string(i) + ";";
            parents += "My Epsxe;";
        }
        const auto settings = std::string(platform::kCurrentUser).append(velto::kSettingsKey);
        const platform::RegistryWrite lists[] = {
            {settings, "groups", platform::StringValue(names)},
            {settings, "parents", platform::StringValue(parents)},
            {settings, "epsxe", platform::StringValue(velto::bench::Program("probe-emulator"))}};
        Check(store->OpenStore(lists).ok(), "registry");
        fs::create_directory(Config());
        for (int i = 0; i < configurations; ++i) {
            std::ofstream out(Config() / ("Game " + std::to_string(i) + ".dta"), std::ios::binary);
            out << Configuration("Group " + std::to_string(i % groups));
            Check(bool(out.flush()), "write");
        }
    }

    fs::path Config() const { return home_.path() / "config"; }
    std::string Registry() const { return home_.path() / "registry.db"; }
    // Runs one of the programs beside this one.
    Timing Run(const std::string& program, const std::vector<std::string>& arguments,
               Peak peak = Peak::Ignored) const {
        const std::string former = std::getenv("VELTO_HOME");
        setenv("VELTO_HOME", home_.path().c_str(), 1);
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        std::vector<std::string> command = {velto::bench::Program(program)};
        command.insert(command.end(), arguments.begin(), arguments.end());
        const auto timing = velto::bench::Run(std::move(command), peak);
        setenv("VELTO_HOME", former.c_str(), 1);
        return timing;
    }

  private:
    const velto::bench::Folder home_;
};

const EditorHome& HomeWith(int configurations) {
    static const EditorHome empty(0, 0);
    static const EditorHome half(kConfigurations / 2, kGroups / 2);
    static const EditorHome full(kConfigurations, kGroups);
    return configurations == 0 ? empty : configurations == kConfigurations ? full : half;
}

void EditorStart(benchmark::State& state) {
    const auto& home = HomeWith(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const auto timing = home.Run("editor-probe", {}, Peak::Read);
        state.SetIterationTime(timing.first_byte);
        state.counters["peak_mib"] = timing.peak_mib;
    }
}

void EditorSelection(benchmark::State& state) {
    const auto& home = HomeWith(kConfigurations);
    for (auto _ : state) {
        const auto timing = home.Run("editor-probe", {"select", std::to_string(kSelections)});
        state.SetIterationTime((timing.exit - timing.first_byte) / kSelections);
    }
}

// From the click to the emulator's first byte.
void LaunchFromTheEditor(benchmark::State& state) {
    const auto& home = HomeWith(kConfigurations);
    for (auto _ : state) {
        velto::bench::ForgetTheConfiguration(home.Registry());
        const auto bytes = home.Run("editor-probe", {"launch"}).next_bytes;
        Check(bytes.size() == 2, "no launch");
        state.SetIterationTime(bytes[1] - bytes[0]);
    }
}

// The programs of a launch, one after the other.
void LaunchByHand(benchmark::State& state) {
    const auto& home = HomeWith(kConfigurations);
    const std::string key = "HKEY_CURRENT_USER\\Software\\";
    const std::string main_backup = home.Config() / "main.bak";
    const std::string plugins_backup = home.Config() / "plugins.bak";
    for (auto _ : state) {
        velto::bench::ForgetTheConfiguration(home.Registry());
        state.SetIterationTime(
            home.Run("velto-regedit", {"/E", main_backup, key + "epsxe"}).exit +
            home.Run("velto-regedit", {"/E", plugins_backup, key + "Vision Thing"}).exit +
            home.Run("velto-regedit", {"/S", home.Config() / "Game 0.dta"}).exit +
            home.Run("probe-emulator", {}).first_byte);
        fs::remove(main_backup);
        fs::remove(plugins_backup);
    }
}

void ReadingTheFilesOnce(benchmark::State& state) {
    const auto& home = HomeWith(kConfigurations);
    const auto files = platform::MakeFileService();
    for (auto _ : state) {
        const auto start = Clock::now();
        for (int i = 0; i < kConfigurations; ++i) {
            const auto path = home.Config() / ("Game " + std::to_string(i) + ".dta");
            const auto text = platform::ReadWhole(*files, path, velto::kLargestConfigFile);
            Check(text.ok(), path);
            benchmark::DoNotOptimize(text.value().data());
        }
        state.SetIterationTime(Since(start));
    }
}

void RenameOfAGroup(benchmark::State& state) {
    const EditorHome home(kConfigurations, 1);
    const auto files = platform::MakeFileService();
    const auto waiting = platform::MakeSilentWaiting();
    const platform::HostScope scope({.files = files.get(), .waiting = waiting.get()});
    const velto::ConfigFolder folder(home.Config());
    auto group = velto::MakeNode(velto::NodeKind::Group, "Group 0");
    std::string to = "Group 1";
    for (auto _ : state) {
        sync();
        const auto start = Clock::now();
        const auto end = velto::RewriteGroup(folder, *group, to);
        state.SetIterationTime(Since(start));
        Check(end.end == velto::GroupRewrite::End::Done, end.reason);
        std::swap(group->text, to);
    }
}

// To new files, as a replacement does.
void WritingTheBytesWithOneFlush(benchmark::State& state) {
    const auto text = Configuration("Group 0");
    const auto files = platform::MakeFileService();
    for (auto _ : state) {
        const velto::bench::Folder folder;
        sync();
        const auto start = Clock::now();
        for (int i = 0; i < kConfigurations; ++i) {
            std::ofstream out(folder.path() / std::to_string(i), std::ios::binary);
            out << text;
            Check(bool(out.flush()), "write");
        }
        Check(files->FlushFileSystem(folder.path()).ok(), "flush");
        state.SetIterationTime(Since(start));
    }
}

constexpr int kRuns = 15;
constexpr int kLongRuns = 5;

BENCHMARK(EditorStart)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->Arg(0)
    ->Arg(kConfigurations / 2)
    ->Arg(kConfigurations);
BENCHMARK(ReadingTheFilesOnce)->UseManualTime()->Iterations(1)->Repetitions(kRuns);
BENCHMARK(EditorSelection)->UseManualTime()->Iterations(1)->Repetitions(kLongRuns);
BENCHMARK(LaunchFromTheEditor)->UseManualTime()->Iterations(1)->Repetitions(kRuns);
BENCHMARK(LaunchByHand)->UseManualTime()->Iterations(1)->Repetitions(kRuns);
BENCHMARK(RenameOfAGroup)->UseManualTime()->Iterations(1)->Repetitions(kLongRuns);
BENCHMARK(WritingTheBytesWithOneFlush)->UseManualTime()->Iterations(1)->Repetitions(kLongRuns);

}  // namespace
