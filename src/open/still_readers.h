#pragma once

#include "open/still.h"

namespace tessa {

// The readers behind ReadStill, one for each kind of file. They keep its promises.

Still ReadSit(const QString& path);
/// 16-bit stills, and the 8-bit ones that share the ending and are shorter.
Still ReadTmp(const QString& path);
/// A raster without a header; it is shown as if it were a SIT image.
Still ReadBin(const QString& path);

/// A zero-padded field of code page 1252 as text; zeros inside are passed over.
QString FieldText(const std::string& field);

/// Everything that the headers of the camera's stills have in common goes into the still.
void TakeCameraHeader(const CameraHeader& header, Still& still);

/// The line from raw values to degrees; 0 without a calibration.
LinearCalibration LineOf(const Still& still);

}  // namespace tessa
