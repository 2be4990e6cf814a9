#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "formats/byte_reader.h"
#include "formats/byte_writer.h"
#include "formats/calibration.h"
#include "formats/camera_header.h"
#include "formats/problem.h"

namespace tessa {

inline constexpr std::size_t kSitHeaderSize = 1024;
inline constexpr int kSitWidth = 320;
inline constexpr int kSitHeight = 240;
inline constexpr std::size_t kSitRasterSize = std::size_t{kSitWidth} * kSitHeight * 2;
/// First byte behind the raster and the camera data that follows it: what is appended starts here.
inline constexpr std::uint64_t kSitAttachmentOffset = 156160;
/// All that a decoder needs to see of a file, attachments aside.
inline constexpr std::size_t kSitDecodeSize = kSitAttachmentOffset + 4;

/// Where the header names its sound: eight characters, and three of the extension behind them.
inline constexpr std::size_t kSoundNameAt = 108;
inline constexpr std::size_t kSoundNameSize = 8;

/// The fixed header of a SIT file.
struct SitHeader : CameraHeader {
  /// As stored: rewriting it keeps what this program does not understand.
  std::array<std::uint8_t, kSitHeaderSize> Record{};
  std::string SoundName = std::string(8, '\0');  // With the extension WAV a decimal file position.
  std::string SoundExt = std::string(3, '\0');   // The last may be an attachment code instead.
  std::string Comment = std::string(638, '\0');  // Zero-padded.
  std::string Memo = std::string(20, '\0');      // Zero-padded.
};

struct SitImage {
  SitHeader Header;
  std::size_t HeaderBytes = 0;  // Bytes of the header that were there; missing ones count as zero.
  RawRaster Raster;             // 320 x 240.
  std::uint32_t VisibleLength = 0;  // The length word before a visible picture, attachment code 3.
  Problems Faults;
};

/// 1 sound, 2 visible picture, 3 both; 0 when the field holds a plain extension.
int AttachmentCode(const SitHeader& header);

/// Version number in the signature; 4.0 whenever there is an attachment code.
float SitVersionOf(const SitHeader& header);

/// Reads the header alone from the first bytes of a file; missing bytes count as zero and are
/// reported in `faults`.
SitHeader ReadSitHeader(ByteSpan start, Problems& faults);

/// Where the visible picture's JPEG starts, counted from byte 1, as the attachment code tells; 0
/// when there is none. `lengthWord` is the big-endian value at kSitAttachmentOffset.
std::uint64_t VisiblePosition(const SitHeader& header, std::uint32_t lengthWord);

/// Decodes header and raster. `start` holds the first min(`fileSize`, kSitDecodeSize) bytes of a
/// file of `fileSize` bytes. Never fails as a whole: what is not there stays zero and is reported.
SitImage DecodeSit(ByteSpan start, std::uint64_t fileSize);

/// What a SIT file is made of, for writers of samples and tests. Counts: 320 x 240, row by row.
struct SitFields : CameraFields {
  std::string SoundName;
  std::string SoundExt;
  std::string Comment;
  std::string Memo;
  std::vector<std::int16_t> Counts;
  Bytes Attachment;  // Stored from kSitAttachmentOffset on.
};

/// The bytes of a whole SIT file.
Bytes EncodeSit(const SitFields& fields);

}  // namespace tessa
