#include "sequence/convert_frames.h"

#include <limits>
#include <optional>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/tell.h"
#include "core/units.h"
#include "open/show_frame.h"
#include "view/range_control.h"

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

void TellResult(const ConversionResult& result, Session& session) {
  if (result.Failed.empty()) {
    Tell(NoticeKind::kQuiet,
         session.Words.LangString(441, "Frames written: %1").arg(result.Written), session.View);
    return;
  }
  const FailedOutput& first = result.Failed.front();
  Tell(NoticeKind::kFailed,
       session.Words.LangString(442, "Frames written: %1, failed: %2 (%3)")
           .arg(QString::number(result.Written), QString::number(result.Failed.size()),
                first.Name + QStringLiteral(": ") + first.Reason),
       session.View);
  session.View.Notice.Further = static_cast<int>(result.Failed.size()) - 1;
}

}  // namespace

bool ShowAndSaveFrame(bool keepScale, Session& session, Progress& progress) {
  const bool isShown = ShowFrameFile(keepScale, session, progress);
  Picbuf& picture = session.Buffers.Picbuf1;
  picture.FileType = Picbuf::kBmp;
  if (session.ConversionOutputs.contains(picture.FileName)) {
    session.Steps.Run("save shown frame", [&] { picture.SaveFile(); });
  }
  return isShown;
}

QString FrameOutputName(const QString& prefix, int frame, FrameFormat format) {
  return prefix + QStringLiteral("%1").arg(frame, 3, 10, QLatin1Char('0')) +
         (format == FrameFormat::kBmp ? QStringLiteral(".BMP") : QStringLiteral(".TXI"));
}

bool IsUsablePrefix(const QString& prefix) {
  return !prefix.isEmpty() && !prefix.contains(QLatin1Char('/')) &&
         !prefix.contains(QLatin1Char('\\'));
}

std::vector<FrameOutput> ListFrameOutputs(const QString& prefix, FrameFormat format,
                                          const OpenImage& image) {
  std::vector<FrameOutput> outputs;
  for (int frame = 1; IsUsablePrefix(prefix) && frame <= image.FrameCount; ++frame) {
    outputs.push_back({frame, FrameOutputName(prefix, frame, format)});
  }
  return outputs;
}

bool OutputExists(const QString& name, const OpenImage& image) {
  return PathExists(JoinPath(FolderOfPath(image.CurrentFilePath), name));
}

ConversionResult ConvertFrames(const FrameConversion& conversion, Session& session,
                               Progress& progress,
                               const std::function<void(const QString&)>& status) {
  OpenImage& image = session.Image;
  Picbuf& picture = session.Buffers.Picbuf1;
  const Strings& words = session.Words;
  const int shownBefore = image.CurrentFrame;
  const QString folder = FolderOfPath(image.CurrentFilePath) + QLatin1Char('/');
  QSet<QString> outputs;
  ConversionResult result;
  image.ImageKind = KindBmp;
  image.PreviousKindIndex = 1;
  for (const auto& [frame, name] : conversion.Outputs) {
    std::string failure;
    const auto attempt = [&](const char* step, const auto& action) {
      session.Steps.Run(step, [&] {
        try {
          action();
        } catch (const std::exception& reason) {
          failure = reason.what();
          throw;
        }
      });
    };
    status(words.LangString(122, "Converting") + QLatin1Char(' ') + name);
    image.CurrentFrame = frame;
    const bool isShown = ShowAndSaveFrame(true, session, progress);
    if (IsUsablePrefix(name)) {
      picture.FileType = Picbuf::kBmp;
      picture.FileName = folder + name;
      outputs.insert(picture.FileName);
      session.ConversionOutputs.insert(picture.FileName);
      attempt("save frame", [&] { picture.SaveFile(); });
    } else {
      failure = "the name leads out of the folder";
    }
    if (conversion.Format == FrameFormat::kTxi) {
      image.ImageKind = KindTxi;
      image.PreviousKindIndex = 5;
    }
    status(words.LangString(232, "Saving") + QLatin1Char(' ') + name);
    if (conversion.Format == FrameFormat::kTxi && failure.empty()) {
      attempt("put scale into TXI", [&] { PatchWords(picture.FileName, image); });
    }
    if (failure.empty() && !isShown) {
      failure = words.LangString(443, "Frame %1 cannot be read.").arg(frame).toStdString();
    }
    if (failure.empty()) {
      ++result.Written;
    } else {
      // The path, with which such a reason begins, is that of the name.
      result.Failed.push_back({name, QString::fromStdString(failure).remove(
                                         folder + name + QLatin1String(" cannot be written: "))});
    }
    progress.LetEventsRun();
  }
  status(words.LangString(181, "Loading Frame") + QLatin1Char(' ') + QString::number(shownBefore));
  image.CurrentFrame = shownBefore;
  ShowAndSaveFrame(true, session, progress);
  session.ConversionOutputs = outputs;
  // The scale beside the picture is that of the picture.
  session.Steps.Run("scale display", [&] { UpdateRangeDisplay(image, session.View, words); });
  status(words.LangString(118, "Conversion Complete"));
  TellResult(result, session);
  return result;
}

}  // namespace tessa
