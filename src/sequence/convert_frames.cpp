#include "sequence/convert_frames.h"

#include <limits>
#include <optional>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/units.h"
#include "open/show_frame.h"

namespace tessa {
namespace {

constexpr std::size_t kLowWordAt = 6;
constexpr std::size_t kHighWordAt = 8;

/// The word for a limit in the unit of display: tenths of a degree, and 32767 less the value for
/// one below zero. Nothing when no 16-bit word can hold it.
std::optional<std::int16_t> ConversionWord(double shown, char displayUnits) {
  double tenths = FromDisplayUnits(shown, displayUnits) * 10.0;
  if (tenths < 0.0) {
    tenths = 32767.0 - tenths;
  }
  const double rounded = std::nearbyint(tenths);
  if (!(rounded >= -32768.0 && rounded <= 32767.0)) {
    return std::nullopt;
  }
  return static_cast<std::int16_t>(rounded);
}

/// Puts the limits into the reserved words of a saved bitmap; a limit without a word leaves its
/// own.
void PatchWords(const QString& path, const OpenImage& image) {
  Problems faults;
  const auto file = RandomFile::Open(path, faults);
  if (!file) {
    throw StepFailure(faults.front().Text);
  }
  Bytes bytes = file->ReadAt(0, std::numeric_limits<std::uint64_t>::max());
  const auto put = [&](std::size_t offset, std::optional<std::int16_t> word) {
    if (word) {
      const auto bits = static_cast<std::uint16_t>(*word);
      bytes.at(offset) = static_cast<std::uint8_t>(bits);
      bytes.at(offset + 1) = static_cast<std::uint8_t>(bits >> 8);
    }
  };
  put(kLowWordAt, ConversionWord(image.ShownLow, image.DisplayUnits));
  put(kHighWordAt, ConversionWord(image.ShownHigh, image.DisplayUnits));
  WriteWholeFile(path, bytes, Overwrite::kReplace);
}

}  // namespace

void ShowAndSaveFrame(bool keepScale, Session& session, Progress& progress) {
  ShowFrameFile(keepScale, session, progress);
  Picbuf& picture = session.Buffers.Picbuf1;
  picture.FileType = Picbuf::kBmp;
  if (session.ConversionOutputs.contains(picture.FileName)) {
    session.Steps.Run("save shown frame", [&] { picture.SaveFile(); });
  }
}

QString FrameOutputName(const QString& prefix, int frame, FrameFormat format) {
  return prefix + QStringLiteral("%1").arg(frame, 3, 10, QLatin1Char('0')) +
         (format == FrameFormat::kBmp ? QStringLiteral(".BMP") : QStringLiteral(".TXI"));
}

bool IsUsablePrefix(const QString& prefix) {
  return !prefix.isEmpty() && !prefix.contains(QLatin1Char('/')) &&
         !prefix.contains(QLatin1Char('\\'));
}

void ConvertFrames(const FrameConversion& conversion, Session& session, Progress& progress,
                   const std::function<void(const QString&)>& status) {
  if (!IsUsablePrefix(conversion.Prefix)) {
    return;
  }
  OpenImage& image = session.Image;
  Picbuf& picture = session.Buffers.Picbuf1;
  const Strings& words = session.Words;
  const int shownBefore = image.CurrentFrame;
  const QString folder = FolderOfPath(image.CurrentFilePath) + QLatin1Char('/');
  QSet<QString> outputs;
  image.ImageKind = KindBmp;
  image.PreviousKindIndex = 1;
  for (const int frame : conversion.Frames) {
    const QString name = FrameOutputName(conversion.Prefix, frame, conversion.Format);
    status(words.LangString(122, "Converting") + QLatin1Char(' ') + name);
    image.CurrentFrame = frame;
    ShowAndSaveFrame(true, session, progress);
    picture.FileType = Picbuf::kBmp;
    picture.FileName = folder + name;
    outputs.insert(picture.FileName);
    session.ConversionOutputs.insert(picture.FileName);
    session.Steps.Run("save frame", [&] { picture.SaveFile(); });
    if (conversion.Format == FrameFormat::kTxi) {
      image.ImageKind = KindTxi;
      image.PreviousKindIndex = 5;
    }
    status(words.LangString(232, "Saving") + QLatin1Char(' ') + name);
    if (conversion.Format == FrameFormat::kTxi) {
      session.Steps.Run("put scale into TXI", [&] { PatchWords(picture.FileName, image); });
    }
    progress.LetEventsRun();
  }
  status(words.LangString(181, "Loading Frame") + QLatin1Char(' ') + QString::number(shownBefore));
  image.CurrentFrame = shownBefore;
  ShowAndSaveFrame(true, session, progress);
  session.ConversionOutputs = outputs;
  status(words.LangString(118, "Conversion Complete"));
}

}  // namespace tessa
