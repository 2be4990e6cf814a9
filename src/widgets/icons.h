#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace tessa {

/// An icon of the program's own set, drawn at whatever size is asked for. Its neutral lines take
/// the colour `ink`, so that it reads on light and dark desktops.
QIcon ToolIcon(const QString& name, const QColor& ink);

/// Makes the pictures and texts that are linked into the program available.
void RegisterResources();

/// The application's own picture.
QIcon ApplicationIcon();

}  // namespace tessa
