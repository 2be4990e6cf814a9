#pragma once

#include <QByteArray>
#include <QString>
#include <string>
#include <string_view>

namespace tessa {

// Texts out of files and names of files can hold what a terminal obeys: escape sequences, line
// breaks that forge a line of our own, marks that turn the reading direction. Here they become what
// can be read and does nothing: "\x1b" for control characters and for bytes that are no UTF-8,
// "\u202e" for direction marks, line and paragraph separators.

/// `text` as one harmless line.
QString PlainLine(const QString& text);

/// The same for UTF-8, in which bytes that are no UTF-8 may stand.
std::string PlainLine(std::string_view text);

/// The text of a path or message as one harmless line in UTF-8.
std::string PlainUtf8(const QString& text);

/// JSON that says the same with every such character as a \u escape.
QByteArray PlainJson(const QByteArray& json);

}  // namespace tessa
