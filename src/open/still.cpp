#include "open/still.h"

#include "core/date_time_text.h"
#include "core/kinds.h"
#include "core/path_bytes.h"
#include "formats/ansi_text.h"
#include "open/still_readers.h"

namespace tessa {

Still ReadStill(const QString& path) {
  switch (KindOfName(ShownPath(path).toUpper().trimmed()).Name) {
    case FileKind::kSit:
      return ReadSit(path);
    case FileKind::kTmp:
      return ReadTmp(path);
    case FileKind::kBin:
      return ReadBin(path);
    default:
      break;
  }
  Still still;
  still.Faults.push_back({ProblemKind::kWrongKind, 0, "Name",
                          "the file's ending is not that of a radiometric still", true});
  return still;
}

QString FieldText(const std::string& field) {
  return QString::fromStdString(AnsiToUtf8(WithoutZeroBytes(field)));
}

void TakeCameraHeader(const CameraHeader& header, Still& still) {
  still.Time = TimeFromDigits(header.TimeText);
  still.Date = DateFromDigits(header.DateText);
  still.Camera = {static_cast<float>(header.EmissivityX100 / 100.0),
                  static_cast<float>(header.Offset), static_cast<float>(header.Gain)};
  still.CalibratedRange = {static_cast<float>(header.RangeLow),
                           static_cast<float>(header.RangeHigh)};
  still.StoredScale = {static_cast<float>(header.ScaleCenter - 4.0 * header.ScaleStep),
                       static_cast<float>(header.ScaleCenter + 4.0 * header.ScaleStep)};
}

LinearCalibration LineOf(const Still& still) {
  return still.Camera ? LinearCalibration{still.Camera->Gain, still.Camera->Offset}
                      : LinearCalibration{};
}

}  // namespace tessa
