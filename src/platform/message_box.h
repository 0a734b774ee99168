// Message boxes: the one way in which the logic speaks to the user.
#pragma once

#include <memory>
#include <string>

namespace velto::platform {

enum class BoxIcon { None, Error, Warning, Question, Information };
enum class BoxButtons { Ok, YesNo };
enum class BoxAnswer { Ok, Yes, No };

struct MessageBox {
    std::string text;  // plain text, never markup
    std::string caption;
    BoxIcon icon = BoxIcon::Error;
    BoxButtons buttons = BoxButtons::Ok;
    // Enter answers No where Yes deletes or discards.
    bool yes_is_destructive = false;
};

class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;
    // Blocks until the user has answered. May be called from any thread.
    virtual BoxAnswer Show(const MessageBox& box) = 0;
};

MessageBoxes& Boxes();

// Shows a message with "OK".
void Report(const std::string& text, const std::string& caption = "Error",
            BoxIcon icon = BoxIcon::Error);
// Asks a question in which Yes loses something. True: Yes.
bool ConfirmLoss(const std::string& question, const std::string& caption);

// A line on standard error, for what a terminal may have beside a box.
void Note(const std::string& line);

// For a process without a display: each box is one line `caption: text` on standard error (line
// breaks as they are), and a question is answered No.
std::unique_ptr<MessageBoxes> MakeStandardErrorBoxes();

}  // namespace velto::platform
