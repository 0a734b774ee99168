// A registry store of which one kind of call fails.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/registry.h"
#include "support/failing_files.h"

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
        return Wrap<Key>(*this, path, real_.OpenKey(path));
    }
    Result<std::unique_ptr<platform::RegistryKey>> CreateKey(std::string_view path) override {
        return Wrap<Key>(*this, path, real_.CreateKey(path));
    }
    Result<std::unique_ptr<platform::RegistryTransaction>> Begin() override {
        return Wrap<Transaction>(*this, "", real_.Begin());
    }
    Status Visit(std::string_view path, platform::RegistryVisitor& visitor) override {
        return real_.Visit(path, visitor);
    }

  private:
    struct Key : Wrapped<FailingRegistry, platform::RegistryKey> {
        using Wrapped::Wrapped;
        Result<platform::RegistryValue> Query(std::string_view name) override {
            return Fails(RegistryCall::Query) ? Failure() : real->Query(name);
        }
        Status Set(std::string_view name, const platform::RegistryValue& value) override {
            return real->Set(name, value);
        }
        Result<std::optional<std::string>> EnumerateSubkey(std::size_t index) override {
            return Fails(RegistryCall::EnumerateSubkey) ? Failure() : real->EnumerateSubkey(index);
        }
        Result<std::optional<platform::RegistryValueName>> EnumerateValue(
            std::size_t index) override {
            return Fails(RegistryCall::EnumerateValue) ? Failure() : real->EnumerateValue(index);
        }
        Status Close() override { return Fails(RegistryCall::Close) ? Failure() : real->Close(); }
        bool Fails(RegistryCall call) { return service.Fails(call, path); }
    };
    struct Transaction : Wrapped<FailingRegistry, platform::RegistryTransaction> {
        using Wrapped::Wrapped;
        Status CreateKey(std::string_view key) override {
            return Fails() ? Failure() : real->CreateKey(key);
        }
        Status SetValue(std::string_view key, std::string_view name,
                        const platform::RegistryValue& value) override {
            return Fails() ? Failure() : real->SetValue(key, name, value);
        }
        Status Commit() override { return Fails() ? Failure() : real->Commit(); }
        bool Fails() { return service.Fails(RegistryCall::Step, path); }
    };

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
