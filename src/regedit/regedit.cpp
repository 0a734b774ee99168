#include "regedit/regedit.h"

#include <memory>
#include <string_view>
#include <utility>

#include "platform/replace_file.h"
#include "regedit/text_parser.h"
#include "regedit/text_writer.h"

namespace velto::regedit {
namespace {

using platform::Result;
using platform::Status;

// Writes what it is shown within the scope into the store. The transaction begins with the first
// key, so that a text without any keeps nobody from writing.
class StoreMerge : public platform::RegistryVisitor {
  public:
    StoreMerge(platform::RegistryStore& store, const MergeScope& scope)
        : store_(store), scope_(scope) {}

    Status OnKey(const std::string& path) override {
        within_ = scope_.Allows(path);
        if (!within_) return PassOver();
        if (!transaction_) {
            auto begun = store_.Begin();
            if (!begun.ok()) return begun.error();
            transaction_ = std::move(begun).value();
        }
        key_ = path;
        return transaction_->CreateKey(path);
    }

    Status OnValue(const std::string& name, const platform::RegistryValue& value) override {
        if (!within_) return PassOver();
        return transaction_->SetValue(key_, name, value);
    }

    Status Commit() { return transaction_ ? transaction_->Commit() : Status(); }
    std::uint64_t outside() const { return outside_; }

  private:
    Status PassOver() {
        ++outside_;
        return {};
    }

    platform::RegistryStore& store_;
    const MergeScope& scope_;
    bool within_ = false;  // the key that was shown last
    std::uint64_t outside_ = 0;
    std::unique_ptr<platform::RegistryTransaction> transaction_;
    std::string key_;
};

}  // namespace

Result<Merged> MergeFile(platform::FileService& files, platform::RegistryStore& store,
                         const std::string& file, const MergeScope& scope) {
    const auto reader = files.Open(file);
    if (!reader.ok()) return reader.error();
    StoreMerge merge(store, scope);
    const auto skipped = ParseRegistryText(*reader.value(), merge);
    if (!skipped.ok()) {
        auto error = skipped.error();
        if (error.subject.empty()) error.subject = file;
        return error;
    }
    if (auto committed = merge.Commit(); !committed.ok()) return committed.error();
    return Merged{skipped.value(), merge.outside()};
}

Status ExportKey(platform::FileService& files, platform::RegistryStore& store,
                 const std::string& file, const std::string& key) {
    if (!platform::HasKnownRoot(key)) {
        return platform::Error{platform::ErrorKind::Malformed, key, "no such root"};
    }
    auto replacement = platform::FileReplacement::Begin(files, file);
    if (!replacement.ok()) return replacement.error();
    TextWriter writer([&](std::string_view bytes) { return replacement.value()->Write(bytes); });
    if (auto shown = store.Visit(key, writer); !shown.ok()) return shown;
    if (auto finished = writer.Finish(); !finished.ok()) return finished;
    return replacement.value()->Commit();
}

}  // namespace velto::regedit
