// Writes registry text in its escaped form, from which a merge makes the same keys and values.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/registry.h"
#include "platform/result.h"

namespace velto::regedit {

// Is shown keys and values by a store. The text goes to `write` in larger pieces, whose failures
// are the results of the calls here. It is whole when Finish, the last call, has succeeded.
class TextWriter : public platform::RegistryVisitor {
  public:
    using Write = std::function<platform::Status(std::string_view)>;
    explicit TextWriter(Write write);

    platform::Status OnKey(const std::string& path) override;
    platform::Status OnValue(const std::string& name,
                             const platform::RegistryValue& value) override;
    platform::Status Finish();

  private:
    platform::Status WriteFull();

    Write write_;
    std::string buffer_;
    bool in_key_ = false;
};

}  // namespace velto::regedit
