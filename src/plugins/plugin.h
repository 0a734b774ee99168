// One plug-in library of the emulator, after the PSEmu Pro plug-in interface: who it is, and its
// own dialogs.
//
// A plain value. A copy is the same loaded library, and no destructor frees it: whoever holds the
// list of plug-ins unloads them. Whatever a library does wrong makes an operation false or silent
// and is never reported. All use is on one thread; operations last as long as the library's own
// dialogs.
//
// The interface, as far as it is used: functions without parameters. PSEgetLibType gives one of
// the types below. PSEgetLibVersion gives a word whose bits 8 to 15 and 0 to 7 are the version.
// PSEgetLibName gives a text that ends in NUL. Of the verbs, whose names are the type's prefix and
// "configure", "test", "about", "init" or "shutdown", only "test" has a result: its status, 0 if
// all is well, above 0 for a warning, below for an error.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/libraries.h"

namespace velto {

enum PluginType : std::uint32_t {
    kCdrPlugin = 1,
    kGpuPlugin = 2,
    kSpuPlugin = 4,
    kPadPlugin = 8,
    kNetPlugin = 16,
};

class CPlugin {
  public:
    // Loads the file of this bare name of the plug-in folder, a host path; then that folder
    // is the library's current directory as long as it is loaded. What was loaded before is
    // unloaded first. After a failure nothing is loaded, or, if it can't be unloaded, what was.
    bool Load(const std::string& file, const std::string& folder);
    // True if nothing is loaded any more. What Identify found out stays.
    bool Unload();
    bool Reload(const std::string& folder) { return Load(fileName, folder); }

    // Asks the loaded library who it is. False if it isn't a plug-in: it lacks one of the three
    // functions, which are then not called, or has no proper answers; of what is known about it,
    // only the addresses change then.
    bool Identify();
    // What it calls.
    static std::span<const platform::LibraryFunction> IdentityFunctions();

    // These need a loaded library that was identified once; a function that it lacks is passed
    // over. Configure gives true in all cases. Test shows the library's status in a message box.
    bool Configure();
    void Test();
    void About();
    void Init();
    void Shutdown();

    const std::string& GetName() const { return name; }
    const std::string& GetFileName() const { return fileName; }
    std::uint32_t GetType() const { return type; }

    // Changed by the operations alone.
    platform::LibraryHandle module = platform::LibraryHandle::None;
    std::uint32_t type = 0;  // any number
    std::string name;        // with the version behind it
    std::string fileName;
    platform::FunctionAddress getLibType = platform::FunctionAddress::None;
    platform::FunctionAddress getLibName = platform::FunctionAddress::None;
    platform::FunctionAddress getLibVersion = platform::FunctionAddress::None;
    std::string prefix;  // empty if the type is unknown

  private:
    // The number that the verb gives; nothing if there is no such function or it doesn't return.
    std::optional<std::uint32_t> CallVerb(const char* verb, platform::FunctionResult result);
};

}  // namespace velto
