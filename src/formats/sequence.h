#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "formats/byte_reader.h"
#include "formats/byte_writer.h"
#include "formats/problem.h"

namespace tessa {

// Snapshots hold their frames first and a trailer at the end; sequence containers (version 3.0) a
// header first and then frames of equal size. Both end in "RTI". Numbers are little-endian.

inline constexpr float kStampedVersion = 2.1F;    // Snapshot whose frames carry a stamp each.
inline constexpr float kContainerVersion = 3.0F;  // Sequence container.
inline constexpr float kRefusedVersion = 5.0F;    // Holds no frames for this program.

inline constexpr std::size_t kSeqTrailerSize = 810;
inline constexpr std::size_t kStampSize = 22;
inline constexpr std::size_t kContainerHeaderSize = 800;
inline constexpr std::size_t kContainerFrameHeaderSize = 38;

/// What the end of a snapshot says about it; a container's header fills the fields that it has.
struct SeqHeader {
  float Version = 0.0F;
  double Taken = 0.0;  // Days since 1899-12-30 with the fraction of the day.
  int Frames = 0;
  int Width = 0;
  int Height = 0;
  float RangeMin = 0.0F;  // Calibrated range, degrees Celsius.
  float RangeMax = 0.0F;
  float ScaleMin = 0.0F;  // Stored display scale, degrees Celsius.
  float ScaleMax = 0.0F;
  float Emissivity = 0.0F;
  std::string Comment;  // 760 bytes, padded with blanks.
};

/// Version number in the first four bytes of a file; 0 when they are not there.
float LeadingVersion(ByteSpan start);

/// Decodes the last 810 bytes of a snapshot.
SeqHeader DecodeSeqTrailer(ByteSpan trailer);

/// Why a snapshot of `fileSize` bytes holds no frames, as far as its trailer tells; added to
/// `faults`. True when the trailer is believable.
bool CheckSeqTrailer(const SeqHeader& header, std::uint64_t fileSize, Problems& faults);

/// The comment proper: the first 700 characters when character 701 is code 164, else all; trimmed.
std::string SeqComment(const SeqHeader& header);

struct ContainerHeader {
  float Version = 0.0F;
  int Frames = 0;
  int Depth = 0;  // 8: byte pixels between the frame's scale limits; else tenths of a kelvin.
  int Width = 0;
  int Height = 0;
  float Emissivity = 0.0F;
};

/// Decodes the first 800 bytes of a sequence container.
ContainerHeader DecodeContainerHeader(ByteSpan start);

/// What stands before each frame of a container.
struct ContainerFrameHeader {
  std::string Stamp;      // 22 bytes: 10 of the date, the last 11 of the time.
  float RangeLow = 0.0F;  // Kelvin.
  float RangeHigh = 0.0F;
  float ScaleLow = 0.0F;
  float ScaleHigh = 0.0F;
};

ContainerFrameHeader DecodeContainerFrameHeader(ByteSpan bytes);

/// Date and time of a stamp, as they stand.
std::string StampDate(const std::string& stamp);
std::string StampTime(const std::string& stamp);

// Writers for samples and tests. Frames are encoded arrays (frame_array.h).

struct SnapshotFields {
  SeqHeader Header;
  std::vector<Bytes> Frames;
  std::vector<std::string> Stamps;  // One for each frame in version 2.1.
};
Bytes EncodeSnapshot(const SnapshotFields& fields);

Bytes EncodeContainerHeader(const ContainerHeader& header);
Bytes EncodeContainerFrame(const ContainerFrameHeader& header, ByteSpan frameArray);

}  // namespace tessa
