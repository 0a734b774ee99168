#include "platform/module.h"

#include <dlfcn.h>

namespace velto::platform {
namespace {

Error LoadError(const std::string& path) {
    const char* const text = dlerror();
    return {ErrorKind::Unsuitable, path, text == nullptr ? "unknown error" : text};
}

}  // namespace

Result<void*> LoadModule(const std::string& path, const char* function) {
    // What it misses shows now and not while windows are open.
    void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (module == nullptr) return LoadError(path);
    void* const address = dlsym(module, function);
    if (address == nullptr) return LoadError(path);
    return address;
}

}  // namespace velto::platform
