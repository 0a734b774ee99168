#include <unistd.h>

#include <string_view>

#include "platform/linux/system_error.h"
#include "platform/message_box.h"

namespace velto::platform {
namespace {

class StandardErrorBoxes : public MessageBoxes {
  public:
    BoxAnswer Show(const MessageBox& box) override {
        Note(box.caption + ": " + box.text);
        return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::No;
    }
};

}  // namespace

// One write, so that lines of several threads and processes don't mix. There is nobody left to tell
// if it fails.
void Note(const std::string& line) {
    const auto text = line + '\n';
    std::string_view rest = text;
    while (!rest.empty()) {
        const auto written =
            Retrying([&] { return write(STDERR_FILENO, rest.data(), rest.size()); });
        if (written <= 0) break;
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::unique_ptr<MessageBoxes> MakeStandardErrorBoxes() {
    return std::make_unique<StandardErrorBoxes>();
}

}  // namespace velto::platform
