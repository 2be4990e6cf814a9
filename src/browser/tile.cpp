#include "browser/tile.h"

#include <algorithm>
#include <array>

#include "core/date_time_text.h"
#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/steps.h"
#include "core/units.h"
#include "formats/bmp_trailer.h"
#include "formats/sit.h"
#include "open/still.h"
#include "view/picbuf.h"
#include "view/picture_file.h"
#include "view/render_mapping.h"

namespace tessa {
namespace {

const KindRules& KindOfPath(const QString& path) {
  return KindOfName(ShownPath(path).toUpper().trimmed());
}

/// Indices of all pixels on a scale from `low` to `high` degrees. Equal limits give index 0.
void Render(const TemperatureGrid& grid, const TemperaturePair& scale, LoadedPicture& picture) {
  picture.Allocate(grid.Width(), grid.Height(), 8);
  RenderLine line;
  const double span = static_cast<double>(scale.Maximum) - static_cast<double>(scale.Minimum);
  if (span != 0.0) {
    line.Gain = static_cast<float>(255.0 / span);
    line.Offset =
        static_cast<float>(-static_cast<double>(line.Gain) * static_cast<double>(scale.Minimum));
  }
  const auto width = static_cast<std::size_t>(grid.Width());
  std::int32_t last = 0;
  for (int row = 0; row < grid.Height(); ++row) {
    MapToIndices(grid.Row(row), line, last, {picture.Row(row), width});
  }
}

Tile TileOfStill(FileKind kind, Still still) {
  Tile tile;
  tile.Kind = kind;
  if (FindNoImage(still.Faults) == nullptr) {
    tile.HasTexts = true;
    tile.Comment = still.Comment;
    tile.Memo = still.Memo;
    tile.Date = still.Date;
    tile.Time = still.Time;
    if (still.Camera) {
      tile.Emissivity = FormatHundredths(static_cast<double>(still.Camera->Emissivity));
    }
    Render(still.Grid, still.StoredScale, tile.Picture);
  }
  tile.Faults = std::move(still.Faults);
  return tile;
}

/// Which pixels of a picture file count as they are, because each stands for a temperature.
PictureUse UseOf(const QString& path, FileKind kind) {
  if (kind == FileKind::kTxi) {
    return PictureUse::kMeasured;
  }
  Problems unused;
  BmpFileHeader header;
  BmpInfoHeader info;
  if (kind == FileKind::kBmp) {
    if (const auto start = ReadFileStart(path, kBmpFileHeaderSize, unused)) {
      ReadBmpHeaders(start->Data, header, info, unused);
    }
  }
  return header.ReservedLow == kBmpTrailerMark ? PictureUse::kMeasured : PictureUse::kView;
}

}  // namespace

bool IsLegacyTmp(const QString& path) {
  const auto size = FileSize(path);
  return size && *size < kTmpLegacyLimit;
}

namespace {

Tile DecodeByKind(const QString& path, EmptySound empty) {
  switch (KindOfPath(path).Name) {
    case FileKind::kSit:
      return LoadThumbIMG(path, empty);
    case FileKind::kTmp:
      return IsLegacyTmp(path) ? LoadThumb3303(path) : LoadThumbTMP(path);
    case FileKind::kRti:
      return LoadThumbRTI(path);
    default:
      return LoadImage(path);
  }
}

}  // namespace

Tile DecodeTile(const QString& path, EmptySound empty) {
  Tile tile = DecodeByKind(path, empty);
  tile.FullWidth = tile.Picture.Width;
  tile.FullHeight = tile.Picture.Height;
  return tile;
}

LoadedPicture TilePicture(const QString& path) {
  Tile tile = DecodeTile(path, EmptySound::kLeave);
  if (tile.Picture.Width > 0) {
    return std::move(tile.Picture);
  }
  const Problem* const reason = FindNoImage(tile.Faults);
  throw StepFailure(reason != nullptr         ? reason->Text
                    : tile.SequenceFrames > 0 ? "sequences have no small picture"
                                              : "the file shows no picture");
}

Tile LoadThumbIMG(const QString& path, EmptySound empty) {
  Still still = ReadStill(path);
  const SitHeader* const header = std::get_if<SitHeader>(&still.Header);
  constexpr float kLateVersion = 4.0F;
  const bool isLate = still.Version >= kLateVersion;
  const int code = header != nullptr ? AttachmentCode(*header) : 0;
  const std::uint64_t photograph = still.PhotographPosition;
  Tile tile = TileOfStill(FileKind::kSit, std::move(still));
  if (tile.Picture.Width == 0) {
    return tile;
  }
  tile.VisibleOffset = photograph;
  SoundNote note = FindSoundNote(path, empty);
  tile.Sound = note.Kind;
  tile.SoundReference = std::move(note.Reference);
  constexpr int kPhotographAlone = 2;
  tile.IsBlueCaption = tile.Sound != SoundKind::kNone || (isLate && code == kPhotographAlone);
  return tile;
}

Tile LoadThumbTMP(const QString& path) {
  return TileOfStill(FileKind::kTmp, ReadStill(path));
}

Tile LoadThumb3303(const QString& path) {
  return TileOfStill(FileKind::kTmp, ReadStill(path));
}

Tile LoadImage(const QString& path) {
  Tile tile;
  tile.Kind = KindOfPath(path).Name;
  const int fileType = tile.Kind == FileKind::kTif   ? Picbuf::kTiff
                       : tile.Kind == FileKind::kJpg ? Picbuf::kJpeg
                                                     : Picbuf::kBmp;
  LoadedPicture& picture = tile.Picture;
  picture = LoadPictureFile(path, fileType, UseOf(path, tile.Kind), tile.Faults);
  if (picture.Width > 0 && picture.Depth > 8) {
    LoadedPicture grey;
    grey.Allocate(picture.Width, picture.Height, 8);
    for (int row = 0; row < picture.Height; ++row) {
      ReduceRow(picture.Row(row), static_cast<std::size_t>(picture.Width), grey.Row(row));
    }
    picture = std::move(grey);
  }
  if (picture.Palette.front() > picture.Palette.back()) {
    for (std::uint8_t& index : picture.Pixels) {
      index = static_cast<std::uint8_t>(255 - index);
    }
  }
  return tile;
}

QString CommentTag(const Tile& tile, const Strings& words) {
  return tile.HasTexts && tile.Comment.isEmpty() ? words.LangString(198, "None") : tile.Comment;
}

QString MemoTag(const Tile& tile, const Strings& words) {
  return tile.HasTexts && tile.Memo.isEmpty() ? words.LangString(198, "None") : tile.Memo;
}

void ShrinkPicture(int side, LoadedPicture& picture) {
  const int longest = std::max(picture.Width, picture.Height);
  const int factor = (longest + side - 1) / side;
  if (factor <= 1) {
    return;
  }
  LoadedPicture small;
  small.Allocate((picture.Width + factor - 1) / factor, (picture.Height + factor - 1) / factor, 8);
  small.Palette = picture.Palette;
  for (int row = 0; row < small.Height; ++row) {
    const int lastRow = std::min((row + 1) * factor, picture.Height);
    for (int column = 0; column < small.Width; ++column) {
      const int lastColumn = std::min((column + 1) * factor, picture.Width);
      std::uint64_t sum = 0;
      for (int y = row * factor; y < lastRow; ++y) {
        const std::uint8_t* const from = picture.Row(y);
        for (int x = column * factor; x < lastColumn; ++x) {
          sum += from[x];
        }
      }
      const auto count =
          static_cast<std::uint64_t>((lastRow - row * factor) * (lastColumn - column * factor));
      small.Row(row)[column] = static_cast<std::uint8_t>((sum + count / 2) / count);
    }
  }
  picture = std::move(small);
}

}  // namespace tessa
