#include "browser/image_info.h"

#include "core/file_access.h"
#include "core/units.h"
#include "formats/byte_source.h"
#include "formats/tmp_image.h"
#include "open/visible_image.h"
#include "view/jpeg_picture.h"

namespace tessa {
namespace {

constexpr int kLegacyCommentLimit = 832;
constexpr int kCommentLimit = 768;

/// The word in front of "Image".
QString TypeWord(FileKind kind, bool isLegacy, bool isMeasuredBmp) {
  switch (kind) {
    case FileKind::kBmp:
      return isMeasuredBmp ? QStringLiteral("2904") : QStringLiteral("BMP");
    case FileKind::kTxi:
      return QStringLiteral("TXI");
    case FileKind::kTif:
      return QStringLiteral("TIFF");
    case FileKind::kJpg:
      return QStringLiteral("JPEG");
    case FileKind::kTmp:
      return isLegacy ? QStringLiteral("3303") : QStringLiteral("6206");
    case FileKind::kSit:
      return QStringLiteral("SIT");
    case FileKind::kRti:
      return QStringLiteral("SnapShot");
    case FileKind::kSeq:
      return QStringLiteral("Sequence");
    default:
      return QStringLiteral("Unknown");
  }
}

QString TypeText(const QString& word, const Strings& words) {
  return word + QLatin1Char(' ') + words.LangString(173, "Image");
}

QString SizeText(int width, int height, const Strings& words) {
  return QStringLiteral(" %1 x %2 ").arg(width).arg(height) + words.LangString(206, "Pixels");
}

QString SoundText(bool isEmbedded, bool isWave, const QString& file, const Strings& words) {
  return isEmbedded ? words.LangString(158, "Embedded Sound File")
         : isWave   ? words.LangString(159, "Embedded Wave File")
                    : file;
}

/// The photograph inside a SIT file, if it can be decoded.
LoadedPicture ReadPhotograph(const QString& path, std::uint64_t position) {
  Problems faults;
  const auto file = RandomFile::Open(path, faults);
  const Bytes jpeg = file && position > 0 ? CutOutVisible(*file, position) : Bytes();
  return jpeg.empty() ? LoadedPicture()
                      : LoadJpegPicture(MemorySource(jpeg), PictureUse::kColours, faults);
}

/// The lines of a tile that has texts.
void TakeTexts(const Tile& tile, int number, const QString& path, const Strings& words,
               ImageInfo& info) {
  const bool isLegacy = info.Type == TypeText(QStringLiteral("3303"), words);
  // The word alone tells a snapshot, so in other languages than English it has no date here.
  const bool isSnapshot = info.Type == QStringLiteral("SnapShot Image");
  if (tile.Kind == FileKind::kSit || tile.Kind == FileKind::kTmp) {
    info.CommentLimit = isLegacy ? kLegacyCommentLimit : kCommentLimit;
    info.ReadOnlyTexts = false;
    info.Origin = QString::number(number);
    info.Photograph = ReadPhotograph(path, tile.VisibleOffset);
  }
  if (tile.Kind != FileKind::kRti || isSnapshot) {
    info.Date = tile.Date;
    info.Time = tile.Time;
  }
  if (!tile.SoundReference.isEmpty()) {
    info.Sound = SoundText(tile.Sound == SoundKind::kEmbeddedSound,
                           tile.Sound == SoundKind::kEmbeddedWave, tile.SoundReference, words);
  }
  info.Emissivity = tile.Emissivity;
  info.Comment = CommentTag(tile, words);
  info.Memo = MemoTag(tile, words);
}

}  // namespace

ImageInfo InfoOfTile(const ThumbnailPages& pages, int tile, const Strings& words) {
  const ThumbnailPages::Place& place = pages.Places.at(static_cast<std::size_t>(tile));
  ImageInfo info;
  info.FileName = place.Path;
  const bool isLegacy = place.Content.FullHeight == kLegacyHeight;
  info.Type = TypeText(TypeWord(place.Content.Kind, isLegacy, false), words);
  if (place.Content.FullWidth > 0) {
    info.Size = SizeText(place.Content.FullWidth, place.Content.FullHeight, words);
  }
  info.Comment = info.Memo = words.LangString(198, "None");
  if (place.Content.HasTexts) {
    TakeTexts(place.Content, tile, place.Path, words, info);
  }
  return info;
}

ImageInfo InfoOfOpenImage(const Session& session) {
  const OpenImage& image = session.Image;
  const Strings& words = session.Words;
  const FileKind kind = RulesByName(image).Name;
  const auto orNone = [&](const QString& text) {
    return text.isEmpty() ? words.LangString(198, "None") : text;
  };
  ImageInfo info;
  info.FileName = image.CurrentFilePath;
  info.Type = TypeText(TypeWord(kind, image.IsLegacy8Bit, image.HasTemperature), words);
  info.Size =
      SizeText(session.Buffers.Picbuf1.BufWidth(), session.Buffers.Picbuf1.BufHeight(), words);
  info.Date = image.ImageDate;
  info.Time = image.ImageTime;
  info.Comment = orNone(session.View.Comment);
  info.Memo = orNone(session.View.Memo);
  if (kind == FileKind::kSit || kind == FileKind::kTmp || kind == FileKind::kRti) {
    info.Emissivity = FormatHundredths(static_cast<double>(image.Emissivity));
  }
  if (image.ImageKind == KindSit || image.ImageKind == KindTmp) {
    info.Origin = QStringLiteral("-1");
    info.ReadOnlyTexts = false;
    info.CommentLimit = image.IsLegacy8Bit ? kLegacyCommentLimit : kCommentLimit;
  }
  if (kind == FileKind::kRti) {
    info.Frames = session.View.Memo;
    info.Memo = words.LangString(198, "None");
  }
  if (image.SoundEmbedded || !image.SoundFile.isEmpty()) {
    info.Sound =
        SoundText(image.SoundEmbedded, image.SoundFile.toUpper().endsWith(QLatin1String("WAV")),
                  image.SoundFile, words);
  }
  const Picbuf& photograph = session.Visible.Picbuf3;
  if (image.HasVisibleImage && photograph.BufWidth() > 0 && photograph.BufDepth() == 24) {
    info.Photograph.Allocate(photograph.BufWidth(), photograph.BufHeight(), 24);
    const auto pixels = photograph.Pixels();
    info.Photograph.Pixels.assign(pixels.begin(), pixels.end());
  }
  return info;
}

}  // namespace tessa
