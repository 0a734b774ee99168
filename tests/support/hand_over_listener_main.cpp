// The first process of an instance: `hand-over-listener program home [milliseconds]`.
//
// Prints "ready" when it listens, then each name on a line of its own before it spends that time
// on it. Ends at the end of its standard input; 1 if it isn't the first or can't listen.
#include <charconv>
#include <chrono>
#include <cstring>
#include <exception>
#include <iostream>
#include <string>
#include <thread>

#include "platform/instance.h"

int main(int argc, char** argv) try {
    if (argc < 3) return 2;
    int milliseconds = 0;
    if (argc > 3) std::from_chars(argv[3], argv[3] + std::strlen(argv[3]), milliseconds);

    const auto instance = velto::platform::MakeInstanceService(argv[1], argv[2]);
    const auto first = instance->Acquire();
    if (!first.ok() || !first.value()) {
        std::cerr << (first.ok() ? "not the first" : first.error().text) << std::endl;
        return 1;
    }
    const auto listener = instance->Listen([milliseconds](const std::string& name) {
        std::cout << name << std::endl;
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    });
    if (!listener.ok()) {
        std::cerr << listener.error().text << std::endl;
        return 1;
    }
    std::cout << "ready" << std::endl;
    for (std::string ignored; std::getline(std::cin, ignored);) {
    }
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << std::endl;
    return 1;
}
