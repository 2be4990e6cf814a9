#pragma once

#include <QString>
#include <cstdint>
#include <functional>

#include "core/application_folder.h"
#include "sound/media_device.h"
#include "sound/sound_note.h"

namespace tessa {

// Temporary waves, all in the folder for temporary files of this process.

/// The wave of a tile, and of a sound on its way into an image.
QString TileWavePath(ApplicationFolder& folder);
/// The wave of the camera's own sound inside a tile's image.
QString EmbeddedTileWavePath(ApplicationFolder& folder);

/// Converts the camera's sound at `sourcePath` to TileWavePath(). False when it is no whole sound,
/// with the reason in `faults`; an empty one is deleted.
bool CreateWave(const QString& sourcePath, RateOverride rateOverride, ApplicationFolder& folder,
                Problems& faults);

// Each makes the temporary wave of a tile and opens the device on it. False when that fails; then
// no temporary file is left.

bool ConvertSidecarSound(const QString& soundPath, const QString& imagePath,
                         ApplicationFolder& folder, MediaDevice& device, Problems& faults);
/// `position` counts from byte 1.
bool ExtractEmbeddedWave(std::uint64_t position, const QString& imagePath,
                         ApplicationFolder& folder, MediaDevice& device, Problems& faults);
bool ConvertEmbeddedSound(const QString& imagePath, ApplicationFolder& folder, MediaDevice& device,
                          Problems& faults);

/// Deletes TileWavePath() if it is there.
void DeleteTempWave(ApplicationFolder& folder);

/// Writes a note where a device is to play it from, and opens the device there. A note that is not
/// whole, or that the device refuses, leaves no file. `exact` is false for bytes cut out of an
/// image: their copy ends in its last word once more, which players do not hear. `target` names the
/// file; it may throw StepFailure.
bool OpenWave(const NoteWave& wave, bool exact, const std::function<QString()>& target,
              MediaDevice& device, Problems& faults);

/// The header of the image at `imagePath`; an empty one when it cannot be read.
SitHeader HeaderOf(const QString& imagePath);

}  // namespace tessa
