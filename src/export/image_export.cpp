#include "export/image_export.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "core/units.h"
#include "export/composite.h"
#include "formats/bmp.h"
#include "formats/float_tiff.h"
#include "formats/txi_words.h"
#include "open/load_image.h"
#include "open/show_frame.h"
#include "open/visible_image.h"
#include "view/jpeg_picture.h"
#include "view/picture_file.h"
#include "view/range_control.h"

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
  if (options.Frame != 0) {
    range = GridExtremes(image);  // A frame from its own file leaves the image's extremes alone.
  }
  if (options.Range.From == ExportRange::Choice::kEntered) {
    range = {static_cast<float>(FromDisplayUnits(options.Range.Low, options.Unit)),
             static_cast<float>(FromDisplayUnits(options.Range.High, options.Unit))};
  }
  ShowInRange(range.Minimum, range.Maximum, PiecesForRendering(session, progress));
}

Bytes EncodeTxi(Session& session) {
  RequireTemperatures(session.Image, "scale for a TXI file");
  const OpenImage& image = session.Image;
  const double lowest = FromDisplayUnits(image.ShownLow, image.DisplayUnits);
  const double highest = FromDisplayUnits(image.ShownHigh, image.DisplayUnits);
  const auto low = EncodeTxiWord(lowest);
  const auto high = EncodeTxiWord(highest);
  const TxiScale scale = low && high ? DecodeTxiWords(*low, *high) : TxiScale{};
  // The two words cannot say every range; a reader would take others for hundreds of degrees more.
  constexpr double kRounding = 0.06;
  if (!low || !high || std::fabs(scale.Low - lowest) > kRounding ||
      std::fabs(scale.High - highest) > kRounding) {
    throw StepFailure("a TXI file cannot hold the range " + image.ScaleLowText.toStdString() +
                      " to " + image.ScaleHighText.toStdString() +
                      ": its upper end must not be below zero, and both must be below 6553 C");
  }
  Progress progress;
  ShowInRange(static_cast<float>(scale.Low), static_cast<float>(scale.High),
              PiecesForRendering(session, progress));
  const Picbuf& picture = session.Buffers.Picbuf1;
  return EncodeBmp8(picture.BufWidth(), picture.BufHeight(), picture.Pixels(), picture.Stride(),
                    picture.Palette(), *low, *high);
}

/// The buffer that holds what was asked for, drawn where it has to be.
const Picbuf& ChosenPicture(Session& session, ExportView view) {
  const bool needsVisible = view == ExportView::kComposite || view == ExportView::kVisible;
  if (needsVisible && !session.Image.HasVisibleImage) {
    throw StepFailure("the image has no visible-light picture inside");
  }
  if (needsVisible && session.Visible.Picbuf3.BufWidth() == 0) {
    const auto reason = std::find_if(session.Faults.begin(), session.Faults.end(),
                                     [](const Problem& p) { return p.Field == kVisibleField; });
    throw StepFailure(reason != session.Faults.end() ? reason->Text
                                                     : "the visible picture cannot be shown");
  }
  switch (view) {
    case ExportView::kWithBar:
      BuildPaletteView(session);
      return session.Buffers.Picbuf3;
    case ExportView::kComposite:
      BuildCompositeView(session);
      return session.Buffers.Picbuf3;
    case ExportView::kVisible:
      return session.Visible.Picbuf3;
    case ExportView::kImage:
      break;
  }
  return session.Buffers.Picbuf1;
}

Bytes EncodePicture(const Picbuf& picture, const QString& ending) {
  if (ending == QLatin1String("png")) {
    return EncodePng(picture.ToImage());
  }
  if (ending == QLatin1String("jpg")) {
    return EncodeJpeg(picture.ToImage(), kJpegQuality);
  }
  return picture.BufDepth() == 8 ? EncodeBmp8(picture.BufWidth(), picture.BufHeight(),
                                              picture.Pixels(), picture.Stride(), picture.Palette())
                                 : EncodeBmp24(picture.BufWidth(), picture.BufHeight(),
                                               picture.Pixels(), picture.Stride());
}

}  // namespace

const QStringList& ExportEndings() {
  static const QStringList kEndings = {QStringLiteral("bmp"), QStringLiteral("png"),
                                       QStringLiteral("jpg"), QStringLiteral("csv"),
                                       QStringLiteral("tif"), QStringLiteral("txi")};
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

int FrameSlots(const OpenImage& image) {
  return image.FrameCount == 0 ? 0 : std::max(image.SeqHeader.Frames, image.FrameCount);
}

TemperaturePair GridExtremes(const OpenImage& image) {
  const auto cells = image.TempGrid.Cells();
  if (cells.empty()) {
    return {};
  }
  const auto [low, high] = std::minmax_element(cells.begin(), cells.end());
  return {*low, *high};
}

void ShowFrameForExport(int number, Session& session) {
  OpenImage& image = session.Image;
  Progress progress;
  if (FrameSlots(image) == 0) {
    throw StepFailure("the image has no frames to choose from");
  }
  image.CurrentFrame = number;
  // A frame with a file of its own spreads over its extremes, the others keep the stored scale.
  if (ShowFrameFromFile(session, progress)) {
    return;
  }
  if (number < 1 || number > FrameSlots(image)) {
    throw StepFailure("there is no frame " + std::to_string(number) + "; the last one is " +
                      std::to_string(FrameSlots(image)));
  }
  // A file may claim thousands of large frames that are not there; none of them is drawn.
  if (!HasFrame(image) || !ShowFrame(false, session, progress)) {
    throw StepFailure("frame " + std::to_string(number) + " cannot be read");
  }
}

void PrepareForExport(const ExportOptions& options, const Palettes& palettes, Session& session) {
  session.Palettes = palettes;
  session.ExtractsAttachments =
      options.View == ExportView::kComposite || options.View == ExportView::kVisible;
  if (options.View != ExportView::kImage) {
    MakePaletteStrips(session.Buffers);
  }
  FillPaletteList(session.View);
  session.View.PaletteSelection = options.Palette;
  session.Image.DisplayUnits = options.Unit;
  if (options.Reverse) {
    ReverseTable(session.Palettes.PaletteTable.at(static_cast<std::size_t>(options.Palette)));
  }
}

void LoadForExport(const QString& path, const ExportOptions& options, Session& session) {
  Progress progress;
  OpenPath(path, session, progress);
  if (const Problem* const reason = FindNoImage(session.Faults)) {
    throw StepFailure(reason->Text);
  }
  if (options.Frame != 0) {
    ShowFrameForExport(options.Frame, session);
  }
  ApplyRange(options, session, progress);
}

Bytes EncodeForExport(Session& session, const QString& ending, const ExportOptions& options) {
  const OpenImage& image = session.Image;
  if (ending == QLatin1String("bmp") || ending == QLatin1String("png") ||
      ending == QLatin1String("jpg")) {
    return EncodePicture(ChosenPicture(session, options.View), ending);
  }
  if (options.View != ExportView::kImage) {
    throw StepFailure("palette bar and visible picture go into bmp, png and jpg only");
  }
  if (ending == QLatin1String("csv")) {
    return EncodeCsv(image, options.Unit);
  }
  if (ending == QLatin1String("tif")) {
    RequireTemperatures(image, "temperature picture");
    return EncodeFloatTiff(image.ImageWidth, image.ImageHeight, image.TempGrid.Cells());
  }
  if (ending == QLatin1String("txi")) {
    return EncodeTxi(session);
  }
  throw StepFailure("there is no export to ." + ending.toStdString());
}

}  // namespace tessa
