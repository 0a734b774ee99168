// What message boxes have shown since the last look, each as "caption: text".
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/scripted_boxes.h"

namespace velto::test {

inline std::vector<std::string> Shown(ScriptedBoxes& boxes) {
    std::vector<std::string> lines;
    for (const auto& box : std::exchange(boxes.shown, {})) {
        lines.push_back(box.caption + ": " + box.text);
    }
    return lines;
}

}  // namespace velto::test
