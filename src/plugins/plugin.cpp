#include "plugins/plugin.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/message_box.h"

namespace velto {
namespace {

using platform::FunctionAddress;
using platform::FunctionResult;
using platform::LibraryHandle;

struct Prefix {
    std::uint32_t type;
    const char* text;
};
constexpr std::array<Prefix, 5> kPrefixes = {{
    {kCdrPlugin, "CDR"},
    {kGpuPlugin, "GPU"},
    {kSpuPlugin, "SPU"},
    {kPadPlugin, "PAD"},
    {kNetPlugin, "NET"},
}};

std::string VersionText(std::uint32_t version) {
    constexpr std::uint32_t kByte = 0xFF;
    return " Version " + std::to_string(version >> 8U & kByte) + "." +
           std::to_string(version & kByte);
}

// Whether a name can stand in a line of a list or of a configuration.
bool IsText(std::string_view name) {
    constexpr char kDelete = 0x7F;
    return std::none_of(name.begin(), name.end(),
                        [](char c) { return static_cast<unsigned char>(c) < ' ' || c == kDelete; });
}

}  // namespace

bool CPlugin::Load(const std::string& file, const std::string& folder) {
    if (!Unload()) return false;
    const auto loaded = platform::Libraries().Load(folder, file);
    if (!loaded.ok()) return false;
    module = loaded.value();
    fileName = file;
    return true;
}

bool CPlugin::Unload() {
    if (module == LibraryHandle::None) return true;
    if (!platform::Libraries().Free(module).ok()) return false;
    module = LibraryHandle::None;
    getLibType = getLibName = getLibVersion = FunctionAddress::None;
    return true;
}

std::span<const platform::LibraryFunction> CPlugin::IdentityFunctions() {
    static const std::array<platform::LibraryFunction, 3> functions = {
        {{"PSEgetLibType", FunctionResult::Number},
         {"PSEgetLibVersion", FunctionResult::Number},
         {"PSEgetLibName", FunctionResult::Text}}};
    return functions;
}

bool CPlugin::Identify() {
    const auto answer = platform::Libraries().Call(module, IdentityFunctions());
    if (!answer.ok()) return false;
    const auto& [addresses, results] = answer.value();
    getLibType = addresses[0];
    getLibVersion = addresses[1];
    getLibName = addresses[2];
    if (results.empty() || !IsText(results[2].text)) return false;
    type = results[0].number;
    name = results[2].text + VersionText(results[1].number);
    for (const auto& known : kPrefixes) {
        if (known.type == type) prefix = known.text;
    }
    return true;
}

bool CPlugin::Configure() {
    CallVerb("configure", FunctionResult::Nothing);
    return true;
}

void CPlugin::Test() {
    const auto answer = CallVerb("test", FunctionResult::Number);
    if (!answer) return;
    platform::MessageBox box{"It should work", "Fine", platform::BoxIcon::None};
    if (const auto status = static_cast<std::int32_t>(*answer); status > 0) {
        box.text = "Warning recieved from plugin!  Make sure that it is correctly configured.";
        box.caption = "Warning";
    } else if (status < 0) {
        box.text =
            "Error recieved from plugin! Make sure that it is correctly configured and your "
            "hardware supports it.";
        box.caption = "Error";
    }
    platform::Boxes().Show(box);
}

void CPlugin::About() {
    CallVerb("about", FunctionResult::Nothing);
}

void CPlugin::Init() {
    CallVerb("init", FunctionResult::Nothing);
}

void CPlugin::Shutdown() {
    CallVerb("shutdown", FunctionResult::Nothing);
}

std::optional<std::uint32_t> CPlugin::CallVerb(const char* verb, FunctionResult result) {
    if (module == LibraryHandle::None) return {};
    const std::array<platform::LibraryFunction, 1> function = {{{prefix + verb, result}}};
    const auto answer = platform::Libraries().Call(module, function);
    if (!answer.ok() || answer.value().results.empty()) return {};
    return answer.value().results[0].number;
}

}  // namespace velto
