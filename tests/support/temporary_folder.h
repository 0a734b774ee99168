// A folder of a test's own, gone with it.
#pragma once

#include <string>
#include <string_view>

namespace velto::test {

class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

  private:
    std::string path_;
};

// For tests alone: no flush, and a failure ends the test program.
void WriteFile(const std::string& path, std::string_view bytes);
std::string ReadFile(const std::string& path);
bool Exists(const std::string& path);

// The folder of the programs that were built with the tests.
std::string BinaryFolder();

}  // namespace velto::test
