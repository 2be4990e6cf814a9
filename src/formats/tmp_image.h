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

// The stills of the older cameras: 16-bit ones, and 8-bit ones under the same ending that are told
// apart by the length of the file. Both store 256 columns, of which the last is dropped.

inline constexpr std::uint64_t kTmpLegacyLimit = 100000;  // Shorter files are of the 8-bit kind.
inline constexpr int kTmpWidth = 255;
inline constexpr std::size_t kTmpRasterOffset = 1024;

inline constexpr std::size_t kTmpHeaderSize = 1002;
inline constexpr int kTmpHeight = 223;
inline constexpr std::size_t kTmpDecodeSize = kTmpRasterOffset + 256 * kTmpHeight * 2;

struct TmpHeader : CameraHeader {
  std::array<std::uint8_t, kTmpHeaderSize> Record{};  // As stored.
  std::string Comment = std::string(768, '\0');       // Zero-padded.
  std::string Memo = std::string(20, '\0');           // Zero-padded.
};

struct TmpImage {
  TmpHeader Header;
  RawRaster Raster;  // 255 x 223.
  Problems Faults;
};

/// Reads the header alone; missing bytes count as zero and are reported.
TmpHeader ReadTmpHeader(ByteSpan start, Problems& faults);

/// Decodes the first min(`fileSize`, kTmpDecodeSize) bytes of a 16-bit file.
TmpImage DecodeTmp(ByteSpan start, std::uint64_t fileSize);

/// Counts: 255 x 223, row by row. The file is filled up to kTmpLegacyLimit bytes where it is
/// shorter.
struct TmpFields : CameraFields {
  std::string Comment;
  std::string Memo;
  std::vector<std::int16_t> Counts;
};
Bytes EncodeTmp(const TmpFields& fields);

inline constexpr std::size_t kLegacyHeaderSize = 980;
inline constexpr int kLegacyHeight = 207;
inline constexpr std::size_t kLegacyDecodeSize = kTmpRasterOffset + 256 * kLegacyHeight;

/// Header of the 8-bit kind; all numbers are decimal text.
struct LegacyHeader {
  std::array<std::uint8_t, kLegacyHeaderSize> Record{};  // As stored.
  std::string OffsetText = std::string(6, '\0');         // Degrees Celsius at raw value 128.
  char GainCode = '\0';
  std::string EmissivityText = std::string(4, '\0');
  std::string StampText = std::string(12, '\0');  // YYMMDDHHMMSS
  std::string Comment = std::string(832, '\0');   // Zero-padded.
  std::string Memo = std::string(20, '\0');       // Zero-padded.
};

/// Degrees per eight raw steps for a gain code; 1 for an unknown code.
double LegacyGain(char gainCode);

/// Counts are raw values less 128, and degrees = count x gain / 8 + offset.
struct LegacyImage {
  LegacyHeader Header;
  RawRaster Raster;  // 255 x 207.
  Problems Faults;
};

LegacyHeader ReadLegacyHeader(ByteSpan start, Problems& faults);

/// Decodes the first min(`fileSize`, kLegacyDecodeSize) bytes of an 8-bit file.
LegacyImage DecodeLegacyTmp(ByteSpan start, std::uint64_t fileSize);

/// Values: 255 x 207 raw bytes, row by row.
struct LegacyFields {
  std::string OffsetText = "  20.0";
  char GainCode = '6';
  std::string EmissivityText = "0.95";
  std::string StampText = "960412101530";
  std::string Comment;
  std::string Memo;
  std::vector<std::uint8_t> Values;
};
Bytes EncodeLegacyTmp(const LegacyFields& fields);

}  // namespace tessa
