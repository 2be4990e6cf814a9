#include "open/show_frame.h"

#include <algorithm>
#include <limits>

#include "core/file_access.h"
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
  for (std::size_t level = 0; level < tenths.size(); ++level) {
    steps.Run("tenths of a level", [&] {
      const int value = RoundToInteger((span / 255.0 * static_cast<double>(level) + low) * 10.0);
      if (value < std::numeric_limits<std::int16_t>::min() ||
          value > std::numeric_limits<std::int16_t>::max()) {
        throw StepFailure("the number does not fit 16 bits");
      }
      tenths[level] = static_cast<std::int16_t>(value);
    });
  }
  for (std::int16_t& pixel : frame.Pixels) {
    pixel = tenths[static_cast<std::uint8_t>(pixel)];
  }
}

/// The frame of a container that CurrentFrame names; its header's facts go into the record.
std::optional<Frame> ReadContainerFrame(Session& session) {
  OpenImage& image = session.Image;
  const auto file = RandomFile::Open(image.CurrentFilePath, session.Faults);
  if (!file || image.CurrentFrame < 1) {
    return std::nullopt;
  }
  const auto stride = static_cast<std::uint64_t>(image.SeqFrameStride);
  const Bytes bytes = file->ReadAt(
      kContainerHeaderSize + static_cast<std::uint64_t>(image.CurrentFrame - 1) * stride, stride);
  if (bytes.size() < kContainerFrameHeaderSize) {
    return std::nullopt;
  }
  const ContainerFrameHeader header = DecodeContainerFrameHeader(bytes);
  image.ImageDate = AnsiText(StampDate(header.Stamp));
  image.ImageTime = AnsiText(StampTime(header.Stamp));
  image.CalRangeMin = CelsiusOf(header.RangeLow);
  image.CalRangeMax = CelsiusOf(header.RangeHigh);
  auto frame = DecodeFrameArray(ByteSpan(bytes).subspan(kContainerFrameHeaderSize),
                                image.SeqHeader.Width, image.SeqHeader.Height);
  constexpr int kByteDepth = 8;
  if (frame && image.SeqDepth == kByteDepth) {
    ExpandLevels(header, *frame, session.Steps);
  }
  return frame;
}

/// The same for a snapshot, whose frames are in memory.
std::optional<Frame> TakeSnapshotFrame(OpenImage& image) {
  const auto slot = static_cast<std::size_t>(image.CurrentFrame - 1);
  if (slot >= image.SeqFrames.size()) {
    return std::nullopt;
  }
  if (image.SeqHeader.Version == kStampedVersion) {
    const std::string stamp = Utf8ToAnsi(image.SeqFrameTimes[slot].toStdString());
    image.ImageDate = AnsiText(StampDate(stamp));
    image.ImageTime = AnsiText(StampTime(stamp));
  }
  return DecodeFrameArray(image.SeqFrames[slot], image.SeqHeader.Width, image.SeqHeader.Height);
}

/// The frame in its own file: one array of the picture's size and nothing else.
std::optional<Frame> ReadFrameFile(Session& session) {
  const Picbuf& picture = session.Buffers.Picbuf1;
  Problems faults;
  const auto file = RandomFile::Open(
      FrameFilePath(session.Image.CurrentFilePath, session.Image.CurrentFrame), faults);
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

/// The frame from its own file or from the open one, whose extremes it then brings along.
std::optional<Frame> FindFrame(Session& session) {
  auto frame = ReadFrameFile(session);
  if (!frame) {
    OpenImage& image = session.Image;
    frame = image.SeqVersion == kContainerVersion ? ReadContainerFrame(session)
                                                  : TakeSnapshotFrame(image);
    if (frame) {
      TakeExtremes(*frame, image);
    }
  }
  return frame;
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
  if (image.SeqVersion == kContainerVersion) {
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

bool ShowFrame(bool useEnteredScale, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ShowFrameText(session, progress);
  const bool isContainer = image.SeqVersion == kContainerVersion;
  AllocateFromBuffer(session);
  const auto frame = isContainer ? ReadContainerFrame(session) : TakeSnapshotFrame(image);
  if (frame) {
    TakeExtremes(*frame, image);
  }
  const ScalePair stored = isContainer
                               ? ScalePair{image.ScaleMin, image.ScaleMax}
                               : ScalePair{image.SeqHeader.ScaleMin, image.SeqHeader.ScaleMax};
  const ScalePair scale = ChooseScale(useEnteredScale, stored, session);
  image.ScaleMin = scale.Low;
  image.ScaleMax = scale.High;
  SetScaleTexts(static_cast<double>(scale.Low), static_cast<double>(scale.High), image);
  if (useEnteredScale) {
    session.Steps.Run("scale display",
                      [&] { UpdateRangeDisplay(image, session.View, session.Words); });
    session.View.SequenceScaleVisible = true;
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
  }
  if (keepScale) {
    scale = {static_cast<float>(ParseNumber(view.RangeLowText)),
             static_cast<float>(ParseNumber(view.RangeHighText))};
    image.ScaleLowText = SixCharacters(FormatTenths(static_cast<double>(scale.Low)));
    image.ScaleHighText = SixCharacters(FormatTenths(static_cast<double>(scale.High)));
  } else if (frame) {
    SetScaleTexts(static_cast<double>(scale.Low), static_cast<double>(scale.High), image);
  }
  RenderFrame(frame, scale, session, progress);

  picture.FileType = Picbuf::kBmp;
  if (session.ConversionOutputs.contains(picture.FileName)) {
    session.Steps.Run("save shown frame", [&] { picture.SaveFile(); });
  }
  view.LoadingTextVisible = textShown;
  view.LoadProgressVisible = progressShown;
  view.LoadProgress = 0.0;
  return frame.has_value();
}

bool ShowFrameFromFile(Session& session, Progress& progress) {
  return ReadFrameFile(session).has_value() && ShowFrameFile(false, session, progress);
}

}  // namespace tessa
