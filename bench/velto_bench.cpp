// What the program's main roads cost, as whole processes on a home of their own.
#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench_support.h"
#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/libraries.h"
#include "platform/process.h"
#include "platform/registry.h"
#include "plugins/plugin_catalogue.h"
#include "store/velto_settings.h"

namespace {

namespace fs = std::filesystem;
namespace platform = velto::platform;
using velto::bench::Check;
using velto::bench::Clock;
using velto::bench::ForgetTheConfiguration;
using velto::bench::Peak;
using velto::bench::Program;
using velto::bench::Run;
using velto::bench::Since;

// A home with one configuration, the probe as its emulator, and registry texts of several sizes.
class BenchHome {
  public:
    BenchHome() {
        fs::create_directory(folder_.path() / "config");
        fs::copy(Program("demo-home/config/Demo Disc.dta"), Config());
        setenv("VELTO_HOME", folder_.path().c_str(), 1);
        unsetenv("VELTO_REGEDIT");
        const auto store = platform::MakeSqliteRegistry(Registry());
        const platform::RegistryWrite emulator[] = {
            {std::string(platform::kCurrentUser).append(velto::kSettingsKey), "epsxe",
             platform::StringValue(Program("probe-emulator"))}};
        Check(store->OpenStore(emulator).ok(), "registry");
    }
    std::string Registry() const { return folder_.path() / "registry.db"; }
    std::string Config() const { return folder_.path() / "config/Demo Disc.dta"; }

    // Registry text with `values` short values, or none.
    std::string TextOf(std::size_t values) const {
        const auto path = folder_.path() / (std::to_string(values) + ".reg");
        if (fs::exists(path)) return path;
        std::ofstream out(path, std::ios::binary);
        out << "REGEDIT4\r\n\r\n";
        for (std::size_t i = 0; i < values; ++i) {
            if (i % kValuesOfAKey == 0) {
                out << "\r\n[HKEY_CURRENT_USER\\Software\\Bench\\" << i / kValuesOfAKey << "]\r\n";
            }
            out << "\"value " << i << "\"=\"C:\\\\folder\\\\file " << i << ".bin\"\r\n";
        }
        Check(bool(out.flush()), "write");
        return path;
    }

  private:
    static constexpr std::size_t kValuesOfAKey = 1000;
    velto::bench::Folder folder_;
};

BenchHome& Home() {
    static BenchHome home;
    return home;
}

void DirectRun(benchmark::State& state) {
    for (auto _ : state) {
        ForgetTheConfiguration(Home().Registry());
        state.SetIterationTime(Run({Program("velto"), "-direct", "Demo Disc"}).first_byte);
    }
}

void MergeOfTheConfiguration(benchmark::State& state) {
    for (auto _ : state) {
        ForgetTheConfiguration(Home().Registry());
        state.SetIterationTime(Run({Program("velto-regedit"), "/S", Home().Config()}).exit);
    }
}

void BareEmulator(benchmark::State& state) {
    for (auto _ : state) {
        state.SetIterationTime(Run({Program("probe-emulator")}).first_byte);
    }
}

void MergeOfValues(benchmark::State& state) {
    const auto text = Home().TextOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        const auto timing = Run({Program("velto-regedit"), "/S", text}, Peak::Read);
        state.SetIterationTime(timing.exit);
        state.counters["peak_mib"] = timing.peak_mib;
    }
    state.counters["text_mib"] =
        static_cast<double>(fs::file_size(text)) / static_cast<double>(std::size_t{1} << 20);
}

// A plug-in folder full of libraries, and the services that a scan of it needs.
class PluginHome {
  public:
    static constexpr int kLibraries = 500;

    PluginHome() {
        fs::create_directories(Folder());
        for (int i = 0; i < kLibraries; ++i) {
            fs::copy(Program("probe-plugin.so"), Library(i));
        }
        const platform::RegistryWrite emulator[] = {
            {std::string(platform::kCurrentUser).append(velto::kSettingsKey), "epsxe",
             platform::StringValue((emulator_ / "epsxe").string())}};
        Check(registry_->OpenStore(emulator).ok(), "registry");
    }

