// Services that a test scripts, and that remember what they were asked for.
#pragma once

#include <cstddef>
#include <deque>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/message_box.h"
#include "platform/process.h"
#include "platform/waiting.h"

namespace velto::test {

// Message boxes that answer as a test says.
class ScriptedBoxes : public platform::MessageBoxes {
  public:
    // Without an answer left, a question is answered No.
    platform::BoxAnswer Show(const platform::MessageBox& box) override {
        shown.push_back(box);
        if (box.buttons == platform::BoxButtons::Ok) return platform::BoxAnswer::Ok;
        if (answers.empty()) return platform::BoxAnswer::No;
        const auto answer = answers.front();
        answers.pop_front();
        return answer;
    }

    std::vector<platform::MessageBox> shown;
    std::deque<platform::BoxAnswer> answers;
};

// What the boxes have shown since the last look, each as "caption: text".
inline std::vector<std::string> Shown(ScriptedBoxes& boxes) {
    std::vector<std::string> lines;
    for (const auto& box : std::exchange(boxes.shown, {})) {
        lines.push_back(box.caption + ": " + box.text);
    }
    return lines;
}

// Waits in which nothing is shown: they stop where a test says.
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

// Starts real programs and remembers what it was asked for.
class RecordingProcesses : public platform::ProcessService {
  public:
    explicit RecordingProcesses(const platform::Environment& environment)
        : real_(platform::MakeProcessService(environment)) {}
    platform::Result<std::unique_ptr<platform::ChildProcess>> Start(
        const platform::ProcessRequest& request) override {
        requests.push_back(request);
        return real_->Start(request);
    }

    std::vector<platform::ProcessRequest> requests;

  private:
    std::unique_ptr<platform::ProcessService> real_;
};

}  // namespace velto::test
