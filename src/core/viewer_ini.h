#pragma once

#include <QString>
#include <QStringList>

#include "core/settings.h"

namespace tessa {

/// Name of the settings file in the application folder: five lines without keys, UTF-8.
inline const QString kViewerIniName = QStringLiteral("Viewer2.ini");

/// The five lines: image folder, target folder, kind, palette, unit. Missing lines count as empty
/// or zero, further ones are passed over. A kind outside 0..6 moves to the nearer end, a palette
/// above 10 becomes 0 (a negative one stays), and any unit but "C" is "F".
Settings ParseViewerIni(const QStringList& lines);

/// The same lines to be written; numbers stand between blanks.
QString ViewerIniText(const Settings& settings);

/// Reads the file; one that cannot be read counts as empty.
Settings ReadViewerIni(const QString& path);

/// Replaces the file. Throws StepFailure.
void WriteViewerIni(const QString& path, const Settings& settings);

}  // namespace tessa
