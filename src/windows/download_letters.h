#pragma once

#include <QStringList>

namespace tessa {

/// The captions with marks before letters to choose them with, no letter twice. Where there are not
/// enough letters for all, the last captions go without.
QStringList WithLetters(const QStringList& captions);

}  // namespace tessa
