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

void ApplySettings(Session& session) {
  const Settings& settings = session.Settings;
  session.View.PaletteSelection = settings.DefaultPalette;
  session.Image.ImageKind = static_cast<std::int16_t>(settings.DefaultKind);
  session.Image.DisplayUnits = session.Image.FileUnits = settings.DefaultUnits;
  session.View.CelsiusSelected = settings.DefaultUnits != 'F';
  session.View.FahrenheitSelected = settings.DefaultUnits == 'F';
}

}  // namespace tessa
