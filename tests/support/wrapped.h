// What a service under test has opened, in a wrapper whose calls that service can make fail.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/result.h"

namespace velto::test {

template <class Service, class Opened>
struct Wrapped : Opened {
    Wrapped(Service& its_service, std::string its_path, std::unique_ptr<Opened> its_real)
        : service(its_service), path(std::move(its_path)), real(std::move(its_real)) {}
    Service& service;
    std::string path;
    std::unique_ptr<Opened> real;
};

template <class Wrapper, class Service, class Opened>
platform::Result<std::unique_ptr<Opened>> Wrap(Service& service, std::string_view path,
                                               platform::Result<std::unique_ptr<Opened>> real) {
    if (!real.ok()) return real;
    return std::unique_ptr<Opened>(
        std::make_unique<Wrapper>(service, std::string(path), std::move(real).value()));
}

}  // namespace velto::test
