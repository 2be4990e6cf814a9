#pragma once

#include <QString>
#include <QStringList>

namespace tessa {

/// The image that the viewer's arguments name: all of them joined with blanks, less a pair of
/// double quotes around the whole. Empty for none. A relative path is taken from the present
/// folder.
QString PendingFileFromArguments(const QStringList& arguments);

}  // namespace tessa
