#include "core/session.h"

namespace tessa {

void PrepareSession(Session& session) {
  Problems paletteFaults;
  session.Steps.Run("palettes", [&] {
    LoadPalettes(session.Palettes, session.View, session.Folder, paletteFaults);
    if (!paletteFaults.empty()) {
      throw StepFailure(paletteFaults.front().Text);
    }
  });
  MakePaletteStrips(session.Buffers);
}

}  // namespace tessa
