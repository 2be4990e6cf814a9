#pragma once

#include <QString>

namespace tessa {

/// What the user set for good.
struct Settings {
  QString LastFolder;      // Last used image folder, with its final separator; exact path.
  QString TargetFolder;    // Target of the file manager.
  int DefaultKind = 0;     // An ImageKind value, 0 to 6.
  int DefaultPalette = 0;  // Position in the palette list; a negative one selects nothing.
  char DefaultUnits = 'F';
};

}  // namespace tessa
