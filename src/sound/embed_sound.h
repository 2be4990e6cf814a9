#pragma once

#include <QString>

#include "core/application_folder.h"
#include "core/open_image.h"
#include "sound/sound_note.h"

namespace tessa {

/// Why no wave can go into this image, in plain words; empty when one can. `fileSize` is the
/// image's length in bytes.
std::string WhyNotEmbed(const SitHeader& header, std::uint64_t fileSize);

/// The header of an image that takes a wave. Throws StepFailure with the reason when it takes none
/// or is no SIT image.
SitHeader HeaderForEmbedding(const QString& imagePath);

/// What goes into an image for the sound file at `soundPath`: the camera's sound converted as
/// `header` of the image wants it, or a PCM wave as it is. Throws StepFailure when it is neither,
/// empty or cut.
NoteWave WaveForImage(const QString& soundPath, const SitHeader& header);

/// The bytes of the image at `imagePath` with the wave behind them and its position in the header.
/// Throws StepFailure.
Bytes ImageWithWave(const QString& imagePath, ByteSpan wave);

/// Appends the wave to the image itself, header last. The image stays as it was when that fails,
/// or when it is not what `opened` says, if given: the record of the open image. Returns the
/// header that the image has now. Throws StepFailure.
SitHeader AppendWave(const QString& imagePath, ByteSpan wave, const OpenImage* opened = nullptr);

/// Puts the camera's sound at `soundPath` into the image as a wave, while copying. An empty sound
/// file is deleted. Throws StepFailure; the image is then as it was.
void EmbedSound(const QString& imagePath, const QString& soundPath, ApplicationFolder& folder);

/// Puts the sound file of the open image into it. Throws StepFailure; file and record are then as
/// they were.
void EmbedIntoOpenImage(OpenImage& image);

}  // namespace tessa
