// The host's files, of which one step fails, or is where the process ends.
#pragma once

#include <unistd.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/files.h"

namespace velto::test {

class FailingFiles : public platform::FileService {
  public:
    enum class At { Fail, Kill };

    // `step` counts the calls that read bytes or change something, from 1; 0 fails none.
    FailingFiles(platform::FileService& real, int step, At at)
        : real_(real), step_(step), at_(at) {}

    int steps() const { return count_; }
    std::vector<std::string> opened;  // to be read

    platform::Result<platform::FileInfo> Info(const std::string& path) override {
        return real_.Info(path);
    }
    platform::Result<std::string> RealPath(const std::string& path) override {
        return real_.RealPath(path);
    }
    platform::Result<std::vector<std::string>> List(const std::string& folder) override {
        return real_.List(folder);
    }
    platform::Result<std::unique_ptr<platform::FileReader>> Open(const std::string& path) override {
        opened.push_back(path);
        if (Fails()) return Full(path);
        auto reader = real_.Open(path);
        if (!reader.ok()) return reader;
        return std::unique_ptr<platform::FileReader>(
            std::make_unique<Reader>(*this, path, std::move(reader).value()));
    }
    platform::Status CheckWritable(const std::string& path) override {
        return real_.CheckWritable(path);
    }

    platform::Result<std::unique_ptr<platform::FileWriter>> Create(
        const std::string& path, std::optional<unsigned> mode) override {
        if (Fails()) return Full(path);
        auto writer = real_.Create(path, mode);
        if (!writer.ok()) return writer;
        return std::unique_ptr<platform::FileWriter>(
            std::make_unique<Writer>(*this, path, std::move(writer).value()));
    }
    platform::Result<std::unique_ptr<platform::FileWriter>> OpenLog(const std::string& path,
                                                                    bool anew) override {
        return real_.OpenLog(path, anew);
    }
    platform::Status Rename(const std::string& from, const std::string& to) override {
        return Fails() ? Full(to) : real_.Rename(from, to);
    }
    platform::Status FlushFolder(const std::string& folder) override {
        return Fails() ? Full(folder) : real_.FlushFolder(folder);
    }
    platform::Status FlushFileSystem(const std::string& folder) override {
        return Fails() ? Full(folder) : real_.FlushFileSystem(folder);
    }
    platform::Status Remove(const std::string& path) override {
        return Fails() ? Full(path) : real_.Remove(path);
    }
    platform::Status Empty(const std::string& path) override { return real_.Empty(path); }
    platform::Status MakeFolders(const std::string& folder) override {
        return Fails() ? Full(folder) : real_.MakeFolders(folder);
    }

  private:
    class Reader : public platform::FileReader {
      public:
        Reader(FailingFiles& files, std::string path, std::unique_ptr<platform::FileReader> real)
            : files_(files), path_(std::move(path)), real_(std::move(real)) {}
        platform::Result<bool> Read(std::string& out, std::size_t limit) override {
            if (files_.Fails()) return Full(path_);
            return real_->Read(out, limit);
        }

      private:
        FailingFiles& files_;
        std::string path_;
        std::unique_ptr<platform::FileReader> real_;
    };
    class Writer : public platform::FileWriter {
      public:
        Writer(FailingFiles& files, std::string path, std::unique_ptr<platform::FileWriter> real)
            : files_(files), path_(std::move(path)), real_(std::move(real)) {}
        // Half of it is written when it fails.
        platform::Status Write(std::string_view bytes) override {
            const auto half = real_->Write(bytes.substr(0, bytes.size() / 2));
            if (!half.ok() || files_.Fails()) return Full(path_);
            return real_->Write(bytes.substr(bytes.size() / 2));
        }
        platform::Status Flush() override { return files_.Fails() ? Full(path_) : real_->Flush(); }

      private:
        FailingFiles& files_;
        std::string path_;
        std::unique_ptr<platform::FileWriter> real_;
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
