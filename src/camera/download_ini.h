#pragma once

#include <QByteArray>
#include <QString>

#include "camera/download_options.h"
#include "core/application_folder.h"

namespace tessa {

/// Name of the file in the application folder that keeps the choices from run to run.
inline const QString kDownloadIniName = QStringLiteral("Download.ini");

/// The choices in the bytes of that file: 17 values, whose places alone say what they are. Blanks
/// in front of a value are skipped, and it ends at a comma or at the end of its line; in double
/// quotes it may hold both. Missing values count as empty or 0, and an empty target folder as
/// `programFolder`.
DownloadOptions ParseDownloadIni(const QByteArray& file, const QString& programFolder);

/// The bytes to be written. Texts stand in quotes where they would not be read back otherwise.
QByteArray DownloadIniText(const DownloadOptions& options);

/// Reads the file; one that is missing or cannot be read counts as empty.
DownloadOptions dwnGetUserInfo(const ApplicationFolder& folder);

/// Writes the file; false when it cannot be written.
bool dwnSaveUserInfo(const DownloadOptions& options, const ApplicationFolder& folder);

}  // namespace tessa
