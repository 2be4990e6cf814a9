// Snapshots, sequence containers and single frame files.

#include <QDateTime>

#include "formats/frame_array.h"
#include "formats/kelvin.h"
#include "formats/sequence.h"
#include "sample_encoders.h"
#include "sample_measures.h"

namespace tessa::tools {
namespace {

/// When a frame was taken.
QDateTime Moment(const SampleFacts& facts, std::size_t frame) {
  QDateTime first =
      QDateTime::fromString(QString::fromStdString("20" + facts.DateText + facts.TimeText),
                            QStringLiteral("yyyyMMddHHmmss"));
  first.setTimeSpec(Qt::UTC);
  return first.addSecs(static_cast<qint64>(frame) * facts.SecondsBetweenFrames);
}

/// Ten characters of date, a blank, eleven of time.
std::string Stamp(const SampleFacts& facts, std::size_t frame) {
  return Moment(facts, frame).toString(QStringLiteral("MM/dd/yyyy hh:mm:ss AP")).toStdString();
}

float Kelvin(double celsius) {
  return static_cast<float>(celsius + kKelvinOffset);
}

/// Bytes for levels between the ends of `scale`.
Bytes LevelArray(const Scene& frame, const Span& scale) {
  const std::vector<std::uint8_t> levels = Levels(frame, scale);
  const std::vector<std::int16_t> pixels(levels.begin(), levels.end());
  return EncodeFrameArray(frame.Width, frame.Height, pixels, 1);
}

}  // namespace

Bytes FramesAsSnapshot(std::span<const Scene> frames, const SampleFacts& facts, Stamps stamps) {
  constexpr double kSecondsPerDay = 86400.0;
  constexpr float kUnstampedVersion = 2.0F;
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
  const Span scale = WholeDegrees(frames, 0.0);
  header.ScaleMin = static_cast<float>(scale.Low);
  header.ScaleMax = static_cast<float>(scale.High);
  header.Emissivity = static_cast<float>(facts.Emissivity);
  header.Comment = facts.Comment;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    fields.Frames.push_back(SceneAsFrameFile(frames[i]));
    fields.Stamps.push_back(Stamp(facts, i));
  }
  return EncodeSnapshot(fields);
}

Bytes FramesAsContainer(std::span<const Scene> frames, const SampleFacts& facts, int depth) {
  constexpr int kByteDepth = 8;
  ContainerHeader header;
  header.Version = kContainerVersion;
  header.Frames = static_cast<int>(frames.size());
  header.Depth = depth;
  header.Width = frames[0].Width;
  header.Height = frames[0].Height;
  header.Emissivity = static_cast<float>(facts.Emissivity);
  const Span scale = WholeDegrees(frames, 0.0);
  const Span range = MeasuringRange(frames, facts);
  ByteWriter writer;
  writer.Append(EncodeContainerHeader(header));
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const ContainerFrameHeader frameHeader{Stamp(facts, i), Kelvin(range.Low), Kelvin(range.High),
                                           Kelvin(scale.Low), Kelvin(scale.High)};
    writer.Append(EncodeContainerFrame(frameHeader, depth == kByteDepth
                                                        ? LevelArray(frames[i], scale)
                                                        : SceneAsFrameFile(frames[i])));
  }
  return writer.Take();
}

Bytes SceneAsFrameFile(const Scene& scene) {
  return EncodeFrameArray(scene.Width, scene.Height, TenthsOfKelvin(scene));
}

}  // namespace tessa::tools
