#include "formats/camera_header.h"

#include <algorithm>
#include <string_view>

#include "formats/fixed32.h"

namespace tessa {
namespace {

constexpr std::size_t kSignatureSize = 10;
constexpr std::size_t kRangeLowAt = 26;
constexpr std::size_t kRangeHighAt = 30;
constexpr std::size_t kOffsetAt = 48;
constexpr std::size_t kGainAt = 52;
constexpr std::size_t kScaleCenterAt = 68;
constexpr std::size_t kScaleStepAt = 72;
constexpr std::size_t kEmissivityAt = 76;
constexpr std::size_t kDateAt = 92;
constexpr std::size_t kTimeAt = 98;
constexpr std::size_t kDigits = 6;

double Fixed32At(ByteSpan record, std::size_t offset) {
  ByteReader reader(record, offset);
  const std::int16_t whole = reader.I16Be();
  return DecodeFixed32(whole, reader.U16Be());
}

void WriteFixed32(ByteWriter& writer, double value) {
  const Fixed32Parts parts = EncodeFixed32(value);
  writer.I16Be(parts.Whole);
  writer.U16Be(parts.Fraction);
}

bool AllDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char character) { return character >= '0' && character <= '9'; });
}

}  // namespace

std::string TextAt(ByteSpan record, std::size_t offset, std::size_t size) {
  return ByteReader(record, offset).Text(size);
}

void ReadCameraHeader(ByteSpan record, CameraHeader& header) {
  header.Signature = TextAt(record, 0, kSignatureSize);
  header.RangeLow = Fixed32At(record, kRangeLowAt);
  header.RangeHigh = Fixed32At(record, kRangeHighAt);
  header.Offset = Fixed32At(record, kOffsetAt);
  header.Gain = Fixed32At(record, kGainAt);
  header.ScaleCenter = Fixed32At(record, kScaleCenterAt);
  header.ScaleStep = Fixed32At(record, kScaleStepAt);
  header.EmissivityX100 = ByteReader(record, kEmissivityAt).I16Be();
  header.DateText = TextAt(record, kDateAt, kDigits);
  header.TimeText = TextAt(record, kTimeAt, kDigits);
}

void CheckCameraHeader(const CameraHeader& header, Problems& faults) {
  const auto report = [&](std::uint64_t offset, std::string field, std::string text) {
    faults.push_back({ProblemKind::kBadValue, offset, std::move(field), std::move(text), false});
  };
  if (header.Gain == 0.0) {
    report(kGainAt, "Gain", "the gain is zero, so every pixel has the same temperature");
  }
  if (header.RangeLow >= header.RangeHigh) {
    report(kRangeLowAt, "RangeLow", "the calibrated range is empty or upside down");
  }
  if (header.EmissivityX100 <= 0 || header.EmissivityX100 > 100) {
    report(kEmissivityAt, "EmissivityX100", "the emissivity is not between 0.01 and 1.00");
  }
  if (header.ScaleStep <= 0.0) {
    report(kScaleStepAt, "ScaleStep", "the stored display scale is empty or upside down");
  }
  if (!AllDigits(header.DateText)) {
    report(kDateAt, "DateText", "the date is not made of six digits");
  }
  if (!AllDigits(header.TimeText)) {
    report(kTimeAt, "TimeText", "the time is not made of six digits");
  }
}

void WriteCameraFields(const CameraFields& fields, ByteWriter& writer) {
  writer.Text(fields.Signature, kSignatureSize);
  writer.PadTo(kRangeLowAt);
  WriteFixed32(writer, fields.RangeLow);
  WriteFixed32(writer, fields.RangeHigh);
  writer.PadTo(kOffsetAt);
  WriteFixed32(writer, fields.Offset);
  WriteFixed32(writer, fields.Gain);
  writer.PadTo(kScaleCenterAt);
  WriteFixed32(writer, fields.ScaleCenter);
  WriteFixed32(writer, fields.ScaleStep);
  writer.I16Be(fields.EmissivityX100);
  writer.PadTo(kDateAt);
  writer.Text(fields.DateText, kDigits);
  writer.Text(fields.TimeText, kDigits);
}

}  // namespace tessa
