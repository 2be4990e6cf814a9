#include "open/read_sequence.h"

#include <QString>

#include "core/file_access.h"
#include "formats/ansi_text.h"
#include "formats/foreign_content.h"
#include "formats/frame_array.h"
#include "formats/kelvin.h"
#include "open/load_steps.h"

namespace tessa {
namespace {

constexpr std::size_t kRecogniseSize = 512;

void NoFrames(ProblemKind kind, std::uint64_t offset, const char* field, const char* text,
              Session& session) {
  session.Faults.push_back({kind, offset, field, text, true});
}

void ReadContainer(const RandomFile& file, Session& session) {
  OpenImage& image = session.Image;
  const ContainerHeader header = DecodeContainerHeader(file.ReadAt(0, kContainerHeaderSize));
  const Bytes first =
      file.ReadAt(kContainerHeaderSize, kContainerFrameHeaderSize + kFrameArrayHeaderSize);
  image.SeqVersion = kContainerVersion;
  if (first.size() < kContainerFrameHeaderSize + kFrameArrayHeaderSize) {
    NoFrames(ProblemKind::kTruncated, file.Size(), "Frame", "the file ends before its first frame",
             session);
    return;
  }
  const ContainerFrameHeader frame = DecodeContainerFrameHeader(first);
  const FrameArrayHeader array =
      ReadFrameArrayHeader(ByteSpan(first).subspan(kContainerFrameHeaderSize));
  if (header.Frames <= 0 || !array.Describes(header.Width, header.Height)) {
    NoFrames(ProblemKind::kBadValue, 14, "Frames",
             header.Frames <= 0 ? "the sequence says it holds no frames"
                                : "the first frame has not the size that the header tells",
             session);
    return;
  }
  const std::uint64_t stride = kContainerFrameHeaderSize + array.ByteSize();
  if (stride > file.Size() - kContainerHeaderSize) {
    NoFrames(ProblemKind::kTruncated, file.Size(), "Frame", "the file ends inside its first frame",
             session);
    return;
  }
  image.ScaleMin = static_cast<float>(static_cast<double>(frame.ScaleLow) - kKelvinOffset);
  image.ScaleMax = static_cast<float>(static_cast<double>(frame.ScaleHigh) - kKelvinOffset);
  image.SeqFrameStride = static_cast<std::int64_t>(stride);
  image.SeqHeader.Version = header.Version;
  image.SeqHeader.Width = header.Width;
  image.SeqHeader.Height = header.Height;
  image.SeqHeader.Frames = header.Frames;
  image.SeqDepth = header.Depth;
  image.Emissivity = header.Emissivity;
  image.FrameCount = header.Frames;
  const std::uint64_t whole = (file.Size() - kContainerHeaderSize) / stride;
  if (whole < static_cast<std::uint64_t>(header.Frames)) {
    session.Faults.push_back({ProblemKind::kTruncated, file.Size(), "Frame",
                              "the file ends early: " + std::to_string(whole) + " of " +
                                  std::to_string(header.Frames) + " frames are whole",
                              false});
  }
}

/// One frame of a snapshot, from `offset` on, which moves behind it. Empty when there is none;
/// after something that is no frame array, nothing more can be found.
Bytes ReadSnapshotFrame(const RandomFile& file, std::uint64_t end, int width, int height,
                        std::uint64_t& offset) {
  const FrameArrayHeader header = ReadFrameArrayHeader(file.ReadAt(offset, kFrameArrayHeaderSize));
  const std::uint64_t size = header.ByteSize();
  if (offset > end || header.What == FrameArrayHeader::State::kForeign || size > end - offset) {
    offset = end + 1;
    return {};
  }
  Bytes array;
  if (header.Describes(width, height)) {
    array = file.ReadAt(offset, size);
    if (array.size() < size) {
      array.clear();
    }
  }
  offset += size;
  return array;
}

void ReadSnapshot(const RandomFile& file, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  if (file.Size() < kSeqTrailerSize) {
    NoFrames(ProblemKind::kTruncated, file.Size(), "SeqHeader",
             "the file is shorter than the trailer of a snapshot", session);
    return;
  }
  if (auto foreign = ForeignContentProblem(file.ReadAt(0, kRecogniseSize), "a snapshot")) {
    session.Faults.push_back(std::move(*foreign));
    return;
  }
  const std::uint64_t end = file.Size() - kSeqTrailerSize;
  const SeqHeader header = DecodeSeqTrailer(file.ReadAt(end, kSeqTrailerSize));
  if (!CheckSeqTrailer(header, file.Size(), session.Faults)) {
    return;
  }
  image.SeqHeader = header;
  image.SeqVersion = header.Version;
  image.Emissivity = header.Emissivity;
  image.CalRangeMin = header.RangeMin;
  image.CalRangeMax = header.RangeMax;
  // This word stays English in every language.
  ShowLoadingText(QStringLiteral("Loading"), image, session.View, progress);

  const auto slots = static_cast<std::size_t>(header.Frames);
  image.SeqFrames.assign(slots, {});
  image.SeqFrameTimes.assign(slots, {});
  const bool stamped = header.Version == kStampedVersion;
  std::uint64_t offset = 0;
  int remaining = header.Frames;
  for (std::size_t slot = 0; slot < slots; ++slot) {
    session.View.LoadProgress = (static_cast<double>(slot) + 1.0) / header.Frames * 100.0;
    progress.Advance();
    if (stamped) {
      const Bytes stamp = file.ReadAt(offset, kStampSize);
      image.SeqFrameTimes[slot] =
          QString::fromStdString(AnsiToUtf8(std::string(stamp.begin(), stamp.end())));
      offset += kStampSize;
    }
    image.SeqFrames[slot] = ReadSnapshotFrame(file, end, header.Width, header.Height, offset);
    remaining -= image.SeqFrames[slot].empty() ? 1 : 0;
  }
  image.FrameCount = remaining;
  if (remaining < header.Frames) {
    session.Faults.push_back({ProblemKind::kTruncated, end, "Frame",
                              std::to_string(header.Frames - remaining) + " of " +
                                  std::to_string(header.Frames) + " frames cannot be read",
                              remaining == 0});
  }
}

}  // namespace

void ReadSequence(Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  image.FrameCount = 0;
  image.SeqFrames.clear();
  image.SeqFrameTimes.clear();
  session.Steps.Run("read sequence", [&] {
    const auto file = RandomFile::Open(image.CurrentFilePath, session.Faults);
    if (!file) {
      throw StepFailure(session.Faults.back().Text);
    }
    // A snapshot may tell the same version in its trailer.
    image.SeqIsContainer = LeadingVersion(file->ReadAt(0, 4)) == kContainerVersion;
    if (image.SeqIsContainer) {
      ReadContainer(*file, session);
    } else {
      ReadSnapshot(*file, session, progress);
    }
  });
  session.View.LoadProgress = 0.0;
  progress.Repaint();
}

}  // namespace tessa
