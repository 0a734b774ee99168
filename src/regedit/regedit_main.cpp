// The registry editor's program: `velto-regedit /E FILE KEY` and `velto-regedit /S FILE`.
#include <array>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ascii.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "regedit/regedit.h"

namespace {

namespace platform = velto::platform;

constexpr std::string_view kUsage =
    "Usage: velto-regedit /E FILE KEY   export KEY with everything below it to FILE\n"
    "       velto-regedit /S FILE       merge FILE into the registry\n"
    "\n"
    "KEY is a path such as \"HKEY_CURRENT_USER\\Software\\epsxe\", in any case of letters. An\n"
    "export replaces FILE as a whole, or leaves it as it was. A merge adds and overwrites and\n"
    "removes nothing; lines that it can't read are skipped and counted. If VELTO_MERGE_SCOPE\n"
    "names keys, as Velto does for the merges that it starts, all others are passed over.\n"
    "\n"
    "The registry is the file registry.db in the folder named by VELTO_HOME, by default\n"
    "$XDG_DATA_HOME/velto or ~/.local/share/velto. The exit status is 0 if the work was done and 1 "
    "if not.\n";

int Fail(const std::string& message) {
    std::cerr << message << '\n';
    return 1;
}

std::string Reason(const platform::Error& error) {
    return error.text.empty() ? "unknown error" : error.text;
}

int Export(platform::FileService& files, platform::RegistryStore& store,
           std::span<const std::string> arguments) {
    const auto& file = arguments[0];
    const auto& key = arguments[1];
    const auto exported = velto::regedit::ExportKey(files, store, file, key);
    if (exported.ok()) return 0;
    return Fail("Unable to export " + key + " to " + file + ": " + Reason(exported.error()));
}

// What the environment says that a merge may write.
platform::Result<velto::regedit::MergeScope> Scope() {
    const char* const text = std::getenv(platform::kMergeScope);
    if (text == nullptr) return velto::regedit::MergeScope();
    return velto::regedit::MergeScope::Read(text);
}

std::string Lines(std::uint64_t count) {
    return std::to_string(count) + (count == 1 ? " line" : " lines");
}

int Merge(platform::FileService& files, platform::RegistryStore& store,
          std::span<const std::string> arguments) {
    const auto& file = arguments[0];
    const auto scope = Scope();
    if (!scope.ok()) {
        return Fail("Unable to merge " + file + ": " + platform::kMergeScope + " is " +
                    Reason(scope.error()));
    }
    const auto merged = velto::regedit::MergeFile(files, store, file, scope.value());
    if (!merged.ok()) {
        return Fail("Unable to merge " + file + ": " + Reason(merged.error()));
    }
    if (const auto count = merged.value().skipped; count > 0) {
        std::cerr << "Merged " << file << "; skipped " << Lines(count)
                  << " that couldn't be read\n";
    }
    if (const auto count = merged.value().outside; count > 0) {
        std::cerr << "Merged " << file << "; passed over " << Lines(count)
                  << " outside of what it may write\n";
    }
    return 0;
}

struct Verb {
    std::string_view name;
    std::size_t arguments;
    std::string_view usage;
    int (*run)(platform::FileService&, platform::RegistryStore&, std::span<const std::string>);
};
constexpr std::array<Verb, 2> kVerbs = {{
    {"/E", 2, "/E FILE KEY", Export},
    {"/S", 1, "/S FILE", Merge},
}};

int Run(const Verb& verb, std::span<const std::string> arguments) {
    if (arguments.size() != verb.arguments) {
        return Fail("Wrong number of arguments: velto-regedit " + std::string(verb.usage));
    }
    const auto files = platform::MakeFileService();
    const auto path = platform::ReadEnvironment(*files).RegistryFile();
    const auto store = platform::MakeSqliteRegistry(path);
    if (const auto opened = store->OpenStore({}); !opened.ok()) {
        return Fail("Unable to open the registry " + path + ": " + Reason(opened.error()));
    }
    return verb.run(*files, *store, arguments);
}

int Run(std::span<const std::string> arguments) {
    if (arguments.empty()) {
        std::cerr << kUsage;
        return 1;
    }
    if (arguments[0] == "--help") {
        std::cout << kUsage << std::flush;
        return std::cout ? 0 : 1;
    }
    for (const auto& verb : kVerbs) {
        if (platform::EqualsIgnoringCase(arguments[0], verb.name)) {
            return Run(verb, arguments.subspan(1));
        }
    }
    return Fail("Unknown verb " + arguments[0] + "; see velto-regedit --help");
}

}  // namespace

int main(int argc, char** argv) {
    // A reader of the messages that is gone must not make a merge look failed.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
        return Run(arguments);
    } catch (const std::exception& error) {
        return Fail(std::string("velto-regedit: ") + error.what());
    }
}
