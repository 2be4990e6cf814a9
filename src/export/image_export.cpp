#include "export/image_export.h"

#include <array>
#include <charconv>
#include <cmath>

#include "core/load_image.h"
#include "formats/bmp.h"
#include "formats/float_tiff.h"
#include "formats/number_text.h"
#include "view/picture_file.h"
#include "view/range_control.h"
#include "view/units.h"

namespace tessa {
namespace {

constexpr int kJpegQuality = 95;

void RequireTemperatures(const OpenImage& image, const char* what) {
  if (!image.HasTemperature) {
    throw StepFailure(std::string("the image holds no temperatures, so there is no ") + what);
  }
}

Bytes EncodeCsv(const OpenImage& image, char unit) {
  RequireTemperatures(image, "table of them");
  Bytes text;
  text.reserve(image.TempGrid.Cells().size() * 8);
  std::array<char, 64> number{};
  for (int row = 0; row < image.ImageHeight; ++row) {
    bool first = true;
    for (const float celsius : image.TempGrid.Row(row)) {
      if (!first) {
        text.push_back(',');
      }
      first = false;
      const auto value = static_cast<float>(InDisplayUnits(static_cast<double>(celsius), unit));
      const auto written =
          std::to_chars(number.data(), number.data() + number.size(), value + 0.0F);
      text.insert(text.end(), number.data(), written.ptr);
    }
    text.push_back('\n');
  }
  return text;
}

void ApplyRange(const ExportOptions& options, Session& session, Progress& progress) {
  const OpenImage& image = session.Image;
  if (options.Range.From == ExportRange::Choice::kStored) {
    return;
  }
  RequireTemperatures(image, "range to choose");
  TemperaturePair range = ImageExtremes(image);
  if (options.Range.From == ExportRange::Choice::kEntered) {
    range = {static_cast<float>(FromDisplayUnits(options.Range.Low, options.Unit)),
             static_cast<float>(FromDisplayUnits(options.Range.High, options.Unit))};
  }
  ShowInRange(range.Minimum, range.Maximum, PiecesForRendering(session, progress));
}

}  // namespace

const QStringList& ExportEndings() {
  static const QStringList kEndings = {QStringLiteral("bmp"), QStringLiteral("png"),
                                       QStringLiteral("jpg"), QStringLiteral("csv"),
                                       QStringLiteral("tif")};
  return kEndings;
}

std::optional<ExportRange> ParseExportRange(const QString& text) {
  if (text == QLatin1String("stored")) {
    return ExportRange{};
  }
  if (text == QLatin1String("image")) {
    return ExportRange{ExportRange::Choice::kImage, 0.0, 0.0};
  }
  const QStringList ends = text.split(QLatin1Char(':'));
  bool lowIsNumber = false;
  bool highIsNumber = false;
  const double low = ends.value(0).toDouble(&lowIsNumber);
  const double high = ends.value(1).toDouble(&highIsNumber);
  if (ends.size() != 2 || !lowIsNumber || !highIsNumber || !std::isfinite(low) ||
      !std::isfinite(high)) {
    return std::nullopt;
  }
  return ExportRange{ExportRange::Choice::kEntered, low, high};
}

void LoadForExport(const QString& path, const ExportOptions& options, Session& session) {
  Progress progress;
  session.View.PaletteSelection = options.Palette;
  session.Image.DisplayUnits = options.Unit;
  if (options.Reverse) {
    ReverseTable(session.Palettes.PaletteTable.at(static_cast<std::size_t>(options.Palette)));
  }
  OpenPath(path, session, progress);
  if (const Problem* const reason = FindNoImage(session.Faults)) {
    throw StepFailure(reason->Text);
  }
  ApplyRange(options, session, progress);
}

Bytes EncodeForExport(const Session& session, const QString& ending, char unit) {
  const OpenImage& image = session.Image;
  const Picbuf& picture = session.Buffers.Picbuf1;
  if (ending == QLatin1String("bmp")) {
    return EncodeBmp8(picture.BufWidth(), picture.BufHeight(), picture.Pixels(), picture.Stride(),
                      picture.Palette());
  }
  if (ending == QLatin1String("png")) {
    return EncodePng(picture.ToImage());
  }
  if (ending == QLatin1String("jpg")) {
    return EncodeJpeg(picture.ToImage().convertToFormat(QImage::Format_RGB888), kJpegQuality);
  }
  if (ending == QLatin1String("csv")) {
    return EncodeCsv(image, unit);
  }
  if (ending == QLatin1String("tif")) {
    RequireTemperatures(image, "temperature picture");
    return EncodeFloatTiff(image.ImageWidth, image.ImageHeight, image.TempGrid.Cells());
  }
  throw StepFailure("there is no export to ." + ending.toStdString());
}

}  // namespace tessa
