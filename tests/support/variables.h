// Environment variables, each named once, that have other values for the life of this, then their
// former ones.
#pragma once

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace velto::test {

class Variables {
  public:
    using List = std::vector<std::pair<std::string, std::string>>;

    // Each name with its value; an empty one unsets.
    explicit Variables(const List& list) {
        for (const auto& [name, value] : list) {
            const char* const before = std::getenv(name.c_str());
            before_.emplace_back(name, before == nullptr ? "" : before);
            Set(name, value);
        }
    }
    ~Variables() {
        for (const auto& [name, value] : before_) Set(name, value);
    }
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;

  private:
    static void Set(const std::string& name, const std::string& value) {
        value.empty() ? unsetenv(name.c_str()) : setenv(name.c_str(), value.c_str(), 1);
    }

    List before_;
};

}  // namespace velto::test
