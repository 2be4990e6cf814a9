#pragma once

#include <QString>

namespace tessa {

/// What the user set for good.
struct Settings {
  QString LastFolder;       // Last used image folder, with its final separator; exact path.
  QString TargetFolder;     // Target of the file manager.
  int DefaultKind = 3;      // An ImageKind value, 0 to 6; SIT until the user chooses.
  int DefaultPalette = 10;  // Position in the palette list; HOT IRON until the user chooses.
  char DefaultUnits = 'C';
};

}  // namespace tessa
