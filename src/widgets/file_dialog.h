// The file-open dialog.
#pragma once

#include <QStringList>
#include <optional>
#include <string>
#include <string_view>

class QWidget;

namespace velto {

// `filters` are pairs of a text and its patterns, "Executables (*.exe)|*.exe|All files
// (*.*)|*.*||". The texts are shown as they are; patterns are parted by ";" and ignore case; `*`
// and `*.*` are all files. A name without a dot that the user types gets the first pattern's
// ending.
//
// Opens at the folder of `start`, a stored path, with its file selected; without such a folder, at
// the user's home. Gives the chosen file's path, or nothing if the user cancels.
std::optional<std::string> OpenFile(QWidget* parent, const QString& title, std::string_view filters,
                                    std::string_view start);

// The filters as Qt takes them, each a text with its patterns in parentheses behind it.
QStringList NameFilters(std::string_view filters);

}  // namespace velto
