// What surrounds a test and is gone with it: a folder of its own, environment variables.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velto::test {

class TemporaryFolder {
  public:
    TemporaryFolder() {
        auto name = (std::filesystem::temp_directory_path() / "velto-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp " + name);
        path_ = std::filesystem::canonical(name).string();
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

  private:
    std::string path_;
};

// For tests alone: no flush, and a failure ends the test program.
inline void WriteFile(const std::string& path, std::string_view bytes) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    if (!(std::ofstream(path, std::ios::binary) << bytes).flush()) {
        throw std::runtime_error("write " + path);
    }
}

inline std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("read " + path);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline bool Exists(const std::string& path) {
    return std::filesystem::exists(std::filesystem::symlink_status(path));
}

// The folder of the programs that were built with the tests.
inline std::string BinaryFolder() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
}

// Environment variables, each named once, that have other values for the life of this, then their
// former ones.
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
