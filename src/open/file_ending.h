#pragma once

#include <QString>

namespace tessa {

/// The endings that decide about a file's kind.
enum class Ending { kBin, kTmp, kSit, kRti, kBmp, kTxi, kTif, kJpg, kOther };

/// The ending that the last three characters of an upper-cased path stand for.
Ending EndingOf(const QString& upperCasedPath);

/// Kinds whose loader leaves indices in the buffer that still have to be read row by row. The
/// others make the indices from temperatures.
bool HasRowPass(Ending ending);

}  // namespace tessa
