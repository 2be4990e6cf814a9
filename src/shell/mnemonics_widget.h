#pragma once

#include <QString>

class QMenuBar;

namespace tessa {

/// Gives every entry of a menu bar and its menus a letter of its own to be chosen with, in whatever
/// language the captions are. Captions are to be set without marks of their own beforehand.
void AssignMnemonics(QMenuBar& bar);

/// A caption as plain text: without marks, and with "&&" as the character that it stands for.
QString PlainCaption(const QString& caption);

}  // namespace tessa
