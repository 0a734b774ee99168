// A configuration file of any bytes: every read ends, gives no line of its own, and what is
// written back under a key is what a read of that key gave.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "launch/direct_run.h"
#include "platform/text.h"
#include "store/config_file.h"
#include "store/key_table.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    const velto::CConfigFile file(velto::platform::FromDiskText(bytes));
    for (const auto& row : velto::KeyTable()) {
        const auto value = file.ReadEntry(row.name);
        if (value.find_first_of("=\n") != std::string::npos) std::abort();
        velto::CConfigFile copy;
        copy.WriteEntry(row.name, value);
        const bool plain = std::none_of(value.begin(), value.end(), [](char c) {
            return static_cast<unsigned char>(c) < 0x20;
        });
        const bool names_a_key = value.find("; ") != std::string::npos;
        if (plain && !names_a_key && copy.ReadEntry(row.name) != value) std::abort();
    }
    const auto config = velto::ReadDirectConfig(file);
    if (config && velto::EmulatorValues(config->settings).size() < 29) std::abort();
    return 0;
}
