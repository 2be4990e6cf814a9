// Snapshots, sequence containers and single frame files.

#include <QDateTime>
#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "formats/frame_array.h"
#include "formats/kelvin.h"
#include "formats/sequence.h"
#include "sample_encoders.h"
#include "sample_measures.h"

namespace tessa::tools {
namespace {

constexpr double kSecondsPerDay = 86400.0;
constexpr std::size_t kMostFrames = 32767;

/// Refuses what no kind of sequence can hold.
void RequireFrames(std::span<const Scene> frames, const std::string& kind) {
  if (frames.empty() || frames.size() > kMostFrames) {
    throw std::runtime_error(kind + " holds 1 to 32767 frames");
  }
  for (const Scene& frame : frames) {
    if (frame.Width != frames[0].Width || frame.Height != frames[0].Height) {
      throw std::runtime_error(kind + " holds frames of one size only");
    }
  }
}

int TwoDigits(const std::string& text, std::size_t at) {
  return std::stoi(text.substr(at, 2));
}

/// When a frame was taken.
QDateTime Moment(const SampleFacts& facts, std::size_t frame) {
  const QDate day(2000 + TwoDigits(facts.DateText, 0), TwoDigits(facts.DateText, 2),
                  TwoDigits(facts.DateText, 4));
  const QTime time(TwoDigits(facts.TimeText, 0), TwoDigits(facts.TimeText, 2),
                   TwoDigits(facts.TimeText, 4));
  return QDateTime(day, time, Qt::UTC)
      .addSecs(static_cast<qint64>(frame) * facts.SecondsBetweenFrames);
}

/// Ten characters of date, a blank, eleven of time.
std::string Stamp(const SampleFacts& facts, std::size_t frame) {
  return Moment(facts, frame).toString(QStringLiteral("MM/dd/yyyy hh:mm:ss AP")).toStdString();
}

Span MeasuringRange(std::span<const Scene> frames, const SampleFacts& facts) {
  return Widened({facts.RangeLow, facts.RangeHigh}, Extremes(frames));
}

/// Whole degrees around all frames.
Span SequenceScale(std::span<const Scene> frames) {
  const Span extremes = Extremes(frames);
  Span scale{std::floor(extremes.Low), std::ceil(extremes.High)};
  scale.High = std::max(scale.High, scale.Low + 1.0);
  return scale;
}

float Kelvin(double celsius) {
  return static_cast<float>(celsius + kKelvinOffset);
}

Bytes FrameArray(const Scene& frame, const std::string& kind) {
  return EncodeFrameArray(frame.Width, frame.Height, TenthsOfKelvin(frame, kind));
}

/// Bytes for levels between the ends of `scale`.
Bytes LevelArray(const Scene& frame, const Span& scale) {
  const std::vector<std::uint8_t> levels = Levels(frame, scale);
  const std::vector<std::int16_t> pixels(levels.begin(), levels.end());
  return EncodeFrameArray(frame.Width, frame.Height, pixels, 1);
}

}  // namespace

Bytes FramesAsSnapshot(std::span<const Scene> frames, const SampleFacts& facts, Stamps stamps) {
  constexpr float kUnstampedVersion = 2.0F;
  RequireFrames(frames, "a snapshot");
  SnapshotFields fields;
  SeqHeader& header = fields.Header;
  header.Version = stamps == Stamps::kEachFrame ? kStampedVersion : kUnstampedVersion;
  const QDateTime start(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC);
  header.Taken = static_cast<double>(start.secsTo(Moment(facts, 0))) / kSecondsPerDay;
  header.Frames = static_cast<int>(frames.size());
  header.Width = frames[0].Width;
  header.Height = frames[0].Height;
  const Span range = MeasuringRange(frames, facts);
  header.RangeMin = static_cast<float>(range.Low);
  header.RangeMax = static_cast<float>(range.High);
  const Span scale = SequenceScale(frames);
  header.ScaleMin = static_cast<float>(scale.Low);
  header.ScaleMax = static_cast<float>(scale.High);
  header.Emissivity = static_cast<float>(facts.Emissivity);
  header.Comment = facts.Comment;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    fields.Frames.push_back(FrameArray(frames[i], "a snapshot"));
    fields.Stamps.push_back(Stamp(facts, i));
  }
  return EncodeSnapshot(fields);
}

Bytes FramesAsContainer(std::span<const Scene> frames, const SampleFacts& facts, int depth) {
  constexpr int kByteDepth = 8;
  RequireFrames(frames, "a sequence");
  ContainerHeader header;
  header.Version = kContainerVersion;
  header.Frames = static_cast<int>(frames.size());
  header.Depth = depth;
  header.Width = frames[0].Width;
  header.Height = frames[0].Height;
  header.Emissivity = static_cast<float>(facts.Emissivity);
  const Span scale = SequenceScale(frames);
  const Span range = MeasuringRange(frames, facts);
  // Levels are turned into tenths of a kelvin by the reader, so the same limits hold for them.
  RequireWithin(scale, -kKelvinOffset, 3276.7 - kKelvinOffset, "a sequence");
  ByteWriter writer;
  writer.Append(EncodeContainerHeader(header));
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const ContainerFrameHeader frameHeader{Stamp(facts, i), Kelvin(range.Low), Kelvin(range.High),
                                           Kelvin(scale.Low), Kelvin(scale.High)};
    writer.Append(EncodeContainerFrame(frameHeader, depth == kByteDepth
                                                        ? LevelArray(frames[i], scale)
                                                        : FrameArray(frames[i], "a sequence")));
  }
  return writer.Take();
}

Bytes SceneAsFrameFile(const Scene& scene) {
  return FrameArray(scene, "a frame file");
}

}  // namespace tessa::tools
