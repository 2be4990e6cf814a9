#include "tool/frames_command.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/units.h"
#include "export/image_export.h"
#include "open/session.h"
#include "sequence/convert_frames.h"
#include "tool/streams.h"

namespace tessa {
namespace {

/// The one range of all files. `image` stands for the extremes over all frames.
TemperaturePair CommonRange(const ExportOptions& options, Session& session) {
  const OpenImage& image = session.Image;
  if (options.Range.From == ExportRange::Choice::kEntered) {
    return {static_cast<float>(FromDisplayUnits(options.Range.Low, options.Unit)),
            static_cast<float>(FromDisplayUnits(options.Range.High, options.Unit))};
  }
  if (options.Range.From == ExportRange::Choice::kStored) {
    return {image.ScaleMin, image.ScaleMax};
  }
  std::optional<TemperaturePair> range;
  for (int frame = 1; frame <= FrameSlots(image); ++frame) {
    try {
      ShowFrameForExport(frame, session);
    } catch (const StepFailure&) {
      continue;  // It is named when its turn comes.
    }
    const TemperaturePair extremes = GridExtremes(image);
    range = range ? TemperaturePair{std::min(range->Minimum, extremes.Minimum),
                                    std::max(range->Maximum, extremes.Maximum)}
                  : extremes;
  }
  return range.value_or(TemperaturePair{image.ScaleMin, image.ScaleMax});
}

QString FramePath(const FramesCall& call, int frame) {
  return JoinPath(
      FromArgument(call.Folder),
      FromArgument(call.Prefix) +
          QStringLiteral("%1.%2").arg(frame, 3, 10, QLatin1Char('0')).arg(FromArgument(call.To)));
}

int WriteFrames(const FramesCall& call, const ExportOptions& options,
                const std::vector<int>& frames, Session& session) {
  const TemperaturePair range = CommonRange(options, session);
  Progress progress;
  ProgressLine line(frames.size());
  std::size_t done = 0;
  int status = kToolDone;
  StopAfterThisFile();
  for (const int frame : frames) {
    if (Interrupted()) {
      return InterruptedStatus();
    }
    const QString path = FramePath(call, frame);
    try {
      if (IsSameFile(session.Image.CurrentFilePath, path)) {
        throw StepFailure("the frame would overwrite the sequence itself");
      }
      ShowFrameForExport(frame, session);
      ShowInRange(range.Minimum, range.Maximum, PiecesForRendering(session, progress));
      WriteWholeFile(path, EncodeForExport(session, FromArgument(call.To), options),
                     call.Force ? Overwrite::kReplace : Overwrite::kRefuse);
    } catch (const std::exception& failure) {
      line.Clear();
      PrintError(path, failure.what());
      status = kToolFailed;
    }
    line.Show(++done);
  }
  return status;
}

}  // namespace

std::optional<std::vector<int>> ParseFrames(const QString& text, int last) {
  // One mark for each frame, so that naming one a thousand times costs no memory.
  std::vector<bool> isWanted(static_cast<std::size_t>(last) + 1, text.isEmpty());
  const QStringList parts = text.split(QLatin1Char(','));
  for (const QString& part : text.isEmpty() ? QStringList() : parts) {
    bool firstIsNumber = false;
    bool lastIsNumber = false;
    const int from = part.section(QLatin1Char('-'), 0, 0).toInt(&firstIsNumber);
    const int to = part.section(QLatin1Char('-'), -1).toInt(&lastIsNumber);
    if (!firstIsNumber || !lastIsNumber || part.count(QLatin1Char('-')) > 1 || from < 1 ||
        to < from || to > last) {
      return std::nullopt;
    }
    std::fill(isWanted.begin() + from, isWanted.begin() + to + 1, true);
  }
  std::vector<int> frames;
  for (int frame = 1; frame <= last; ++frame) {
    if (isWanted[static_cast<std::size_t>(frame)]) {
      frames.push_back(frame);
    }
  }
  return frames;
}

int RunFrames(const FramesCall& call) {
  const QString path = FromArgument(call.File);
  ExportOptions options;
  options.Unit = call.Unit == "F" ? 'F' : 'C';
  options.Reverse = call.Reverse;
  options.Palette = FindPalette(FromArgument(call.Palette));
  const auto range = ParseExportRange(FromArgument(call.Range));
  if (options.Palette < 0 || !range || !IsUsablePrefix(FromArgument(call.Prefix))) {
    PrintError(
        "--palette takes a name or number, --range stored, image or LOW:HIGH, and --prefix a text "
        "without a separator");
    return kToolWrongCall;
  }
  options.Range = *range;
  try {
    const auto palettes = ReadToolPalettes(NeedsPalette(FromArgument(call.To)));
    if (!palettes) {
      return kToolFailed;
    }
    Session session(OwnFolder());
    PrepareForExport(options, *palettes, session);
    ExportOptions stored = options;
    stored.Range = {};
    LoadForExport(path, stored, session);
    if (FrameSlots(session.Image) == 0) {
      throw StepFailure("the image has no frames");
    }
    const auto frames = ParseFrames(FromArgument(call.Frames), FrameSlots(session.Image));
    if (!frames) {
      PrintError("--frames takes numbers from 1 to " + std::to_string(FrameSlots(session.Image)) +
                 ", such as 1-10,15");
      return kToolWrongCall;
    }
    if (const QString folder = FromArgument(call.Folder); !MakeFolders(folder)) {
      PrintError(folder, "the folder cannot be made");
      return kToolFailed;
    }
    return WriteFrames(call, options, *frames, session);
  } catch (const std::exception& failure) {
    PrintError(path, failure.what());
    return kToolFailed;
  }
}

}  // namespace tessa
