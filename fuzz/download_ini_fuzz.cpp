#include <algorithm>

#include "camera/download_ini.h"
#include "require.h"

using tessa::DownloadOptions;
using tessa::fuzz::Require;

namespace {

bool IsBox(int value) {
  return value >= 0 && value <= 2;
}

}  // namespace

/// The input is the file with the choices of the camera download.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QString home = QStringLiteral("/home");
  const QByteArray file(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  DownloadOptions options = tessa::ParseDownloadIni(file, home);
  Require(!options.TargetPath.isEmpty(), "there is always a target folder");
  Require(IsBox(options.Sit) && IsBox(options.Bmp) && IsBox(options.Jpeg) &&
              IsBox(options.PaletteBar) &&
              std::all_of(options.Overlay.begin(), options.Overlay.end(), IsBox),
          "boxes hold what a box can hold");
  Require(options.Scale >= 0 && options.Scale <= 2 && options.Unit >= 0 && options.Unit <= 1,
          "one of each choice is ticked");
  const int quality = tessa::JpegQualityOf(options);
  Require(quality >= 5 && quality <= 100, "the quality is one that a JPEG can have");

  const QByteArray text = tessa::DownloadIniText(options);
  const DownloadOptions again = tessa::ParseDownloadIni(text, home);
  const auto hasQuote = [](const QString& value) { return value.contains(QLatin1Char('"')); };
  if (!hasQuote(options.TargetPath) && !hasQuote(options.JpegQuality) &&
      !hasQuote(options.MinTemp) && !hasQuote(options.MaxTemp)) {
    Require(again.TargetPath == options.TargetPath && again.JpegQuality == options.JpegQuality &&
                again.MinTemp == options.MinTemp && again.MaxTemp == options.MaxTemp &&
                again.Overlay == options.Overlay && tessa::DownloadIniText(again) == text,
            "choices survive a round trip");
  }
  const bool hasLimit = !options.MinTemp.isEmpty();
  tessa::ChooseUnit(1 - options.Unit, options);
  Require(!options.MinTemp.isEmpty() == hasLimit, "an empty limit stays empty");
  return 0;
}
