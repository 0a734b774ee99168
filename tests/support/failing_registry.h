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
    // Fails the calls of that kind on keys whose path ends in `on`, but for the first `spared`.
    FailingRegistry(platform::RegistryStore& real, RegistryCall call, std::string on, int spared)
        : real_(real), call_(call), on_(std::move(on)), spared_(spared) {}

    platform::Status OpenStore(std::span<const platform::RegistryWrite> values) override {
        return real_.OpenStore(values);
    }
    platform::Result<std::unique_ptr<platform::RegistryKey>> OpenKey(
        std::string_view path) override {
        if (Fails(RegistryCall::OpenKey, path)) return Failure();
        return Wrapped(path, real_.OpenKey(path));
    }
    platform::Result<std::unique_ptr<platform::RegistryKey>> CreateKey(
        std::string_view path) override {
        return Wrapped(path, real_.CreateKey(path));
    }
    platform::Result<std::unique_ptr<platform::RegistryTransaction>> Begin() override {
        auto real = real_.Begin();
        if (!real.ok()) return real;
        return std::unique_ptr<platform::RegistryTransaction>(
            std::make_unique<Transaction>(*this, std::move(real).value()));
    }
    platform::Status Visit(std::string_view path, platform::RegistryVisitor& visitor) override {
        return real_.Visit(path, visitor);
    }

  private:
    class Key : public platform::RegistryKey {
      public:
        Key(FailingRegistry& store, std::string path, std::unique_ptr<platform::RegistryKey> real)
            : store_(store), path_(std::move(path)), real_(std::move(real)) {}
        platform::Result<platform::RegistryValue> Query(std::string_view name) override {
            if (store_.Fails(RegistryCall::Query, path_)) return Failure();
            return real_->Query(name);
        }
        platform::Status Set(std::string_view name, const platform::RegistryValue& value) override {
            return real_->Set(name, value);
        }
        platform::Result<std::optional<std::string>> EnumerateSubkey(std::size_t index) override {
            if (store_.Fails(RegistryCall::EnumerateSubkey, path_)) return Failure();
            return real_->EnumerateSubkey(index);
        }
        platform::Result<std::optional<platform::RegistryValueName>> EnumerateValue(
            std::size_t index) override {
            if (store_.Fails(RegistryCall::EnumerateValue, path_)) return Failure();
            return real_->EnumerateValue(index);
        }
        platform::Status Close() override {
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
        Transaction(FailingRegistry& store, std::unique_ptr<platform::RegistryTransaction> real)
            : store_(store), real_(std::move(real)) {}
        platform::Status CreateKey(std::string_view path) override {
            return store_.Fails(RegistryCall::Step, path) ? Failure() : real_->CreateKey(path);
        }
        platform::Status SetValue(std::string_view path, std::string_view name,
                                  const platform::RegistryValue& value) override {
            if (store_.Fails(RegistryCall::Step, path)) return Failure();
            return real_->SetValue(path, name, value);
        }
        platform::Status Commit() override {
            return store_.Fails(RegistryCall::Step, "") ? Failure() : real_->Commit();
        }

      private:
        FailingRegistry& store_;
        std::unique_ptr<platform::RegistryTransaction> real_;
    };

    platform::Result<std::unique_ptr<platform::RegistryKey>> Wrapped(
        std::string_view path, platform::Result<std::unique_ptr<platform::RegistryKey>> key) {
        if (!key.ok()) return key;
        return std::unique_ptr<platform::RegistryKey>(
            std::make_unique<Key>(*this, std::string(path), std::move(key).value()));
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