    fs::path Folder() const { return emulator_ / "plugins"; }
    fs::path Library(int i) const { return Folder() / ("gpu" + std::to_string(i) + ".so"); }

  private:
    const fs::path emulator_ = fs::path(Home().Registry()).parent_path() / "emulator";
    const std::unique_ptr<platform::FileService> files_ = platform::MakeFileService();
    const platform::Environment environment_ = platform::ReadEnvironment(*files_);
    const std::unique_ptr<platform::DriveTable> drives_ =
        platform::MakeDriveTable(*files_, environment_.drives, environment_.home);
    const std::unique_ptr<platform::RegistryStore> registry_ =
        platform::MakeSqliteRegistry(emulator_.string() + ".db");
    const std::unique_ptr<platform::ProcessService> processes_ =
        platform::MakeProcessService(environment_);
    const std::unique_ptr<platform::LibraryService> libraries_ =
        platform::MakeLibraryService(*processes_, environment_.program);
    const platform::HostScope scope_{{&environment_, files_.get(), drives_.get(), registry_.get(),
                                      processes_.get(), nullptr, nullptr, libraries_.get()}};
};

const PluginHome& Plugins() {
    static const PluginHome home;
    return home;
}

void ScanOfPlugins(benchmark::State& state) {
    Plugins();
    for (auto _ : state) {
        velto::CPluginCatalogue catalogue;
        int lines = 0;
        catalogue.ScanPlugins([&](const std::string&) { ++lines; });
        const auto names = catalogue.GetPluginNames(velto::kGpuPlugin);
        Check(names.size() == PluginHome::kLibraries && lines == PluginHome::kLibraries, "scan");
    }
}

template <class Function>
Function* Export(void* library, const char* name) {
    void* address = dlsym(library, name);
    Check(address != nullptr, name);
    return reinterpret_cast<Function*>(address);
}

void LibrariesInOneProcess(benchmark::State& state) {
    const auto& home = Plugins();
    for (auto _ : state) {
        std::vector<void*> libraries;
        const auto start = Clock::now();
        for (int i = 0; i < PluginHome::kLibraries; ++i) {
            libraries.push_back(dlopen(home.Library(i).c_str(), RTLD_NOW | RTLD_LOCAL));
            Check(libraries.back() != nullptr, "dlopen");
            benchmark::DoNotOptimize(Export<unsigned()>(libraries.back(), "PSEgetLibType")());
            benchmark::DoNotOptimize(Export<unsigned()>(libraries.back(), "PSEgetLibVersion")());
            auto* get_name = Export<const char*()>(libraries.back(), "PSEgetLibName");
            benchmark::DoNotOptimize(std::string(get_name()));
        }
        state.SetIterationTime(Since(start));
        for (void* library : libraries) Check(dlclose(library) == 0, "dlclose");
    }
}

constexpr int kRuns = 41;
constexpr int kLongRuns = 5;
constexpr std::int64_t kHundredMebibytes = 2'200'000;

BENCHMARK(DirectRun)->UseManualTime()->Iterations(1)->Repetitions(kRuns);
BENCHMARK(MergeOfTheConfiguration)->UseManualTime()->Iterations(1)->Repetitions(kRuns);
BENCHMARK(BareEmulator)->UseManualTime()->Iterations(1)->Repetitions(kRuns);
BENCHMARK(ScanOfPlugins)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kRuns);
BENCHMARK(LibrariesInOneProcess)->UseManualTime()->Iterations(1)->Repetitions(kRuns);
BENCHMARK(MergeOfValues)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(kLongRuns)
    ->Arg(0)
    ->Arg(10'000)
    ->Arg(kHundredMebibytes / 2)
    ->Arg(kHundredMebibytes);

}  // namespace

int main(int argc, char** argv) {
    std::vector<char*> arguments(argv, argv + argc);
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    arguments.push_back(interleaving.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
    Home();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
