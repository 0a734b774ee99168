// Bytes of the record, of settings and of file names as the user reads them.
//
// Bytes that are valid UTF-8 are shown as that, all others as Windows-1252, in which every byte
// has a character. What the user types goes back as UTF-8. A text that wasn't typed must go back
// as the bytes that it came from: keep these beside it (BytesEdit, BytesCombo and BytesList do).
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace velto {

QString FromBytes(std::string_view bytes);
std::string ToBytes(const QString& text);

// Lets a line end inside words that are longer than any word is: names of files, which may have
// 255 characters, would make a window wider than the screen.
QString Breakable(const QString& text);

}  // namespace velto
