#include "open/show_frame.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/file_access.h"
#include "core/side_file.h"
#include "core/units.h"
#include "formats/ansi_text.h"
#include "formats/frame_array.h"
#include "formats/kelvin.h"
#include "open/load_steps.h"
#include "view/palettes.h"
#include "view/range_control.h"

namespace tessa {
namespace {

struct ScalePair {
  float Low = 0.0F;
  float High = 0.0F;
};

QString AnsiText(const std::string& ansi) {
  return QString::fromStdString(AnsiToUtf8(ansi));
}

float CelsiusOf(float kelvin) {
  return static_cast<float>(static_cast<double>(kelvin) - kKelvinOffset);
}

void ShowFrameText(Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  session.View.LoadingText = session.Words.LangString(180, "Loading") + QLatin1Char(' ') +
                             image.CurrentFile.trimmed() + QStringLiteral(" - ") +
                             session.Words.LangString(287, "Frame") + QLatin1Char(' ') +
                             QString::number(image.CurrentFrame);
  progress.Repaint();
}

void AllocateFromBuffer(Session& session) {
  OpenImage& image = session.Image;
  TakeBufferSize(session.Buffers.Picbuf1, image);
  image.TempGrid.Allocate(image.ImageWidth, image.ImageHeight);
  image.RowBuffers.Allocate(image.ImageHeight, image.ImageWidth);
}

/// Extremes of the frame in degrees Celsius.
ScalePair FrameExtremes(const Frame& frame) {
  const auto [low, high] = std::minmax_element(frame.Pixels.begin(), frame.Pixels.end());
  return {static_cast<float>(TenthsOfKelvinToCelsius(*low)),
          static_cast<float>(TenthsOfKelvinToCelsius(*high))};
}

/// The extremes become the image's; a flat frame is given five degrees.
void TakeExtremes(const Frame& frame, OpenImage& image) {
  constexpr double kFlatSpan = 5.0;
  const ScalePair extremes = FrameExtremes(frame);
  image.TempMin = extremes.Low;
  image.TempMax = extremes.High == extremes.Low
                      ? static_cast<float>(static_cast<double>(extremes.Low) + kFlatSpan)
                      : extremes.High;
}

/// Byte pixels stand for levels between the frame's scale limits (kelvin); they become tenths of a
/// kelvin. A level whose value fits no 16-bit integer stays 0.
void ExpandLevels(const ContainerFrameHeader& header, Frame& frame, StepLog& steps) {
  std::array<std::int16_t, 256> tenths{};
  const auto low = static_cast<double>(header.ScaleLow);
  const double span = static_cast<double>(header.ScaleHigh) - low;
  bool allFit = true;
  for (std::size_t level = 0; level < tenths.size(); ++level) {
    const double value = std::nearbyint((span / 255.0 * static_cast<double>(level) + low) * 10.0);
    const bool fits = value >= std::numeric_limits<std::int16_t>::min() &&
                      value <= std::numeric_limits<std::int16_t>::max();
    tenths[level] = fits ? static_cast<std::int16_t>(value) : std::int16_t{0};
    allFit = allFit && fits;
  }
  // Once for all levels: a throw for each would be most of the work of a small frame.
  steps.Run("tenths of levels", [&] {
    if (!allFit) {
      throw StepFailure("a number does not fit 16 bits");
    }
  });
  for (std::int16_t& pixel : frame.Pixels) {
    pixel = tenths[static_cast<std::uint8_t>(pixel)];
  }
}

/// The frame's part of an open container from its header on: at most `count` bytes.
Bytes ReadContainerBytes(std::uint64_t count, Session& session) {
  const OpenImage& image = session.Image;
  const auto file = RandomFile::Open(image.CurrentFilePath, session.Faults);
  if (!file || image.CurrentFrame < 1) {
    return {};
  }
  const auto before = static_cast<std::uint64_t>(image.CurrentFrame - 1);
  return file->ReadAt(
      kContainerHeaderSize + before * static_cast<std::uint64_t>(image.SeqFrameStride), count);
}

/// Date, time and calibrated range of a frame of a container.
void TakeFrameFacts(const ContainerFrameHeader& header, OpenImage& image) {
  image.ImageDate = AnsiText(StampDate(header.Stamp));
  image.ImageTime = AnsiText(StampTime(header.Stamp));
  image.CalRangeMin = CelsiusOf(header.RangeLow);
  image.CalRangeMax = CelsiusOf(header.RangeHigh);
}

/// The frame of a container that CurrentFrame names; its header's facts go into the record.
std::optional<Frame> ReadContainerFrame(Session& session) {
  OpenImage& image = session.Image;
  const Bytes bytes = ReadContainerBytes(static_cast<std::uint64_t>(image.SeqFrameStride), session);
  if (bytes.size() < kContainerFrameHeaderSize) {
    return std::nullopt;
  }
  const ContainerFrameHeader header = DecodeContainerFrameHeader(bytes);
  TakeFrameFacts(header, image);
  auto frame = DecodeFrameArray(ByteSpan(bytes).subspan(kContainerFrameHeaderSize),
                                image.SeqHeader.Width, image.SeqHeader.Height);
  constexpr int kByteDepth = 8;
  if (frame && image.SeqDepth == kByteDepth) {
    ExpandLevels(header, *frame, session.Steps);
  }
  return frame;
}

bool HasSlot(const OpenImage& image) {
  return static_cast<std::size_t>(image.CurrentFrame - 1) < image.SeqFrames.size();
}

/// Date and time of a snapshot's frame, where each has its own.
void TakeSnapshotStamp(OpenImage& image) {
  if (HasSlot(image) && image.SeqHeader.Version == kStampedVersion) {
    const QString& text = image.SeqFrameTimes[static_cast<std::size_t>(image.CurrentFrame - 1)];
    const std::string stamp = Utf8ToAnsi(text.toStdString());
    image.ImageDate = AnsiText(StampDate(stamp));
    image.ImageTime = AnsiText(StampTime(stamp));
  }
}

/// The same frame of a snapshot, whose frames are in memory.
std::optional<Frame> TakeSnapshotFrame(OpenImage& image) {
  if (!HasSlot(image)) {
    return std::nullopt;
  }
  TakeSnapshotStamp(image);
  return DecodeFrameArray(image.SeqFrames[static_cast<std::size_t>(image.CurrentFrame - 1)],
                          image.SeqHeader.Width, image.SeqHeader.Height);
}

std::optional<Frame> ReadOpenFrame(Session& session) {
  return session.Image.SeqIsContainer ? ReadContainerFrame(session)
                                      : TakeSnapshotFrame(session.Image);
}

/// The frame in its own file: one array of the picture's size and nothing else.
std::optional<Frame> ReadFrameFile(Session& session) {
  const OpenImage& image = session.Image;
  const Picbuf& picture = session.Buffers.Picbuf1;
  Problems faults;
  const QString named = FrameFilePath(image.CurrentFilePath, image.CurrentFrame);
  const QString name = named.mid(named.lastIndexOf(QLatin1Char('/')) + 1);
  const auto file = RandomFile::Open(FindSideFile(image.CurrentFilePath, name), faults);
  if (!file) {
    return std::nullopt;
  }
  const FrameArrayHeader header = ReadFrameArrayHeader(file->ReadAt(0, kFrameArrayHeaderSize));
  if (!header.Describes(picture.BufWidth(), picture.BufHeight()) ||
      header.ByteSize() != file->Size()) {
    return std::nullopt;
  }
  return DecodeFrameArray(file->ReadAt(0, header.ByteSize()), picture.BufWidth(),
                          picture.BufHeight());
}

/// The stamp of a frame whose pixels come from a file of their own, which has none.
void TakeStamp(Session& session) {
  if (!session.Image.SeqIsContainer) {
    TakeSnapshotStamp(session.Image);
    return;
  }
  const Bytes header = ReadContainerBytes(kContainerFrameHeaderSize, session);
  if (header.size() == kContainerFrameHeaderSize) {
    TakeFrameFacts(DecodeContainerFrameHeader(header), session.Image);
  }
}

/// The frame from its own file or from the open one, whose extremes it then brings along.
std::optional<Frame> FindFrame(Session& session) {
  auto frame = ReadFrameFile(session);
  if (frame) {
    TakeStamp(session);
    return frame;
  }
  frame = ReadOpenFrame(session);
  if (frame) {
    TakeExtremes(*frame, session.Image);
  }
  return frame;
}

/// A frame that is not there goes blank; the user is told once for each.
void ReportBlankFrame(Session& session) {
  const Problem problem{
      ProblemKind::kBadValue, 0, "Frame",
      "frame " + std::to_string(session.Image.CurrentFrame) + " cannot be read; it is shown blank",
      false};
  const auto same = [&](const Problem& other) { return other.Text == problem.Text; };
  if (std::none_of(session.Faults.begin(), session.Faults.end(), same)) {
    session.Faults.push_back(problem);
  }
}

/// Degrees and indices of a frame, row by row; without a frame both are zero.
void RenderFrame(const std::optional<Frame>& frame, const ScalePair& scale, Session& session,
                 Progress& progress) {
  OpenImage& image = session.Image;
  const RenderLine line = MakeRenderLine(scale.Low, scale.High, session.Steps);
  std::int32_t value = 0;
  for (int row = 0; row < image.ImageHeight; ++row) {
    session.View.LoadProgress = (row + 1.0) / image.ImageHeight * 100.0;
    progress.Advance();
    session.Steps.Run("render frame row", [&] {
      if (!frame || frame->Width != image.ImageWidth || frame->Height != image.ImageHeight) {
        session.Buffers.Picbuf1.PutRow(image.RowBuffers.Row(row), row);
        return;
      }
      const auto start = static_cast<std::size_t>(row) * static_cast<std::size_t>(frame->Width);
      const std::span<float> degrees = image.TempGrid.Row(row);
      for (std::size_t column = 0; column < degrees.size(); ++column) {
        degrees[column] =
            static_cast<float>(TenthsOfKelvinToCelsius(frame->Pixels[start + column]));
      }
      RenderGridRow(row, image.ImageWidth, line, value, image, session.Buffers.Picbuf1);
    });
  }
  ApplyPalette(session.Buffers.Picbuf1, session.Palettes.CurrentPalette);
}

/// The range in which a frame is shown, as ShowFrame tells. `stored` is the stored one.
ScalePair ChooseScale(bool useEnteredScale, const ScalePair& stored, const Session& session) {
  const OpenImage& image = session.Image;
  if (!useEnteredScale) {
    return stored;
  }
  if (session.View.Source == RangeSource::kImage) {
    return {image.TempMin, image.TempMax};
  }
  if (image.SeqIsContainer) {
    return {image.ScaleMin, image.ScaleMax};
  }
  const auto entered = [&](const QString& text) {
    return static_cast<float>(FromDisplayUnits(ParseNumber(text), image.DisplayUnits));
  };
  return {entered(session.View.RangeLowText), entered(session.View.RangeHighText)};
}

}  // namespace

QString FrameFilePath(const QString& imagePath, int frame) {
  return imagePath.chopped(std::min<qsizetype>(4, imagePath.size())) + QLatin1Char('-') +
         QStringLiteral("%1").arg(frame - 1, 3, 10, QLatin1Char('0')) + QStringLiteral(".APD");
}

bool HasFrame(const OpenImage& image) {
  if (image.CurrentFrame < 1) {
    return false;
  }
  if (!image.SeqIsContainer) {
    return HasSlot(image) &&
           !image.SeqFrames[static_cast<std::size_t>(image.CurrentFrame - 1)].empty();
  }
  const std::uint64_t end =
      kContainerHeaderSize + static_cast<std::uint64_t>(image.CurrentFrame) *
                                 static_cast<std::uint64_t>(image.SeqFrameStride);
  return end <= FileSize(image.CurrentFilePath).value_or(0);
}

bool ShowFrame(bool useEnteredScale, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ShowFrameText(session, progress);
  AllocateFromBuffer(session);
  const auto frame = ReadOpenFrame(session);
  if (frame) {
    TakeExtremes(*frame, image);
  } else {
    ReportBlankFrame(session);
  }
  const ScalePair stored = image.SeqIsContainer
                               ? ScalePair{image.ScaleMin, image.ScaleMax}
                               : ScalePair{image.SeqHeader.ScaleMin, image.SeqHeader.ScaleMax};
  const ScalePair scale = ChooseScale(useEnteredScale, stored, session);
  image.ScaleMin = scale.Low;
  image.ScaleMax = scale.High;
  SetRangeInForce(static_cast<double>(scale.Low), static_cast<double>(scale.High), image);
  if (useEnteredScale) {
    session.Steps.Run("scale display",
                      [&] { UpdateRangeDisplay(image, session.View, session.Words); });
  }
  RenderFrame(frame, scale, session, progress);
  return frame.has_value();
}

bool ShowFrameFile(bool keepScale, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  Picbuf& picture = session.Buffers.Picbuf1;
  const bool textShown = view.LoadingTextVisible;
  const bool progressShown = view.LoadProgressVisible;
  view.LoadingTextVisible = true;
  view.LoadProgressVisible = true;
  ShowFrameText(session, progress);
  picture.FileType = Picbuf::kBmp;
  AllocateFromBuffer(session);
  view.FrameText = FrameText(image, session.Words);

  const auto frame = FindFrame(session);
  ScalePair scale;
  if (frame) {
    scale = FrameExtremes(*frame);
    image.ScaleMin = scale.Low;
    image.ScaleMax = scale.High;
  } else {
    ReportBlankFrame(session);
  }
  if (keepScale) {
    scale = {static_cast<float>(ParseNumber(view.RangeLowText)),
             static_cast<float>(ParseNumber(view.RangeHighText))};
    SetRangeAsShown(static_cast<double>(scale.Low), static_cast<double>(scale.High), image);
  } else if (frame) {
    SetRangeInForce(static_cast<double>(scale.Low), static_cast<double>(scale.High), image);
  }
  RenderFrame(frame, scale, session, progress);

  view.LoadingTextVisible = textShown;
  view.LoadProgressVisible = progressShown;
  view.LoadProgress = 0.0;
  return frame.has_value();
}

bool ShowFrameFromFile(Session& session, Progress& progress) {
  return ReadFrameFile(session).has_value() && ShowFrameFile(false, session, progress);
}

}  // namespace tessa
