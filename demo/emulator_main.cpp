// A stand-in for the emulator: it reports what reaches it, stays for a moment, and ends.
//
// With `-stay <milliseconds>` among its arguments it stays that long.
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "launch/emulator_values.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/registry.h"
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

std::chrono::milliseconds StayOf(const std::vector<std::string>& arguments) {
    for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
        if (arguments[i] != "-stay") continue;
        return std::chrono::milliseconds(std::strtol(arguments[i + 1].c_str(), nullptr, 10));
    }
    return kStay;
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
    } else {
        std::cout << "  no registry: " << opened.error().text << "\n";
    }
    std::cout << std::flush;
    std::this_thread::sleep_for(StayOf(arguments));
    return 0;
}
