// The program that plug-in libraries run in: `velto-plugin`. Velto starts it and asks it, over the
// pipe of its descriptors 3 and 4, to load libraries of its current directory, to find and call
// their functions, and to free them.
//
// It trusts Velto's requests, and libraries can do to it what they like: an answer is no more than
// what a library said.
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/library_messages.h"

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

// Nothing if the function gives no text, or too long a one.
std::optional<std::string> TextOf(void* function) {
    const char* text = reinterpret_cast<const char* (*)()>(function)();
    if (text == nullptr) return {};
    const auto length = strnlen(text, platform::kLongestLibraryText + 1);
    if (length > platform::kLongestLibraryText) return {};
    return std::string(text, length);
}

// Adds what the function gives. False if that is no proper text.
bool AddResult(LibraryMessage& answer, void* function, FunctionResult result) {
    std::uint32_t number = 0;
    std::optional<std::string> text = "";
    const pid_t own = getpid();
    switch (result) {
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
    answer.numbers.push_back(number);
    answer.texts.push_back(text.value_or(""));
    return text.has_value();
}

LibraryMessage Call(void* library, const LibraryMessage& request) {
    LibraryMessage answer{Kind::Done};
    std::vector<void*> functions;
    for (const auto& name : request.texts) {
        functions.push_back(OwnExport(library, name));
        answer.numbers.push_back(ToNumber(functions.back()));
    }
    if (std::count(functions.begin(), functions.end(), nullptr) > 0) return answer;
    for (std::size_t i = 0; i < functions.size(); ++i) {
        const auto result = static_cast<FunctionResult>(request.numbers.at(i + 1));
        if (!AddResult(answer, functions[i], result))
            return Failed("A text is missing or too long");
    }
    return answer;
}

LibraryMessage Load(const LibraryMessage& request) {
    // A name without a folder would be looked for in the system's folders. What a library needs
    // and doesn't find must fail here, and not end the program at some later call.
    void* library = dlopen(("./" + request.texts.at(0)).c_str(), RTLD_NOW | RTLD_LOCAL);
    auto answer =
        library == nullptr ? FailedByLoader() : LibraryMessage{Kind::Done, {ToNumber(library)}};
    if (request.numbers.at(0) == 0) return answer;
    const auto call = platform::ReceiveLibraryMessage(platform::kLibraryRequests);
    if (!call) std::exit(1);
    if (library == nullptr) return answer;
    const auto called = Call(library, *call);
    if (called.kind == Kind::Failed) return answer;
    answer.numbers.insert(answer.numbers.end(), called.numbers.begin(), called.numbers.end());
    answer.texts = called.texts;
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
        case Kind::Call:
            return Call(ToPointer(request.numbers.at(0)), request);
        case Kind::Free:
            return Free(request);
        default:
            return Failed("No such request");
    }
}

bool CloseOnExec(int descriptor) {
    return fcntl(descriptor, F_SETFD, FD_CLOEXEC) == 0;
}

// Programs that libraries start don't get the pipe, libraries that crash leave no memory images in
// the plug-in folder, and what they print comes out line by line, as a crash loses the rest.
bool Prepare() {
    rlimit image{};
    if (getrlimit(RLIMIT_CORE, &image) != 0) return false;
    image.rlim_cur = 0;
    return setrlimit(RLIMIT_CORE, &image) == 0 && CloseOnExec(platform::kLibraryRequests) &&
           CloseOnExec(platform::kLibraryAnswers) && std::setvbuf(stdout, nullptr, _IOLBF, 0) == 0;
}

bool IsPipe(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
}

int Run() {
    if (!IsPipe(platform::kLibraryRequests) || !IsPipe(platform::kLibraryAnswers)) {
        std::fputs("velto-plugin runs plug-ins for Velto and does nothing by itself.\n", stderr);
        return 1;
    }
    if (!Prepare()) {
        std::perror("velto-plugin");
        return 1;
    }
    while (const auto request = platform::ReceiveLibraryMessage(platform::kLibraryRequests)) {
        auto answer = AnswerTo(*request);
        if (!platform::SendLibraryMessage(platform::kLibraryAnswers, answer) &&
            !platform::SendLibraryMessage(platform::kLibraryAnswers, Failed("Too long"))) {
            return 1;
        }
    }
    return 0;
}

}  // namespace

int main() {
    try {
        return Run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velto-plugin: %s\n", error.what());
        return 1;
    }
}
