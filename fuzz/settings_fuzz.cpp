#include "core/viewer_ini.h"
#include "require.h"

/// The input is the text of Viewer2.ini.
FUZZ_ENTRY {
  const auto parse = [](const QString& text) {
    return ParseViewerIni(text.split(QLatin1Char('\n')));
  };
  const QString text =
      QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const Settings settings = parse(text);
  Require(settings.DefaultKind >= 0 && settings.DefaultKind <= 6, "the kind is one of seven");
  Require(settings.DefaultPalette <= 10, "the palette is one of the first eleven or none");
  Require(settings.DefaultUnits == 'C' || settings.DefaultUnits == 'F', "the unit is C or F");
  const Settings again = parse(ViewerIniText(settings));
  Require(again.LastFolder == settings.LastFolder && again.TargetFolder == settings.TargetFolder &&
              again.DefaultKind == settings.DefaultKind &&
              again.DefaultPalette == settings.DefaultPalette &&
              again.DefaultUnits == settings.DefaultUnits,
          "settings survive a round trip");
}
