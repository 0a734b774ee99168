// A registry store of which one kind of call fails.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/registry.h"

namespace velto::test {

// A Step is one of a transaction: a key made, a value set, or the commit.
enum class RegistryCall { None, OpenKey, Query, EnumerateSubkey, EnumerateValue, Close, Step };

class FailingRegistry : public platform::RegistryStore {
  public:
    template <class T>
    using Result = platform::Result<T>;
    using Status = platform::Status;
    // Fails the calls of that kind on keys whose path ends in `on`, but for the first `spared`.
    FailingRegistry(platform::RegistryStore& real, RegistryCall call, std::string on, int spared)
        : real_(real), call_(call), on_(std::move(on)), spared_(spared) {}

    Status OpenStore(std::span<const platform::RegistryWrite> values) override {
        return real_.OpenStore(values);
    }
    Result<std::unique_ptr<platform::RegistryKey>> OpenKey(std::string_view path) override {
        if (Fails(RegistryCall::OpenKey, path)) return Failure();
        return Wrapped<Key>(path, real_.OpenKey(path));
    }
    Result<std::unique_ptr<platform::RegistryKey>> CreateKey(std::string_view path) override {
        return Wrapped<Key>(path, real_.CreateKey(path));
    }
    Result<std::unique_ptr<platform::RegistryTransaction>> Begin() override {
        return Wrapped<Transaction>("", real_.Begin());
    }
    Status Visit(std::string_view path, platform::RegistryVisitor& visitor) override {
        return real_.Visit(path, visitor);
    }

  private:
    class Key : public platform::RegistryKey {
      public:
        Key(FailingRegistry& store, std::string path, std::unique_ptr<platform::RegistryKey> real)
            : store_(store), path_(std::move(path)), real_(std::move(real)) {}
        Result<platform::RegistryValue> Query(std::string_view name) override {
            if (store_.Fails(RegistryCall::Query, path_)) return Failure();
            return real_->Query(name);
        }
        Status Set(std::string_view name, const platform::RegistryValue& value) override {
            return real_->Set(name, value);
        }
        Result<std::optional<std::string>> EnumerateSubkey(std::size_t index) override {
            if (store_.Fails(RegistryCall::EnumerateSubkey, path_)) return Failure();
            return real_->EnumerateSubkey(index);
        }
        Result<std::optional<platform::RegistryValueName>> EnumerateValue(
            std::size_t index) override {
            if (store_.Fails(RegistryCall::EnumerateValue, path_)) return Failure();
            return real_->EnumerateValue(index);
        }
        Status Close() override {
            if (store_.Fails(RegistryCall::Close, path_)) return Failure();
            return real_->Close();
        }

      private:
        FailingRegistry& store_;
        std::string path_;
        std::unique_ptr<platform::RegistryKey> real_;
    };

    class Transaction : public platform::RegistryTransaction {
      public:
        Transaction(FailingRegistry& store, const std::string& /*path*/,
                    std::unique_ptr<platform::RegistryTransaction> real)
            : store_(store), real_(std::move(real)) {}
        Status CreateKey(std::string_view path) override {
            return store_.Fails(RegistryCall::Step, path) ? Failure() : real_->CreateKey(path);
        }
        Status SetValue(std::string_view path, std::string_view name,
                        const platform::RegistryValue& value) override {
            if (store_.Fails(RegistryCall::Step, path)) return Failure();
            return real_->SetValue(path, name, value);
        }
        Status Commit() override {
            return store_.Fails(RegistryCall::Step, "") ? Failure() : real_->Commit();
        }

      private:
        FailingRegistry& store_;
        std::unique_ptr<platform::RegistryTransaction> real_;
    };

    template <class Wrapper, class T>
    Result<std::unique_ptr<T>> Wrapped(std::string_view path, Result<std::unique_ptr<T>> real) {
        if (!real.ok()) return real;
        return std::unique_ptr<T>(
            std::make_unique<Wrapper>(*this, std::string(path), std::move(real).value()));
    }
    static platform::Error Failure() {
        return {platform::ErrorKind::Other, "registry", "as the test wants it"};
    }
    bool Fails(RegistryCall call, std::string_view path) {
        return call == call_ && path.ends_with(on_) && spared_-- <= 0;
    }

    platform::RegistryStore& real_;
    RegistryCall call_;
    std::string on_;
    int spared_;
};

}  // namespace velto::test
