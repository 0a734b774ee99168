// Waits in which nothing is shown: they remember what was waited for, and stop where a test says.
#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include "platform/waiting.h"

namespace velto::test {

class ScriptedWaiting : public platform::WaitingService {
  public:
    std::unique_ptr<platform::Wait> Begin(const platform::WaitRequest& request) override {
        begun.push_back(request);
        return std::make_unique<ScriptedWait>(*this);
    }

    std::vector<platform::WaitRequest> begun;
    std::vector<platform::WaitProgress> told;
    // Which of the calls from now on, counted from 0, is the one that the user stops.
    std::size_t stop_at = std::numeric_limits<std::size_t>::max();

  private:
    struct ScriptedWait : platform::Wait {
        explicit ScriptedWait(ScriptedWaiting& its_all) : all(its_all) {}
        bool Continue(std::optional<platform::WaitProgress> progress) override {
            if (progress) all.told.push_back(*progress);
            return all.stop_at-- != 0;
        }
        ScriptedWaiting& all;
    };
};

}  // namespace velto::test
