// A stand-in for the emulator: it reports what reaches it, stays for a moment, and ends. Its
// arguments make it do more:
//
//   -change               every value of the emulator and its plug-ins is overwritten
//   -create <name>        a value of this name is added to a key of the plug-ins
//   -stay <milliseconds>  it stays that long
//   -crash                it crashes instead of ending
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/environment.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "store/option_table.h"
#include "store/velto_settings.h"

namespace {

namespace platform = velto::platform;

constexpr int kNameWidth = 27;
constexpr std::chrono::milliseconds kStay{500};

std::string Text(const platform::RegistryValue& value) {
    if (value.type == platform::RegistryType::String) {
        return value.data.substr(0, value.data.find('\0'));
    }
    std::ostringstream bytes;
    bytes << "type " << static_cast<unsigned>(value.type) << ", bytes" << std::hex
          << std::setfill('0');
    for (const char c : value.data) {
        bytes << ' ' << std::setw(2) << unsigned{static_cast<unsigned char>(c)};
    }
    return bytes.str();
}

void Line(const std::string& name, const std::string& text) {
    std::cout << "    " << name
              << std::string(name.size() < kNameWidth ? kNameWidth - name.size() : 1, ' ') << text
              << "\n";
}

class PluginReport : public platform::RegistryVisitor {
  public:
    platform::Status OnKey(const std::string& path) override {
        branch_ = path.substr(path.rfind('\\') + 1);
        return {};
    }
    platform::Status OnValue(const std::string& name,
                             const platform::RegistryValue& value) override {
        Line(branch_ + ": " + name, Text(value));
        return {};
    }

  private:
    std::string branch_;
};

void ReportArguments(const std::vector<std::string>& arguments) {
    std::cout << "Demo emulator\n  started in\n    " << std::filesystem::current_path().string()
              << "\n  with the arguments\n";
    for (const auto& argument : arguments) std::cout << "    " << argument << "\n";
}

void ReportValues(platform::RegistryStore& registry) {
    std::cout << "  " << velto::kEmulatorConfigKey << "\n";
    const auto key =
        registry.OpenKey(std::string(platform::kCurrentUser).append(velto::kEmulatorConfigKey));
    for (const auto name : velto::EmulatorValueNames()) {
        if (!key.ok()) break;
        const auto value = key.value()->Query(name);
        Line(std::string(name), value.ok() ? Text(value.value()) : "(missing)");
    }
    std::cout << "  Software\\Vision Thing\\PSEmu Pro\n";
    PluginReport plugins;
    const auto shown =
        registry.Visit("HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro", plugins);
    if (!shown.ok()) std::cout << "    (nothing)\n";
}

// What stands behind the option; empty if it isn't there.
std::string Behind(const std::vector<std::string>& arguments, const std::string& option) {
    const auto found = std::find(arguments.begin(), arguments.end(), option);
    if (found == arguments.end() || found + 1 == arguments.end()) return {};
    return *(found + 1);
}

bool Has(const std::vector<std::string>& arguments, const std::string& option) {
    return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
}

class AllValues : public platform::RegistryVisitor {
  public:
    platform::Status OnKey(const std::string& path) override {
        key_ = path;
        return {};
    }
    platform::Status OnValue(const std::string& name,
                             const platform::RegistryValue& /*value*/) override {
        writes.push_back({key_, name, platform::StringValue("changed by the emulator")});
        return {};
    }

    std::vector<platform::RegistryWrite> writes;

  private:
    std::string key_;
};

void ChangeValues(platform::RegistryStore& registry, const std::vector<std::string>& arguments) {
    const std::string user(platform::kCurrentUser);
    AllValues values;
    for (const auto* branch : {"Software\\epsxe", "Software\\Vision Thing"}) {
        if (!Has(arguments, "-change")) break;
        if (!registry.Visit(user + branch, values).ok()) std::cout << "  no " << branch << "\n";
    }
    if (const auto name = Behind(arguments, "-create"); !name.empty()) {
        values.writes.push_back({user + "Software\\Vision Thing\\PSEmu Pro\\Demo", name,
                                 platform::StringValue("created by the emulator")});
    }
    if (values.writes.empty()) return;
    const auto written = platform::WriteValues(registry, values.writes);
    std::cout << "  " << values.writes.size()
              << (written.ok() ? " values written\n" : " values can't be written\n");
}

std::chrono::milliseconds StayOf(const std::vector<std::string>& arguments) {
    const auto stay = Behind(arguments, "-stay");
    if (stay.empty()) return kStay;
    return std::chrono::milliseconds(std::strtol(stay.c_str(), nullptr, 10));
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto files = platform::MakeFileService();
    const auto registry =
        platform::MakeSqliteRegistry(platform::ReadEnvironment(*files).RegistryFile());
    ReportArguments(arguments);
    if (const auto opened = registry->OpenStore({}); opened.ok()) {
        ReportValues(*registry);
        ChangeValues(*registry, arguments);
    } else {
        std::cout << "  no registry: " << opened.error().text << "\n";
    }
    std::cout << std::flush;
    std::this_thread::sleep_for(StayOf(arguments));
    if (Has(arguments, "-crash")) std::abort();
    return 0;
}
