#pragma once

#include <QSet>
#include <QString>

class QMenuBar;

namespace tessa {

/// The caption with a mark before its first letter that is not among `used`, which then has it.
QString WithMnemonic(const QString& caption, QSet<QChar>& used);

/// Gives every entry of a menu bar and its menus a letter of its own to be chosen with, in whatever
/// language the captions are. Captions are to be set without marks of their own beforehand.
void AssignMnemonics(QMenuBar& bar);

/// A caption as plain text: without marks, and with "&&" as the character that it stands for.
QString PlainCaption(const QString& caption);

}  // namespace tessa
