#pragma once

#include "core/progress.h"
#include "open/session.h"

namespace tessa {

// Steps that several loaders take.

/// "Load Image SIT Images": the tool tip of the load button.
QString LoadButtonTip(const OpenImage& image, const Strings& strings);

/// "Range: ..." and "Emissivity: ..." in status panels 5 and 4.
void ShowCalibratedRange(const OpenImage& image, const Strings& strings, ViewState& view);
void ShowEmissivity(const OpenImage& image, const Strings& strings, ViewState& view);

/// The common end of every loader of a radiometric still: temperatures, the toggle button, the
/// calibrated range in its panel, the range control and the kind.
void FinishRadiometricLoad(ImageKindValue kind, Session& session);

/// "Loading" and the path in the progress caption, painted at once.
void ShowLoadingText(const QString& loadingWord, const OpenImage& image, ViewState& view,
                     Progress& progress);

/// "2 of 10": the frame on show.
QString FrameText(const OpenImage& image, const Strings& strings);

/// The image takes the buffer's size.
void TakeBufferSize(const Picbuf& buffer, OpenImage& image);

/// The palette in use goes into the three buffers that show it.
void InstallPalette(Session& session);

}  // namespace tessa
