#include "widgets/file_dialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include "platform/stored_path.h"
#include "widgets/text.h"

namespace velto {
namespace {

// A pattern in which each letter stands for its other case too: desktops' own dialogs tell them
// apart.
QString IgnoringCase(const QString& pattern) {
    if (pattern == "*.*") return "*";
    QString any;
    for (const auto c : pattern) {
        const auto other = c.isLower() ? c.toUpper() : c.toLower();
        any += other == c ? QString(c) : QString("[%1%2]").arg(c, other);
    }
    return any;
}

QString IgnoringCase(const QStringList& patterns) {
    QStringList any;
    for (const auto& pattern : patterns) any += IgnoringCase(pattern.trimmed());
    return any.join(' ');
}

QString FirstEnding(std::string_view filters) {
    const auto pattern = FromBytes(filters).section('|', 1, 1).section(';', 0, 0);
    return pattern.startsWith("*.") && pattern != "*.*" ? pattern.mid(2) : QString();
}

void OpenAt(QFileDialog& dialog, std::string_view start) {
    const auto path = FromBytes(platform::HostPath(start));
    const QFileInfo file(path);
    if (path.isEmpty() || !file.absoluteDir().exists()) {
        dialog.setDirectory(QDir::homePath());
        return;
    }
    dialog.setDirectory(file.absolutePath());
    if (file.isFile()) dialog.selectFile(file.fileName());
}

}  // namespace

QStringList NameFilters(std::string_view filters) {
    const auto parts = FromBytes(filters).split('|');
    QStringList names;
    for (qsizetype i = 0; i + 1 < parts.size() && !parts[i].isEmpty(); i += 2) {
        names += parts[i] + " (" + IgnoringCase(parts[i + 1].split(';', Qt::SkipEmptyParts)) + ")";
    }
    return names;
}

std::optional<std::string> OpenFile(QWidget* parent, const QString& title, std::string_view filters,
                                    std::string_view start) {
    QFileDialog dialog(parent, title);
    dialog.setFileMode(QFileDialog::ExistingFile);
    // Only the texts are shown, without the patterns that NameFilters puts behind them.
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(NameFilters(filters));
    dialog.setDefaultSuffix(FirstEnding(filters));
    OpenAt(dialog, start);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return ToBytes(dialog.selectedFiles().constFirst());
}

}  // namespace velto
