#pragma once

#include "core/progress.h"
#include "open/session.h"

namespace tessa {

// Steps that several loaders take.

/// "Load Image SIT Images": the tool tip of the load button for the present kind.
QString LoadButtonTip(int imageKind, const Strings& strings);

/// "Range: ..." and "Emissivity: ..." in status panels 5 and 4.
void ShowCalibratedRange(const OpenImage& image, const Strings& strings, ViewState& view);
void ShowEmissivity(const OpenImage& image, const Strings& strings, ViewState& view);

/// The common end of every loader of a radiometric still: temperatures, the toggle button, the
/// calibrated range in its panel, the range control and the kind.
void FinishRadiometricLoad(ImageKindValue kind, Session& session);

/// A zero-padded field of code page 1252 as text; zeros inside are passed over.
QString FieldText(const std::string& field);

/// Calibrated range, offset and gain of a header go into the record.
void TakeCalibration(const CameraHeader& header, OpenImage& image);

/// An 8-bit buffer of the raster's size, and grid and rows to go with it.
void MakeRasterBuffers(int width, int height, Session& session);

/// "Loading" and the path in the progress caption, painted at once.
void ShowLoadingText(const QString& loadingWord, const OpenImage& image, ViewState& view,
                     Progress& progress);

/// "2 of 10": the frame on show.
QString FrameText(const OpenImage& image, const Strings& strings);

/// Both ends of the range in force as texts in the unit of display; `low`, `high` in degrees
/// Celsius.
void SetScaleTexts(double low, double high, OpenImage& image);

/// Every width and height field takes the buffer's size.
void TakeBufferSize(const Picbuf& buffer, OpenImage& image);

/// The palette in use goes into the three buffers that show it.
void InstallPalette(Session& session);

}  // namespace tessa
