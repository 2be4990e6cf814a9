#pragma once

#include <QString>

namespace tessa {

/// What the user set for good.
struct Settings {
  QString LastFolder;    // Last used image folder, with its final separator; exact path.
  QString TargetFolder;  // Target of the file manager.
  int DefaultKind = 0;   // An ImageKind value, 0 to 6.
  int DefaultPalette = 0;
  char DefaultUnits = 'C';
};

}  // namespace tessa
