// The host's files, of which one step fails, or is where the process ends.
#pragma once

#include <unistd.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/files.h"

namespace velto::test {

// What a service under test has opened, in a wrapper whose calls that service can make fail.
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

class FailingFiles : public platform::FileService {
  public:
    template <class T>
    using Result = platform::Result<T>;
    using Status = platform::Status;
    enum class At { Fail, Kill };

    // `step` counts the calls that read bytes or change something, from 1; 0 fails none.
    FailingFiles(platform::FileService& real, int step, At at)
        : real_(real), step_(step), at_(at) {}

    int steps() const { return count_; }
    std::vector<std::string> opened;  // to be read

    Result<platform::FileInfo> Info(const std::string& path) override { return real_.Info(path); }
    Result<std::string> RealPath(const std::string& path) override { return real_.RealPath(path); }
    Result<std::vector<std::string>> List(const std::string& folder) override {
        return real_.List(folder);
    }
    Result<std::unique_ptr<platform::FileReader>> Open(const std::string& path) override {
        opened.push_back(path);
        return Fails() ? Full(path) : Wrap<Reader>(*this, path, real_.Open(path));
    }
    Status CheckWritable(const std::string& path) override { return real_.CheckWritable(path); }

    Result<std::unique_ptr<platform::FileWriter>> Create(const std::string& path,
                                                         std::optional<unsigned> mode) override {
        return Fails() ? Full(path) : Wrap<Writer>(*this, path, real_.Create(path, mode));
    }
    Result<std::unique_ptr<platform::FileWriter>> OpenLog(const std::string& path,
                                                          bool anew) override {
        return real_.OpenLog(path, anew);
    }
    Status Rename(const std::string& from, const std::string& to) override {
        return Fails() ? Full(to) : real_.Rename(from, to);
    }
    Status FlushFolder(const std::string& folder) override {
        return Fails() ? Full(folder) : real_.FlushFolder(folder);
    }
    Status FlushFileSystem(const std::string& folder) override {
        return Fails() ? Full(folder) : real_.FlushFileSystem(folder);
    }
    Status Remove(const std::string& path) override {
        return Fails() ? Full(path) : real_.Remove(path);
    }
    Status Empty(const std::string& path) override { return real_.Empty(path); }
    Status MakeFolders(const std::string& folder) override {
        return Fails() ? Full(folder) : real_.MakeFolders(folder);
    }

  private:
    struct Reader : Wrapped<FailingFiles, platform::FileReader> {
        using Wrapped::Wrapped;
        Result<bool> Read(std::string& out, std::size_t limit) override {
            return service.Fails() ? Full(path) : real->Read(out, limit);
        }
    };
    struct Writer : Wrapped<FailingFiles, platform::FileWriter> {
        using Wrapped::Wrapped;
        // Half of it is written when it fails.
        Status Write(std::string_view bytes) override {
            const auto half = real->Write(bytes.substr(0, bytes.size() / 2));
            if (!half.ok() || service.Fails()) return Full(path);
            return real->Write(bytes.substr(bytes.size() / 2));
        }
        Status Flush() override { return service.Fails() ? Full(path) : real->Flush(); }
    };

    static platform::Error Full(const std::string& path) {
        return {platform::ErrorKind::Full, path, "No space left on device"};
    }
    bool Fails() {
        if (++count_ != step_) return false;
        if (at_ == At::Kill) _exit(0);
        return true;
    }

    platform::FileService& real_;
    int step_;
    At at_;
    int count_ = 0;
};

}  // namespace velto::test
