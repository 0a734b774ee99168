// Environment variables that have other values for the life of this, then their former ones.
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
    explicit Variables(List list) : before_(std::move(list)) {
        for (auto& [name, value] : before_) value = Exchange(name, value);
    }
    ~Variables() {
        for (auto it = before_.rbegin(); it != before_.rend(); ++it)
            Exchange(it->first, it->second);
    }
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;

  private:
    static std::string Exchange(const std::string& name, const std::string& value) {
        const char* const set = std::getenv(name.c_str());
        std::string before = set == nullptr ? "" : set;
        if (value.empty()) {
            unsetenv(name.c_str());
        } else {
            setenv(name.c_str(), value.c_str(), 1);
        }
        return before;
    }

    List before_;
};

}  // namespace velto::test
