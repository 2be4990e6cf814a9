#include <QDateTime>

#include "browser/tile.h"
#include "core/date_time_text.h"
#include "core/file_access.h"
#include "core/units.h"
#include "formats/ansi_text.h"
#include "formats/foreign_content.h"
#include "formats/frame_array.h"
#include "formats/kelvin.h"
#include "formats/sequence.h"
#include "view/render_mapping.h"

namespace tessa {
namespace {

constexpr std::size_t kRecogniseSize = 512;
constexpr int kMostRows = 600;
constexpr int kMostColumns = 800;

Tile Refuse(Tile tile, ProblemKind kind, std::uint64_t offset, const char* field,
            const char* text) {
  tile.Faults.push_back({kind, offset, field, text, true});
  return tile;
}

/// The first frame, as tenths of a kelvin.
std::optional<Frame> ReadFirstFrame(const RandomFile& file, const SeqHeader& header,
                                    std::uint64_t end) {
  const std::uint64_t at = header.Version == kStampedVersion ? kStampSize : 0;
  const FrameArrayHeader array = ReadFrameArrayHeader(file.ReadAt(at, kFrameArrayHeaderSize));
  if (at >= end || !array.Describes(header.Width, header.Height) || array.ByteSize() > end - at) {
    return std::nullopt;
  }
  return DecodeFrameArray(file.ReadAt(at, array.ByteSize()), header.Width, header.Height);
}

/// Indices on the stored scale, which is in degrees Celsius.
void RenderFrame(const Frame& frame, const SeqHeader& header, LoadedPicture& picture) {
  const auto tenths = [](float celsius) {
    return (static_cast<double>(celsius) + kKelvinOffset) * 10.0;
  };
  const double span = tenths(header.ScaleMax) - tenths(header.ScaleMin);
  RenderLine line;
  if (span != 0.0) {
    line.Gain = static_cast<float>(255.0 / span);
    line.Offset = static_cast<float>(-static_cast<double>(line.Gain) * tenths(header.ScaleMin));
  }
  picture.Allocate(frame.Width, frame.Height, 8);
  const auto width = static_cast<std::size_t>(frame.Width);
  std::vector<float> values(width);
  std::int32_t last = 0;
  for (int row = 0; row < frame.Height; ++row) {
    const auto from = frame.Pixels.begin() + static_cast<std::ptrdiff_t>(width) * row;
    std::copy_n(from, width, values.begin());
    MapToIndices(values, line, last, {picture.Row(row), width});
  }
}

void TakeTexts(const SeqHeader& header, Tile& tile) {
  tile.HasTexts = true;
  tile.Comment = QString::fromStdString(AnsiToUtf8(SeqComment(header)));
  tile.Emissivity = FormatHundredths(static_cast<double>(header.Emissivity));
  if (const auto moment = MomentOfDays(header.Taken)) {
    tile.Date = moment->date().toString(QStringLiteral("MM/dd/yy"));
    const int hour = moment->time().hour() % 12 == 0 ? 12 : moment->time().hour() % 12;
    tile.Time = QStringLiteral("%1").arg(hour, 2, 10, QLatin1Char('0')) +
                moment->time().toString(QStringLiteral(":mm:ss ")) +
                (moment->time().hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM"));
  }
}

}  // namespace

Tile LoadThumbRTI(const QString& path) {
  Tile tile;
  tile.Kind = FileKind::kRti;
  const auto file = RandomFile::Open(path, tile.Faults);
  if (!file) {
    return tile;
  }
  const Bytes start = file->ReadAt(0, kContainerHeaderSize);
  if (LeadingVersion(start) == kContainerVersion) {
    tile.SequenceFrames = DecodeContainerHeader(start).Frames;
    return tile;
  }
  if (file->Size() < kSeqTrailerSize) {
    return Refuse(std::move(tile), ProblemKind::kTruncated, file->Size(), "SeqHeader",
                  "the file is shorter than the trailer of a snapshot");
  }
  if (auto foreign = ForeignContentProblem(file->ReadAt(0, kRecogniseSize), "a snapshot")) {
    tile.Faults.push_back(std::move(*foreign));
    return tile;
  }
  const std::uint64_t end = file->Size() - kSeqTrailerSize;
  const SeqHeader header = DecodeSeqTrailer(file->ReadAt(end, kSeqTrailerSize));
  if (!CheckSeqTrailer(header, file->Size(), tile.Faults)) {
    return tile;
  }
  if (header.Height > kMostRows && header.Width > kMostColumns) {
    return Refuse(std::move(tile), ProblemKind::kTooLarge, end + 16, "Width",
                  "snapshots of more than 800 by 600 pixels have no small picture");
  }
  const auto frame = ReadFirstFrame(*file, header, end);
  if (!frame) {
    return Refuse(std::move(tile), ProblemKind::kTruncated, 0, "Frame",
                  "the first frame cannot be read");
  }
  TakeTexts(header, tile);
  RenderFrame(*frame, header, tile.Picture);
  return tile;
}

}  // namespace tessa
