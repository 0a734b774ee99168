// Message boxes that answer as a test says and remember what they were asked.
#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "platform/message_box.h"

namespace velto::test {

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

}  // namespace velto::test
