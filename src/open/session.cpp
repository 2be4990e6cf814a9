#include "open/session.h"

#include <algorithm>

namespace tessa {

void ReadPalettes(Session& session) {
  Problems paletteFaults;
  session.Steps.Run("palettes", [&] {
    LoadPalettes(session.Palettes, session.View, session.Folder, paletteFaults);
    if (!paletteFaults.empty()) {
      throw StepFailure(paletteFaults.front().Text);
    }
  });
}

void PrepareSession(Session& session) {
  ReadPalettes(session);
  MakePaletteStrips(session.Buffers);
}

RenderPieces PiecesForRendering(Session& session, Progress& progress) {
  return {session.Image, session.View, session.Buffers.Picbuf1, session.Range, session.Words,
          session.Steps, progress};
}

void ApplySettings(Session& session) {
  const Settings& settings = session.Settings;
  SelectDefaultPalette(session);
  session.Image.ImageKind = static_cast<std::int16_t>(settings.DefaultKind);
  session.Image.PreviousKindIndex = static_cast<std::int16_t>(settings.DefaultKind + 1);
  session.Image.DisplayUnits = session.Image.FileUnits = settings.DefaultUnits;
  session.View.CelsiusSelected = settings.DefaultUnits != 'F';
}

void SelectDefaultPalette(Session& session) {
  session.View.PaletteSelection = std::max(session.Settings.DefaultPalette, -1);
}

}  // namespace tessa
