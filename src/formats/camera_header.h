#pragma once

#include <cstdint>
#include <string>

#include "formats/byte_reader.h"
#include "formats/byte_writer.h"
#include "formats/problem.h"

namespace tessa {

/// The fields that the headers of the camera's still images share, at the same offsets. Texts are
/// the field's bytes in code page 1252, padding included, and always of the field's size.
struct CameraHeader {
  std::string Signature = std::string(10, '\0');  // Characters 5 to 10 carry the firmware version.
  double RangeLow = 0.0;                          // Calibrated range, degrees Celsius.
  double RangeHigh = 0.0;
  double Offset = 0.0;       // Degrees Celsius at count 0.
  double Gain = 0.0;         // Degrees per count.
  double ScaleCenter = 0.0;  // Centre of the stored display scale, degrees Celsius.
  double ScaleStep = 0.0;    // A quarter of that scale's half width.
  std::int16_t EmissivityX100 = 0;
  std::string DateText = std::string(6, '\0');  // YYMMDD
  std::string TimeText = std::string(6, '\0');  // HHMMSS
};

/// Reads the shared fields from a header record that is all there.
void ReadCameraHeader(ByteSpan record, CameraHeader& header);

/// A text field of the record.
std::string TextAt(ByteSpan record, std::size_t offset, std::size_t size);

/// Reports values that no camera writes. They are read as they stand all the same.
void CheckCameraHeader(const CameraHeader& header, Problems& faults);

/// The shared fields of a file to be written, with the values of an ordinary picture.
struct CameraFields {
  std::string Signature = "SIT 3.00  ";
  double RangeLow = -40.0;
  double RangeHigh = 120.0;
  double Offset = 0.0;
  double Gain = 0.01;
  double ScaleCenter = 20.0;
  double ScaleStep = 5.0;
  std::int16_t EmissivityX100 = 95;
  std::string DateText = "260115";
  std::string TimeText = "143005";
};

/// Writes the shared fields to an empty writer, up to the end of TimeText at byte 104.
void WriteCameraFields(const CameraFields& fields, ByteWriter& writer);

}  // namespace tessa
