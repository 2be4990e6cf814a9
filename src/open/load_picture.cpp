#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "core/file_access.h"
#include "formats/bmp.h"
#include "formats/bmp_trailer.h"
#include "formats/kelvin.h"
#include "open/loaders.h"
#include "view/picture_file.h"
#include "view/range_control.h"

namespace tessa {
namespace {

constexpr std::uint64_t kBmpHeadersSize = kBmpFileHeaderSize + 40;

std::int16_t ToInt16(std::uint16_t value) {
  if (value > std::numeric_limits<std::int16_t>::max()) {
    throw StepFailure("the number does not fit 16 bits");
  }
  return static_cast<std::int16_t>(value);
}

/// A TIFF of temperatures: its own extremes are the scale that it is shown in.
void TakeDegrees(TemperatureGrid&& degrees, Session& session) {
  OpenImage& image = session.Image;
  image.TempGrid = std::move(degrees);
  float low = std::numeric_limits<float>::max();
  float high = std::numeric_limits<float>::lowest();
  bool hasOther = false;
  for (const float value : image.TempGrid.Cells()) {
    if (std::isfinite(value)) {
      low = std::min(low, value);
      high = std::max(high, value);
    } else {
      hasOther = true;
    }
  }
  if (hasOther) {
    session.Faults.push_back({ProblemKind::kBadValue, 0, "Pixels",
                              "some of the temperatures are not finite numbers", false});
  }
  if (low > high) {
    low = high = 0.0F;
  }
  image.TempMin = image.ScaleMin = image.PaletteTempAt0 = low;
  image.TempMax = image.ScaleMax = image.PaletteTempAt255 = high;
  image.HasTemperature = true;
  session.View.RangeToggleVisible = true;
  InitRangeControl({low, high}, {low, high}, image.DisplayUnits, session.Range, session.View);
}

/// The common part of every plain picture: the file goes into the buffer, colours as luminance.
/// Temperatures that came with it go into the record.
void LoadPicture(int fileType, ImageKindValue kind, PictureUse use, Session& session) {
  OpenImage& image = session.Image;
  Picbuf& picture = session.Buffers.Picbuf1;
  image.ImageBusy = true;
  picture.FileType = fileType;
  picture.FileName = image.CurrentFilePath;
  LoadedPicture loaded;
  session.Steps.Run("load picture", [&] {
    loaded = LoadPictureFile(picture.FileName, fileType, use, session.Faults);
    if (loaded.Width == 0) {
      throw StepFailure("the picture cannot be read");
    }
  });
  image.ImageKind = kind;
  if (loaded.Width == 0) {
    return;
  }
  if (!loaded.Degrees.Empty()) {
    TakeDegrees(std::move(loaded.Degrees), session);
  }
  picture.Take(std::move(loaded));
}

/// Reads the two points of the line from palette index to temperature.
void ReadTrailer(Session& session) {
  OpenImage& image = session.Image;
  BmpTrailer trailer;
  session.Steps.Run("read bitmap trailer", [&] {
    const auto file = RandomFile::Open(image.CurrentFilePath, session.Faults);
    if (!file) {
      throw StepFailure(session.Faults.back().Text);
    }
    const auto position = BmpTrailerPosition(file->Size(), image.BmpFileHeader.ReservedHigh);
    const Bytes bytes = position ? file->ReadAt(*position, kBmpTrailerSize) : Bytes();
    if (bytes.size() < kBmpTrailerSize) {
      session.Faults.push_back({ProblemKind::kBadValue, 8, "ReservedHigh",
                                "the temperature trailer does not lie inside the file", false});
      throw StepFailure(session.Faults.back().Text);
    }
    trailer = DecodeBmpTrailer(bytes);
    if (trailer.IndexHigh == trailer.IndexLow) {
      session.Faults.push_back({ProblemKind::kBadValue, *position + 10, "IndexHigh",
                                "the trailer's two palette indices are equal", false});
    }
  });
  const double low = TenthsOfKelvinToCelsius(trailer.KelvinLow);
  const double high = TenthsOfKelvinToCelsius(trailer.KelvinHigh);
  const double indices = trailer.IndexHigh - trailer.IndexLow;
  session.Steps.Run("temperature at index 0", [&] {
    image.PaletteTempAt0 =
        static_cast<float>(Divide((high - low) * (0.0 - trailer.IndexLow), indices) + low);
  });
  session.Steps.Run("temperature at index 255", [&] {
    image.PaletteTempAt255 =
        static_cast<float>(Divide((high - low) * (255.0 - trailer.IndexLow), indices) + low);
  });
  session.Steps.Run("low index", [&] { image.PaletteIndexLow = ToInt16(trailer.IndexLow); });
  session.Steps.Run("high index", [&] { image.PaletteIndexHigh = ToInt16(trailer.IndexHigh); });
  image.PaletteTempLow = static_cast<float>(low);
  image.PaletteTempHigh = static_cast<float>(high);
  image.ScaleMin = image.TempMin = image.PaletteTempAt0;
  image.ScaleMax = image.TempMax = image.PaletteTempAt255;
}

}  // namespace

void LoadBmpOrTxi(Session& session) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  // The buffer reads the file once more and judges it as a whole; a file that cannot be read leaves
  // the header record as it was.
  Problems faults;
  session.Steps.Run("read bitmap headers", [&] {
    const auto file = ReadFileStart(image.CurrentFilePath, kBmpHeadersSize, faults);
    if (!file) {
      throw StepFailure(faults.front().Text);
    }
    ReadBmpHeaders(file->Data, image.BmpFileHeader, image.BmpInfoHeader, faults);
  });
  if (image.BmpFileHeader.Type != kBmpType) {
    session.Faults.insert(session.Faults.end(), faults.begin(), faults.end());
    return;
  }
  view.StatusPanel[5].clear();
  view.Comment.clear();
  view.Memo.clear();
  image.HasTemperature = image.BmpFileHeader.ReservedLow == kBmpTrailerMark;
  view.RangeToggleVisible = image.HasTemperature;
  if (image.HasTemperature) {
    ReadTrailer(session);
  }
  const bool isMeasured = image.HasTemperature || RulesByName(image).Name == FileKind::kTxi;
  LoadPicture(Picbuf::kBmp, KindBmp, isMeasured ? PictureUse::kMeasured : PictureUse::kView,
              session);
}

void LoadTiff(Session& session) {
  session.View.Comment.clear();
  session.View.Memo.clear();
  session.View.StatusPanel[5].clear();
  LoadPicture(Picbuf::kTiff, KindTiff, PictureUse::kView, session);
}

void LoadJpeg(Session& session) {
  session.View.Comment.clear();
  session.View.Memo.clear();
  LoadPicture(Picbuf::kJpeg, KindJpeg, PictureUse::kView, session);
}

}  // namespace tessa
