// The stills of the cameras and what a SIT file carries behind its picture.

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "formats/bin_raster.h"
#include "formats/fixed32.h"
#include "formats/number_text.h"
#include "formats/sit.h"
#include "formats/tmp_image.h"
#include "sample_encoders.h"
#include "sample_measures.h"

namespace tessa::tools {
namespace {

/// Share of the pixels at each end that the stored scale leaves out.
constexpr double kOutliers = 0.005;

/// What the field will say once it is written.
double AsFixed32(double value) {
  const Fixed32Parts parts = EncodeFixed32(value);
  return DecodeFixed32(parts.Whole, parts.Fraction);
}

/// The header fields that the 16-bit stills share.
void FillCameraFields(const Scene& scene, const SampleFacts& facts, CameraFields& fields) {
  fields.DateText = facts.DateText;
  fields.TimeText = facts.TimeText;
  fields.EmissivityX100 = static_cast<std::int16_t>(std::lround(facts.Emissivity * 100.0));
  const Span extremes = Extremes(scene);
  const Span range = MeasuringRange(std::span(&scene, 1), facts);
  fields.RangeLow = range.Low;
  fields.RangeHigh = range.High;
  // A whole number of degrees in the middle of the counts; hundredths unless the span is too wide.
  fields.Offset = std::round(extremes.Middle());
  const double reach = std::max(extremes.High - fields.Offset, fields.Offset - extremes.Low);
  fields.Gain = AsFixed32(std::max(0.01, reach / 32000.0));
  const Span scale = WholeDegrees(std::span(&scene, 1), kOutliers);
  fields.ScaleCenter = AsFixed32(scale.Middle());
  fields.ScaleStep = AsFixed32((scale.High - scale.Low) / 8.0);
}

std::vector<std::int16_t> Counts(const Scene& scene, const CameraFields& fields) {
  std::vector<std::int16_t> counts;
  counts.reserve(scene.Celsius.size());
  for (const float celsius : scene.Celsius) {
    const double count = std::round((static_cast<double>(celsius) - fields.Offset) / fields.Gain);
    counts.push_back(static_cast<std::int16_t>(std::clamp(count, -32768.0, 32767.0)));
  }
  return counts;
}

void Attach(const SampleAttachments& attachments, SitFields& fields) {
  const bool photo = !attachments.Photo.empty();
  const bool sound = !attachments.Sound.empty();
  if (!photo && !sound) {
    return;
  }
  if (photo && (attachments.Photo.size() < 2 || attachments.Photo[0] != 0xFF ||
                attachments.Photo[1] != 0xD8)) {
    throw std::runtime_error("the visible-light picture must be a JPEG");
  }
  // Attachments belong to version 4, which tells them by a code in place of the extension's end.
  fields.Signature = "SIT 4.00  ";
  fields.SoundExt = {'\0', '\0', static_cast<char>((sound ? 1 : 0) + (photo ? 2 : 0))};
  ByteWriter writer;
  // The JPEG lies eight bytes behind the position that this word gives.
  writer.U32Be(static_cast<std::uint32_t>(kSitAttachmentOffset + attachments.Sound.size()));
  writer.U32Be(0);
  writer.Append(attachments.Sound);
  writer.Append(attachments.Photo);
  fields.Attachment = writer.Take();
}

}  // namespace

Bytes SceneAsSit(const Scene& source, const SampleFacts& facts,
                 const SampleAttachments& attachments) {
  const Scene scene = Resample(source, kSitWidth, kSitHeight);
  const Span extremes = Extremes(scene);
  if (extremes.Low < -32000.0 || extremes.High > 32000.0) {
    throw std::runtime_error("a SIT image holds -32000 to 32000 degrees Celsius");
  }
  SitFields fields;
  FillCameraFields(scene, facts, fields);
  fields.Comment = facts.Comment;
  fields.Memo = facts.Memo;
  fields.Counts = Counts(scene, fields);
  Attach(attachments, fields);
  return EncodeSit(fields);
}

Bytes SceneAsTmp(const Scene& source, const SampleFacts& facts) {
  const Scene scene = Resample(source, kTmpWidth, kTmpHeight);
  TmpFields fields;
  FillCameraFields(scene, facts, fields);
  fields.Signature = "TMP 2.10  ";
  fields.Comment = facts.Comment;
  fields.Memo = facts.Memo;
  fields.Counts = Counts(scene, fields);
  return EncodeTmp(fields);
}

Bytes SceneAsLegacyTmp(const Scene& source, const SampleFacts& facts) {
  constexpr double kStepsPerGain = 8.0;
  constexpr double kZeroLevel = 128.0;
  constexpr double kHighestLevel = 255.0;
  const Scene scene = Resample(source, kTmpWidth, kLegacyHeight);
  const Span extremes = Extremes(scene);
  LegacyFields fields;
  // The display shows the middle quarter of the levels: four gains to each side of the offset. It
  // is laid over most of the scene, with the finest of the camera's gains whose levels reach both
  // ends.
  constexpr double kShown = 0.8;
  constexpr double kGainsShown = 4.0;
  const Span scale = WholeDegrees(std::span(&scene, 1), kOutliers);
  const double offset = std::round(scale.Middle() * 2.0) / 2.0;
  constexpr std::size_t kOffsetSize = 6;
  fields.OffsetText = FormatFixed(offset, 1);
  fields.OffsetText.insert(0, kOffsetSize - std::min(kOffsetSize, fields.OffsetText.size()), ' ');
  const double needed =
      std::max({kShown * (scale.High - scale.Low) / 2.0 / kGainsShown,
                (offset - extremes.Low) * kStepsPerGain / kZeroLevel,
                (extremes.High - offset) * kStepsPerGain / (kHighestLevel - kZeroLevel)});
  fields.GainCode = '1';
  while (fields.GainCode < 'A' && LegacyGain(fields.GainCode) < needed) {
    ++fields.GainCode;
  }
  const double gain = LegacyGain(fields.GainCode);
  fields.EmissivityText = FormatFixed(facts.Emissivity, 2);
  fields.StampText = facts.DateText + facts.TimeText;
  fields.Comment = facts.Comment;
  fields.Memo = facts.Memo;
  fields.Values.reserve(scene.Celsius.size());
  for (const float celsius : scene.Celsius) {
    const double level =
        std::round((static_cast<double>(celsius) - offset) * kStepsPerGain / gain) + kZeroLevel;
    fields.Values.push_back(static_cast<std::uint8_t>(std::clamp(level, 0.0, kHighestLevel)));
  }
  return EncodeLegacyTmp(fields);
}

Bytes SceneAsBin(const Scene& source) {
  return EncodeBin(TenthsOfKelvin(Resample(source, kBinWidth, kBinHeight)));
}

}  // namespace tessa::tools
