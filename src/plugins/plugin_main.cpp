// The program that plug-in libraries run in: `velto-plugin`. Velto starts it and asks it, over the
// socket that is its descriptor 3, to load libraries of its current directory, to find and call
// their functions, and to free them.
//
// It trusts Velto's requests, and libraries can do to it what they like: an answer is no more than
// what a library said.
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "platform/library_messages_linux.h"

namespace {

namespace platform = velto::platform;

using platform::FunctionResult;
using platform::LibraryMessage;
using Kind = platform::LibraryMessageKind;

void* ToPointer(std::uint64_t number) {
    return std::bit_cast<void*>(static_cast<std::uintptr_t>(number));
}
std::uint64_t ToNumber(const void* pointer) {
    return reinterpret_cast<std::uintptr_t>(pointer);
}

LibraryMessage Failed(std::string text) {
    text.resize(std::min(text.size(), platform::kLongestLibraryText));
    return {Kind::Failed, {}, {std::move(text)}};
}
LibraryMessage FailedByLoader() {
    const char* reason = dlerror();
    return Failed(reason == nullptr ? "unknown error" : reason);
}

LibraryMessage Load(const LibraryMessage& request) {
    // A name without a folder would be looked for in the system's folders. What a library needs
    // and doesn't find must fail here, and not end the program at some later call.
    void* library = dlopen(("./" + request.texts.at(0)).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return FailedByLoader();
    return {Kind::Done, {ToNumber(library)}};
}

// What the library exports itself. The loader's own search goes on in the libraries that it needs,
// and would find `shutdown` in the C library.
void* OwnExport(void* library, const std::string& name) {
    void* address = dlsym(library, name.c_str());
    if (address == nullptr) return nullptr;
    link_map* own = nullptr;
    dl_find_object holder{};
    const bool is_own = dlinfo(library, RTLD_DI_LINKMAP, &own) == 0 &&
                        _dl_find_object(address, &holder) == 0 && holder.dlfo_link_map == own;
    return is_own ? address : nullptr;
}

LibraryMessage Find(const LibraryMessage& request) {
    LibraryMessage answer{Kind::Done};
    for (const auto& name : request.texts) {
        answer.numbers.push_back(ToNumber(OwnExport(ToPointer(request.numbers.at(0)), name)));
    }
    return answer;
}

// Nothing if the function gives no text, or too long a one.
std::optional<std::string> TextOf(void* function) {
    const char* text = reinterpret_cast<const char* (*)()>(function)();
    if (text == nullptr) return {};
    const auto length = strnlen(text, platform::kLongestLibraryText + 1);
    if (length > platform::kLongestLibraryText) return {};
    return std::string(text, length);
}

LibraryMessage Call(const LibraryMessage& request) {
    LibraryMessage answer{Kind::Done};
    const pid_t own = getpid();
    for (std::size_t i = 0; i + 1 < request.numbers.size(); i += 2) {
        void* function = ToPointer(request.numbers[i]);
        std::uint32_t number = 0;
        std::optional<std::string> text = "";
        switch (static_cast<FunctionResult>(request.numbers[i + 1])) {
            case FunctionResult::Nothing:
                reinterpret_cast<void (*)()>(function)();
                break;
            case FunctionResult::Number:
                number = reinterpret_cast<std::uint32_t (*)()>(function)();
                break;
            case FunctionResult::Text:
                text = TextOf(function);
                break;
        }
        // A child that the function has forked, and that wasn't meant to come back.
        if (getpid() != own) _exit(1);
        if (!text) return Failed("A text is missing or too long");
        answer.numbers.push_back(number);
        answer.texts.push_back(std::move(*text));
    }
    return answer;
}

LibraryMessage Free(const LibraryMessage& request) {
    if (dlclose(ToPointer(request.numbers.at(0))) != 0) return FailedByLoader();
    return {Kind::Done};
}

LibraryMessage AnswerTo(const LibraryMessage& request) {
    switch (request.kind) {
        case Kind::Load:
            return Load(request);
        case Kind::Find:
            return Find(request);
        case Kind::Call:
            return Call(request);
        case Kind::Free:
            return Free(request);
        default:
            return Failed("No such request");
    }
}

// Programs that libraries start don't get the channel, libraries that crash leave no memory images
// in the plug-in folder, and what they print comes out line by line, as a crash loses the rest.
bool Prepare() {
    rlimit image{};
    if (getrlimit(RLIMIT_CORE, &image) != 0) return false;
    image.rlim_cur = 0;
    return setrlimit(RLIMIT_CORE, &image) == 0 &&
           fcntl(platform::kLibraryChannel, F_SETFD, FD_CLOEXEC) == 0 &&
           std::setvbuf(stdout, nullptr, _IOLBF, 0) == 0;
}

bool IsStartedByVelto() {
    int type = 0;
    socklen_t size = sizeof type;
    return getsockopt(platform::kLibraryChannel, SOL_SOCKET, SO_TYPE, &type, &size) == 0 &&
           type == SOCK_SEQPACKET;
}

}  // namespace

int main() {
    if (!IsStartedByVelto()) {
        std::fputs("velto-plugin runs plug-ins for Velto and does nothing by itself.\n", stderr);
        return 1;
    }
    if (!Prepare()) {
        std::perror("velto-plugin");
        return 1;
    }
    while (const auto request = platform::ReceiveLibraryMessage(platform::kLibraryChannel)) {
        if (!platform::SendLibraryMessage(platform::kLibraryChannel, AnswerTo(*request))) return 1;
    }
    return 0;
}
