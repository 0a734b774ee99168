#include "support/temporary_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace velto::test {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    std::string name = (fs::temp_directory_path() / "velto-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp " + name);
    path_ = fs::canonical(name).string();
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void WriteFile(const std::string& path, std::string_view bytes) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream out(path, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) throw std::runtime_error("write " + path);
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("read " + path);
    return {std::istreambuf_iterator<char>(in), {}};
}

bool Exists(const std::string& path) {
    return fs::exists(fs::symlink_status(path));
}

std::string BinaryFolder() {
    return fs::read_symlink("/proc/self/exe").parent_path().string();
}

}  // namespace velto::test
