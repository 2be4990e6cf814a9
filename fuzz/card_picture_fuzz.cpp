#include "camera/conversion.h"
#include "session_input.h"

using tessa::DownloadOptions;
using tessa::fuzz::Require;

namespace {

DownloadOptions OptionsOf(std::uint8_t first, std::uint8_t second) {
  DownloadOptions options;
  options.Unit = first & 1;
  options.PaletteBar = first >> 1 & 1;
  options.Scale = (first >> 2) % 4;
  options.PaletteIndex = first;
  for (std::size_t i = 0; i < options.Overlay.size(); ++i) {
    options.Overlay.at(i) = second >> i & 1;
  }
  options.MinTemp = (second & 0x40) != 0 ? QStringLiteral("1e308") : QStringLiteral("-20,5");
  options.MaxTemp = (second & 0x80) != 0 ? QStringLiteral("-1e308") : QStringLiteral("1e-300");
  return options;
}

void RequireOneLine(const QString& text) {
  for (const QChar character : text) {
    Require(character.category() != QChar::Other_Control, "a text stays on its line");
  }
}

}  // namespace

/// The first two bytes are the options, the others a card's image, which is converted after one
/// that is in order.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) {
    return 0;
  }
  tessa::fuzz::MakeApplication();
  const QString path = tessa::fuzz::WriteInput("input.sit", {data + 2, size - 2});
  const tessa::Strings words;
  const tessa::Palettes palettes;
  tessa::DownloadConversion conversion(words, palettes);
  conversion.Options = OptionsOf(data[0], data[1]);
  conversion.dwnLoadThumbSIT(path);
  tessa::fuzz::RequireGoodReports(conversion.Faults, size - 2);
  const bool isComposed = conversion.HasVisibleImage || conversion.Options.PaletteBar == 1;
  const int width = conversion.PicBuf2.BufWidth();
  Require(isComposed ? width > tessa::kSitWidth : width == tessa::kSitWidth, "the width fits");
  Require(conversion.PicBuf2.BufDepth() == (isComposed ? 24 : 8), "only what is drawn has colours");
  conversion.dwnBuildOvl(3, tessa::kSitWidth);
  Require(conversion.PicBuf2.BufWidth() == width && conversion.PicBuf2.BufHeight() > 240,
          "the band is as wide as the picture");
  for (const QString& text :
       {conversion.DwnDateText, conversion.DwnTimeText, conversion.DwnMemoText}) {
    RequireOneLine(text);
  }
  QFile::remove(path);
  return 0;
}
