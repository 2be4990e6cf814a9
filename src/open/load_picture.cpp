#include <limits>

#include "core/file_access.h"
#include "formats/bmp.h"
#include "formats/bmp_trailer.h"
#include "formats/kelvin.h"
#include "open/loaders.h"

namespace tessa {
namespace {

constexpr std::uint64_t kBmpHeadersSize = kBmpFileHeaderSize + 40;

std::int16_t ToInt16(std::uint16_t value) {
  if (value > std::numeric_limits<std::int16_t>::max()) {
    throw StepFailure("the number does not fit 16 bits");
  }
  return static_cast<std::int16_t>(value);
}

/// The common part of every plain picture: the file goes into the buffer as it is.
void LoadPicture(int fileType, ImageKindValue kind, Session& session) {
  OpenImage& image = session.Image;
  Picbuf& picture = session.Buffers.Picbuf1;
  image.ImageBusy = true;
  session.View.SequenceScaleVisible = false;
  picture.FileType = fileType;
  picture.FileName = image.CurrentFilePath;
  session.Steps.Run("load picture", [&] { picture.LoadFile(session.Faults); });
  image.ImageKind = kind;
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
  LoadPicture(Picbuf::kBmp, KindBmp, session);
}

void LoadTiff(Session& session) {
  session.View.Comment.clear();
  session.View.Memo.clear();
  session.View.StatusPanel[5].clear();
  LoadPicture(Picbuf::kTiff, KindTiff, session);
}

void LoadJpeg(Session& session) {
  session.View.Comment.clear();
  session.View.Memo.clear();
  LoadPicture(Picbuf::kJpeg, KindJpeg, session);
}

}  // namespace tessa
