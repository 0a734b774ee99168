// Message boxes that answer as a test says and remember what they were asked.
#pragma once

#include <deque>
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

}  // namespace velto::test
