#include "platform/message_box.h"

namespace velto::platform {

void Report(const std::string& text, const std::string& caption, BoxIcon icon) {
    Boxes().Show({text, caption, icon});
}

bool ConfirmLoss(const std::string& question, const std::string& caption) {
    return Boxes().Show({question, caption, BoxIcon::Question, BoxButtons::YesNo, true}) ==
           BoxAnswer::Yes;
}

}  // namespace velto::platform
